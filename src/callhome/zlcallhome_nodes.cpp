// This node's place in the call-home groups, as it derives it from the configuration and its own name.
#include "callhome/zlcallhome.h"

#include "cluster/zlclusterinfo.h"
#include "services/zlerrorservice.h"
#include "services/zlutils.h"

void ZlCallhome::updateCallhomeNodes()
{
    ZL_TRACE();
    parseConfig();
    callhomeNodes.clear();
    callhomeChilds.clear();
    callhomeNode.clear();
    const std::string& localName = getLocalNodeName();
    for (const auto& [name, section] : config) {
        const std::string* server = getValue(section, CALLHOME_NODE);
        if (server != nullptr) {
            callhomeNodes.insert(*server);
        }
        const std::string* childList = getValue(section, CALLHOME_CHILD_NODES);
        if (childList == nullptr) {
            continue;
        }
        std::set<std::string> childs;
        stringToSet(&childs, *childList, ",");
        // Only the child list decides, and the last group wins. A server that is missing from its own list
        // has no group name and no server, though isCurrNodeInCallhomeGroup() counts it.
        if (!localName.empty() && childs.contains(localName)) {
            callhomeNode = server == nullptr ? emptyStrg : *server;
            groupName = name;
        }
        callhomeChilds.merge(childs);
    }
}

std::string ZlCallhome::getCallhomeNode() const
{
    ZL_TRACE();
    return callhomeNode;
}

const std::set<std::string>& ZlCallhome::getCallhomeNodes()
{
    ZL_TRACE();
    updateCallhomeNodes();
    return callhomeNodes;
}

const std::set<std::string>& ZlCallhome::getCallhomeChilds()
{
    ZL_TRACE();
    updateCallhomeNodes();
    return callhomeChilds;
}

int ZlCallhome::isCurrNodeInCallhomeGroup() const
{
    ZL_TRACE();
    const std::string& localName = getLocalNodeName();
    return callhomeNodes.contains(localName) || callhomeChilds.contains(localName) ? 1 : 0;
}

bool ZlCallhome::isCapabilityEnabled() const
{
    ZL_TRACE();
    return getConfigAttribute(groupName, ENABLED) == "true";
}

ZelfVersion ZlCallhome::getThisGroupMasterVersion() const
{
    ZL_TRACE();
    const std::string version = getConfigAttribute(groupName, MASTER_RELEASE_VERSION);
    return ZelfVersion(version == UNKNOWN ? "0.0.0.0" : version);
}

void ZlCallhome::setCallhomeNodeClasses()
{
    ZL_TRACE();
    parseConfig();
    std::vector<std::string> servers;
    std::vector<std::string> clients;
    for (const auto& [name, section] : config) {
        if (const std::string* server = getValue(section, CALLHOME_NODE)) {
            servers.push_back(*server);
        }
        if (const std::string* childList = getValue(section, CALLHOME_CHILD_NODES)) {
            clients.push_back(*childList);
        }
    }
    executeCMD(ZlClusterInfo::getNodeClassCmd("CALLHOME_SERVERS", servers), nullptr);
    executeCMD(ZlClusterInfo::getNodeClassCmd("CALLHOME_CLIENTS", clients), nullptr);
}
