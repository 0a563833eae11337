// Usage texts, the version, and first words that nobody knows: what is said without any command.
#include "support/installation.h"

namespace {

const std::string GENERAL = "Usage:\n"
                            "\tzelfhome group\tAdminister topology, groups, server and client nodes.\n"
                            "\tzelfhome capability\tEnable, disable and list callhome capability.\n"
                            "\tzelfhome info\t\tAdminister customer data.\n"
                            "\tzelfhome proxy\tAdminister proxy configuration.\n"
                            "\tzelfhome schedule\tAdminister call home scheduling.\n"
                            "\tzelfhome run\t\tRun a single gather send task.\n"
                            "\tzelfhome status\tShows status information.\n"
                            "\tzelfhome test\t\tRun a system check.\n";
// One line for each command of a subject.
Result usage(const std::string& subject, const Strings& commands)
{
    std::string text = "Usage:\n";
    for (const std::string& command : commands) {
        text += "\tzelfhome " + subject + " " + command + "\n";
    }
    return {1, "", text};
}

const std::string VERSION = "Version:4.2.3-7.000\n";

} // namespace

const std::tuple<const char*, Result, Strings> USAGES[] = {
    {"general",
     {1, "", GENERAL},
     {"", "''", "--help", "-h", "-H", "h", "H", "help", "?", "-?", "--HELP", "help info list",
      "--fullDecode"}},
    {"group",
     usage("group", {"add GroupName server [--node {all | ChildNode[,ChildNode...]}]", "list [--long]",
                     "delete GroupName",
                     "auto [--server {all | ServerName[,ServerName...]} | --force |\n"
                     "\t                        --enable | --disable]"}),
     {"group", "Grp", "group ''", "group --help", "group list -H", "group add g1 ?",
      "group nosuch --surplus help", "group --dryrun list --long"}},
    {"capability", usage("capability", {"list", "enable", "disable"}), {"capability", "cap"}},
    {"info",
     usage("info",
           {"list", "change", "change --customer-name CustomerName", "change --customer-id CustomerId",
            "change --email Email", "change --country-code CountryCode"}),
     {"info", "info list -Y -h", "info change --email help"}},
    {"proxy",
     usage("proxy", {"enable [--with-proxy-auth]", "disable", "list", "change",
                     "change --proxy-location ProxyLocation", "change --proxy-port ProxyPort",
                     "change --proxy-username ProxyUsername", "change --proxy-password ProxyPassword"}),
     {"proxy", "proxy change --proxy-port h"}},
    {"schedule",
     usage("schedule", {"list", "add --task {DAILY | WEEKLY}", "delete --task {DAILY | WEEKLY}"}),
     {"schedule", "SCH"}},
    {"run",
     usage("run", {"GatherSend --task {DAILY | WEEKLY}",
                   "SendFile --file file [--desc DESC | --pmr {xxxxx.yyy.zzz | TSxxxxxxxxx}]"}),
     {"run"}},
    {"status",
     usage("status", {"list [--task {DAILY | WEEKLY | SENDFILE | SENDPMRDATA}]\n\t                       "
                      "[--numbers num] [--verbose]",
                      "delete {--task {DAILY | WEEKLY | SENDFILE | SENDPMRDATA} |\n\t                        "
                      "  --starttime time | --starttimebefore time | --all}"}),
     {"status", "stat", "status list -N 2 H"}},
    {"test", usage("test", {"connection"}), {"test", "test ?"}},
    {"zelfmon", usage("zelfmon", {"query <command>"}), {"zelfmon", "zelfmon query h"}},
    {"unknown",
     {38, "", "Invalid command: nosuch\n"},
     {"nosuch", "NoSuch", "nosuch list help", "nosuch --dryrun x"}},
    {"capitals", {38, "", "Invalid command: --version\n"}, {"--VERSION"}},
    {"letter alone", {38, "", "Invalid command: -y\n"}, {"-Y"}},
    {"version", success(VERSION), {"--version", "--version --help", "--version --dryrun x"}},
};

// Help needs a node on which call home could work; the version does not.
TEST_F(Installation, UsageComesBehindTheChecksOfTheEnvironment)
{
    inEach(USAGES, [](const char*, const Result& expected, const Strings& lines) {
        for (const std::string& line : lines) {
            EXPECT_EQ(runTool(line), expected) << line;
            EXPECT_EQ(calls(), expected.out == VERSION ? Strings{"zelfctl nqStatus -q"} : startThen({}));
        }
    });
}
