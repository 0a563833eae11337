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
const std::string GROUP = "Usage:\n"
                          "\tzelfhome group add GroupName server [--node {all | ChildNode[,ChildNode...]}]\n"
                          "\tzelfhome group list [--long]\n"
                          "\tzelfhome group delete GroupName\n"
                          "\tzelfhome group auto [--server {all | ServerName[,ServerName...]} | --force |\n"
                          "\t                        --enable | --disable]\n";
const std::string CAPABILITY = "Usage:\n"
                               "\tzelfhome capability list\n"
                               "\tzelfhome capability enable\n"
                               "\tzelfhome capability disable\n";
const std::string INFO = "Usage:\n"
                         "\tzelfhome info list\n"
                         "\tzelfhome info change\n"
                         "\tzelfhome info change --customer-name CustomerName\n"
                         "\tzelfhome info change --customer-id CustomerId\n"
                         "\tzelfhome info change --email Email\n"
                         "\tzelfhome info change --country-code CountryCode\n";
const std::string PROXY = "Usage:\n"
                          "\tzelfhome proxy enable [--with-proxy-auth]\n"
                          "\tzelfhome proxy disable\n"
                          "\tzelfhome proxy list\n"
                          "\tzelfhome proxy change\n"
                          "\tzelfhome proxy change --proxy-location ProxyLocation\n"
                          "\tzelfhome proxy change --proxy-port ProxyPort\n"
                          "\tzelfhome proxy change --proxy-username ProxyUsername\n"
                          "\tzelfhome proxy change --proxy-password ProxyPassword\n";
const std::string SCHEDULE = "Usage:\n"
                             "\tzelfhome schedule list\n"
                             "\tzelfhome schedule add --task {DAILY | WEEKLY}\n"
                             "\tzelfhome schedule delete --task {DAILY | WEEKLY}\n";
const std::string RUN =
    "Usage:\n"
    "\tzelfhome run GatherSend --task {DAILY | WEEKLY}\n"
    "\tzelfhome run SendFile --file file [--desc DESC | --pmr {xxxxx.yyy.zzz | TSxxxxxxxxx}]\n";
const std::string STATUS = "Usage:\n"
                           "\tzelfhome status list [--task {DAILY | WEEKLY | SENDFILE | SENDPMRDATA}]\n"
                           "\t                       [--numbers num] [--verbose]\n"
                           "\tzelfhome status delete {--task {DAILY | WEEKLY | SENDFILE | SENDPMRDATA} |\n"
                           "\t                          --starttime time | --starttimebefore time | --all}\n";
const std::string TEST_SUBJECT = "Usage:\n\tzelfhome test connection\n";
const std::string ZELFMON = "Usage:\n\tzelfhome zelfmon query <command>\n";

const std::string VERSION = "Version:4.2.3-7.000\n";

} // namespace

struct UsageRow {
    const char* name;
    Result expected;
    Strings lines;
};
using Usage = InstallationWith<UsageRow>;

// Help needs a node on which call home could work; the version does not.
TEST_P(Usage, ComesBehindTheChecksOfTheEnvironment)
{
    for (const std::string& line : GetParam().lines) {
        SetUp();
        EXPECT_EQ(runTool(line), GetParam().expected) << line;
        EXPECT_EQ(calls(),
                  GetParam().expected.out == VERSION ? Strings{"zelfctl nqStatus -q"} : startThen({}));
    }
}

const UsageRow USAGES[] = {
    {"general",
     {1, "", GENERAL},
     {"", "''", "--help", "-h", "-H", "h", "H", "help", "?", "-?", "--HELP", "help info list",
      "--fullDecode"}},
    {"group",
     {1, "", GROUP},
     {"group", "grp", "GROUP", "Grp", "group ''", "group --help", "group -?", "group list -H",
      "group add g1 ?", "group nosuch --surplus help", "group --dryrun", "group --dryrun list --long"}},
    {"capability", {1, "", CAPABILITY}, {"capability", "cap"}},
    {"info", {1, "", INFO}, {"info", "info list -Y -h", "info change --customer-name help"}},
    {"proxy", {1, "", PROXY}, {"proxy", "proxy change --proxy-port h"}},
    {"schedule", {1, "", SCHEDULE}, {"schedule", "SCH"}},
    {"run", {1, "", RUN}, {"run"}},
    {"status", {1, "", STATUS}, {"status", "stat", "status list -N 2 H"}},
    {"test", {1, "", TEST_SUBJECT}, {"test", "test ?"}},
    {"zelfmon", {1, "", ZELFMON}, {"zelfmon", "zelfmon query h"}},
    {"unknown",
     {38, "", "Invalid command: nosuch\n"},
     {"nosuch", "NoSuch", "nosuch list help", "nosuch --dryrun x"}},
    {"help in capitals", {38, "", "Invalid command: help\n"}, {"HELP"}},
    {"version in capitals", {38, "", "Invalid command: --version\n"}, {"--VERSION"}},
    {"dry run alone", {38, "", "Invalid command: --dryrun\n"}, {"--dryrun"}},
    {"letter alone", {38, "", "Invalid command: -y\n"}, {"-Y"}},
    {"version", {0, VERSION, ""}, {"--version", "--version --help", "--version --dryrun x"}},
};
INSTANTIATE_TEST_SUITE_P(Subjects, Usage, testing::ValuesIn(USAGES));
