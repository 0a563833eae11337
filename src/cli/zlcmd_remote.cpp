// Where a command runs: what -a and -N mean for it, and the node of a command that has one of its own. No
// command of this tool runs on the cluster manager, on the collector, or takes nodes as arguments; those ways
// stand ready for others.
#include "cli/zlcmd.h"

#include <algorithm>

#include "cli/zlcli.h"
#include "cluster/zlclusterinfo.h"

namespace {

// The least level of a cluster manager that takes commands.
constexpr nodeLevel_t MANAGER_MIN_LEVEL = 1600;

// Has the command run on `node`, which is the `role`, unless that is this node; and not on nodes below
// `level`.
void transferTo(ZlCli& cli, const std::string& node, const std::string& role, nodeLevel_t level)
{
    // Both names are strings of node records: one node, one object.
    cli.setRemoteExecution(&node != &cli.getLocalNodeName());
    if (!cli.doRemoteExecution()) {
        ZlCli::errorServiceP->pushNewMsg("ZlCmd::processRemoteNodeHandling: local node is " + role);
        return;
    }
    ZlCli::errorServiceP->pushNewMsg("ZlCmd::processRemoteNodeHandling: transfer execution to node: " + node);
    ZlClusterInfo::defineAllNode(node);
    ZlClusterInfo::filterNodes(level, *ZlClusterInfo::allNodesP, ZlClusterInfo::validNodesP,
                               ZlClusterInfo::invalidNodeDefinitionsP);
}

} // namespace

void ZlCmd::processRemoteNodeHandling() const
{
    ZL_TRACE();
    if (!cliP->doRemoteExecution()) {
        if (remoteHandling == REMOTE_CLUSTER_MANAGER) {
            runOnClusterManager();
        } else if (remoteHandling == REMOTE_COLLECTOR) {
            runOnCollector();
        }
        return;
    }
    cliP->setMinRemoteNodeLevel(std::max(cliP->getMinRemoteNodeLevel(), nodeLevel));
    const std::string command = cliP->programName + " " + cliP->subject;
    const std::string refusal = ": Incorrect option: " + cliP->remoteOption;
    switch (remoteHandling) {
    case REMOTE_FORBIDDEN:
        terminateWithMessage(command + " " + cliP->verb + refusal +
                                 " Remote execution by -a, -N is not allowed.",
                             emptyStrg, true);
    case REMOTE_PASSTHROUGH:
        cliP->setRemoteExecution(false);
        cliP->appendCmdOptions("-N");
        cliP->appendCmdOptions(toString(*ZlClusterInfo::getGoodNodes(), ","));
        errorServiceP->pushNewMsg(
            "ZlCmd::processRemoteNodeHandling: remote execution is changed to passthrough");
        break;
    case REMOTE_NORMAL:
        break;
    case REMOTE_LOCAL_ONLY:
        cliP->setRemoteExecution(false);
        errorServiceP->pushNewMsg("ZlCmd::processRemoteNodeHandling: set doRemoteExecution to false");
        break;
    case REMOTE_CLUSTER_MANAGER:
    case REMOTE_COLLECTOR:
        terminateWithMessage(command + refusal, emptyStrg, true);
    }
}

void ZlCmd::runOnClusterManager() const
{
    ZL_TRACE();
    const std::string& manager = ZlClusterInfo::getManagerNode();
    if (manager.empty()) {
        const bool zelfdRunning = cliP->get_zelfdRunning();
        terminateWithMessage("Cannot detect cluster manager node.",
                             zelfdRunning ? emptyStrg
                                          : "The ZELF daemon process zelfd is not running. Run zelfstart or "
                                            "execute the command from an other node where zelfd is running.",
                             zelfdRunning);
    }
    const nodeLevel_t level = ZlClusterInfo::toNodeIterator(manager)->getLevel();
    if (level < MANAGER_MIN_LEVEL) {
        // Either name may have to be asked of a program.
        const std::string has = ZlClusterInfo::releaseLevelToName(level);
        const std::string needs = ZlClusterInfo::releaseLevelToName(MANAGER_MIN_LEVEL);
        terminateWithMessage("Cannot access cluster manager node.",
                             "The cluster manager node " + manager + " is " + has + " Required: " + needs,
                             false);
    }
    transferTo(*cliP, manager, "cluster manager", nodeLevel);
}

void ZlCmd::runOnCollector() const
{
    ZL_TRACE();
    const std::string collector = ZlClusterInfo::getCollectorNode();
    if (collector.empty()) {
        terminateWithMessage("Could not find any active collector node.",
                             "Include collector nodes to the colCandidates with zelfperf config update "
                             "--collectors and activate at least one of them with systemctl start "
                             "zelfcollector. Ccr has to run for this command.",
                             true);
    }
    transferTo(*cliP, ZlClusterInfo::toAdminLongName(collector), "active collector node", 0);
}
