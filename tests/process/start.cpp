// The start of a run: what it calls in which order, and how it ends where the installation is damaged.
#include "support/installation.h"

namespace {

const Result VERSION = success("Version:4.2.3-7.000\n");
const Result NO_HELPER = failed("Missing component for software call home.\n"
                                "    Please install software call home on this node or execute this command\n"
                                "    from a node that has software call home installed.\n"
                                "RPMS:\n"
                                "    zelf.java, zelf.callhome-upl-client, zelf.callhome.");
const Result NO_CCR = failed("CCR not enabled. Please enable ccr before you use callhome.");
const Result NO_FILE = failed("Could not read the call home configuration from the CCR");
const Result NO_CFG = failed("Error: See trace file form more information.");
const Result SERVICE_DOWN = {
    4, "",
    "Call Home requires the monitoring service to run, however it is down and does not "
    "respond.\nPlease restart the monitoring service using: zelfmoncontrol restart\n"};
const Result SURPLUS = failed("Invalid argument: 'x'");

// "zelfccr fget" answers 155, for a good local file.
const std::string LOCAL_COPY = "cp ccr/_callhomeconfig $TMP; echo exit 155 >answers/zelfccr";

} // namespace

// What is done to the installation, for a shell in /opt/zelf; the line; the result; how many calls of a good
// start are made.
const std::tuple<std::string, std::string, Result, size_t> STARTS[] = {
    {"rm bin/callhomeutils.pl; sed -i /ccr/d $GEN/zelf.cfg", "--help", NO_HELPER, 1},
    {"rm bin/callhomeutils.pl; sed -i /ccr/d $GEN/zelf.cfg", "--version", VERSION, 1},
    {"sed -i s/yes/YES/ $GEN/zelf.cfg", "help", NO_CCR, 1},

    {"echo exit 3 >answers/zelfctl", "info list", LISTED, 3},
    {"echo 'echo x: The monitoring service is down and does not respond. >&2; exit 4' >answers/start",
     "info list", SERVICE_DOWN, 2},
    {"echo 'echo a; echo b >&2; echo; exit 255' >answers/start", "info list", {255, "", "a\nb\n"}, 2},
    {"echo exit 7 >answers/start", "group", {7, "", "Failed\n"}, 2},
    {"echo 'echo The monitoring service is down and does not respond' >answers/start", "info list", LISTED,
     3},
    // The command dies of a signal, with or without a shell around it: that reads as 0.
    {"echo 'read -r n </proc/$PPID/comm; [ $n != sh ] || kill -9 $PPID; kill -9 $$' >answers/start",
     "info list", LISTED, 3},

    {"echo 'echo no quorum; echo really >&2; exit 1' >answers/zelfccr", "info list", NO_FILE, 3},
    {LOCAL_COPY, "info list", LISTED, 3},
    {LOCAL_COPY + "; echo exit 150 >answers/zelfccr", "info list", NO_FILE, 3},
    {LOCAL_COPY + "; rm $TMP/_callhomeconfig", "info list", NO_FILE, 3},

    {"rm $GEN/zelf.cfg", "--version", NO_CFG, 0},
    {"echo useless >$GEN/zelf.cfg", "group list x", SURPLUS, 1},
    {"rm $GEN/zelfsdr", "--version", {1, "", ""}, 0},

    {"rm -r $TMP", "info list", NO_FILE, 3},
    {"mount -t tmpfs -o nr_inodes=1 zelftest $TMP", "group list x", SURPLUS, 1},
    {"mount -t tmpfs zelftest $TMP; " + LOCAL_COPY + "; mount -o remount,ro $TMP", "info list", LISTED, 3},
};

TEST_F(Installation, StartCallsAndEndsAsItShould)
{
    inEach(STARTS, [](const auto& damage, const auto& line, const Result& expected, size_t count) {
        shell(damage);
        EXPECT_EQ(runTool(line), expected);
        Strings start = startThen({});
        start.resize(count);
        EXPECT_EQ(calls(), start);
    });
}

// Ahead of main() the log has no name of its own yet.
TEST_F(Installation, StartWithoutAClusterFileTalksToTheLogAlone)
{
    shell("rm $GEN/zelfsdr");
    runTool("info list");
    const std::string words = "\nCannot read /var/zelf/gen/zelfsdr. Terminate!\nterminateProgram\n";
    expectIn(contentOf(TMP + "/zlCliLog.log"), words);
    EXPECT_EQ(contentOf(LOG), "");
    // A line with a field too few ends the run there, too.
    writeFile("/var/zelf/gen/zelfsdr", "a:20_MEMBER_NODE:::7:s7:10.0.0.7:n7:::::::d7:a7:1600\n");
    EXPECT_TRUE(endedByRangeError(runTool("--version")));
}

// Words and log go by the name under which the tool was called; the usage texts do not.
TEST_F(Installation, StartTakesTheLastPartOfTheCallAsProgramName)
{
    EXPECT_EQ(runTool("info list x", "./other"),
              failed("'other info list' does not allow any arguments.", "Invalid argument: 'x'"));
    EXPECT_NE(contentOf(TMP + "/other.log"), "");
    EXPECT_EQ(contentOf(LOG), "");
    EXPECT_EQ(runTool("info list -Y", "plain").out.rfind("plain:infoList:HEADER:", 0), 0u);
    EXPECT_EQ(runTool("test", "/a/b/"), failed("Usage:\n\tzelfhome test connection"));
}
