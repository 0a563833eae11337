// What a run leaves behind: the log, the debug log, and no other file.
#include "support/installation.h"

#include <algorithm>

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

// What stands in a file from the line behind the last `begin` up to the last `end`.
std::string cutOut(const std::string& path, const std::string& begin, const std::string& end)
{
    const std::string log = readFile(path);
    const size_t from = log.find('\n', log.rfind(begin)) + 1;
    return log.substr(from, log.rfind(end) - from);
}

// What stands between the stamps of the last section of the log.
std::string logBody()
{
    return cutOut(LOG, "Trace messages start at: ", "Trace messager end at: ");
}

// The messages of the debug log, without the function trace.
std::string debugBody()
{
    return cutOut(DEBUG_LOG, "Debug Trace start at: ", "\n#### function trace ####\n");
}

} // namespace

TEST_F(Installation, LogsOfAGoodRunHoldItsStepsInOrder)
{
    answer("start", "printf words");
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
    const std::string log = masked(readFile(DEBUG_LOG));
    size_t place = 0;
    for (const std::string piece :
         {"Debug Trace start at: STAMP\n", "_executeCMD: response:\n\nresponse end\n",
          "_executeCMD: response:\nwords\n\nresponse end\n", "\n\n#### function trace ####\n",
          "\nstatic int ZlClusterInfo::getNodesMap(const LineSet&)\n", "\n\tZlCmd::validate: success\n",
          "\nvoid ZlErrorService::writeTrace()\n", "\nDebug Trace end at: STAMP\n"}) {
        place = log.find(piece, place);
        ASSERT_NE(place, std::string::npos) << piece;
    }
}

// The whole story of a run that the framework ended with a failure; the summary of all others.
TEST_F(Installation, OnlyTheFrameworksFailuresLogTheDebugMessages)
{
    const std::pair<const char*, bool> runs[] = {{"group add", true},       {"group list -x", true},
                                                 {"group list a*", true},   {"--version", false},
                                                 {"info change -Y", false}, {"nosuch", false}};
    for (const auto& [line, isFull] : runs) {
        runTool(line);
        EXPECT_EQ(logBody() == debugBody(), isFull) << line;
    }
    // This one writes its trace by itself.
    writeFile("/var/zelf/gen/zelf.cfg", "myNodeConfigNumber 1\n");
    runTool("info list");
    const std::string end =
        "CCR is not enabled. Terminate.\nTerminate from ZlCallhome::checkIfCCrIsEnabled\n";
    EXPECT_TRUE(holds(logBody(), "\n" + end));
    EXPECT_FALSE(holds(logBody(), "ZlCli::isCCrEnabled"));
}

TEST_F(Installation, LogIsCutBackToItsLimitAndTheDebugLogReplaced)
{
    for (const size_t size : {99999, 100000, 100001}) {
        const std::string old = std::string(size - 99999, 'a') + std::string(99999, 'b');
        writeFile(LOG, old);
        runTool("--version");
        const std::string kept = old.substr(size - std::min<size_t>(size, 100000));
        EXPECT_EQ(readFile(LOG).rfind(kept + "\nTrace messages start at: ", 0), 0u) << size;
    }
    EXPECT_EQ(readFile(DEBUG_LOG).rfind("Debug Trace start at: "), 0u);
}

TEST_F(Installation, DebugShowsTheDebugMessagesAndNoOthersOnStandardOutput)
{
    const std::string table = runTool("info list").out;
    const Result result = runTool("info list --debug");
    EXPECT_EQ(result.err, "");
    // From the option on: what came ahead of it is not shown.
    EXPECT_EQ(result.out.rfind("ZlCallhome::parseCmdLine: post process command line args.\n", 0), 0u);
    ASSERT_TRUE(holds(result.out, table)) << result;
    const std::string log = "\n" + logBody();
    const std::string debug = "\n" + debugBody();
    for (const std::string& line : split(result.out.substr(0, result.out.find(table)), '\n')) {
        EXPECT_TRUE(holds(debug, "\n" + line + "\n") && !holds(log, "\n" + line + "\n")) << line;
    }
}
