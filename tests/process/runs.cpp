// Runs and what they leave: run GatherSend, status, test connection, zelfmon query.
#include "support/installation.h"

namespace {

const std::string PROGRESS = TMP + "/callhome/progress/callhome-progress.";

// This node becomes the server of a group, with the capability on unless `enabled` says otherwise.
std::string member(const std::string& enabled = "true")
{
    return configured(group("g", "node1", "node1,node2", "4.2.3.6", "enabled = " + enabled + "\n"));
}

std::string record(const std::string& task, const std::string& start, const std::string& status,
                   const std::string& package = "/d/callhome.1.gat_s.tar", const std::string& code = "RC=0")
{
    return "x|" + task + "|" + start + "|x|" + status + "|x|x|" + code + "|" + package + "|id|orig|x\n";
}

const std::string HEADER =
    "zelfhome:statusList:HEADER:version:reserved:reserved:group:task:startTime:status:rc:"
    "dataID:originalFilename:packageFileName:\n";

const Result NO_GROUP = failed("Failed to obtain a valid call home node.\n"
                               "A call home group for this node needs to be defined using group command.");

const Result NO_MEMBER = failed("This node is not a member of a callhome group. Cannot execute this command.",
                                "Execute this command on a node which is a member of a callhome group.");

} // namespace

const Run RUNS[] = {
    {"run GatherSend --task DAILY", configured(group("g", "node2", "node2,node3", "5.0")), NO_GROUP, ""},
    {"run SendFile --file /etc/passwd", "", NO_GROUP, ""},
    {"test connection", "", NO_GROUP, ""},
    {"run GatherSend --task DAILY", member("True"),
     failed("Please enable capability prior to running data collection"), ""},
    {"run GatherSend --task WEEKLY", member() + "echo 'echo gathered; exit 4' >answers/callhomeutils.pl",
     Result{4, "gathered\n", ""}, "callhomeutils.pl run gatherSend -F weekly"},
    {"zelfmon query sendChunk%201%20%2Fa --fullDecode", // as another node of the group sends it
     "echo 'echo \"$*\"; exit $#' >answers/zelfmonc", Result{4, "callhome sendChunk 1 /a\n", ""},
     "zelfmonc callhome sendChunk 1 /a"},
    {"zelfmon query x", "", success(""), "zelfmonc callhome x"},

    {"status list", "", NO_MEMBER, ""},
    {"status list", configured(group("no-child", "node1", "node2", "5.0")), NO_MEMBER, ""},
    {"status ls", member(), {38, "", "Invalid command: ls\n"}, ""}, // known to the grammar alone
    {"status list --task WEEKLY --numbers 3 --verbose", member(), success(""),
     "callhomeutils.pl status list --task weekly -n 3 -v"},
    {"status list -v --task SENDPMRDATA", member(), success(""),
     "callhomeutils.pl status list -v --task sendpmrdata"},
    {"status delete --starttime 5", member(), success(""), "callhomeutils.pl status delete --startTime 5"},
    {"status del --StartTimeBefore DAILY", member(), success(""),
     "callhomeutils.pl status delete --startTimeBefore daily"},
    {"status list -Y", member(), {1, "", "\nAdditional messages:\nNo progress for task found.\n"}, ""},
    {"status list -Y", member() + "mkdir -p $TMP/callhome/progress; : >" + PROGRESS + "daily",
     success(HEADER), ""},
};

TEST_F(Installation, RunsNeedTheirSurroundingsAndGoToTheHelperProgram)
{
    inEach(RUNS, expectRun);
}

TEST_F(Installation, RecordsShowTheNewestLineOfEachRunAndTheNewestRunFirst)
{
    shell(member());
    writeFile(PROGRESS + "daily", record("daily", "0", "Z") + record("daily", "1", "A") +
                                      record("daily", "2", "B") + record("daily", "1", "C"));
    writeFile(PROGRESS + "sendfile", "one|field\n" + record("sendfile", "1", "S", "noslash.gat_x", "5") +
                                         "|||||||||||\n" + "|||||||||||x|\n");
    EXPECT_EQ(runTool("status list -Y --task DAILY --numbers 1"),
              success(HEADER + "zelfhome:statusList:0:1:::g:daily:1:C:0:id:orig:callhome.1.gat_s.tar:\n"
                               "zelfhome:statusList:0:1:::g:daily:2:B:0:id:orig:callhome.1.gat_s.tar:\n"
                               "zelfhome:statusList:0:1:::g:daily:0:Z:0:id:orig:callhome.1.gat_s.tar:\n"
                               "zelfhome:statusList:0:1:::g::::::::\n"
                               "zelfhome:statusList:0:1:::g:sendfile:1:S:5:id:orig:noslash.gat_x:\n"));
}

// The short name begins seven bytes ahead of "gat_": other packages have no place for it.
TEST_F(Installation, RecordsOfAnotherMakeAreARangeError)
{
    shell(member());
    for (const char* package : {"/d/other.tar", "/d/123456gat_x"}) {
        writeFile(PROGRESS + "weekly", record("weekly", "1", "A", package));
        EXPECT_TRUE(endedByRangeError(runTool("status list --current"))) << package;
    }
    writeFile(PROGRESS + "weekly", record("weekly", "1", "A", "/d/1234567gat_x"));
    EXPECT_EQ(runTool("status list --current"),
              success("group   task     startTime   status   packageFileName   \n"
                      "------- -------- ----------- -------- ----------------- \n"
                      "g       weekly   1           A        ...1234567gat_x   \n"));
    const std::string last =
        "\ng       weekly   1           A        RC=0   id       orig               1234567gat_x      \n";
    EXPECT_TRUE(runTool("status list --verbose --current").out.ends_with(last));
}

TEST_F(Installation, TheConnectionTestReportsWhatTheClientSays)
{
    shell("mkdir -p java/jre/bin; ln -s ../../../stand-in java/jre/bin/java");
    shell(member());
    const std::tuple<const char*, std::string, bool> rows[] = {
        {"echo A: OK; echo B: NOT OK; echo C: OK", "A: OK\nB: NOT OK\nC: OK\n", false},
        {"echo late >&2; echo A: OK; exit 9", "A: OK\n", true}, // only the words count
    };
    for (const auto& [script, body, isGood] : rows) {
        answer("java", script);
        EXPECT_EQ(runTool("test connection").status, isGood ? 0 : 1) << script;
        shell("sed -Ei 's/time: [A-Z][a-z]{2} [A-Z][a-z]{2} [ 1-3][0-9] [0-9:]{8} 2[0-9]{3}$/time: TIME/' "
              "out err");
        EXPECT_EQ(contentOf(isGood ? "/opt/zelf/out" : "/opt/zelf/err"),
                  "## Starting connectivity test between the call home node and Quorvex\n"
                  "Call home node: node1.zelf.test\nStarting time: TIME\n\n" +
                      body + "End time: TIME\n");
    }
    EXPECT_EQ(calls().back(), "java -classpath /opt/zelf/bin/upl/:/opt/zelf/bin/upl/UPLBase/* "
                              "com/quorvex/upl/link/TestUPLConnections");
}
