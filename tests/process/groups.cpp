// The group verbs: what is asked of the nodes, what is requested, what is left.
#include "support/installation.h"

#include <filesystem>

namespace {

// A dispatch tool on which every probe passes. It notes the nodes that it was given.
const char* const HEALTHY = R"(
[ "$1" = onall ] || exit 0
cat "$2" >>/var/zelf/nodes; echo '|' >>/var/zelf/nodes
for node in $(cat "$2"); do
    case "$4 $5" in
    "zelfversion2 ") echo "$node:  a:b:c:d:5.0.2.0:f" ;;
    "execchcommand verifybackend") echo "$node:  uplink available = passed rc=0" ;;
    "execchcommand verifyinstallation") echo "$node:  callhome installed = yes" ;;
    esac
done
)";

// The dispatch calls and requests of the runs so far; names of temporary files are left out.
Strings requests()
{
    Strings found;
    for (const std::string& call : calls()) {
        if (call.rfind("zelfrun onall", 0) == 0) {
            found.push_back("onall" + call.substr(call.find(' ', call.rfind("zlTemp."))));
        } else if (call.rfind("zelfmonc callhome ensure", 0) != 0 && call.rfind("zelfccr", 0) != 0 &&
                   call.rfind("zelfctl", 0) != 0) {
            found.push_back(call);
        }
    }
    return found;
}

bool temporaryFilesLeft()
{
    for (const auto& entry : std::filesystem::directory_iterator(TMP)) {
        if (entry.path().filename().string().rfind("zlTemp", 0) == 0) {
            return true;
        }
    }
    return false;
}

} // namespace

TEST_F(Installation, GroupAddProbesTheNodesAndSortsTheMembers)
{
    answer("zelfrun", HEALTHY);
    answer("zelfmonc", "[ $2 = ensureConfigInCCR ] || echo created");
    EXPECT_EQ(runTool("group add west node3 --node node2,1,node2.zelf.test"), (Result{0, "created\n", ""}));
    EXPECT_EQ(requests(), (Strings{"onall execchcommand verifyinstallation",
                                   "onall execchcommand verifybackend", "onall zelfversion2",
                                   "zelfmonc callhome addGroup west node3.zelf.test 5.0.2.0 "
                                   "node1.zelf.test,node2.zelf.test,node3.zelf.test",
                                   // No class files, and an empty configuration.
                                   "zelfcrclass CALLHOME_SERVERS -N", "zelfcrclass CALLHOME_CLIENTS -N"}));
    EXPECT_EQ(readFile("/var/zelf/nodes"), "node1.zelf.test\nnode2.zelf.test\nnode3.zelf.test|\n"
                                           "node3.zelf.test|\n"
                                           "node1.zelf.test\nnode2.zelf.test\nnode3.zelf.test|\n");
    EXPECT_FALSE(temporaryFilesLeft());
    runTool("group add g node1"); // the server is its only member
    EXPECT_EQ(requests().at(requests().size() - 3),
              "zelfmonc callhome addGroup g node1.zelf.test 5.0.2.0 node1.zelf.test");
}

TEST_F(Installation, GroupAddIsRefusedAheadOfAnyChange)
{
    const std::string packages = "No call home packages installed on the following nodes: ";
    const std::string noUplink = "The call home node has no connectivity to the uplink endpoint\n"
                                 "Please check the settings for it and proxy settings if used.\n";
    const std::string installed =
        "[ $5 = verifyinstallation ] && sed 's/$/:  callhome installed = yes/' $2 && echo; ";
    const std::pair<std::string, std::string> rows[] = {
        {"echo garbage; exit 3", packages + "node1.zelf.test, node2.zelf.test\n"},
        {"echo 'node1.zelf.test: callhome installed = yes'", packages + "node1.zelf.test, node2.zelf.test\n"},
        {"echo 'node1.zelf.test:  callhome installed = yes'; echo 'node2.zelf.test:  callhome installed = "
         "no'",
         packages + "node2.zelf.test\n"},
        // Only the server has to reach the outside.
        {installed, noUplink},
        {installed + "echo 'node1.zelf.test:  uplink available = failed rc=1'", noUplink},
    };
    for (const auto& [dispatch, response] : rows) {
        answer("zelfrun", dispatch);
        EXPECT_EQ(runTool("group add g node1 --node node2"), (Result{1, "", response})) << dispatch;
        EXPECT_FALSE(temporaryFilesLeft());
    }
    for (const std::string& call : calls()) {
        EXPECT_EQ(call.find("addGroup"), std::string::npos) << call;
    }
}

TEST_F(Installation, GroupAddShowsWhatTheServiceSaysAndLeavesTheClassesOnFailure)
{
    answer("zelfrun", std::string(HEALTHY) + "[ \"$4\" != zelfversion2 ] || exit 7");
    answer("zelfmonc", "[ $2 = ensureConfigInCCR ] && exit 0; echo 'exists already'; exit 5");
    EXPECT_EQ(runTool("group add g node1"), (Result{5, "", "exists already\n"}));
    EXPECT_EQ(calls().back().substr(0, 17), "zelfmonc callhome");
    // An answer of five fields has no version.
    answer("zelfrun", "for n in $(cat $2); do echo \"$n:  callhome installed = yes\"; "
                      "echo \"$n:  uplink available = passed rc=0\"; done; "
                      "[ $4 != zelfversion2 ] || echo 'node1.zelf.test:  a:b:c:d:5.0'");
    runTool("group add g node1");
    EXPECT_NE(calls().back().find(" 0.0.0.0 "), std::string::npos) << calls().back();
}

TEST_F(Installation, GroupDeleteSwitchesTheFormerMembersOff)
{
    const std::string prefix(36, 'x');
    const Result deleted = {0, "Successfully deleted\n", ""};
    const std::pair<std::string, std::pair<std::string, Result>> rows[] = {
        {"echo gone; echo '" + prefix + "node2.zelf.test node3.zelf.test'",
         {"node2.zelf.test\nnode3.zelf.test|\n", deleted}},
        {"echo gone; echo '" + prefix + "'", {"(no such file)", deleted}},
        {"echo 'no such group'; exit 2", {"(no such file)", {2, "", "no such group\n"}}},
    };
    answer("zelfrun", std::string(HEALTHY) + "exit 1");
    for (const auto& [reply, expected] : rows) {
        std::filesystem::remove("/var/zelf/nodes");
        answer("zelfmonc", "[ $2 = ensureConfigInCCR ] && exit 0; " + reply);
        EXPECT_EQ(runTool("group delete g"), expected.second) << reply;
        EXPECT_EQ(readFile("/var/zelf/nodes"), expected.first) << reply;
    }
    answer("zelfmonc", "[ $2 = ensureConfigInCCR ] && exit 0; echo gone; echo short");
    EXPECT_TRUE(endedByRangeError(runTool("group delete g")));
    const Strings all = requests();
    EXPECT_EQ(all.at(1), "onall execchcommand chlocaldisable /opt/zelf/data/callhome/etc/UPLmain.properties");
}

TEST_F(Installation, GroupListShowsNamesAndHolesInThem)
{
    configure(topology(""));
    EXPECT_EQ(runTool("group list"), (Result{1, "", "No callhome group defined.\n"}));
    configure(topology(group("west", "node1", "node1,node2", "") +
                       "    <callhomeGroup>\n        name = odd\n        callhomeChildNodes = "
                       "node2.zelf.test,,gone\n    </callhomeGroup>\n"));
    EXPECT_EQ(runTool("group list"), (Result{0,
                                             "callHomeGroup   callHomeNode   callHomeChildNodes    \n"
                                             "--------------- -------------- --------------------- \n"
                                             "odd             ------         node2,------,------   \n"
                                             "west            node1          node1,node2           \n",
                                             ""}));
    EXPECT_EQ(
        runTool("group ls --LONG -Y").out,
        "zelfhome:groupLs:HEADER:version:reserved:reserved:callHomeGroup:callHomeNode:callHomeChildNodes:\n"
        "zelfhome:groupLs:0:1:::odd:------:node2.zelf.test,------,------:\n"
        "zelfhome:groupLs:0:1:::west:node1.zelf.test:node1.zelf.test,node2.zelf.test:\n");
}

// --- group auto ------------------------------------------------------------------------------------------

namespace {

const std::string ALL_NODES = "/var/zelf/gen/nodeFiles/zelfall.rel";
const std::string SERVERS = "/var/zelf/gen/nodeFiles/usercallhome_servers.rel";

} // namespace

TEST_F(Installation, GroupAutoDeploysTheGlobalSettingsToNewServersOnly)
{
    writeFile(ALL_NODES, "node1\nnode2\n");
    writeFile(SERVERS, "node1\nnode2\n");
    configure(
        topology(group("old", "node1", "node1", "5.0"), "customer-name = O'Neil 50%\nweekly = enabled\n"));
    answer("zelfrun", HEALTHY);
    EXPECT_EQ(runTool("group auto --server node2"),
              (Result{0, "zelfhome: [I] deploy configuration.\nSuccess\n", ""}));
    EXPECT_EQ(requests(),
              (Strings{"zelfautoconfig --server node2.zelf.test",
                       "zelfchclass CALLHOME_SERVERS replace -N node1.zelf.test",
                       "zelfcrclass CALLHOME_CLIENTS -N node1.zelf.test",
                       R"(onall execzelfhome_2 '"info change %2D%2Dcustomer%2Dname O%27Neil%2050%25"')",
                       R"(onall execzelfhome_2 '"proxy disable"')",
                       R"(onall execzelfhome_2 '"schedule add %2D%2Dtask WEEKLY"')"}));
    EXPECT_EQ(readFile("/var/zelf/nodes"), "node2|\nnode2|\nnode2|\n");
    // With --force every server gets them.
    std::filesystem::remove("/var/zelf/nodes");
    runTool("group auto --force");
    EXPECT_EQ(readFile("/var/zelf/nodes").substr(0, 12), "node1\nnode2|");
    EXPECT_FALSE(temporaryFilesLeft());
}

TEST_F(Installation, GroupAutoWithEnableStoresTheCapabilityFirst)
{
    writeFile(ALL_NODES, "node1\n");
    answer("zelfccr", "case $1 in fget) printf '<callhomeTopology>\\n</callhomeTopology>\\n' >$3;; "
                      "fput) cp $3 /var/zelf/stored;; esac");
    answer("zelfautoconfig", "cp /var/zelf/stored /var/zelf/seen; exit 3");
    EXPECT_EQ(runTool("group auto --ENABLE"), (Result{3, "", "Failed\n"}));
    EXPECT_EQ(requests(), (Strings{"zelfautoconfig"}));
    EXPECT_EQ(readFile("/var/zelf/seen"), "<callhomeTopology>\n</callhomeTopology>\nenabled = true\n");
}

TEST_F(Installation, GroupAutoScreensTheNodesByTheirRelease)
{
    std::string old = memberLine(4, "node4");
    old.replace(old.find(":1900:"), 6, ":1500:");
    writeFile("/var/zelf/gen/zelfsdr", memberLine(1, "node1") + old);
    const std::string some =
        "\nAdditional messages:\nSome nodes do not have min release level 1600\nNumber of nodes "
        "exclude from processing: 2\n";
    writeFile(ALL_NODES, "node1\nnode4\nnobody\n");
    writeFile(SERVERS, "");
    EXPECT_EQ(runTool("group auto"),
              (Result{0, "zelfhome: [I] deploy configuration.\nSuccess\n" + some, ""}));
    EXPECT_EQ(readFile(TMP + "/zelfall.rel"), "node1\nnode4\nnobody\n")
        << "the copy is the list as it was read";

    const Result none = failed("Terminate execution.", "No nodes available with min release level 1600");
    const size_t before = requests().size();
    writeFile(ALL_NODES, "node4\n");
    EXPECT_EQ(runTool("group auto"), none);
    std::filesystem::remove(ALL_NODES);
    EXPECT_EQ(runTool("group auto"), none);
    EXPECT_EQ(requests().size(), before) << "the external tool is not called";
}

TEST_F(Installation, GroupAutoEndsWithoutDeploymentWhereItMust)
{
    writeFile(ALL_NODES, "node1\nnode-h\n");
    writeFile("/var/zelf/gen/zelfsdr", memberLine(1, "node1") + memberLine(2, "node-h"));
    // "-h" within a name counts as well.
    EXPECT_EQ(runTool("group auto --server node-h"), (Result{0, "Success\n", ""}));
    // No file of servers: said to be a success, with status 1.
    EXPECT_EQ(runTool("group auto"), (Result{1, "", "Success\n"}));
    // The dispatch fails: later commands are not tried.
    writeFile(SERVERS, "node1\n");
    configure(topology("", "enabled = true\n"));
    answer("zelfrun", "exit 1");
    const Result problem = runTool("group auto");
    EXPECT_EQ(problem.status, 1);
    EXPECT_EQ(problem.err, "Problem with zelfrun/zelfremote. See /var/zelf/tmp/zelfhome.log for details\n");
    EXPECT_EQ(requests().back(), R"(onall execzelfhome_2 '"capability enable"')");
    EXPECT_FALSE(temporaryFilesLeft());
}
