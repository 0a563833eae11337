#include "cluster/zlnodesdefinition.h"

#include "cluster/zlclusterinfo.h"
#include "services/zlerrorservice.h"

ZlNodesDefinition::ZlNodesDefinition(const std::string& text) : clusterInfoP(ZlClusterInfo::getInstance())
{
    ZL_TRACE();
    ZlClusterInfo::saveNodeDefinition(text.c_str(), &definition);
    ZlClusterInfo::extractNodes(&definition, &resolved, &unresolved);
}

const std::set<std::string>& ZlNodesDefinition::getResolved() const
{
    ZL_TRACE();
    return resolved;
}

const std::set<std::string>& ZlNodesDefinition::getUnresolved() const
{
    ZL_TRACE();
    return unresolved;
}
