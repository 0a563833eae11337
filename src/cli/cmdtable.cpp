#include "cli/cmdtable.h"

#include "commands/zlcallhome_excute.h"
#include "services/zelfnls.h"

const char* helpMsg = nullptr;

// --- the usage texts -------------------------------------------------------------------------------------

const char* const statusHelpMsg =
    "Usage:\n"
    "\tzelfhome status list [--task {DAILY | WEEKLY | SENDFILE | SENDPMRDATA}]\n"
    "\t                       [--numbers num] [--verbose]\n"
    "\tzelfhome status delete {--task {DAILY | WEEKLY | SENDFILE | SENDPMRDATA} |\n"
    "\t                          --starttime time | --starttimebefore time | --all}\n";

namespace {

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

const char* const testHelpMsg = "Usage:\n"
                                "\tzelfhome test connection\n";

const char* const zelfmonHelpMsg = "Usage:\n"
                                   "\tzelfhome zelfmon query <command>\n";

} // namespace

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

// --- the verbs -------------------------------------------------------------------------------------------

const cmdTableRow statusCmdTable[] = {
    {"--help", "-h", usage},
    {"list", "list", statusList},
    {"delete", "del", statusDelete},
    {},
};

namespace {

const cmdTableRow groupCmdTable[] = {
    {"--help", "-h", usage},     {"list", "ls", groupList},   {"add", "add", groupAdd},
    {"delete", "del", groupDel}, {"auto", "auto", groupAuto}, {},
};

// The short names of enable and disable are spelled as scripts know them.
const cmdTableRow capabilityCmdTable[] = {
    {"--help", "-h", usage},
    {"list", "ls", capabilityList},
    {"enable", "enabale", capabilityEnable},
    {"disable", "disabale", capabilityDisable},
    {},
};

const cmdTableRow infoCmdTable[] = {
    {"--help", "-h", usage},
    {"list", "ls", infoList},
    {"change", "change", infoChange},
    {},
};

const cmdTableRow proxyCmdTable[] = {
    {"--help", "-h", usage},   {"enable", "enable", proxyEnable}, {"disable", "disable", proxyDisable},
    {"list", "ls", proxyList}, {"change", "ch", proxyChange},     {},
};

const cmdTableRow scheduleCmdTable[] = {
    {"--help", "-h", usage},
    {"list", "ls", scheduleList},
    {"add", "add", scheduleAdd},
    {"delete", "del", scheduleDelete},
    {},
};

const cmdTableRow runCmdTable[] = {
    {"--help", "-h", usage},
    {"gathersend", "gs", runGatherSend},
    {"sendfile", "sf", runSendFile},
    {},
};

// The help row's short name differs from the others'.
const cmdTableRow testCmdTable[] = {
    {"--help", "?", usage},
    {"connection", "connection", testConnection},
    {},
};

const cmdTableRow zelfmonCmdTable[] = {
    {"--help", "-h", usage},
    {"query", "query", zelfmonQuery},
    {},
};

// --- the subjects ----------------------------------------------------------------------------------------

int runSubject(const char* help, const cmdTableRow* table, char* prompt, char* args, bool interactive)
{
    helpMsg = help;
    return executeCommand(prompt, args, table, interactive);
}

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

} // namespace

const cmdTableRow cmdTable[] = {
    {"--help", "?", helpCmd},
    {"group", "grp", groupCmd},
    {"capability", "cap", capabilityCmd},
    {"info", "info", infoCmd},
    {"proxy", "proxy", proxyCmd},
    {"schedule", "sch", scheduleCmd},
    {"run", "run", runCmd},
    {"status", "stat", statusCmd},
    {"test", "test", testCmd},
    {"zelfmon", "zelfmon", zelfmonCmd},
    {},
};
