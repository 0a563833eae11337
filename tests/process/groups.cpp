// The group verbs: what is asked of the nodes, what is requested, what is left.
#include "support/installation.h"

namespace {

// Has a program answer so; a dispatch tool passes every probe behind that.
std::string answers(const std::string& program, const std::string& script)
{
    const char* const passed = R"(
for node in $(cat "$2"); do
    case "$4 $5" in
    "zelfversion2 ") echo "$node:  a:b:c:d:5.0.2.0:f" ;;
    "execchcommand verifybackend") echo "$node:  uplink available = passed rc=0" ;;
    "execchcommand verifyinstallation") echo "$node:  callhome installed = yes" ;;
    esac
done)";
    return "cat >answers/" + program + " <<'END'\n" + script + (program == "zelfrun" ? passed : "") +
           "\nEND\n";
}

// Makes the list of all nodes, and that of the servers.
std::string listed(const std::string& nodes, const std::string& servers)
{
    return "printf '" + nodes + "' >$GEN/nodeFiles/zelfall.rel; printf '" + servers +
           "' >$GEN/nodeFiles/usercallhome_servers.rel; ";
}

const std::string ALL = "zelfrun onall node1.zelf.test,node3.zelf.test,node2.zelf.test '' ";
const std::string INSTALLED = ALL + "execchcommand verifyinstallation";
const std::string REQUESTED = INSTALLED + "\nzelfrun onall node2.zelf.test '' execchcommand verifybackend\n" +
                              ALL + "zelfversion2\nzelfmonc callhome addGroup g node2.zelf.test ";
const std::string MEMBERS = " node1.zelf.test,node2.zelf.test,node3.zelf.test";
const std::string CLASSES =
    "\n" + FETCH + "\nzelfcrclass CALLHOME_SERVERS -N\nzelfcrclass CALLHOME_CLIENTS -N";

const std::string DELETED = "zelfmonc callhome deleteGroup g";
const std::string SECOND_LINE = "echo gone; echo '" + std::string(36, 'x');

const std::string AUTO = FETCH + "\nzelfautoconfig";
const std::string DEPLOYING = "zelfhome: [I] deploy configuration.\n";
const std::string OLD_GROUP = group("old", "node1", "node1", "5.0");
const std::string OLD_CLASSES = "\n" + FETCH + "\nzelfchclass CALLHOME_SERVERS replace -N node1.zelf.test\n" +
                                "zelfcrclass CALLHOME_CLIENTS -N node1.zelf.test\n" + FETCH;
const std::string DELETED_CLASS =
    "\n" + FETCH + "\nzelfdelclass CALLHOME_SERVERS\nzelfcrclass CALLHOME_CLIENTS -N\n" + FETCH;
const std::string DEPLOY = "\nzelfrun onall node2,node3 '' execzelfhome_2 '\"";

} // namespace

const Run GROUP_RUNS[] = {
    {"group add g node2 --node node3,1,node3.zelf.test",
     answers("zelfrun", "") + answers("zelfmonc", "echo created"), success("created\n"),
     REQUESTED + "5.0.2.0" + MEMBERS + CLASSES},
    // An answer of five fields has no version; a node that does not answer has none, either.
    {"group add g node2 --node node3,1",
     answers("zelfrun", "[ $4 != zelfversion2 ] || { echo 'node2.zelf.test:  a:b:c:d:5.0'; exit; }") +
         answers("zelfmonc", "echo exists; exit 5"),
     Result{5, "", "exists\n"}, REQUESTED + "0.0.0.0" + MEMBERS},
    {"group add g node2 --node node3,1",
     answers("zelfrun", "[ $4 != zelfversion2 ] || exit 7") + answers("zelfmonc", "exit 5"),
     Result{5, "", ""}, REQUESTED + "0.0.0.0" + MEMBERS},
    {"group add g node2 --node node3,1",
     answers("zelfrun", "echo garbage; echo 'node1.zelf.test: callhome installed = yes'\n"
                        "echo 'node2.zelf.test:  callhome installed = no'\n"
                        "echo 'node3.zelf.test:  callhome installed = yes'; exit 3"),
     failed("No call home packages installed on the following nodes: node1.zelf.test, node2.zelf.test"),
     INSTALLED},
    // Only the server has to reach the outside.
    {"group add g node2 --node 2,1",
     answers("zelfrun",
             "[ $5 != verifybackend ] || { echo 'node2.zelf.test:  uplink available = failed rc=1'\n"
             "echo 'node1.zelf.test:  uplink available = passed rc=0'; exit; }"),
     failed("The call home node has no connectivity to the uplink endpoint\n"
            "Please check the settings for it and proxy settings if used."),
     "zelfrun onall node1.zelf.test,node2.zelf.test '' execchcommand verifyinstallation\n"
     "zelfrun onall node2.zelf.test '' execchcommand verifybackend"},

    {"group delete g",
     answers("zelfmonc", SECOND_LINE + "node2.zelf.test node3.zelf.test'") + "echo exit 1 >answers/zelfrun",
     success("Successfully deleted\n"),
     DELETED + "\nzelfrun onall node2.zelf.test,node3.zelf.test '' execchcommand chlocaldisable " +
         "/opt/zelf/data/callhome/etc/UPLmain.properties" + CLASSES},
    {"group delete g", answers("zelfmonc", SECOND_LINE + "'"), success("Successfully deleted\n"),
     DELETED + CLASSES},
    {"group delete g", answers("zelfmonc", "echo gone"), success("Successfully deleted\n"),
     DELETED + CLASSES},
    {"group delete g", answers("zelfmonc", "echo gone; exit 2"), Result{2, "", "gone\n"}, DELETED},

    {"group auto --server node2",
     configured(OLD_GROUP, "customer-name = O'Neil 50%\nweekly = enabled\n") +
         listed("node1\\nnode2\\n", "node1\\nnode2\\nnode3\\n"),
     success(DEPLOYING + "Success\n"),
     AUTO + " --server node2.zelf.test" + OLD_CLASSES + DEPLOY +
         "info change %2D%2Dcustomer%2Dname O%27Neil%2050%25\"'" + DEPLOY + "proxy disable\"'" + DEPLOY +
         "schedule add %2D%2Dtask WEEKLY\"'"},
    // With --force every server gets them.
    {"group auto --force", configured(OLD_GROUP) + listed("node1\\n", "node1\\nnode2\\n"),
     success(DEPLOYING + "Success\n"),
     "zelfautoconfig --force" + OLD_CLASSES +
         "\nzelfrun onall node1,node2 '' execzelfhome_2 '\"proxy disable\"'"},
    // A level out of range must not leave an error number behind: the first write would take it for its own.
    {"group auto --ENABLE",
     "sed -i /:node3:/s/:1900:/:99999999999999999999:/ $GEN/zelfsdr; " + listed("node1\\n", "") +
         answers("zelfautoconfig", "grep -qx 'enabled = true' /opt/zelf/ccr/_callhomeconfig && exit 3"),
     Result{3, "", "Failed\n"}, "zelfccr fput _callhomeconfig /var/zelf/tmp/_callhomeconfig\n" + AUTO},
    // The copy of the list is the list as it was read.
    {"group auto",
     listed("node1\\nnode4\\nnobody\\n", "node2\\nnode3\\n") +
         answers("zelfautoconfig", "cmp /var/zelf/gen/nodeFiles/zelfall.rel /var/zelf/tmp/zelfall.rel"),
     success(DEPLOYING + "Success\n\nAdditional messages:\nSome nodes do not have min release level 1600\n"
                         "Number of nodes exclude from processing: 2\n"),
     AUTO + DELETED_CLASS + DEPLOY + "proxy disable\"'"},
    {"group auto", listed("node4\\n", ""),
     failed("Terminate execution.", "No nodes available with min release level 1600"), ""},
    {"group auto", "", failed("Terminate execution.", "No nodes available with min release level 1600"), ""},
    // "-h" within a name counts as well.
    {"group auto --server node-h", "sed -i s/node2/node-h/g $GEN/zelfsdr; " + listed("node1\\n", "node1\\n"),
     success("Success\n"), AUTO + " --server node-h.zelf.test"},
    // No file of servers: said to be a success, with status 1.
    {"group auto", listed("node1\\n", "") + "rm $GEN/nodeFiles/user*", failed("Success"),
     AUTO + CLASSES + "\n" + FETCH},
    // The dispatch fails: later commands are not tried.
    {"group auto",
     configured("", "enabled = true\n") + listed("node1\\n", "node2\\nnode3\\n") +
         "echo exit 1 >answers/zelfrun",
     Result{1, DEPLOYING, "Problem with zelfrun/zelfremote. See /var/zelf/tmp/zelfhome.log for details\n"},
     AUTO + DELETED_CLASS + DEPLOY + "capability enable\"'"},
};

TEST_F(Installation, GroupsAskProbeRequestAndDeploy)
{
    inEach(GROUP_RUNS, expectRun);
    answer("zelfmonc", "echo gone; echo short");
    EXPECT_TRUE(endedByRangeError(runTool("group delete g")));
}

TEST_F(Installation, GroupListShowsNamesAndHolesInThem)
{
    EXPECT_EQ(runTool("group list"), failed("No callhome group defined."));
    configure(topology(group("west", "node1", "node1,node2", "") +
                       "<callhomeGroup>\nname = odd\ncallhomeChildNodes = node2.zelf.test,,gone\n"
                       "</callhomeGroup>\n<callhomeGroup>\nname = lost\n</callhomeGroup>\n"));
    EXPECT_EQ(runTool("group list"), success("callHomeGroup   callHomeNode   callHomeChildNodes    \n"
                                             "--------------- -------------- --------------------- \n"
                                             "lost            ------         ------                \n"
                                             "odd             ------         node2,------,------   \n"
                                             "west            node1          node1,node2           \n"));
    EXPECT_EQ(split(runTool("group ls --LONG -Y").out, '\n').back(),
              "zelfhome:groupLs:0:1:::west:node1.zelf.test:node1.zelf.test,node2.zelf.test:");
}
