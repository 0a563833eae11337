// The grammar: every subject, verb, option and token that exists, as one table of rows, and the operation
// that feeds it to ZlCmd and validates the command that was typed.
#include "callhome/zlcallhome.h"

#include <algorithm>
#include <span>

#include "cli/cmdtable.h"
#include "services/zlerrorservice.h"
#include "services/zlutils.h"

namespace {

// A name that is empty declares a positional, in the order of its place.
struct OptionRow {
    const char* name;
    ZlCmd::valueType type;
    bool required;
    const char* tokens;
};

struct MappingRow {
    const char* from;
    const char* to;
};

struct CommandRow {
    const char* subject;
    const char* verb;
    ZlCmd::remoteNodes remote;
    std::span<const OptionRow> options;
    std::span<const MappingRow> mappings;
};

constexpr bool REQUIRED = true;
constexpr bool OPTIONAL = false;

constexpr const char* SCHEDULED_TASKS = "DAILY | WEEKLY | daily | weekly";
constexpr const char* ALL_TASKS =
    "DAILY | WEEKLY | SENDFILE | SENDPMRDATA | daily | weekly | sendfile | sendpmrdata";

constexpr OptionRow GROUP_LIST[] = {{"--long", ZlCmd::NO, OPTIONAL, ""}};
constexpr OptionRow GROUP_ADD[] = {
    {"", ZlCmd::ANY, REQUIRED, ""},  // group name
    {"", ZlCmd::NODE, REQUIRED, ""}, // server
    {"--node", ZlCmd::NODE, OPTIONAL, ""},
};
constexpr OptionRow GROUP_DELETE[] = {{"", ZlCmd::ANY, REQUIRED, ""}}; // group name
constexpr OptionRow GROUP_AUTO[] = {
    {"--server", ZlCmd::NODE, OPTIONAL, ""},
    {"--force", ZlCmd::NO, OPTIONAL, ""},
    {"--enable", ZlCmd::NO, OPTIONAL, ""},
    {"--disable", ZlCmd::NO, OPTIONAL, ""},
};
constexpr OptionRow SCHEDULED_TASK[] = {{"--task", ZlCmd::TOKEN, REQUIRED, SCHEDULED_TASKS}};
constexpr OptionRow SEND_FILE[] = {
    {"--file", ZlCmd::ANY, REQUIRED, ""},
    {"--desc", ZlCmd::ANY, OPTIONAL, ""},
    {"--pmr", ZlCmd::TICKET_NUMBER, OPTIONAL, ""},
};
constexpr OptionRow STATUS_LIST[] = {
    {"--task", ZlCmd::TOKEN, OPTIONAL, ALL_TASKS},
    {"--numbers", ZlCmd::INT, OPTIONAL, ""},
    {"--verbose", ZlCmd::NO, OPTIONAL, ""},
};
constexpr OptionRow STATUS_DELETE[] = {
    {"--task", ZlCmd::TOKEN, OPTIONAL, ALL_TASKS},   {"--startTime", ZlCmd::ANY, OPTIONAL, ""},
    {"--startTimeBefore", ZlCmd::ANY, OPTIONAL, ""}, {"--starttime", ZlCmd::ANY, OPTIONAL, ""},
    {"--starttimebefore", ZlCmd::ANY, OPTIONAL, ""}, {"--all", ZlCmd::NO, OPTIONAL, ""},
};
constexpr OptionRow INFO_CHANGE[] = {
    {"--email", ZlCmd::EMAIL, OPTIONAL, ""},
    {"--country-code", ZlCmd::COUNTRY_CODE, OPTIONAL, ""},
    {"--customer-name", ZlCmd::ANY, OPTIONAL, ""},
    {"--customer-id", ZlCmd::ANY, OPTIONAL, ""},
};
constexpr OptionRow PROXY_ENABLE[] = {{"--with-proxy-auth", ZlCmd::NO, OPTIONAL, ""}};
constexpr OptionRow PROXY_CHANGE[] = {
    {"--proxy-location", ZlCmd::ANY, OPTIONAL, ""},
    {"--proxy-port", ZlCmd::INT, OPTIONAL, ""},
    {"--proxy-username", ZlCmd::ANY, OPTIONAL, ""},
    {"--proxy-password", ZlCmd::ANY, OPTIONAL, ""},
};
constexpr OptionRow QUERY[] = {{"", ZlCmd::ANY, REQUIRED, ""}}; // request of the monitoring client

constexpr MappingRow HELP_MAPPING[] = {{"--help", "-h"}};
constexpr MappingRow TASK_MAPPINGS[] = {{"--task", "-F"}, {"DAILY", "daily"}, {"WEEKLY", "weekly"}};
constexpr MappingRow SEND_FILE_MAPPINGS[] = {{"--file", "-F"}};
constexpr MappingRow STATUS_LIST_MAPPINGS[] = {
    {"DAILY", "daily"},  {"WEEKLY", "weekly"},     {"--numbers", "-n"},
    {"--verbose", "-v"}, {"SENDFILE", "sendfile"}, {"SENDPMRDATA", "sendpmrdata"},
};
constexpr MappingRow STATUS_DELETE_MAPPINGS[] = {
    {"DAILY", "daily"},
    {"WEEKLY", "weekly"},
    {"SENDFILE", "sendfile"},
    {"SENDPMRDATA", "sendpmrdata"},
    {"--starttime", "--startTime"},
    {"--starttimebefore", "--startTimeBefore"},
};

constexpr CommandRow COMMANDS[] = {
    {"group", "list | ls", ZlCmd::REMOTE_FORBIDDEN, GROUP_LIST, {}},
    {"group", "add", ZlCmd::REMOTE_FORBIDDEN, GROUP_ADD, {}},
    {"group", "delete | del", ZlCmd::REMOTE_FORBIDDEN, GROUP_DELETE, HELP_MAPPING},
    {"group", "auto", ZlCmd::REMOTE_FORBIDDEN, GROUP_AUTO, HELP_MAPPING},
    {"capability", "list | ls | disable", ZlCmd::REMOTE_FORBIDDEN, {}, {}},
    {"capability", "enable", ZlCmd::REMOTE_FORBIDDEN, {}, {}},
    {"schedule", "list | ls", ZlCmd::REMOTE_FORBIDDEN, {}, {}},
    {"schedule", "add", ZlCmd::REMOTE_FORBIDDEN, SCHEDULED_TASK, TASK_MAPPINGS},
    {"schedule", "delete | del", ZlCmd::REMOTE_FORBIDDEN, SCHEDULED_TASK, TASK_MAPPINGS},
    {"run", "GatherSend", ZlCmd::REMOTE_FORBIDDEN, SCHEDULED_TASK, TASK_MAPPINGS},
    {"run", "SendFile", ZlCmd::REMOTE_FORBIDDEN, SEND_FILE, SEND_FILE_MAPPINGS},
    {"status", "list | ls", ZlCmd::REMOTE_NORMAL, STATUS_LIST, STATUS_LIST_MAPPINGS},
    {"status", "delete | del", ZlCmd::REMOTE_NORMAL, STATUS_DELETE, STATUS_DELETE_MAPPINGS},
    {"info", "list | ls", ZlCmd::REMOTE_FORBIDDEN, {}, {}},
    {"info", "change", ZlCmd::REMOTE_FORBIDDEN, INFO_CHANGE, {}},
    {"proxy", "list | ls | disable", ZlCmd::REMOTE_FORBIDDEN, {}, {}},
    {"proxy", "enable", ZlCmd::REMOTE_FORBIDDEN, PROXY_ENABLE, {}},
    {"proxy", "change", ZlCmd::REMOTE_FORBIDDEN, PROXY_CHANGE, {}},
    {"test", "connection", ZlCmd::REMOTE_NORMAL, {}, {}},
    {"zelfmon", "query", ZlCmd::REMOTE_FORBIDDEN, QUERY, {}},
};

void declareCommands(ZlCmd& stencil, std::vector<ZlCmd>& cmds)
{
    cmds.clear();
    for (const CommandRow& row : COMMANDS) {
        stencil(row.subject, row.verb, emptyStrg, nullptr, 0);
        for (const OptionRow& option : row.options) {
            stencil(option.name, option.type, option.required, option.tokens, nullptr, 0);
        }
        for (const MappingRow& mapping : row.mappings) {
            stencil.addMapping(mapping.from, mapping.to);
        }
        if (row.remote != ZlCmd::REMOTE_NORMAL) {
            stencil.setRemoteNodeHandling(row.remote);
        }
        cmds.push_back(stencil);
    }
}

// Takes --current and --outdated off the arguments and notes them, with --verbose, which stays. The argument
// that moves up into a removed one's place is passed over: "--outdated --current" leaves "--current" to the
// validation, which refuses it.
void takeStatusFlags(std::vector<std::string>& cmdOptions, uint64_t& statusFlags)
{
    for (size_t i = 0; i < cmdOptions.size(); ++i) {
        const std::string& option = cmdOptions[i];
        if (option == "--verbose") {
            statusFlags |= ZlCallhome::STATUS_VERBOSE;
        } else if (option == "--outdated" || option == "--current") {
            statusFlags &= ~uint64_t{ZlCallhome::STATUS_CURRENT};
            if (option == "--current") {
                statusFlags |= ZlCallhome::STATUS_CURRENT;
            }
            cmdOptions.erase(cmdOptions.begin() + static_cast<std::ptrdiff_t>(i));
        }
    }
}

} // namespace

std::set<std::string> settingsOf(const std::string& subject)
{
    std::set<std::string> settings;
    for (const CommandRow& row : COMMANDS) {
        if (row.subject == subject && row.verb == std::string("change")) {
            for (const OptionRow& option : row.options) {
                settings.insert(option.name + 2);
            }
        }
    }
    return settings;
}

int ZlCallhome::parseCmdLine(int argc, char** argv)
{
    ZL_TRACE();
    errorServiceP->pushDebugMsg("ZlCallhome::parseCmdLine: call ZlCli::parseCmdLine.");
    const int badArgCount = ZlCli::parseCmdLine(argc, argv);
    errorServiceP->pushDebugMsg("ZlCallhome::parseCmdLine: post process command line args.");
    if (badArgCount != 0) {
        errorServiceP->pushNewMsg("ZlCallhome::parseCmdLine: bad args found: " + toString(badArgCount));
        terminateProgram(1);
    }
    savedCmdOptions = cmdOptions;
    if (subject == "-h") {
        userResponse = "silent";
        terminateProgram(helpCmd(nullptr, nullptr, false));
    }
    if (helpRequest()) {
        verb.clear();
        cmdOptions.clear();
    }
    if (verb.empty()) {
        return 0;
    }
    takeStatusFlags(cmdOptions, statusFlags);

    ZlCmd stencil(this, emptyStrg, emptyStrg, emptyStrg, nullptr, nullptr, 0);
    declareCommands(stencil, cmds);
    stencil(subject, verb, emptyStrg, nullptr, 0);
    const auto command = std::ranges::find(cmds, stencil);
    if (command == cmds.end()) {
        giveUp(emptyStrg,
               "\"" + programName + " " + subject + " [options]\" does not support the specified options.");
    }
    cmdP = &*command;
    shellCmd = cmdP->getCmd();
    cmdP->validate(shellCmd, verb, cmdOptions);
    if (functions.empty() && cmdP->getCmdFuncP() != nullptr) {
        functions.emplace_back(emptyStrg, emptyStrg, cmdP->getCmdFuncP());
    }
    errorServiceP->pushDebugMsg("ZlCallhome::parseCmdLine: defining args");
    std::vector<std::string> args = {subject, verb};
    args.insert(args.end(), cmdOptions.begin(), cmdOptions.end());
    setCmdLineArgs(args);
    errorServiceP->pushDebugMsg("ZlCallhome::parseCmdLine: done");
    setMinReleaseLevel(cmdP->getNodeLevel());
    return badArgCount;
}
