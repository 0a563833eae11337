// Release levels and versions of the cluster and its nodes.
#include "cli/zlcli.h"

#include <cstdlib>

#include "cluster/zlclusterinfo.h"
#include "services/zlerrorservice.h"
#include "services/zlutils.h"

int ZlCli::getClusterMinReleaseLevel(nodeLevel_t* level, std::string* version) const
{
    ZL_TRACE();
    const std::string* value = getValue(ZlClusterInfo::getZelfCfg(), "minReleaseLevel");
    if (value == nullptr) {
        return 1;
    }
    const std::vector<std::string> pieces = split(*value, " ");
    if (pieces.size() != 2) {
        version->clear();
        *level = 0;
        return 1;
    }
    *version = pieces[1];
    *level = static_cast<nodeLevel_t>(std::strtol(pieces[0].c_str(), nullptr, 10));
    errorServiceP->pushDebugMsg(" ZlCli::getClusterMinReleaseLevel: " + toString(*level) +
                                " level = " + *version);
    return 0;
}

std::string ZlCli::getClusterMinReleaseVersion() const
{
    ZL_TRACE();
    nodeLevel_t level = 0;
    std::string version;
    getClusterMinReleaseLevel(&level, &version);
    return version;
}

nodeLevel_t ZlCli::getClusterMinReleaseLevel() const
{
    ZL_TRACE();
    nodeLevel_t level = 0;
    std::string version;
    getClusterMinReleaseLevel(&level, &version);
    return level;
}

// A local node that the cluster file does not know has no release.
std::string ZlCli::getNodeReleaseVersion() const
{
    ZL_TRACE();
    const auto node = ZlClusterInfo::toNodeIterator(getLocalNodeName());
    return node == ZlClusterInfo::nodesP->end() ? emptyStrg : node->getRelease();
}

nodeLevel_t ZlCli::getNodeReleaseLevel() const
{
    ZL_TRACE();
    const auto node = ZlClusterInfo::toNodeIterator(getLocalNodeName());
    return node == ZlClusterInfo::nodesP->end() ? 0 : node->getLevel();
}

bool ZlCli::ensureMinReleaseLevel(const std::string& node, nodeLevel_t level) const
{
    ZL_TRACE();
    if (level == 0) {
        level = getMinReleaseLevel();
    }
    const auto found = ZlClusterInfo::nodesP->findNamed(node);
    if (found == ZlClusterInfo::nodesP->end()) {
        errorServiceP->pushNewMsg("ensureMinReleaseLevel: node " + node + " not found.");
        return false;
    }
    if (level > found->getLevel()) {
        errorServiceP->pushNewMsg("ensureMinReleaseLevel: node " + node + " must have min release " +
                                  toString(level) + " it has: " + toString(found->getLevel()));
        return false;
    }
    return true;
}
