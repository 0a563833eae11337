// Which command lines the tool takes, which ones it refuses, and in which words.
#include "support/installation.h"

namespace {

const std::string SCHEDULED = "member of {DAILY | WEEKLY | daily | weekly}";
const std::string ANY_TASK =
    "member of {DAILY | WEEKLY | SENDFILE | SENDPMRDATA | daily | weekly | sendfile | sendpmrdata}";
const std::string COUNTRY = "A valid ISO 3166-1 alpha-2 code (A-Z)";
const std::string NODES = "Node(s) as ID, short / long name, IP, node class or nodes file.";
const std::string TICKET =
    "A PMR identifier, in the format xxxxx.yyy.zzz or a Case identifier, in the format TSxxxxxxxxx";

Result noArguments(const std::string& command, const std::string& args)
{
    return failed("'zelfhome " + command + "' does not allow any arguments.",
                  "Invalid argument: '" + args + "'");
}

Result surplus(const std::string& arg)
{
    return failed("Invalid argument: '" + arg + "'");
}

Result missingValue(const std::string& option, const std::string& type)
{
    return failed("Missing value. Option " + option + " needs a value of type: " + type);
}

Result invalid(const std::string& response, const std::string& type)
{
    return failed("zelfhome " + response, "Required argument type: " + type);
}

Result unresolved(const std::string& value)
{
    return invalid("group: Invalid nodes definition: Can not resolve '" + value + "'", NODES);
}

Result notRemote(const std::string& commandAndOption, const std::string& badNodes = "")
{
    return failed("zelfhome " + commandAndOption + " Remote execution by -a, -N is not allowed.", badNodes);
}

Result illegal(const std::string& arg, const std::string& more = "")
{
    return failed("Parameter " + arg + " contains illegal character.", "Illegal characters: *;\\" + more);
}

// Without the helper program a good line ends just behind the grammar, whatever its handler does.
void expectAccepted(const std::string& line)
{
    uninstall("callhomeutils.pl");
    writeFile(LOG, "");
    const Result result = runTool(line);
    EXPECT_EQ(result.status, 1) << line;
    EXPECT_EQ(result.err.rfind("Missing component for software call home.\n", 0), 0u) << line << "\n"
                                                                                      << result;
    EXPECT_EQ(logged("ZlCmd::validate: success").size(), 1u) << line;
}

} // namespace

const std::tuple<std::string, Result> REFUSALS[] = {
    // Commands without arguments.
    {"info list ''", noArguments("info list", "")},
    {"info list %78 --fullDecode --dryrun", noArguments("info list", "%78 --fulldecode")},
    {"info list --current --outdated", noArguments("info list", "--outdated")},
    {"capability disable -v", noArguments("capability disable", "--verbose")},

    // An option that is none. The first fault in the line counts.
    {"group list -Yh", surplus("--help")},
    {"status list x --numbers y", surplus("x")},
    {"status delete --numbers 1", surplus("--numbers")},

    // The line ends where a value should be.
    {"group add g1 --node", missingValue("--node", NODES)},
    {"group delete #0#", missingValue("#0#", "ANY argument")},
    {"schedule add --TASK", missingValue("--task", SCHEDULED)},
    {"run SendFile --pmr", missingValue("--pmr", TICKET)},
    {"status list --numbers --dryrun", missingValue("--numbers", "INTEGER")},
    {"info change --customer-name --current", missingValue("--customer-name", "ANY argument")},

    // Values of a wrong type.
    {"status list --numbers 05", invalid("status: Invalid value: '05'", "INTEGER")},
    {"status list --numbers --verbose", invalid("status: Invalid value: '--verbose'", "INTEGER")},
    {"proxy change --proxy-port '' x", invalid("proxy: Invalid value: ''", "INTEGER")},
    {"info change --email @a", invalid("info: Invalid value: '@a'", "EMAIL address")},
    {"info change --country-code de", invalid("info: Invalid value: 'de'", COUNTRY)},
    {"run SendFile --pmr 12345.a1b.000", invalid("run: Invalid value: '12345.a1b.000'", TICKET)},
    {"schedule add --task SENDFILE", invalid("schedule: Incorrect option: 'SENDFILE'", SCHEDULED)},
    {"schedule del --task 'daily '", invalid("schedule: Incorrect option: 'daily '", SCHEDULED)},
    {"status list --task --LONG", invalid("status: Incorrect option: '--long'", ANY_TASK)},
    {"group add g1 node1 --node node1,nosuch", unresolved("node1,nosuch")},
    {"group auto --server 'node1, node2'", unresolved("node1, node2")},
    {"group add g1 ''", unresolved("")},

    // -a and -N. The refusal comes ahead of everything that is wrong with the arguments.
    {"group list -N node1 -a", notRemote("group list: Incorrect option: -a")},
    {"info ls -Ya -N node1 x", notRemote("info ls: Incorrect option: -N")},
    // A semicolon gets through as the value of -N, and to the shell behind it.
    {"group list -N 'a;b'",
     notRemote("group list: Incorrect option: -N", "a;b is not a valid node definition")},
    {"group list -N x -N y", notRemote("group list: Incorrect option: -N",
                                       "x is not a valid node definition\nx is not a valid node definition\n"
                                       "y is not a valid node definition")},

    // Options that the framework does not know: they come ahead of help and grammar.
    {"group list -xYz --long -x", failed("Failed", "  invalid option: -x, -z, -x")},
    {"status list -x -YN", failed("Failed", "  invalid option: -x\n  missing value for: -N")},
    {"nosuch nosuch -x", failed("Failed", "  invalid option: -x")},
    {"status list --numbers -5", failed("Failed", "  invalid option: -5")},
    {"status list -N nosuch -x",
     failed("Failed", "nosuch is not a valid node definition\n  invalid option: -x")},

    // Illegal characters, anywhere but in the word behind -N.
    {"group li;st", illegal("li;st")},
    {"group list -Nn*", illegal("-Nn*")},
    {"group list help a;", illegal("a;")},
    {"group list -x a*", illegal("a*", "\n  invalid option: -x")},
    {"info change --email a%2Ab --fullDecode", illegal("a*b")},
};

TEST_F(Installation, GrammarRefusesAndSaysWhy)
{
    inEach(REFUSALS, [](const std::string& line, const Result& expected) {
        EXPECT_EQ(runTool(line), expected);
        // Neither the CCR nor the monitoring service is asked; names of nodes may be.
        for (const std::string& call : calls()) {
            EXPECT_TRUE(call == "zelfctl nqStatus -q" || call.rfind("zelfadm host ", 0) == 0) << call;
        }
    });
}

TEST_F(Installation, GrammarRefusesAlikeWhatIsWrongAlike)
{
    for (const std::string line :
         {"group add", "group add --node node1 g1", "group del", "schedule add", "run GatherSend",
          "run SendFile --desc x", "zelfmon query",
          // Subject and verb in one word pass by the grammar, and meet the handler without arguments.
          "'schedule add'", "'schedule del'", "'group add'", "'group delete'", "'zelfmon query'"}) {
        EXPECT_EQ(runTool(line), failed("Missing arguments.")) << line;
    }
    // No command of this subject and verb. The match is exact, and knows no short subject names.
    for (const std::string line :
         {"group nosuch", "group LIST", "group 'list | ls'", "group --debug list", "GROUP list", "grp list",
          "capability enabale", "run gathersend --task daily", "--version x", "--debug info list"}) {
        EXPECT_EQ(runTool(line),
                  failed("Failed", "\"zelfhome " + line.substr(0, line.find(' ')) +
                                       " [options]\" does not support the specified options."));
    }
    // The last word is too many. Side by side, the walk for the status flags passes the second one over.
    for (const std::string line :
         {"group list LONG", "group list --long=1", "group auto --enable g1", "schedule add daily",
          "schedule del --task daily --debu", "status list --outdated --current"}) {
        EXPECT_EQ(runTool(line), surplus(line.substr(line.rfind(' ') + 1)));
    }
}

// It is a word for help and a bad option at once, and the bad option wins.
TEST_F(Installation, GrammarTakesALateQuestionMarkForABadOption)
{
    const Result result = runTool("group list -?");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err.rfind("Failed\n\nAdditional messages:\n  invalid option: -", 0), 0u) << result;
}

TEST_F(Installation, GrammarAcceptsGoodLines)
{
    writeFile("/var/zelf/gen/list", "node1\n3\nall\n");
    const std::string lines =
        "group list --LONG -Y|group list --Outdated --long|group add g1 2|"
        "group add --node node1,3 g1 node2.zelf.test|group add all /var/zelf/gen/list|"
        "group add g1 node4 --node ALL,1|group del #0# g1|group delete -Yh|group delete -|"
        "group auto --server all --FORCE --enable --disable|schedule delete --Task wEEKly|"
        "run GatherSend --task Weekly -I|run SendFile --file 'a b' --desc --FILE|"
        "run SendFile --file x --pmr TSabcdefghi|"
        "status list --task SendPmrData --numbers 2147483647 --verbose|"
        "status ls --current --task daily --outdated|status list -aY -Nnode1|"
        "status del --startTime x --StartTimeBefore y --starttime z --all|"
        "info change --DryRun --email a@|info change --customer-name '' --customer-name --|"
        "info change --email a@b --debug --email c@d|zelfmon query 'a b'|zelfmon query --long";
    for (const std::string& line : split(lines, '|')) {
        expectAccepted(line);
    }
}

// Every verb, by each of its names: it goes on to the dispatcher, and takes no more than it should.
TEST_F(Installation, GrammarKnowsEveryVerb)
{
    const std::string withOptions =
        "group list|group ls|group add g1 node1|group delete g1|group del g1|group auto|"
        "schedule add --task daily|schedule delete --task daily|schedule del --task daily|"
        "run GatherSend --task daily|run SendFile --file /nosuch|status list|status ls|status delete|"
        "status del|info change|proxy enable|proxy change|zelfmon query x";
    const std::string withoutOptions =
        "capability list|capability ls|capability disable|capability enable|schedule list|schedule ls|"
        "info list|info ls|proxy list|proxy ls|proxy disable|test connection";
    const auto expectVerb = [this](const std::string& line, bool hasOptions) {
        const std::string command = line.substr(0, line.find(' ', line.find(' ') + 1));
        SetUp();
        runTool(line);
        EXPECT_EQ(logged("ZlCallhome::main local cmd: "), Strings{command});
        EXPECT_EQ(runTool(line + " x"), hasOptions ? surplus("x") : noArguments(command, "x"));
        if (command.rfind("status", 0) == 0 || command.rfind("test", 0) == 0) {
            expectAccepted(line + " -a");
        } else {
            EXPECT_EQ(runTool(line + " -a"), notRemote(command + ": Incorrect option: -a"));
        }
    };
    for (const std::string& line : split(withOptions, '|')) {
        expectVerb(line, true);
    }
    for (const std::string& line : split(withoutOptions, '|')) {
        expectVerb(line, false);
    }
}

// A verb that the grammar knows by a name that the dispatcher does not.
TEST_F(Installation, GrammarLetsStatusLsFailInTheDispatcher)
{
    configure(topology(group("g", "node1", "node1", "4.2.3.7")));
    EXPECT_EQ(runTool("status ls"), (Result{38, "", "Invalid command: ls\n"}));
}
