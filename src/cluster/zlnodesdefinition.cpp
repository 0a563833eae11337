#include "cluster/zlnodesdefinition.h"

#include "cluster/zlclusterinfo.h"
#include "services/zlerrorservice.h"

ZlNodesDefinition::ZlNodesDefinition(const std::string& text) : clusterInfoP(nullptr)
{
    ZL_TRACE();
    clusterInfoP = ZlClusterInfo::getInstance();
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
