// Which command lines the tool takes, which ones it refuses, and in which words; usage texts and the version.
#include "support/installation.h"

// The line, the response, the additional messages.
const std::tuple<std::string, std::string, std::string> REFUSALS[] = {
    // The first fault in the line counts.
    {"info list --current --outdated", "'zelfhome info list' does not allow any arguments.",
     "Invalid argument: '--outdated'"},
    {"info list %78 --fullDecode --dryrun", "'zelfhome info list' does not allow any arguments.",
     "Invalid argument: '%78 --fulldecode'"},
    {"group list -Yh", "Invalid argument: '--help'", ""},
    {"group add g1 node1 --node node1,nosuch",
     "zelfhome group: Invalid nodes definition: Can not resolve 'node1,nosuch'",
     "Required argument type: Node(s) as ID, short / long name, IP, node class or nodes file."},

    // -a and -N. The refusal comes ahead of everything that is wrong with the arguments.
    {"info ls -N node1 x -Ya",
     "zelfhome info ls: Incorrect option: -a Remote execution by -a, -N is not allowed.", ""},
    // A FIFO is none of nodes. A semicolon gets through as the value of -N, and to the shell behind it.
    {"group list -N /var/zelf/gen/pipe -N 'a;b'",
     "zelfhome group list: Incorrect option: -N Remote execution by -a, -N is not allowed.",
     "/var/zelf/gen/pipe is not a valid node definition\n/var/zelf/gen/pipe is not a valid node definition\n"
     "a;b is not a valid node definition"},

    // Options that the framework does not know: they come ahead of help and grammar.
    {"group list -xYz --long -x", "Failed", "  invalid option: -x, -z, -x"},
    {"status list --numbers -5 -YN", "Failed", "  invalid option: -5\n  missing value for: -N"},
    {"group list -x? -? -Y?a", "Failed", "  invalid option: -x, -?, -?, -?"}, // a letter and a word for help
    {"status list -N nosuch -x", "Failed", "nosuch is not a valid node definition\n  invalid option: -x"},

    // Illegal characters, anywhere but in the word behind -N.
    {"group li;st", "Parameter li;st contains illegal character.", "Illegal characters: *;\\"},
    {"info change --email a%2Ab --fullDecode", "Parameter a*b contains illegal character.",
     "Illegal characters: *;\\"},
};

TEST_F(Installation, GrammarRefusesAndSaysWhy)
{
    inEach(REFUSALS, [](const auto& line, const auto& response, const auto& additionalMessages) {
        shell("mkfifo $GEN/pipe");
        EXPECT_EQ(runTool(line), failed(response, additionalMessages));
        EXPECT_NE(calls().back(), FETCH) << "ahead of the environment";
    });
}

TEST_F(Installation, GrammarRefusesAlikeWhatIsWrongAlike)
{
    for (const std::string line :
         {"group add --node node1 g1", "group del", "schedule add", "run SendFile --desc x",
          // Subject and verb in one word pass by the grammar, and meet the handler without arguments.
          "'schedule add'", "'group add'", "'group delete'", "'zelfmon query'"}) {
        EXPECT_EQ(runTool(line), failed("Missing arguments.")) << line;
    }
    // No command of this subject and verb. The match is exact, and knows no short subject names.
    for (const std::string line : {"group nosuch", "group LIST", "group 'list | ls'", "group --debug list",
                                   "GROUP list", "grp list", "capability enabale", "--version x"}) {
        EXPECT_EQ(runTool(line),
                  failed("Failed", "\"zelfhome " + line.substr(0, line.find(' ')) +
                                       " [options]\" does not support the specified options."));
    }
    // The last word is too many. Side by side, the walk for the status flags passes the second one over.
    for (const std::string line : {"group list LONG", "group list --long=1",
                                   "schedule del --task daily --debu", "status list --outdated --current"}) {
        EXPECT_EQ(runTool(line), failed("Invalid argument: '" + line.substr(line.rfind(' ') + 1) + "'"));
    }
}

// What is said, or its begin; and the lines.
const std::tuple<const char*, Result, Strings> USAGES[] = {
    {"general",
     failed("Usage:\n\tzelfhome group\tAdminister topology, groups, server and client nodes."),
     {"", "''", "--help", "-h", "-H", "h", "H", "help", "?", "-?", "--HELP", "help info list",
      "--fullDecode"}},
    {"group",
     failed("Usage:\n\tzelfhome group add GroupName server [--node {all | ChildNode[,ChildNode...]}]"),
     {"group", "Grp", "group ''", "group --help", "group list -H", "group add g1 ?",
      "group nosuch --surplus help", "group --dryrun list --long"}},
    {"status",
     failed("Usage:\n\tzelfhome status list [--task {DAILY | WEEKLY | SENDFILE | SENDPMRDATA}]"),
     {"status", "stat", "status list -N 2 H"}},
    {"test", failed("Usage:\n\tzelfhome test connection"), {"test", "test ?"}},
    {"zelfmon", failed("Usage:\n\tzelfhome zelfmon query <command>"), {"zelfmon query h"}},
    {"unknown", {38, "", "Invalid command: nosuch\n"}, {"NoSuch", "nosuch list help", "nosuch --dryrun x"}},
    {"capitals", {38, "", "Invalid command: --version\n"}, {"--VERSION"}},
    {"letter alone", {38, "", "Invalid command: -y\n"}, {"-Y"}},
    {"version", success("Version:4.2.3-7.000\n"), {"--version", "--version --help", "--version --dryrun x"}},
};

// Help needs a node on which call home could work; the version does not.
TEST_F(Installation, UsageComesBehindTheChecksOfTheEnvironment)
{
    inEach(USAGES, [](const char* name, const Result& expected, const Strings& lines) {
        for (const std::string& line : lines) {
            Result result = runTool(line);
            result.err = result.err.substr(0, expected.err.size());
            EXPECT_EQ(result, expected) << line;
            EXPECT_EQ(calls(), expected.status == 0 ? Strings{"zelfctl nqStatus -q"} : startThen({})) << name;
        }
    });
}
