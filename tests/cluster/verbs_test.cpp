// Groups and the file send, between nodes.
#include <gtest/gtest.h>

#include <string>

#include "lab.h"

namespace {

const std::string EMPTY = "<callhomeTopology>\n</callhomeTopology>\nenabled = true\n";

bool temporaryFilesOn(const std::string& node)
{
    return onNode(node, "ls /var/zelf/tmp/ | grep -c 'zlTemp\\|zelfrun'").out != "0\n";
}

class SupportedCluster : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(lab("start-support").status, 0);
        seed(EMPTY);
    }
    void TearDown() override
    {
        for (const char* node : {"node1", "node2", "node3"}) {
            lab(std::string("start-ssh ") + node);
        }
        lab("stop-support");
    }
};

TEST_F(SupportedCluster, GroupsAreMadeListedAndDeleted)
{
    const Outcome add = onNode("node2", "zelfhome group add 'w e' node1 --node node2");
    EXPECT_NE(add.status, 0) << "a blank in a name makes two words of it on the way to the service";
    EXPECT_EQ(onNode("node2", "zelfhome group add west node1 --node 2,node1").status, 0);
    EXPECT_EQ(onNode("node3", "zelfhome group list -Y").out,
              "zelfhome:groupList:HEADER:version:reserved:reserved:callHomeGroup:callHomeNode:"
              "callHomeChildNodes:\nzelfhome:groupList:0:1:::west:node1:node1,node2:\n");
    EXPECT_EQ(onNode("node1", "cat /var/zelf/gen/nodeFiles/usercallhome_servers.rel").out,
              "node1.zelf.test\n");

    ASSERT_EQ(lab("stop-ssh node2").status, 0);
    const Outcome deleted = onNode("node3", "zelfhome group delete west");
    EXPECT_EQ(deleted.status, 0);
    EXPECT_EQ(deleted.out, "Successfully deleted\n");
    const std::string switchedOff = "cat /opt/zelf/data/callhome/etc/UPLmain.properties";
    EXPECT_EQ(onNode("node1", switchedOff).out, "EnableCallHome=false\n");
    EXPECT_NE(onNode("node2", switchedOff).status, 0) << "it could not be reached";
    EXPECT_FALSE(temporaryFilesOn("node3"));
}

TEST_F(SupportedCluster, ANodeThatIsDownIsNamed)
{
    ASSERT_EQ(lab("stop-ssh node3").status, 0);
    const Outcome add = onNode("node2", "zelfhome group add west node1 --node all");
    EXPECT_EQ(add.status, 1);
    EXPECT_NE(add.err.find("No call home packages installed on the following nodes: node3.zelf.test\n"),
              std::string::npos)
        << add.err;
    EXPECT_FALSE(temporaryFilesOn("node2"));
    EXPECT_EQ(onNode("node2", "zelfhome group list").err, "No callhome group defined.\n");
}

TEST_F(SupportedCluster, AutomaticGroupsReachTheNewServers)
{
    onNode("node2", "zelfhome info change --customer-name \"O'Neil & 50%\"");
    const Outcome made = onNode("node2", "zelfhome group auto --enable --server node3");
    EXPECT_EQ(made.status, 0) << made.out << made.err;
    EXPECT_NE(made.out.find("zelfhome: [I] deploy configuration.\nSuccess\n"), std::string::npos) << made.out;
    const std::string calls = lab("calls").out;
    EXPECT_NE(calls.find("node3 zelfmonc callhome changeConfig customer-name O\\'Neil\\ \\&\\ 50%"),
              std::string::npos)
        << calls;
    EXPECT_FALSE(temporaryFilesOn("node2"));

    // A new server that cannot be reached.
    seed(EMPTY);
    ASSERT_EQ(lab("stop-ssh node3").status, 0);
    const Outcome failed = onNode("node2", "zelfhome group auto --server node3");
    EXPECT_EQ(failed.status, 1);
    EXPECT_NE(
        failed.err.find("Problem with zelfrun/zelfremote. See /var/zelf/tmp/zelfhome.log for details\n"),
        std::string::npos)
        << failed.err;
    EXPECT_FALSE(temporaryFilesOn("node2"));
}

TEST_F(SupportedCluster, AFileArrivesWholeFromChildAndServer)
{
    seed(oneGroup("5.0.2.0"));
    onNode("node1", "echo 1000 >/opt/zelf/lab/chunksize");
    for (const char* node : {"node1", "node2"}) {
        onNode(node, "head -c 3500 /dev/urandom >/var/zelf/tmp/core");
        const Outcome sent =
            onNode(node, "zelfhome run SendFile --file /var/zelf/tmp/core --pmr 12345.ABC.000");
        ASSERT_EQ(sent.status, 0) << sent.err;
        const std::string job = sent.out.substr(sent.out.find("Job ID: ") + 8, 1);
        const std::string store = "/opt/zelf/lab/support/12345.ABC.000." + job;
        onNode("node1", "for i in $(seq 150); do [ \"$(stat -c %s " + store +
                            ")\" = 3500 ] && "
                            "grep -q '|success|.*|" +
                            job +
                            "|' /var/zelf/tmp/callhome/progress/*sendpmrdata && break; sleep 0.1; done");
        EXPECT_EQ(onNode(node, "cmp /var/zelf/tmp/core " + store).err, "") << node;
        EXPECT_NE(onNode("node2", "zelfhome status list -Y").out.find(":success:0:" + job + ":"),
                  std::string::npos);
        EXPECT_EQ(onNode(node, "ls /var/zelf/tmp/dump").out, "") << "no chunk stays on " << node;
        EXPECT_EQ(onNode("node1", "ls /var/zelf/tmp/dump").out, "");
    }
}

} // namespace
