// The tool on the nodes of a cluster: what crosses from one node to another arrives as it was typed.
#include <utility>

#include <gtest/gtest.h>

#include "lab.h"

namespace {

const std::string NO_GROUP = "printf '<callhomeTopology>\\n</callhomeTopology>\\nenabled = true\\n'";
// The one of the lab's page: node1 the server, node1 and node2 the children.
const std::string ONE_GROUP =
    "sed -n 's/^    //; /^<callhomeTopology>/,/^weekly/p' " ZELFHOME_SOURCE_DIR "/lab/README.md";

void expectIn(const std::string& text, const std::string& part)
{
    EXPECT_NE(text.find(part), std::string::npos) << "not in\n" << text;
}

class Cluster : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(lab("start-support").status, 0);
        seed(NO_GROUP);
    }
    void TearDown() override
    {
        for (const std::string node : {"node1", "node2", "node3"}) {
            lab("start-ssh " + node);
        }
        lab("stop-support");
    }

    // Makes the output of a command the cluster's call-home configuration.
    static void seed(const std::string& command)
    {
        const Outcome done = runShell(command + " | " + ZELFLAB + " seed /dev/stdin");
        ASSERT_EQ(done.status, 0) << done.err;
    }
};

TEST_F(Cluster, ALabThatIsUpIsNobodyElses)
{
    const std::string folder = runShell("printf %s $ZELFLAB_DIR").out;
    const std::string other = "export ZELFLAB_DIR=/tmp/zelfhome-test-other; ";
    const std::pair<std::string, std::string> refusals[] = {
        {ZELFLAB + " up", "the lab is up already, in " + folder + " (see "},
        {other + ZELFLAB + " up", "another lab is up, in " + folder + ": only one can be on this machine\n"},
        {other + ZELFLAB + " status; " + ZELFLAB + " down >&2; false", "on this machine: " + folder},
    };
    for (const auto& [command, words] : refusals) {
        const Outcome refused = runShell("export ZELFLAB_WAIT=0; " + command);
        EXPECT_EQ(refused.status, 1) << command;
        expectIn(refused.err, words);
    }
    ASSERT_EQ(lab("stop-ssh node2").status, 0);
    expectIn(lab("status").out, "node1     127.77.0.1       ssh is up\n"
                                "node2     127.77.0.2       ssh is stopped\n"
                                "node3     127.77.0.3       ssh is up\n"
                                "support   127.77.255.1     service is up\n");
    const std::string typed = "printf 'zelfhome gr\\tli\\t-Y\\nexit\\n' | ";
    expectIn(runShell(typed + "script -qec '" + ZELFLAB + " shell node1' /dev/null").out,
             "zelfhome group list -Y");
}

TEST_F(Cluster, ASettingMadeOnOneNodeIsReadOnEveryOther)
{
    // Text that some shell on the way would like to change.
    for (const std::string name :
         {"O'Neil  Ltd", "50% \"off\"", "$HOME `id` $(id)", "a&b|c>d<e(f)", "~#!{}[]", "Zürich"}) {
        const Outcome change =
            onNode("node2", "zelfhome info change --email a@b.c --customer-name " + quoted(name));
        EXPECT_EQ(change.status, 0) << name << change.err;
        EXPECT_EQ(change.out, "Call home customer-name has been set to " + name +
                                  "\nCall home email has been set to a@b.c\n");
        expectIn(onNode("node3", "zelfhome info list").out, "global   " + name + "   ");
    }
}

TEST_F(Cluster, AChildForwardsToItsServerAndHandsBackWhatItSays)
{
    seed(ONE_GROUP);
    const std::string command = "zelfhome status list --task SENDFILE --numbers 3 -Y";
    const Outcome onServer = onNode("node1", command);
    const Outcome onChild = onNode("node2", command);
    EXPECT_EQ(onChild.status, onServer.status);
    EXPECT_EQ(onChild.out, onServer.out);
    EXPECT_EQ(onChild.err, onServer.err);
    expectIn(lab("calls").out, "node1 zelfremote execzelfhome_2 "
                               "status\\ list\\ %2D%2Dtask\\ SENDFILE\\ %2D%2Dnumbers\\ 3\\ %2DY\n");

    // One that cannot be reached is a failure, and no hang.
    ASSERT_EQ(lab("stop-ssh node1").status, 0);
    const Outcome unreached = onNode("node2", "timeout 20 zelfhome status list");
    EXPECT_EQ(unreached.status, 255);
    expectIn(unreached.err, "connect to host node1.zelf.test");
}

TEST_F(Cluster, GroupsReachTheNodesThatAreUp)
{
    EXPECT_EQ(onNode("node2", "zelfhome group add west node1 --node 2,node1").status, 0);
    EXPECT_EQ(onNode("node1", "cat /var/zelf/gen/nodeFiles/usercallhome_servers.rel").out,
              "node1.zelf.test\n");
    // A node that is down is named in an addition, and keeps its state in a deletion.
    ASSERT_EQ(lab("stop-ssh node2").status, 0);
    const Outcome add = onNode("node3", "zelfhome group add east node3 --node all");
    EXPECT_EQ(add.status, 1);
    expectIn(add.err, "No call home packages installed on the following nodes: node2.zelf.test\n");
    EXPECT_EQ(onNode("node3", "zelfhome group delete west").out, "Successfully deleted\n");
    const std::string state = "cat /opt/zelf/data/callhome/etc/UPLmain.properties";
    EXPECT_EQ(onNode("node1", state).out, "EnableCallHome=false\n");
    EXPECT_NE(onNode("node2", state).status, 0);

    onNode("node2", "zelfhome info change --customer-name \"O'Neil & 50%\"");
    EXPECT_EQ(onNode("node1", "zelfhome group auto --enable --server node3").status, 0);
    expectIn(lab("calls").out, "node3 zelfmonc callhome changeConfig customer-name O\\'Neil\\ \\&\\ 50%");
    seed(NO_GROUP);
    ASSERT_EQ(lab("stop-ssh node3").status, 0);
    const Outcome unreached = onNode("node2", "zelfhome group auto --server node3");
    EXPECT_EQ(unreached.status, 1);
    expectIn(unreached.err, "Problem with zelfrun/zelfremote. See /var/zelf/tmp/zelfhome.log for details\n");
    for (const std::string node : {"node1", "node2", "node3"}) {
        EXPECT_EQ(onNode(node, "ls /var/zelf/tmp/ | grep 'zlTemp\\|zelfrun'").out, "") << node;
    }
}

TEST_F(Cluster, AFileArrivesWhole)
{
    seed(ONE_GROUP);
    onNode("node1", "echo 1000 >/opt/zelf/lab/chunksize");
    onNode("node2", "head -c 3500 /dev/urandom >/var/zelf/tmp/core");
    const Outcome sent =
        onNode("node2", "zelfhome run SendFile --file /var/zelf/tmp/core --pmr 12345.ABC.000");
    ASSERT_EQ(sent.status, 0) << sent.err;
    onNode("node1", until("grep -qs '|success|.*|1|' /var/zelf/tmp/callhome/progress/*sendpmrdata"));
    EXPECT_EQ(onNode("node2", "cmp /var/zelf/tmp/core /opt/zelf/lab/support/12345.ABC.000.1").err, "");
    expectIn(onNode("node2", "zelfhome status list -Y").out, ":success:0:1:");
    for (const std::string node : {"node1", "node2"}) {
        EXPECT_EQ(onNode(node, "ls /var/zelf/tmp/dump").out, "") << "no chunk stays on " << node;
    }
}

} // namespace
