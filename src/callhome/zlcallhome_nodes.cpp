// This node's place in the call-home groups, as it derives it from the configuration and its own name.
#include "callhome/zlcallhome.h"

#include <algorithm>
#include <string_view>

#include "cluster/zlclusterinfo.h"
#include "services/zlerrorservice.h"
#include "services/zlutils.h"

namespace {

bool isPieceOf(std::string_view list, std::string_view text)
{
    std::vector<std::string_view> pieces;
    cut(&pieces, list, ',');
    return std::find(pieces.begin(), pieces.end(), text) != pieces.end();
}

} // namespace

void ZlCallhome::updateCallhomeNodes()
{
    ZL_TRACE();
    parseConfig();
    callhomeNodes.clear();
    callhomeChilds.clear();
    callhomeNode.clear();
    isCallhomeChild = false;
    const std::string& localName = getLocalNodeName();
    for (const auto& [name, section] : config) {
        const std::string* server = getValue(section, "callhomeNode");
        if (server != nullptr) {
            callhomeNodes.insert(*server);
        }
        const std::string* childList = getValue(section, "callhomeChildNodes");
        if (childList == nullptr) {
            continue;
        }
        if (!isPieceOf(*childList, localName)) {
            continue;
        }
        isCallhomeChild = true;
        // Only the child list decides, and the last group wins: a server that is missing from its own list is
        // in no group.
        if (!localName.empty()) {
            callhomeNode = server == nullptr ? emptyStrg : *server;
            groupName = name;
        }
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
    for (const auto& [name, section] : config) {
        if (const std::string* childList = getValue(section, "callhomeChildNodes")) {
            std::set<std::string> childs;
            stringToSet(&childs, *childList, ",");
            callhomeChilds.merge(childs);
        }
    }
    return callhomeChilds;
}

int ZlCallhome::isCurrNodeInCallhomeGroup() const
{
    ZL_TRACE();
    const std::string& localName = getLocalNodeName();
    return callhomeNodes.count(localName) != 0 || isCallhomeChild ? 1 : 0;
}

bool ZlCallhome::isCapabilityEnabled() const
{
    ZL_TRACE();
    return getConfigAttribute(groupName, "enabled") == "true";
}

ZelfVersion ZlCallhome::getThisGroupMasterVersion() const
{
    ZL_TRACE();
    const std::string version = getConfigAttribute(groupName, "masterReleaseVersion");
    return ZelfVersion(version == "unknown" ? "0.0.0.0" : version);
}

void ZlCallhome::setCallhomeNodeClasses()
{
    ZL_TRACE();
    parseConfig();
    std::vector<std::string> servers;
    std::vector<std::string> clients;
    for (const auto& [name, section] : config) {
        if (const std::string* server = getValue(section, "callhomeNode")) {
            servers.push_back(*server);
        }
        if (const std::string* childList = getValue(section, "callhomeChildNodes")) {
            clients.push_back(*childList);
        }
    }
    executeCMD(ZlClusterInfo::getNodeClassCmd("CALLHOME_SERVERS", servers), nullptr);
    executeCMD(ZlClusterInfo::getNodeClassCmd("CALLHOME_CLIENTS", clients), nullptr);
}
