// What a run leaves behind: the log, the debug log, and no other file.
#include "support/installation.h"

namespace {

const std::string STEP = "\n_executeCMD cmd = /opt/zelf/bin/";
const std::string DONE = "\n_executeCMD done with rc = 0 duration TIME\n";

void expectInOrder(const std::string& path, const Strings& pieces)
{
    const std::string log = contentOf(path);
    size_t place = 0;
    for (const std::string& piece : pieces) {
        place = log.find(piece, place);
        ASSERT_NE(place, std::string::npos) << piece << "in\n" << log;
    }
}

} // namespace

TEST_F(Installation, LogsOfAGoodRunHoldItsStepsInOrder)
{
    answer("start", "printf 'two\nwords'");
    runTool("info list");
    shell("sed -Ei 's/ at: 20[0-9]{2}-[0-9]{2}-[0-9]{2}_[0-9:]{8}[.][0-9]{3}[+-][0-9]{4}$/ at: STAMP/;"
          "s/[0-9]+[.][0-9]+ sec$/TIME/' $TMP/*.log");
    expectInOrder(LOG, {"\nTrace messages start at: STAMP\nzelfhome\ninfo\nlist\nZlCli created.\n",
                        STEP + "zelfctl nqStatus -q >/dev/null 2>&1" + DONE,
                        STEP + "zelfmonc callhome ensureConfigInCCR 2>&1" + DONE,
                        STEP + FETCH + " 1>/dev/null 2>/dev/null" + DONE,
                        "\nZlCallhome::main local cmd: info list\n",
                        "\nTerminate from ZlCli::~ZlCli\nTrace messager end at: STAMP\n"});
    expectInOrder(DEBUG_LOG,
                  {"Debug Trace start at: STAMP\n", "_executeCMD: response:\n\nresponse end\n",
                   "_executeCMD: response:\ntwo\nwords\n\nresponse end\n", "\n\n#### function trace ####\n",
                   "\nstatic int ZlClusterInfo::getNodesMap(", "\n\tZlCallhome::parseCmdLine: done\n",
                   "\nvoid ZlErrorService::writeTrace()\n", "\nDebug Trace end at: STAMP\n"});
}

// The whole story of a run that the framework ended with a failure; the summary of all others.
TEST_F(Installation, OnlyTheFrameworksFailuresLogTheDebugMessages)
{
    const std::pair<const char*, bool> runs[] = {
        {"group add", true}, {"--version", false}, {"info change -Y", false}};
    for (const auto& [line, isFull] : runs) {
        writeFile(LOG, "");
        runTool(line);
        EXPECT_EQ(contentOf(LOG).find("\nresponse end\n") != std::string::npos, isFull) << line;
    }
    writeFile("/var/zelf/gen/zelf.cfg", "myNodeConfigNumber 1\n");
    writeFile(LOG, "");
    runTool("info list");
    expectInOrder(LOG, {"\nCCR is not enabled. Terminate.\nTerminate from ZlCallhome::checkIfCCrIsEnabled\n"
                        "Trace messager end at: "});
}

TEST_F(Installation, LogIsCutBackToItsLimit)
{
    const std::string kept(100000, 'b');
    writeFile(LOG, "a" + kept);
    runTool("--version");
    EXPECT_TRUE(contentOf(LOG).starts_with(kept + "\nTrace messages start at: "));
}

TEST_F(Installation, DebugShowsTheDebugMessagesAndNoOthersOnStandardOutput)
{
    const std::string table = runTool("info list").out;
    const Result result = runTool("info list --debug");
    // From the option on: what came ahead of it is not shown.
    EXPECT_TRUE(result.out.starts_with("ZlCallhome::parseCmdLine: post process command line args.\n"));
    expectIn(result.out, table);
    EXPECT_EQ(result.out.find("ZlCmd::validate: success"), std::string::npos);
}
