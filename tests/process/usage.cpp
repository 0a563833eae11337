// Usage texts, the version, and first words that nobody knows: what is said without any command.
#include "support/installation.h"

const std::string VERSION = "Version:4.2.3-7.000\n";

const std::tuple<const char*, Result, Strings> USAGES[] = {
    {"general",
     failed("Usage:\n"
            "\tzelfhome group\tAdminister topology, groups, server and client nodes.\n"
            "\tzelfhome capability\tEnable, disable and list callhome capability.\n"
            "\tzelfhome info\t\tAdminister customer data.\n"
            "\tzelfhome proxy\tAdminister proxy configuration.\n"
            "\tzelfhome schedule\tAdminister call home scheduling.\n"
            "\tzelfhome run\t\tRun a single gather send task.\n"
            "\tzelfhome status\tShows status information.\n"
            "\tzelfhome test\t\tRun a system check."),
     {"", "''", "--help", "-h", "-H", "h", "H", "help", "?", "-?", "--HELP", "help info list",
      "--fullDecode"}},
    {"group",
     failed("Usage:\n"
            "\tzelfhome group add GroupName server [--node {all | ChildNode[,ChildNode...]}]\n"
            "\tzelfhome group list [--long]\n"
            "\tzelfhome group delete GroupName\n"
            "\tzelfhome group auto [--server {all | ServerName[,ServerName...]} | --force |\n"
            "\t                        --enable | --disable]"),
     {"group", "Grp", "group ''", "group --help", "group list -H", "group add g1 ?",
      "group nosuch --surplus help", "group --dryrun list --long"}},
    {"status",
     failed("Usage:\n"
            "\tzelfhome status list [--task {DAILY | WEEKLY | SENDFILE | SENDPMRDATA}]\n"
            "\t                       [--numbers num] [--verbose]\n"
            "\tzelfhome status delete {--task {DAILY | WEEKLY | SENDFILE | SENDPMRDATA} |\n"
            "\t                          --starttime time | --starttimebefore time | --all}"),
     {"status", "stat", "status list -N 2 H"}},
    {"test", failed("Usage:\n\tzelfhome test connection"), {"test", "test ?"}},
    {"zelfmon", failed("Usage:\n\tzelfhome zelfmon query <command>"), {"zelfmon", "zelfmon query h"}},
    {"unknown",
     {38, "", "Invalid command: nosuch\n"},
     {"nosuch", "NoSuch", "nosuch list help", "nosuch --dryrun x"}},
    {"capitals", {38, "", "Invalid command: --version\n"}, {"--VERSION"}},
    {"letter alone", {38, "", "Invalid command: -y\n"}, {"-Y"}},
    {"version", success(VERSION), {"--version", "--version --help", "--version --dryrun x"}},
};

// The texts of the other subjects are held against the grammar, by the test of the manual page. Help needs a
// node on which call home could work; the version does not.
TEST_F(Installation, UsageComesBehindTheChecksOfTheEnvironment)
{
    inEach(USAGES, [](const char*, const Result& expected, const Strings& lines) {
        for (const std::string& line : lines) {
            EXPECT_EQ(runTool(line), expected) << line;
            EXPECT_EQ(calls(), expected.out == VERSION ? Strings{"zelfctl nqStatus -q"} : startThen({}));
        }
    });
}
