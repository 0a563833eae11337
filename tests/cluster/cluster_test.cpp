// The tool on the nodes of a cluster: what crosses from one node to another arrives as it was typed.
#include <gtest/gtest.h>

#include "lab.h"

namespace {

const std::string NO_GROUP = "<callhomeTopology>\n</callhomeTopology>\nenabled = true\n";

// A configuration with one group: node1 the server, node1 and node2 the children.
const std::string ONE_GROUP = R"(<callhomeTopology>
    <callhomeGroup>
        callhomeChildNodes = node1.zelf.test,node2.zelf.test
        callhomeNode = node1.zelf.test
        enabled = true
        masterReleaseVersion = 5.0.2.0
        name = west
    </callhomeGroup>
</callhomeTopology>
)";

bool temporaryFilesOn(const std::string& node)
{
    return onNode(node, "ls /var/zelf/tmp/ | grep -c 'zlTemp\\|zelfrun'").out != "0\n";
}

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

    // Makes `text` the cluster's call-home configuration.
    static void seed(const std::string& text)
    {
        const Outcome done =
            runShell("printf %s " + quoted(text) + " | " ZELFHOME_SOURCE_DIR "/lab/zelflab seed /dev/stdin");
        ASSERT_EQ(done.status, 0) << done.err;
    }
};

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
        const Outcome list = onNode("node3", "zelfhome info list");
        expectIn(list.out, "global   " + name + "   ");
        EXPECT_EQ(list.err, "");
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
    const std::string encoded = "status\\ list\\ %2D%2Dtask\\ SENDFILE\\ %2D%2Dnumbers\\ 3\\ %2DY";
    const std::string calls = lab("calls").out;
    expectIn(calls, "node2 zelfrun on1 node1.zelf.test execzelfhome_2 \\\"" + encoded + "\\\"\n");
    expectIn(calls, "node1 zelfremote execzelfhome_2 " + encoded + "\n");

    // One that cannot be reached is a failure, and no hang.
    ASSERT_EQ(lab("stop-ssh node1").status, 0);
    const Outcome unreached = onNode("node2", "timeout 20 zelfhome status list");
    EXPECT_EQ(unreached.status, 255);
    expectIn(unreached.err, "connect to host node1.zelf.test");
}

TEST_F(Cluster, GroupsAreMadeListedAndDeleted)
{
    EXPECT_EQ(onNode("node2", "zelfhome group add west node1 --node 2,node1").status, 0);
    expectIn(onNode("node3", "zelfhome group list -Y").out, ":west:node1:node1,node2:\n");
    EXPECT_EQ(onNode("node1", "cat /var/zelf/gen/nodeFiles/usercallhome_servers.rel").out,
              "node1.zelf.test\n");

    // A node that is down is named in an addition, and keeps its state in a deletion.
    ASSERT_EQ(lab("stop-ssh node2").status, 0);
    const Outcome add = onNode("node3", "zelfhome group add east node3 --node all");
    EXPECT_EQ(add.status, 1);
    expectIn(add.err, "No call home packages installed on the following nodes: node2.zelf.test\n");
    const Outcome deleted = onNode("node3", "zelfhome group delete west");
    EXPECT_EQ(deleted.status, 0);
    EXPECT_EQ(deleted.out, "Successfully deleted\n");
    const std::string state = "cat /opt/zelf/data/callhome/etc/UPLmain.properties";
    EXPECT_EQ(onNode("node1", state).out, "EnableCallHome=false\n");
    EXPECT_NE(onNode("node2", state).status, 0);
    EXPECT_FALSE(temporaryFilesOn("node3"));
}

TEST_F(Cluster, AutomaticGroupsReachTheNewServers)
{
    onNode("node2", "zelfhome info change --customer-name \"O'Neil & 50%\"");
    const Outcome made = onNode("node2", "zelfhome group auto --enable --server node3");
    EXPECT_EQ(made.status, 0) << made.out << made.err;
    expectIn(made.out, "zelfhome: [I] deploy configuration.\nSuccess\n");
    expectIn(lab("calls").out, "node3 zelfmonc callhome changeConfig customer-name O\\'Neil\\ \\&\\ 50%");

    // A new server that cannot be reached.
    seed(NO_GROUP);
    ASSERT_EQ(lab("stop-ssh node3").status, 0);
    const Outcome unreached = onNode("node2", "zelfhome group auto --server node3");
    EXPECT_EQ(unreached.status, 1);
    expectIn(unreached.err, "Problem with zelfrun/zelfremote. See /var/zelf/tmp/zelfhome.log for details\n");
    EXPECT_FALSE(temporaryFilesOn("node2"));
}

TEST_F(Cluster, AFileArrivesWholeFromChildAndServer)
{
    seed(ONE_GROUP);
    onNode("node1", "echo 1000 >/opt/zelf/lab/chunksize");
    for (const char* node : {"node1", "node2"}) {
        onNode(node, "head -c 3500 /dev/urandom >/var/zelf/tmp/core");
        const Outcome sent =
            onNode(node, "zelfhome run SendFile --file /var/zelf/tmp/core --pmr 12345.ABC.000");
        ASSERT_EQ(sent.status, 0) << sent.err;
        const std::string job = sent.out.substr(sent.out.find("Job ID: ") + 8, 1);
        const std::string store = "/opt/zelf/lab/support/12345.ABC.000." + job;
        onNode("node1", until("[ \"$(stat -c %s " + store + ")\" = 3500 ] && grep -q '|success|.*|" + job +
                              "|' /var/zelf/tmp/callhome/progress/*sendpmrdata"));
        EXPECT_EQ(onNode(node, "cmp /var/zelf/tmp/core " + store).err, "") << node;
        expectIn(onNode("node2", "zelfhome status list -Y").out, ":success:0:" + job + ":");
        EXPECT_EQ(onNode(node, "ls /var/zelf/tmp/dump").out, "") << "no chunk stays on " << node;
        EXPECT_EQ(onNode("node1", "ls /var/zelf/tmp/dump").out, "");
    }
}

} // namespace
