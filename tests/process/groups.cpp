// The group verbs: what is asked of the nodes, what is requested, what is left.
#include "support/installation.h"

#include <filesystem>

namespace {

const std::string ALL_NODES = "/var/zelf/gen/nodeFiles/zelfall.rel";
const std::string SERVERS = "/var/zelf/gen/nodeFiles/usercallhome_servers.rel";
const Result DEPLOYED = success("zelfhome: [I] deploy configuration.\nSuccess\n");

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

} // namespace

TEST_F(Installation, GroupAddProbesTheNodesAndSortsTheMembers)
{
    answer("zelfrun", HEALTHY);
    answer("zelfmonc", "echo created");
    EXPECT_EQ(runTool("group add west node2 --node node3,1,node3.zelf.test"), success("created\n"));
    EXPECT_EQ(requests(), (Strings{"onall execchcommand verifyinstallation",
                                   "onall execchcommand verifybackend", "onall zelfversion2",
                                   "zelfmonc callhome addGroup west node2.zelf.test 5.0.2.0 "
                                   "node1.zelf.test,node2.zelf.test,node3.zelf.test",
                                   // No class files, and an empty configuration.
                                   "zelfcrclass CALLHOME_SERVERS -N", "zelfcrclass CALLHOME_CLIENTS -N"}));
    EXPECT_EQ(readFile("/var/zelf/nodes"), "node1.zelf.test\nnode3.zelf.test\nnode2.zelf.test|\n"
                                           "node2.zelf.test|\n"
                                           "node1.zelf.test\nnode3.zelf.test\nnode2.zelf.test|\n");
    runTool("group add g node1"); // the server is its only member
    EXPECT_EQ(requests().at(3), "zelfmonc callhome addGroup g node1.zelf.test 5.0.2.0 node1.zelf.test");
}

TEST_F(Installation, GroupAddIsRefusedAheadOfAnyChange)
{
    const std::string packages = "No call home packages installed on the following nodes: ";
    const std::string noUplink = "The call home node has no connectivity to the uplink endpoint\n"
                                 "Please check the settings for it and proxy settings if used.";
    const std::string installed =
        "[ $5 = verifyinstallation ] && sed 's/$/:  callhome installed = yes/' $2 && echo; ";
    const std::tuple<std::string, std::string> rows[] = {
        {"echo garbage; exit 3", packages + "node1.zelf.test, node2.zelf.test"},
        {"echo 'node1.zelf.test: callhome installed = yes'", packages + "node1.zelf.test, node2.zelf.test"},
        {"n=1; for answer in yes no; do echo \"node$n.zelf.test:  callhome installed = $answer\"; n=2; done",
         packages + "node2.zelf.test"},
        {installed, noUplink},
        // Only the server has to reach the outside.
        {installed + "echo 'node1.zelf.test:  uplink available = failed rc=1'", noUplink},
        {installed + "echo 'node2.zelf.test:  uplink available = passed rc=0'", noUplink},
    };
    inEach(rows, [](const std::string& dispatch, const std::string& response) {
        answer("zelfrun", dispatch);
        EXPECT_EQ(runTool("group add g node1 --node node2"), failed(response));
        EXPECT_EQ(requests().back().rfind("onall execchcommand verify", 0), 0u);
    });
}

TEST_F(Installation, GroupAddShowsWhatTheServiceSaysAndLeavesTheClassesOnFailure)
{
    answer("zelfmonc", "echo 'exists already'; exit 5");
    // An answer of five fields has no version; a node that does not answer has none, either.
    for (const std::string script : {"exit 7", "{ echo 'node1.zelf.test:  a:b:c:d:5.0'; exit; }"}) {
        answer("zelfrun", "[ $4 != zelfversion2 ] || " + script + "\n" + HEALTHY);
        EXPECT_EQ(runTool("group add g node1"), (Result{5, "", "exists already\n"}));
        EXPECT_EQ(calls().back(), "zelfmonc callhome addGroup g node1.zelf.test 0.0.0.0 node1.zelf.test");
    }
}

TEST_F(Installation, GroupDeleteSwitchesTheFormerMembersOff)
{
    const std::string prefix(36, 'x');
    const Result deleted = success("Successfully deleted\n");
    const std::tuple<std::string, std::string, Result> rows[] = {
        {"echo gone; echo '" + prefix + "node2.zelf.test node3.zelf.test'",
         "node2.zelf.test\nnode3.zelf.test|\n", deleted},
        {"echo gone; echo '" + prefix + "'", "(no such file)", deleted},
        {"echo gone", "(no such file)", deleted},
        {"echo 'no such group'; exit 2", "(no such file)", {2, "", "no such group\n"}},
    };
    inEach(rows, [](const std::string& reply, const std::string& nodes, const Result& expected) {
        answer("zelfrun", std::string(HEALTHY) + "exit 1");
        answer("zelfmonc", reply);
        EXPECT_EQ(runTool("group delete g"), expected);
        EXPECT_EQ(readFile("/var/zelf/nodes"), nodes);
        const Strings all = requests();
        EXPECT_EQ(all.front(), "zelfmonc callhome deleteGroup g");
        if (nodes[0] == 'n') {
            EXPECT_EQ(all.at(1),
                      "onall execchcommand chlocaldisable /opt/zelf/data/callhome/etc/UPLmain.properties");
        }
        EXPECT_EQ(all.back().rfind("zelfcrclass CALLHOME_CLIENTS", 0) == 0, expected.status == 0);
    });
    answer("zelfmonc", "echo gone; echo short");
    EXPECT_TRUE(endedByRangeError(runTool("group delete g")));
}

TEST_F(Installation, GroupListShowsNamesAndHolesInThem)
{
    EXPECT_EQ(runTool("group list"), failed("No callhome group defined."));
    configure(topology(group("west", "node1", "node1,node2", "") +
                       "    <callhomeGroup>\n        name = odd\n        callhomeChildNodes = "
                       "node2.zelf.test,,gone\n    </callhomeGroup>\n"
                       "    <callhomeGroup>\n        name = lost\n        callhomeChildNodes = child\n"
                       "        callhomeNode = server\n    </callhomeGroup>\n"));
    EXPECT_EQ(runTool("group list"), success("callHomeGroup   callHomeNode   callHomeChildNodes    \n"
                                             "--------------- -------------- --------------------- \n"
                                             "lost            ------         ------                \n"
                                             "odd             ------         node2,------,------   \n"
                                             "west            node1          node1,node2           \n"));
    EXPECT_EQ(requests(), (Strings{"zelfadm host server", "zelfadm host child", "zelfadm host gone"}));
    EXPECT_EQ(runTool("group ls --LONG -Y"),
              success("zelfhome:groupLs:HEADER:version:reserved:reserved:callHomeGroup:callHomeNode:"
                      "callHomeChildNodes:\n"
                      "zelfhome:groupLs:0:1:::lost:------:------:\n"
                      "zelfhome:groupLs:0:1:::odd:------:node2.zelf.test,------,------:\n"
                      "zelfhome:groupLs:0:1:::west:node1.zelf.test:node1.zelf.test,node2.zelf.test:\n"));
}

// --- group auto ------------------------------------------------------------------------------------------

TEST_F(Installation, GroupAutoDeploysTheGlobalSettingsToNewServersOnly)
{
    writeFile(ALL_NODES, "node1\nnode2\n");
    writeFile(SERVERS, "node1\nnode2\nnobody\n");
    configure(
        topology(group("old", "node1", "node1", "5.0"), "customer-name = O'Neil 50%\nweekly = enabled\n"));
    answer("zelfrun", HEALTHY);
    EXPECT_EQ(runTool("group auto --server node2"), DEPLOYED);
    EXPECT_EQ(requests(),
              (Strings{"zelfautoconfig --server node2.zelf.test",
                       "zelfchclass CALLHOME_SERVERS replace -N node1.zelf.test",
                       "zelfcrclass CALLHOME_CLIENTS -N node1.zelf.test", "zelfadm host nobody",
                       R"(onall execzelfhome_2 '"info change %2D%2Dcustomer%2Dname O%27Neil%2050%25"')",
                       "zelfadm host nobody", R"(onall execzelfhome_2 '"proxy disable"')",
                       "zelfadm host nobody", R"(onall execzelfhome_2 '"schedule add %2D%2Dtask WEEKLY"')"}));
    EXPECT_EQ(readFile("/var/zelf/nodes"), "node2\nnobody|\nnode2\nnobody|\nnode2\nnobody|\n");
    // With --force every server gets them.
    std::filesystem::remove("/var/zelf/nodes");
    runTool("group auto --force");
    EXPECT_EQ(readFile("/var/zelf/nodes").substr(0, 19), "node1\nnode2\nnobody|");
}

TEST_F(Installation, GroupAutoWithEnableStoresTheCapabilityFirst)
{
    writeFile(ALL_NODES, "node1\n");
    // A level out of range must not leave an error number behind: the write would take it for its own.
    shell("sed -i /:node3:/s/:1900:/:99999999999999999999:/ $GEN/zelfsdr");
    answer("zelfccr", "case $1 in fget) printf '<callhomeTopology>\\n</callhomeTopology>\\n' >$3;; "
                      "fput) cp $3 /var/zelf/stored;; esac");
    answer("zelfautoconfig", "cp /var/zelf/stored /var/zelf/seen; exit 3");
    EXPECT_EQ(runTool("group auto --ENABLE"), (Result{3, "", "Failed\n"}));
    EXPECT_EQ(requests(), (Strings{"zelfautoconfig"}));
    EXPECT_EQ(readFile("/var/zelf/seen"), "<callhomeTopology>\n</callhomeTopology>\nenabled = true\n");
}

TEST_F(Installation, GroupAutoScreensTheNodesByTheirRelease)
{
    shell("sed -i '/:node4:/s/:1900:/:1500:/' $GEN/zelfsdr");
    writeFile(ALL_NODES, "node1\nnode4\nnobody\n");
    writeFile(SERVERS, "");
    EXPECT_EQ(runTool("group auto"), success(DEPLOYED.out + "\nAdditional messages:\n"
                                                            "Some nodes do not have min release level 1600\n"
                                                            "Number of nodes exclude from processing: 2\n"));
    EXPECT_EQ(readFile(TMP + "/zelfall.rel"), "node1\nnode4\nnobody\n")
        << "the copy is the list as it was read";

    const Result none = failed("Terminate execution.", "No nodes available with min release level 1600");
    requests();
    writeFile(ALL_NODES, "node4\n");
    EXPECT_EQ(runTool("group auto"), none);
    std::filesystem::remove(ALL_NODES);
    EXPECT_EQ(runTool("group auto"), none);
    EXPECT_EQ(requests(), Strings()) << "the external tool is not called";
}

TEST_F(Installation, GroupAutoEndsWithoutDeploymentWhereItMust)
{
    writeFile(ALL_NODES, "node1\nnode-h\n");
    shell("sed -i s/node2/node-h/g $GEN/zelfsdr");
    // "-h" within a name counts as well.
    EXPECT_EQ(runTool("group auto --server node-h"), success("Success\n"));
    // No file of servers: said to be a success, with status 1.
    EXPECT_EQ(runTool("group auto"), failed("Success"));
    // The dispatch fails: later commands are not tried.
    writeFile(SERVERS, "node1\n");
    configure(topology("", "enabled = true\n"));
    answer("zelfrun", "exit 1");
    const Result problem = runTool("group auto");
    EXPECT_EQ(problem.status, 1);
    EXPECT_EQ(problem.err, "Problem with zelfrun/zelfremote. See /var/zelf/tmp/zelfhome.log for details\n");
    EXPECT_EQ(requests().back(), R"(onall execzelfhome_2 '"capability enable"')");
}
