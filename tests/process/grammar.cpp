// Which command lines the tool takes, which ones it refuses, and in which words.
#include "support/installation.h"

// The line, the response, the additional messages.
const std::tuple<std::string, std::string, std::string> REFUSALS[] = {
    // The first fault in the line counts.
    {"info list --current --outdated", "'zelfhome info list' does not allow any arguments.",
     "Invalid argument: '--outdated'"},
    {"info list %78 --fullDecode --dryrun", "'zelfhome info list' does not allow any arguments.",
     "Invalid argument: '%78 --fulldecode'"},
    {"group list -Yh", "Invalid argument: '--help'", ""},
    {"info change --customer-name --current",
     "Missing value. Option --customer-name needs a value of type: ANY argument", ""},
    {"group add g1 node1 --node node1,nosuch",
     "zelfhome group: Invalid nodes definition: Can not resolve 'node1,nosuch'",
     "Required argument type: Node(s) as ID, short / long name, IP, node class or nodes file."},

    // -a and -N. The refusal comes ahead of everything that is wrong with the arguments.
    {"info ls -N node1 x -Ya",
     "zelfhome info ls: Incorrect option: -a Remote execution by -a, -N is not allowed.", ""},
    // A semicolon gets through as the value of -N, and to the shell behind it.
    {"group list -N x -N 'a;b'",
     "zelfhome group list: Incorrect option: -N Remote execution by -a, -N is not allowed.",
     "x is not a valid node definition\na;b is not a valid node definition\nx is not a valid node "
     "definition"},

    // Options that the framework does not know: they come ahead of help and grammar.
    {"group list -xYz --long -x", "Failed", "  invalid option: -x, -z, -x"},
    {"status list --numbers -5 -YN", "Failed", "  invalid option: -5\n  missing value for: -N"},
    {"group list -x? -? -Y?a", "Failed", "  invalid option: -x, -?, -?, -?"}, // a letter and a word for help
    {"status list -N nosuch -x", "Failed", "nosuch is not a valid node definition\n  invalid option: -x"},

    // Illegal characters, anywhere but in the word behind -N.
    {"group li;st", "Parameter li;st contains illegal character.", "Illegal characters: *;\\"},
    {"group list -x a*", "Parameter a* contains illegal character.",
     "Illegal characters: *;\\\n  invalid option: -x"},
    {"info change --email a%2Ab --fullDecode", "Parameter a*b contains illegal character.",
     "Illegal characters: *;\\"},
};

TEST_F(Installation, GrammarRefusesAndSaysWhy)
{
    inEach(REFUSALS, [](const auto& line, const auto& response, const auto& additionalMessages) {
        EXPECT_EQ(runTool(line), failed(response, additionalMessages));
        // Neither the CCR nor the monitoring service is asked; names of nodes may be.
        for (const std::string& call : calls()) {
            EXPECT_TRUE(call == "zelfctl nqStatus -q" || call.rfind("zelfadm host ", 0) == 0) << call;
        }
    });
}

TEST_F(Installation, GrammarTakesNoDeviceOrPipeForANodeFile)
{
    shell("mkfifo $GEN/pipe");
    for (const std::string path : {"/dev/null", "/var/zelf/gen/pipe"}) {
        const std::string said = runTool("info list -N " + path).err;
        ASSERT_NE(said.find(path + " is not a valid node definition\n"), std::string::npos) << said;
    }
}

TEST_F(Installation, GrammarRefusesAlikeWhatIsWrongAlike)
{
    for (const std::string line :
         {"group add --node node1 g1", "group del", "schedule add", "run SendFile --desc x",
          // Subject and verb in one word pass by the grammar, and meet the handler
          // without arguments.
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

// Without the helper program a good line ends just behind the grammar, whatever its handler does.
TEST_F(Installation, GrammarAcceptsGoodLines)
{
    shell("rm bin/callhomeutils.pl");
    writeFile("/var/zelf/gen/list", "node1\n3\nall\n");
    const std::string lines =
        "group list --LONG -Y|group list --Outdated --long|group add all /var/zelf/gen/list|"
        "group add g1 node4 --node ALL,1|group del #0# g1|group delete -Yh|group delete -|"
        "group auto --server all --FORCE --enable --disable|run GatherSend --Task Weekly -I|"
        "run SendFile --file 'a b' --desc --FILE --pmr TSabcdefghi|"
        "status list --task SendPmrData --numbers 2147483647 -v|status list -aY -Nnode1|test connection -a|"
        "status ls --current --task daily --outdated|status del --startTime x --StartTimeBefore y --all|"
        "info change --customer-name '' --customer-name -- --DryRun --email a@b --debug|zelfmon query --long";
    for (const std::string& line : split(lines, '|')) {
        writeFile(LOG, "");
        EXPECT_EQ(runTool(line).err.rfind("Missing component for software call home.\n", 0), 0u) << line;
        EXPECT_EQ(logged("ZlCmd::validate: success").size(), 1u) << line;
    }
}

// Verbs by a second name, and one that the grammar knows and the dispatcher does not.
TEST_F(Installation, DispatcherKnowsMostSecondNames)
{
    configure(topology(group("g", "node1", "node1", "4.2.3.7")));
    for (const std::string line : {"group ls", "capability ls", "schedule ls", "info ls", "proxy ls"}) {
        const Result expected = runTool(line.substr(0, line.find(' ')) + " list");
        EXPECT_EQ(runTool(line), expected);
    }
    EXPECT_EQ(runTool("status ls"), (Result{38, "", "Invalid command: ls\n"}));
}
