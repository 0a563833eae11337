// zelfhome group auto: groups for the whole cluster in one step.
//
// Which nodes become servers, and of which clients, is the choice of /opt/zelf/bin/zelfautoconfig. The verb
// records the capability, screens the nodes for it, and brings the new servers' settings up to date.
#include "commands/zlcallhome_excute.h"

#include <algorithm>
#include <iostream>
#include <iterator>

#include "cluster/zlclusterinfo.h"
#include "commands/zlcallhome_utils.h"
#include "services/zlerrorservice.h"
#include "services/zlfileio.h"
#include "services/zlutils.h"

namespace {

const char* const ALL_NODES_FILE = "/var/zelf/gen/nodeFiles/zelfall.rel";
const char* const ALL_NODES_COPY = "/var/zelf/tmp/zelfall.rel";
const char* const SERVERS_FILE = "/var/zelf/gen/nodeFiles/usercallhome_servers.rel";
const char* const AUTOCONFIG_TOOL = "/opt/zelf/bin/zelfautoconfig";

// The lowest release level that takes part.
constexpr nodeLevel_t MIN_NODE_LEVEL = 1600;

void trace(const std::string& text)
{
    ZlErrorService::errorServiceP->pushNewMsg(text);
}

// Takes --enable off the arguments and stores it in the configuration itself: the external tool has to find
// it there.
void enableCapability()
{
    chServiceP->setConfig({ZlCallhome::GLOBAL_LABEL, {{ZlCallhome::ENABLED, "true"}}});
    chServiceP->writeConfig();
    chServiceP->removeOption("--enable", true);
}

// Leaves the list of all nodes to the external tool. Ends the process when none has a sufficient level; says
// how many have not.
void screenNodes()
{
    ZlFileIO file(ALL_NODES_FILE);
    file.readFile();
    std::set<std::string> nodes;
    file.getData(&nodes);
    const size_t refused = std::erase_if(
        nodes, [](const auto& node) { return !chServiceP->ensureMinReleaseLevel(node, MIN_NODE_LEVEL); });
    const std::string level = toString(chServiceP->getMinReleaseLevel());
    if (nodes.empty()) {
        chServiceP->giveUp("Terminate execution.", "No nodes available with min release level " + level);
    }
    if (refused != 0) {
        chServiceP->pushMessage("Some nodes do not have min release level " + level);
        chServiceP->pushMessage("Number of nodes exclude from processing: " + toString(refused));
    }
    // The copy is the list as it was read, with the refused nodes.
    file.setFileName(ALL_NODES_COPY);
    file.writeFile();
}

// Gives a command as one quoted, encoded word for the remote side.
std::string encodedCommand(const std::vector<std::string>& words)
{
    std::vector<std::string> encoded(words.size());
    for (size_t i = 0; i < words.size(); ++i) {
        chServiceP->fullEncode(encoded[i], words[i]);
    }
    return quoteForBothSides(containerToString(encoded, " "));
}

// Replays the global settings on the servers that were none before. Gives 0, or 1 when there is nothing to do
// it with; ends the process when the dispatch fails.
int deployGlobalSettings(const std::set<std::string>& existingServers)
{
    std::set<std::vector<std::string>> commands;
    if (chServiceP->configSectionToCmds(ZlCallhome::GLOBAL_LABEL, &commands, true) == 0) {
        return 1;
    }
    ZlFileIO file(SERVERS_FILE);
    if (file.statFile() != 0) {
        return 1;
    }
    trace("zlcallhomeExecute::groupAuto: prepare remote execution");
    std::vector<std::string> servers;
    file.readFile();
    file.getData(&servers);
    trace("zlcallhomeExecute::groupAuto: CH-SERVERS: " + containerToString(servers, emptyStrg));
    if (!chServiceP->programName.empty()) {
        std::cout << chServiceP->programName << ": [I] deploy configuration." << std::endl;
    }
    for (const std::vector<std::string>& words : commands) {
        const std::string command = encodedCommand(words);
        std::vector<std::string> relevant;
        std::ranges::copy_if(servers, std::back_inserter(relevant), [&](const auto& server) {
            return !existingServers.contains(ZlClusterInfo::toAdminLongName(server));
        });
        trace("Existed callhome nodes:" + toString(existingServers, ", "));
        trace("Relevant nodes:" + containerToString(relevant, ", "));
        if (executeOnNodes(relevant, ZlCli::REMOTE_ENTRY + " " + command).exitCode != 0) {
            chServiceP->giveUp("Problem with zelfrun/zelfremote. See /var/zelf/tmp/zelfhome.log for details");
        }
    }
    return 0;
}

} // namespace

int groupAuto(char* /*prompt*/, char* args, bool /*interactive*/)
{
    ZL_TRACE();
    ZlErrorService* errorServiceP = ZlErrorService::errorServiceP;
    if (args != nullptr) {
        errorServiceP->pushDebugMsg(std::string("zlcallhomeExecute::groupAuto: bufP = ") + args);
    }
    errorServiceP->pushDebugMsg("zlcallhomeExecute::groupAuto: args = " + chServiceP->getCmdOptions());
    if (chServiceP->getCmdOptions().find("--enable") != std::string::npos) {
        enableCapability();
    }
    screenNodes();
    std::set<std::string> existingServers;
    if (!contains(chServiceP->getCmdOptionVector(), "--force")) {
        existingServers = chServiceP->getCallhomeNodes();
    }
    const int result = chServiceP->executeCHcmd(" ", " ", args, nullptr, AUTOCONFIG_TOOL);
    chServiceP->userResponse = result != 0 ? "Failed" : "Success";
    // "-h" counts within a node name too.
    if ((args != nullptr && std::string(args) == "-h") ||
        containerToString(chServiceP->getCmdOptionVector(), emptyStrg).find("-h") != std::string::npos ||
        result != 0) {
        trace("zlcallhomeExecute::groupAuto: skip deploying global config. rc = " + toString(result));
        return result;
    }
    chServiceP->setCallhomeNodeClasses();
    return deployGlobalSettings(existingServers);
}
