#include "cli/cmdtable.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>
#include <string_view>
#include <unistd.h>

#include "commands/zlcallhome_excute.h"
#include "services/zelfnls.h"

const char* helpMsg = nullptr;
const char* progname = nullptr;

// --- the tables ------------------------------------------------------------------------------------------

const cmdTableRow cmdTable[] = {
    {"--help", "?", helpCmd, 0},
    {"group", "grp", groupCmd, 0},
    {"capability", "cap", capabilityCmd, 0},
    {"info", "info", infoCmd, 0},
    {"proxy", "proxy", proxyCmd, 0},
    {"schedule", "sch", scheduleCmd, 0},
    {"run", "run", runCmd, 0},
    {"status", "stat", statusCmd, 0},
    {"test", "test", testCmd, 0},
    {"zelfmon", "zelfmon", zelfmonCmd, 0},
    {nullptr, nullptr, nullptr, 0},
};

const cmdTableRow groupCmdTable[] = {
    {"--help", "-h", usage, 0},     {"list", "ls", groupList, 0},   {"add", "add", groupAdd, 0},
    {"delete", "del", groupDel, 0}, {"auto", "auto", groupAuto, 0}, {nullptr, nullptr, nullptr, 0},
};

// The short names of enable and disable are spelled as scripts know them.
const cmdTableRow capabilityCmdTable[] = {
    {"--help", "-h", usage, 0},
    {"list", "ls", capabilityList, 0},
    {"enable", "enabale", capabilityEnable, 0},
    {"disable", "disabale", capabilityDisable, 0},
    {nullptr, nullptr, nullptr, 0},
};

const cmdTableRow infoCmdTable[] = {
    {"--help", "-h", usage, 0},
    {"list", "ls", infoList, 0},
    {"change", "change", infoChange, 0},
    {nullptr, nullptr, nullptr, 0},
};

const cmdTableRow proxyCmdTable[] = {
    {"--help", "-h", usage, 0},
    {"enable", "enable", proxyEnable, 0},
    {"disable", "disable", proxyDisable, 0},
    {"list", "ls", proxyList, 0},
    {"change", "ch", proxyChange, 0},
    {nullptr, nullptr, nullptr, 0},
};

const cmdTableRow scheduleCmdTable[] = {
    {"--help", "-h", usage, 0},           {"list", "ls", scheduleList, 0}, {"add", "add", scheduleAdd, 0},
    {"delete", "del", scheduleDelete, 0}, {nullptr, nullptr, nullptr, 0},
};

const cmdTableRow runCmdTable[] = {
    {"--help", "-h", usage, 0},
    {"gathersend", "gs", runGatherSend, 0},
    {"sendfile", "sf", runSendFile, 0},
    {nullptr, nullptr, nullptr, 0},
};

const cmdTableRow statusCmdTable[] = {
    {"--help", "-h", usage, 0},
    {"list", "list", statusList, 0},
    {"delete", "del", statusDelete, 0},
    {nullptr, nullptr, nullptr, 0},
};

// The help row's short name differs from the others'.
const cmdTableRow testCmdTable[] = {
    {"--help", "?", usage, 0},
    {"connection", "connection", testConnection, 0},
    {nullptr, nullptr, nullptr, 0},
};

const cmdTableRow zelfmonCmdTable[] = {
    {"--help", "-h", usage, 0},
    {"query", "query", zelfmonQuery, 0},
    {nullptr, nullptr, nullptr, 0},
};

// --- the usage texts -------------------------------------------------------------------------------------

const char* const groupHelpMsg =
    "Usage:\n"
    "\tzelfhome group add GroupName server [--node {all | ChildNode[,ChildNode...]}]\n"
    "\tzelfhome group list [--long]\n"
    "\tzelfhome group delete GroupName\n"
    "\tzelfhome group auto [--server {all | ServerName[,ServerName...]} | --force |\n"
    "\t                        --enable | --disable]\n";

const char* const capabilityHelpMsg = "Usage:\n"
                                      "\tzelfhome capability list\n"
                                      "\tzelfhome capability enable\n"
                                      "\tzelfhome capability disable\n";

const char* const infoHelpMsg = "Usage:\n"
                                "\tzelfhome info list\n"
                                "\tzelfhome info change\n"
                                "\tzelfhome info change --customer-name CustomerName\n"
                                "\tzelfhome info change --customer-id CustomerId\n"
                                "\tzelfhome info change --email Email\n"
                                "\tzelfhome info change --country-code CountryCode\n";

const char* const proxyHelpMsg = "Usage:\n"
                                 "\tzelfhome proxy enable [--with-proxy-auth]\n"
                                 "\tzelfhome proxy disable\n"
                                 "\tzelfhome proxy list\n"
                                 "\tzelfhome proxy change\n"
                                 "\tzelfhome proxy change --proxy-location ProxyLocation\n"
                                 "\tzelfhome proxy change --proxy-port ProxyPort\n"
                                 "\tzelfhome proxy change --proxy-username ProxyUsername\n"
                                 "\tzelfhome proxy change --proxy-password ProxyPassword\n";

const char* const scheduleHelpMsg = "Usage:\n"
                                    "\tzelfhome schedule list\n"
                                    "\tzelfhome schedule add --task {DAILY | WEEKLY}\n"
                                    "\tzelfhome schedule delete --task {DAILY | WEEKLY}\n";

const char* const runHelpMsg =
    "Usage:\n"
    "\tzelfhome run GatherSend --task {DAILY | WEEKLY}\n"
    "\tzelfhome run SendFile --file file [--desc DESC | --pmr {xxxxx.yyy.zzz | TSxxxxxxxxx}]\n";

const char* const statusHelpMsg =
    "Usage:\n"
    "\tzelfhome status list [--task {DAILY | WEEKLY | SENDFILE | SENDPMRDATA}]\n"
    "\t                       [--numbers num] [--verbose]\n"
    "\tzelfhome status delete {--task {DAILY | WEEKLY | SENDFILE | SENDPMRDATA} |\n"
    "\t                          --starttime time | --starttimebefore time | --all}\n";

const char* const testHelpMsg = "Usage:\n"
                                "\tzelfhome test connection\n";

const char* const zelfmonHelpMsg = "Usage:\n"
                                   "\tzelfhome zelfmon query <command>\n";

int helpCmd(char* /*prompt*/, char* /*args*/, bool /*interactive*/)
{
    printCatMessage(MSG_USAGE, "Usage:\n"
                               "\tzelfhome group\tAdminister topology, groups, server and client nodes.\n"
                               "\tzelfhome capability\tEnable, disable and list callhome capability.\n"
                               "\tzelfhome info\t\tAdminister customer data.\n"
                               "\tzelfhome proxy\tAdminister proxy configuration.\n"
                               "\tzelfhome schedule\tAdminister call home scheduling.\n"
                               "\tzelfhome run\t\tRun a single gather send task.\n"
                               "\tzelfhome status\tShows status information.\n"
                               "\tzelfhome test\t\tRun a system check.\n");
    return 1;
}

int usage(char* /*prompt*/, char* /*args*/, bool /*interactive*/)
{
    printCatMessage(MSG_SUBJECT_USAGE, helpMsg);
    return 1;
}

// --- the subjects ----------------------------------------------------------------------------------------

namespace {

int runSubject(const char* help, const cmdTableRow* table, char* prompt, char* args, bool interactive)
{
    helpMsg = help;
    return executeCommand(prompt, args, table, interactive);
}

} // namespace

int groupCmd(char* prompt, char* args, bool interactive)
{
    return runSubject(groupHelpMsg, groupCmdTable, prompt, args, interactive);
}

int capabilityCmd(char* prompt, char* args, bool interactive)
{
    return runSubject(capabilityHelpMsg, capabilityCmdTable, prompt, args, interactive);
}

int infoCmd(char* prompt, char* args, bool interactive)
{
    return runSubject(infoHelpMsg, infoCmdTable, prompt, args, interactive);
}

int proxyCmd(char* prompt, char* args, bool interactive)
{
    return runSubject(proxyHelpMsg, proxyCmdTable, prompt, args, interactive);
}

int scheduleCmd(char* prompt, char* args, bool interactive)
{
    return runSubject(scheduleHelpMsg, scheduleCmdTable, prompt, args, interactive);
}

int runCmd(char* prompt, char* args, bool interactive)
{
    return runSubject(runHelpMsg, runCmdTable, prompt, args, interactive);
}

int testCmd(char* prompt, char* args, bool interactive)
{
    return runSubject(testHelpMsg, testCmdTable, prompt, args, interactive);
}

int zelfmonCmd(char* prompt, char* args, bool interactive)
{
    return runSubject(zelfmonHelpMsg, zelfmonCmdTable, prompt, args, interactive);
}

// --- the dispatcher --------------------------------------------------------------------------------------

namespace {

bool isBlank(char byte)
{
    return std::isspace(static_cast<unsigned char>(byte)) != 0;
}

char* skipBlanks(char* text)
{
    while (isBlank(*text)) {
        ++text;
    }
    return text;
}

void trimEnd(char* text)
{
    char* end = text + std::strlen(text);
    while (end != text && isBlank(end[-1])) {
        --end;
    }
    *end = '\0';
}

// Takes the first word off the text, in lower case. A word too long for a command line buffer is cut.
std::string takeWord(char*& text)
{
    std::string word;
    text = skipBlanks(text);
    for (; *text != '\0' && !isBlank(*text) && word.size() < CMD_LINE_SIZE - 1; ++text) {
        word += static_cast<char>(std::tolower(static_cast<unsigned char>(*text)));
    }
    return word;
}

const cmdTableRow* findHelpRow(const cmdTableRow* table)
{
    const auto is = [](const char* text, std::string_view word) { return text == word; };
    for (const cmdTableRow* row = table; row->name != nullptr; ++row) {
        if (is(row->name, "help") || is(row->name, "--help") || is(row->shortName, "?") ||
            is(row->shortName, "-h")) {
            return row;
        }
    }
    return nullptr;
}

const cmdTableRow* findRow(const cmdTableRow* table, const std::string& word)
{
    for (const cmdTableRow* row = table; row->name != nullptr; ++row) {
        if (word == row->name || word == row->shortName) {
            return row;
        }
    }
    return nullptr;
}

constexpr int UNKNOWN_COMMAND = 38;

} // namespace

int processCmd(char* prompt, char* cmdLine, const cmdTableRow* table, bool interactive)
{
    char* rest = cmdLine;
    const std::string word = takeWord(rest);
    if (word.empty()) {
        if (const cmdTableRow* help = findHelpRow(table)) {
            return help->handler(prompt, rest, interactive);
        }
    }
    rest = skipBlanks(rest);
    trimEnd(rest);
    if (const cmdTableRow* row = findRow(table, word)) {
        return row->handler(prompt, rest, interactive);
    }
    printCatMessage(MSG_INVALID_COMMAND, "Invalid command: %s\n", word.c_str());
    return interactive ? 0 : UNKNOWN_COMMAND;
}

int executeCommand(char* prompt, char* cmdLine, const cmdTableRow* table, bool interactive)
{
    if (*cmdLine != '\0' || !interactive) {
        return processCmd(prompt, cmdLine, table, interactive);
    }
    const bool isTerminal = isatty(fileno(stdin)) != 0;
    // A line of its own: a loop within a loop has only the rest of the outer one's line.
    std::array<char, CMD_LINE_SIZE> line{};
    int result = 0;
    while (result >= 0) {
        std::fflush(stderr);
        std::cout << "\n" << prompt << "> " << std::flush;
        if (std::fgets(line.data(), static_cast<int>(line.size()), stdin) == nullptr) {
            std::exit(0);
        }
        line[std::strcspn(line.data(), "\n")] = '\0';
        if (!isTerminal) {
            std::cout << line.data() << "\n";
        }
        result = processCmd(prompt, line.data(), table, true);
    }
    return 0;
}

int mapOption(char* text, const char* from, const char* to)
{
    if (text == nullptr) {
        return 0;
    }
    const size_t fromLength = std::strlen(from);
    const size_t toLength = std::strlen(to);
    if (toLength > fromLength) {
        std::fprintf(stderr, "error at mapOption(..) replacement string has length %i. Maximum allowed %i\n",
                     static_cast<int>(toLength), static_cast<int>(fromLength));
        std::exit(1);
    }
    char* hit = std::strstr(text, from);
    if (hit == nullptr) {
        return 0;
    }
    char* behind = hit + fromLength;
    std::memset(hit, ' ', fromLength);
    std::copy_n(to, toLength, hit);
    if (hit != text && hit[-1] == '"' && *behind == '"') {
        *behind = ' ';
        hit[toLength] = '"';
    }
    return 1;
}
