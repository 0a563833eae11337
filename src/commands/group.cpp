// zelfhome group: add, delete and list the call home groups.
//
// The monitoring service writes the groups. Before that, this tool checks the nodes; after it, it brings the
// node classes up to date.
#include "commands/zlcallhome_excute.h"

#include <algorithm>

#include "cluster/zlclusterinfo.h"
#include "commands/zlcallhome_utils.h"
#include "services/zlerrorservice.h"
#include "services/zlutils.h"

namespace {

// Takes "--node" and its value off the arguments. Gives the nodes of the value.
std::vector<std::string> takeChildNodes(std::vector<std::string>& args)
{
    const auto option = std::find(args.begin(), args.end(), "--node");
    if (option == args.end() || option + 1 == args.end()) {
        return {};
    }
    std::vector<std::string> nodes = split(*(option + 1), ",");
    args.erase(option, option + 2);
    return nodes;
}

// Gives the former members that the answer to deleteGroup names: they stand in its second line, behind a text
// of fixed length and ahead of the line end. A line that is shorter than that text raises a range error.
std::vector<std::string> formerMembers(const std::string& answer)
{
    constexpr size_t TEXT_LENGTH = 36;
    const std::vector<std::string> lines = linesOf(answer);
    if (lines.size() < 2) {
        return {};
    }
    std::string names = lines[1].substr(TEXT_LENGTH);
    if (!names.empty()) {
        names.pop_back();
    }
    return split(names, " ");
}

// Has each former member of a group turn off its upload client. What comes of it doesn't matter: the group is
// gone.
void disableLocally(const std::vector<std::string>& nodes)
{
    if (!nodes.empty() && !nodes.front().empty()) {
        executeOnNodes(nodes, "execchcommand chlocaldisable /opt/zelf/data/callhome/etc/UPLmain.properties");
    }
}

} // namespace

int groupAdd(char* /*prompt*/, char* /*args*/, bool /*interactive*/)
{
    ZL_TRACE();
    std::vector<std::string> members = takeChildNodes(chServiceP->cmdOptions);
    const std::string group = requiredArgument(0);
    const std::string server = requiredArgument(1);
    if (!contains(members, server)) {
        members.push_back(server);
    }
    const std::set<std::string> withoutPackages = getNodesWithoutCallhomePackages(members);
    if (!withoutPackages.empty()) {
        return fail("No call home packages installed on the following nodes: " +
                    toString(withoutPackages, ", "));
    }
    if (!getNodesUnableToReachUplink({server}).empty()) {
        return fail("The call home node has no connectivity to the uplink endpoint\n"
                    "Please check the settings for it and proxy settings if used.");
    }
    // A server that stopped answering since the last probe has no version.
    const std::map<std::string, ZelfVersion> versions = getNodesVersions(members);
    const auto version = versions.find(server);
    std::ranges::sort(members);
    const int code =
        askMonitoringService("addGroup " + group + " " + server + " " +
                             (version == versions.end() ? "0.0.0.0" : version->second.getText()) + " " +
                             containerToString(members, ","));
    if (code == 0) {
        chServiceP->setCallhomeNodeClasses();
    }
    return code;
}

int groupDel(char* /*prompt*/, char* /*args*/, bool /*interactive*/)
{
    ZL_TRACE();
    const int code = askMonitoringService("deleteGroup " + requiredArgument(0));
    if (code != 0) {
        return code;
    }
    disableLocally(formerMembers(chServiceP->userResponse));
    chServiceP->setCallhomeNodeClasses();
    chServiceP->userResponse = "Successfully deleted";
    return 0;
}

int groupList(char* /*prompt*/, char* /*args*/, bool /*interactive*/)
{
    ZL_TRACE();
    // The section "global" is no group.
    if (chServiceP->config.size() < 2) {
        return fail("No callhome group defined.");
    }
    const auto toName = chServiceP->getCmdOptions() == "--long" ? ZlClusterInfo::toAdminLongName
                                                                : ZlClusterInfo::toAdminShortName;
    const auto shownName = [toName](const std::string& node) {
        const std::string& name = toName(node);
        return name.empty() ? "------" : name;
    };
    PlainTable table = {{"callHomeGroup", "callHomeNode", "callHomeChildNodes"}};
    for (const auto& [name, section] : chServiceP->config) {
        if (name == ZlCallhome::GLOBAL_LABEL) {
            continue;
        }
        const std::string server = shownName(valueOr(section, ZlCallhome::CALLHOME_NODE));
        std::vector<std::string> childs = split(valueOr(section, ZlCallhome::CALLHOME_CHILD_NODES), ",");
        std::ranges::transform(childs, childs.begin(), shownName);
        table.push_back({name, server, containerToString(childs, ",")});
    }
    showList(*chServiceP, table);
    return 0;
}
