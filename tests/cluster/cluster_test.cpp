// The tool on the nodes of a cluster: what crosses from one node to another arrives as it was typed.
#include <gtest/gtest.h>

#include "lab.h"

namespace {

// Text that some shell on the way would like to change.
const std::vector<std::string> AWKWARD_NAMES = {
    "O'Neil Ltd", "two  blanks", "50% \"off\"", "$HOME `id` $(id)", "a&b|c>d<e(f)", "~#!{}[]", "Zürich",
};

TEST(Cluster, ASettingMadeOnOneNodeIsReadOnEveryOther)
{
    for (const std::string& name : AWKWARD_NAMES) {
        seed("<callhomeTopology>\n</callhomeTopology>\n");
        const Outcome change =
            onNode("node2", "zelfhome info change --email a@b.c --customer-name " + quoted(name));
        EXPECT_EQ(change.status, 0) << name << change.err;
        EXPECT_EQ(change.out, "Call home customer-name has been set to " + name +
                                  "\nCall home email has been set to a@b.c\n");
        const Outcome list = onNode("node3", "zelfhome info list");
        EXPECT_NE(list.out.find("global   " + name + "   "), std::string::npos) << list.out;
        EXPECT_EQ(list.err, "");
    }
}

TEST(Cluster, ARefusedValueChangesNothing)
{
    seed(oneGroup("5.0.2.0"));
    const std::string before = onNode("node1", "cat /opt/zelf/lab/ccr/files/_callhomeconfig").out;
    for (const char* arguments : {"--customer-name a=b", "--customer-name 'x <callhomeGroup>'", "--email x",
                                  "--customer-name a --country-code de", "--customer-name 'a;b'"}) {
        const Outcome change = onNode("node2", std::string("zelfhome info change ") + arguments);
        EXPECT_EQ(change.status, 1) << arguments;
        EXPECT_EQ(change.out, "") << arguments;
        EXPECT_NE(change.err, "") << arguments;
    }
    EXPECT_EQ(onNode("node1", "cat /opt/zelf/lab/ccr/files/_callhomeconfig").out, before);
}

TEST(Cluster, ChangesOfTwoNodesAtOnceAreBothKept)
{
    seed(oneGroup("5.0.2.0"));
    const std::string tool = ZELFHOME_SOURCE_DIR "/lab/zelflab exec ";
    runShell(tool + "node1 zelfhome info change --customer-name one & " + tool +
             "node2 zelfhome info change --customer-id two & " + tool +
             "node3 zelfhome info change --country-code DE & wait");
    EXPECT_NE(onNode("node1", "zelfhome info list -Y").out.find(":global:one:two::DE:"), std::string::npos);
}

TEST(Cluster, AChildForwardsToItsServerAndHandsBackWhatItSays)
{
    seed(oneGroup("5.0.2.0"));
    const std::string command = "zelfhome status list --task SENDFILE --numbers 3 -Y";
    const Outcome onServer = onNode("node1", command);
    const Outcome onChild = onNode("node2", command);
    EXPECT_EQ(onChild.status, onServer.status);
    EXPECT_EQ(onChild.out, onServer.out);
    EXPECT_EQ(onChild.err, onServer.err);
    const std::string encoded = "status\\ list\\ %2D%2Dtask\\ SENDFILE\\ %2D%2Dnumbers\\ 3\\ %2DY";
    const std::string calls = lab("calls").out;
    EXPECT_NE(calls.find("node2 zelfrun on1 node1.zelf.test execzelfhome_2 \\\"" + encoded + "\\\"\n"),
              std::string::npos)
        << calls;
    EXPECT_NE(calls.find("node1 zelfremote execzelfhome_2 " + encoded + "\n"), std::string::npos) << calls;
}

TEST(Cluster, TheServerAndNodesOutsideGroupsForwardNothing)
{
    struct Case {
        const char* node;
        const char* masterVersion;
    };
    for (const auto& [node, version] :
         {Case{"node1", "5.0.2.0"}, Case{"node3", "5.0.2.0"}, Case{"node2", "4.2.3.6"}}) {
        seed(oneGroup(version));
        const std::string before = lab("calls").out;
        onNode(node, "zelfhome status list");
        const std::string calls = lab("calls").out.substr(before.size());
        EXPECT_EQ(calls.find("zelfrun"), std::string::npos) << node << " " << version << "\n" << calls;
    }
}

TEST(Cluster, AServerThatCannotBeReachedIsAFailureAndNoHang)
{
    seed(oneGroup("5.0.2.0"));
    ASSERT_EQ(lab("stop-ssh node1").status, 0);
    const Outcome list = onNode("node2", "timeout 20 zelfhome status list");
    EXPECT_EQ(list.status, 255);
    EXPECT_NE(list.err.find("connect to host node1.zelf.test"), std::string::npos) << list.err;
    ASSERT_EQ(lab("start-ssh node1").status, 0);
}

TEST(Cluster, AServiceThatIsDownIsSaidSo)
{
    onNode("node3", "touch /var/zelf/zelfmon.down");
    const Outcome list = onNode("node3", "zelfhome info list");
    EXPECT_EQ(list.status, 1);
    EXPECT_EQ(list.err, "Call Home requires the monitoring service to run, however it is down and does not "
                        "respond.\nPlease restart the monitoring service using: zelfmoncontrol restart\n");
    onNode("node3", "rm /var/zelf/zelfmon.down");
}

} // namespace
