// What a run leaves behind: the log, the debug log, and no other file.
#include "support/installation.h"

#include <algorithm>
#include <filesystem>
#include <set>

namespace fs = std::filesystem;

namespace {

// A log without what differs from run to run, blanks at line ends, and the lines on the grammar's
// declarations.
std::string masked(std::string text)
{
    const std::pair<const char*, const char*> masks[] = {
        {"[0-9]{4}-[0-9]{2}-[0-9]{2}_[0-9]{2}:[0-9]{2}:[0-9]{2}[.][0-9]{3}[+-][0-9]{4}\n", "STAMP\n"},
        {"[0-9]+[.][0-9]+ sec\n", "TIME\n"},
        {"pid: [0-9]+\n", "pid: PID\n"},
        {"ZlCmd::(reset|validate: cmd)[^\n]*\n", ""},
        {" +\n", "\n"},
    };
    for (const auto& [expression, by] : masks) {
        text = replaced(text, expression, by);
    }
    return text;
}

bool holds(const std::string& text, const std::string& piece)
{
    return text.find(piece) != std::string::npos;
}

// What stands between the stamps of the last section of the log.
std::string logBody()
{
    const std::string log = readFile(LOG);
    const size_t begin = log.find('\n', log.rfind("\nTrace messages start at: ") + 1) + 1;
    return log.substr(begin, log.rfind("Trace messager end at: ") - begin);
}

// The messages of the debug log, without the function trace.
std::string debugBody()
{
    const std::string log = readFile(DEBUG_LOG);
    const size_t begin = log.find('\n') + 1;
    return log.substr(begin, log.find("\n#### function trace ####\n") - begin);
}

} // namespace

TEST_F(Installation, LogOfAGoodRunHoldsItsStepsInOrder)
{
    runTool("info list");
    EXPECT_EQ(masked(readFile(LOG)),
              R"(
Trace messages start at: STAMP
zelfhome
info
list
ZlCli created.
zlutils: 5.0.2-0.000
zlutils: 20180621
pid: PID
ZlClusterInfo::readZelfCfg: success reading  /var/zelf/gen/zelf.cfg.
cluster min release level  = 1900
cluster min release version = 5.0.2.0
node release level = 1900
node version    = 5.0.2.0
_executeCMD cmd = /opt/zelf/bin/zelfctl nqStatus -q >/dev/null 2>&1
_executeCMD done with rc = 0 duration TIME
Create ZlCallhomeExecute object.
ZlCallhomeExecute object created.
4.2.3-7.000
20171114
ZlCli::parseCmdLine: detected args: info list
ZlCli::parseCmdLine: parserResult = 0
ZlCli::parseCmdLine: number of bad args:  0
ZlCmd::validate: success
_executeCMD cmd = /opt/zelf/bin/zelfmonc callhome ensureConfigInCCR 2>&1
_executeCMD done with rc = 0 duration TIME
_executeCMD cmd = /opt/zelf/bin/zelfccr fget _callhomeconfig /var/zelf/tmp/_callhomeconfig 1>/dev/null 2>/dev/null
_executeCMD done with rc = 0 duration TIME
ZlCallhome::main local cmd: info list
ZlCli::createMessages: msg and badArgs empy
Terminate from ZlCli::~ZlCli
Trace messager end at: STAMP
)");
}

TEST_F(Installation, DebugLogHoldsMessagesThenFunctions)
{
    answer("zelfctl", "exit 3");
    runTool("info list");
    const std::string log = masked(readFile(DEBUG_LOG));
    EXPECT_EQ(log.rfind("Debug Trace start at: STAMP\n", 0), 0u);
    EXPECT_EQ(log.substr(log.rfind("\nDebug")), "\nDebug Trace end at: STAMP\n");
    EXPECT_TRUE(holds(debugBody(), "_executeCMD: response:\n\nresponse end\n"));
    // Functions as they are entered, and the messages in between behind a tab.
    const std::string functions = log.substr(log.find("\n\n#### function trace ####\n"));
    EXPECT_TRUE(holds(functions, "\nvoid ZlErrorService::writeTrace()\n"));
    EXPECT_TRUE(holds(functions, "\n\tZlCmd::validate: success\n"));

    // Every line of the log is a line of the debug log, in the same order; the debug log has more.
    const Strings debug = split(debugBody(), '\n');
    auto place = debug.begin();
    for (const std::string& line : split(logBody(), '\n')) {
        place = std::find(place, debug.end(), line);
        ASSERT_NE(place++, debug.end()) << line;
    }
}

// The whole story of a run that the framework ended with a failure; the summary of all others.
TEST_F(Installation, OnlyTheFrameworksFailuresLogTheDebugMessages)
{
    const std::pair<const char*, bool> runs[] = {
        {"group add", true},  {"group list -x", true}, {"group list a*", true},  {"--version", false},
        {"info list", false}, {"nosuch", false},       {"info change -Y", false}};
    for (const auto& [line, isFull] : runs) {
        runTool(line);
        EXPECT_EQ(logBody() == debugBody(), isFull) << line;
        EXPECT_EQ(holds(logBody(), "\n_executeCMD: dataP = NULL\n"), isFull) << line;
    }
    uninstall("callhomeutils.pl");
    runTool("info list");
    EXPECT_EQ(logBody(), debugBody());
}

// Two ends of a run that write on their own, or not at all.
TEST_F(Installation, EarlyEndsLogWhatTheyMust)
{
    const std::string cfg = "/var/zelf/gen/zelf.cfg";
    writeFile(cfg, "myNodeConfigNumber 1\n");
    runTool("info list");
    EXPECT_TRUE(holds(logBody(),
                      "\nCCR is not enabled. Terminate.\nTerminate from ZlCallhome::checkIfCCrIsEnabled\n"));
    EXPECT_FALSE(holds(logBody(), "ZlCli::isCCrEnabled"));
    EXPECT_TRUE(holds(debugBody(), "\n ZlCli::isCCrEnabled: CCR enabled.\n"));

    fs::remove(LOG);
    fs::remove(cfg);
    runTool("info list");
    EXPECT_EQ(readFile(LOG), "(no such file)");
}

TEST_F(Installation, SecondRunAppendsToTheLogAndReplacesTheDebugLog)
{
    runTool("info list");
    const std::string first = readFile(LOG);
    runTool("group list x");
    EXPECT_EQ(logged("Trace messages start at: ").size(), 2u);
    EXPECT_EQ(readFile(LOG).rfind(first + "\nTrace messages start at: ", 0), 0u);
    EXPECT_TRUE(holds(debugBody(), "\nzelfhome\ngroup\nlist\nx\n"));
    EXPECT_FALSE(holds(readFile(DEBUG_LOG), "info list"));
}

TEST_F(Installation, LogIsCutBackToItsLimitAheadOfTheNextSection)
{
    for (const size_t size : {99999, 100000, 100001, 250000}) {
        const std::string old = std::string(size - 99999, 'a') + std::string(99999, 'b');
        writeFile(LOG, old);
        runTool("--version");
        const std::string kept = old.substr(size - std::min<size_t>(size, 100000));
        EXPECT_EQ(readFile(LOG).rfind(kept + "\nTrace messages start at: ", 0), 0u) << size;
    }
}

TEST_F(Installation, DebugShowsTheDebugMessagesAndNoOthersOnStandardOutput)
{
    const std::string table = runTool("info list").out;
    const Result result = runTool("info list --debug");
    EXPECT_EQ(result.err, "");
    // From the option on: what came ahead of it is not shown.
    EXPECT_EQ(result.out.rfind("ZlCallhome::parseCmdLine: post process command line args.\n", 0), 0u)
        << result;
    const size_t place = result.out.find(table);
    ASSERT_NE(place, std::string::npos);
    const Strings debug = split(debugBody(), '\n');
    const Strings log = split(logBody(), '\n');
    for (const std::string& line : split(result.out.substr(0, place), '\n')) {
        EXPECT_NE(std::find(debug.begin(), debug.end(), line), debug.end()) << line;
        EXPECT_EQ(std::find(log.begin(), log.end(), line), log.end()) << line;
    }
}

TEST_F(Installation, RunsLeaveNoOtherFiles)
{
    configure(topology(group("g", "node2", "node1", "4.2.3.7")));
    for (const std::string line : {"info list", "info change --email a@b", "status list -N all", "group",
                                   "group add g1 x", "status list %2DY --fullDecode", "--version"}) {
        runTool(line);
    }
    std::set<std::string> files;
    for (const auto& entry : fs::directory_iterator(TMP)) {
        files.insert(entry.path());
    }
    EXPECT_EQ(files, (std::set<std::string>{DEBUG_LOG, LOG, TMP + "/_callhomeconfig"}));
}
