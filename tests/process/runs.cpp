// Runs and what they leave: run GatherSend, status, test connection, zelfmon query.
#include "support/installation.h"

#include <filesystem>

namespace {

const std::string PROGRESS = TMP + "/callhome/progress/callhome-progress.";

// A group with this node in it. Its capability is on, unless `enabled` says otherwise.
std::string member(const std::string& version = "4.2.3.6", const std::string& enabled = "true")
{
    return topology(group("g", "node1", "node1,node2", version, "enabled = " + enabled + "\n"));
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

} // namespace

TEST_F(Installation, AGatherRunNeedsAGroupAndTheCapabilityAndGoesToTheHelperProgram)
{
    configure(topology(group("g", "node2", "node2,node3", "5.0")));
    EXPECT_EQ(runTool("run GatherSend --task DAILY"), NO_GROUP);
    EXPECT_EQ(runTool("run SendFile --file /etc/passwd"), NO_GROUP);
    for (const char* value : {"false", "True"}) {
        configure(member("5.0", value));
        EXPECT_EQ(runTool("run GatherSend --task DAILY"),
                  failed("Please enable capability prior to running data collection"));
    }
    answer("callhomeutils.pl", "echo gathered; exit 4");
    configure(member("5.0")); // whatever the server
    EXPECT_EQ(runTool("run GatherSend --task WEEKLY"), (Result{4, "gathered\n", ""}));
    EXPECT_EQ(calls().back(), "callhomeutils.pl run gatherSend -F weekly");
}

TEST_F(Installation, StatusIsForMembers)
{
    const Result refused =
        failed("This node is not a member of a callhome group. Cannot execute this command.",
               "Execute this command on a node which is a member of a callhome group.");
    // The last row: a server that is not in its own list of children.
    for (const std::string& groups :
         {std::string(), group("g", "node2", "node2", "5.0"), group("g", "node1", "node2", "5.0")}) {
        configure(topology(groups));
        EXPECT_EQ(runTool("status list"), refused) << groups;
        EXPECT_EQ(runTool("status delete --all"), refused) << groups;
    }
}

TEST_F(Installation, StatusHandsTheValidatedArgumentsToTheHelperProgram)
{
    configure(member());
    const std::pair<const char*, const char*> cases[] = {
        {"status list --task WEEKLY --numbers 3 --verbose", "status list --task weekly -n 3 -v"},
        {"status list -v --task SENDPMRDATA", "status list -v --task sendpmrdata"},
        {"status delete --starttime 5", "status delete --startTime 5"},
        {"status del --StartTimeBefore DAILY", "status delete --startTimeBefore daily"},
        {"status delete --all", "status delete --all"},
    };
    for (const auto& [line, call] : cases) {
        EXPECT_EQ(runTool(line).status, 0) << line;
        EXPECT_EQ(calls().back(), std::string("callhomeutils.pl ") + call);
    }
}

TEST_F(Installation, RecordsShowTheNewestLineOfEachRunAndTheNewestRunFirst)
{
    configure(member());
    writeFile(PROGRESS + "daily",
              record("daily", "1", "A") + record("daily", "2", "B") + record("daily", "1", "C"));
    writeFile(PROGRESS + "sendfile", "one|field\n" + record("sendfile", "1", "S", "noslash.gat_x", "5") +
                                         "|||||||||||\n" + "|||||||||||x|\n");
    EXPECT_EQ(runTool("status list -Y --task DAILY --numbers 1"),
              success(HEADER + "zelfhome:statusList:0:1:::g:daily:1:C:0:id:orig:callhome.1.gat_s.tar:\n"
                               "zelfhome:statusList:0:1:::g:daily:2:B:0:id:orig:callhome.1.gat_s.tar:\n"
                               "zelfhome:statusList:0:1:::g::::::::\n"
                               "zelfhome:statusList:0:1:::g:sendfile:1:S:5:id:orig:noslash.gat_x:\n"));
    EXPECT_EQ(logged("ZlCallhome::readProgressFile: Skipping a progress line because of a wrong format: "),
              (Strings{"|||||||||||x|", "one|field"}));
    EXPECT_EQ(calls(), startThen({})) << "records come from the files alone";
}

TEST_F(Installation, RecordsThatAreMissingEmptyOrOfAnotherMake)
{
    configure(member());
    EXPECT_EQ(runTool("status list -Y"),
              (Result{1, "", "\nAdditional messages:\nNo progress for task found.\n"}));
    writeFile(PROGRESS + "weekly", "");
    EXPECT_EQ(runTool("status list -Y"), success(HEADER));
    // The short name begins seven bytes ahead of "gat_": other packages have no place for it.
    for (const char* package : {"/d/other.tar", "/d/123456gat_x"}) {
        writeFile(PROGRESS + "weekly", record("weekly", "1", "A", package));
        EXPECT_TRUE(endedByRangeError(runTool("status list --current"))) << package;
    }
    writeFile(PROGRESS + "weekly", record("weekly", "1", "A", "/d/1234567gat_x"));
    EXPECT_EQ(runTool("status list --current"),
              success("group   task     startTime   status   packageFileName   \n"
                      "------- -------- ----------- -------- ----------------- \n"
                      "g       weekly   1           A        ...1234567gat_x   \n"));
    EXPECT_EQ(
        runTool("status list --verbose --current"),
        success(
            "group   task     startTime   status   rc     dataID   originalFilename   packageFileName   \n"
            "------- -------- ----------- -------- ------ -------- ------------------ ----------------- \n"
            "g       weekly   1           A        RC=0   id       orig               1234567gat_x      \n"));
}

TEST_F(Installation, TheConnectionTestReportsWhatTheClientSays)
{
    EXPECT_EQ(runTool("test connection"), NO_GROUP);
    std::filesystem::create_directories("/opt/zelf/java/jre/bin");
    std::filesystem::create_symlink("/opt/zelf/stand-in", "/opt/zelf/java/jre/bin/java");
    configure(member("5.0"));
    const char* const time = "[A-Z][a-z]{2} [A-Z][a-z]{2} [ 0-9][0-9] [0-9:]{8} [0-9]{4}";
    const std::string begin = "## Starting connectivity test between the call home node and Quorvex\n"
                              "Call home node: node1.zelf.test\nStarting time: TIME\n\n";
    const std::tuple<const char*, const char*, int> rows[] = {
        {"echo A: OK; echo B: NOT OK; echo C: OK", "A: OK\nB: NOT OK\nC: OK\n", 1},
        {"printf 'NOT '; printf OK", "NOT OK", 1},
        {"echo late >&2; echo A: OK; exit 9", "A: OK\n", 0}, // only the words count
    };
    for (const auto& [script, body, status] : rows) {
        answer("java", script);
        const Result result = runTool("test connection");
        EXPECT_EQ(result.status, status) << script;
        EXPECT_EQ(replaced(status == 0 ? result.out : result.err, time, "TIME"),
                  begin + body + "End time: TIME\n");
    }
    EXPECT_EQ(
        logged("_executeCMD cmd = /opt/zelf/java/jre/bin/java").back(),
        " -classpath /opt/zelf/bin/upl/:/opt/zelf/bin/upl/UPLBase/* com/quorvex/upl/link/TestUPLConnections");
}

TEST_F(Installation, AMonitoringQueryPassesRequestAnswerAndCodeOn)
{
    answer("zelfmonc", "shift; printf '%s|' \"$@\"; exit $#");
    // Also as another node of the group sends it.
    for (const char* line :
         {"zelfmon query 'sendChunk 1 /a'", "zelfmon query sendChunk%201%20%2Fa --fullDecode"}) {
        EXPECT_EQ(runTool(line), (Result{3, "sendChunk|1|/a|", ""})) << line;
    }
    answer("zelfmonc", "");
    EXPECT_EQ(runTool("zelfmon query x"), success(""));
}
