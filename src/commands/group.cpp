// zelfhome group: add, delete and list the call home groups.
//
// The monitoring service writes the groups. This tool checks the nodes ahead of it and brings the node
// classes up to date behind it.
#include "commands/zlcallhome_excute.h"

#include <algorithm>

#include "callhome/zlcallhome.h"
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

int fail(const std::string& reason)
{
    chServiceP->userResponse = reason;
    return 1;
}

// Runs a request that changes the groups. The answer becomes the result message. Gives the exit code.
int changeGroups(const std::string& request, std::vector<std::string>& reply)
{
    const int code = chServiceP->executeCMD("/opt/zelf/bin/zelfmonc callhome " + request, &reply);
    chServiceP->userResponse = containerToString(reply, emptyStrg);
    return code;
}

// Gives the former members that the answer to deleteGroup names: they stand in its second line, behind a text
// of fixed length and ahead of the line end. A line that is shorter than that text raises a range error.
std::vector<std::string> formerMembers(const std::vector<std::string>& reply)
{
    constexpr size_t TEXT_LENGTH = 36;
    // A long line comes in pieces.
    const std::string text = containerToString(reply, emptyStrg);
    const size_t firstEnd = text.find('\n');
    if (firstEnd == std::string::npos || firstEnd + 1 == text.size()) {
        return {};
    }
    const size_t secondEnd = std::min(text.find('\n', firstEnd + 1), text.size() - 1);
    std::string names = text.substr(firstEnd + 1, secondEnd - firstEnd).substr(TEXT_LENGTH);
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
    std::sort(members.begin(), members.end());
    std::vector<std::string> reply;
    const int code = changeGroups("addGroup " + group + " " + server + " " +
                                      (version == versions.end() ? "0.0.0.0" : version->second.getText()) +
                                      " " + containerToString(members, ","),
                                  reply);
    if (code == 0) {
        chServiceP->setCallhomeNodeClasses();
    }
    return code;
}

int groupDel(char* /*prompt*/, char* /*args*/, bool /*interactive*/)
{
    ZL_TRACE();
    std::vector<std::string> reply;
    const int code = changeGroups("deleteGroup " + requiredArgument(0), reply);
    if (code != 0) {
        return code;
    }
    disableLocally(formerMembers(reply));
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
    showList(tableOfSections({"callHomeGroup", "callHomeNode", "callHomeChildNodes"},
                             [&](const auto& name, const auto& section, auto& rows) {
                                 if (name == ZlCallhome::GLOBAL_LABEL) {
                                     return;
                                 }
                                 const std::string server = shownName(cell(section, "callhomeNode"));
                                 std::vector<std::string> childs =
                                     split(cell(section, "callhomeChildNodes"), ",");
                                 std::transform(childs.begin(), childs.end(), childs.begin(), shownName);
                                 rows.push_back({name, server, containerToString(childs, ",")});
                             }));
    return 0;
}
