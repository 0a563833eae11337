// Who the nodes are: the cluster definition file, the many names of a node, the local node, manager and
// collector, and their releases.
#include "fixture.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>

#include "cluster/zelfversion.h"

using ZlClusterInfoTest = ZelfTest;

TEST_F(ZlClusterInfoTest, MemberLinesAndNodes)
{
    EXPECT_EQ(Info::getNodesMap({}), 1);
    const std::string good = member(7, "d7 10.0.0.7 a7 dl7 as7", 1800, "MX");
    setCluster({good, member(7, "e7 - second"), "test:10_CLUSTER:::7:x", member(12, "d12")});
    ASSERT_EQ(Info::getClusterNodes()->size(), 2U);
    const ZlClusterNode seven = *Info::getClusterNodes()->begin(); // the line that sorts first
    EXPECT_EQ(seven.getRelease() + toString(seven.getLevel()), "5.0.2.01800");
    EXPECT_TRUE(Info::hasNodeRole("as7", "X") && !Info::hasNodeRole("as7", "Q"));
    for (const std::string name : {"d7", "10.0.0.7", "a7", "dl7", "as7", "7"}) {
        EXPECT_TRUE(seven.equal(name) && !seven.equal("0" + name)) << name;
    }
    // 18 fields are enough, 17 are not.
    const std::string tooShort = good.substr(0, good.rfind(':'));
    EXPECT_THROW(Info::getNodesMap({tooShort}), std::out_of_range);
    writeFile("/var/zelf/gen/zelfsdr", good + "\n" + tooShort + "\n");
    EXPECT_THROW(Info::readNodes(), std::out_of_range);

    ZlClusterNode four;
    EXPECT_EQ(four.getLevel(), 0xffffffffU);
    four.setNumber("4x");
    EXPECT_TRUE(four < seven && !(seven < four) && !(seven < seven));
    EXPECT_TRUE(seven < 7 && !(four < 7)); // an equality, and the next a difference
    EXPECT_TRUE(seven < std::string("other") && !(seven < std::string("dl7")));
    EXPECT_TRUE(seven.equal(7) && seven.equal(seven) && !seven.equal(four));
    // Assignment leaves the roles behind, a copy takes them along.
    four.setOtherNodeRoles("Q");
    four = seven;
    EXPECT_EQ(four.getOtherNodeRoles() + ZlClusterNode(seven).getOtherNodeRoles(), "QMX");
    EXPECT_EQ(four.getAdminLongName() + four.getDaemonIP(), "a710.0.0.7");
}

TEST_F(ZlClusterInfoTest, EveryRoadToANodeIsTheWalk)
{
    Info::controlState = 0;
    // Names, addresses and numbers that clash across 60 nodes: each text is the name of several. Numbers
    // twice, in either order and far apart, and lines that are none.
    Words lines = {"test:10_CLUSTER:::3:n1:n2:n3:", "n99", member(5, "a5 10.0.1.5 a5"), member(0, "b8")};
    const auto text = [](int number) { return toString(number % 60 + 1); };
    for (int i = 1; i <= 60; ++i) {
        lines.push_back(member(i, "n" + text(i + 7) + " 10.0.0." + text(i * 3) + " n" + text(i) + ".zelf n" +
                                      text(i + 3) + " " + text(i + 30)));
    }
    lines.insert(lines.end(), {member(20, "z20 10.0.1.20 n61"), member(-1, "c7"), member(62, "z62")});
    replaceAllSubstrg(lines.back(), ":62:", ":062:");
    Words names = {"", "0", "-1", "007", "062", "+3", "n99", "99999999999", "M", "::", "n1:", "a5", "z20"};
    for (int i = 1; i <= 62; ++i) {
        const std::string number = toString(i);
        names.insert(names.end(), {number, "n" + number, "n" + number + ".zelf", "10.0.0." + number});
    }
    const auto answer = [](Info::NodeSet::iterator node) {
        return node == Info::noNode() ? "none" : toString(node->getNumber()) + node->getDaemonShortName();
    };
    setCluster({lines.begin(), lines.end()});
    const Info::NodeSet& nodes = *Info::getClusterNodes();
    const size_t count = nodes.size();
    std::map<std::string, std::string> expected;
    for (const std::string& name : names) {
        const auto isIt = [&](const ZlClusterNode& node) { return node.equal(name); };
        expected[name] = answer(std::find_if(nodes.begin(), nodes.end(), isIt));
        ASSERT_EQ(answer(Info::findNode(name)), expected[name]) << name << " by index";
    }
    // The first questions make the nodes that they ask for. There are more than are worth it; a start for
    // each question has none but these.
    for (const auto& reorder : {std::reverse<Words::iterator>, std::sort<Words::iterator>}) {
        reorder(lines.begin(), lines.end());
        writeFile("/var/zelf/gen/zelfsdr", containerToString(lines, "\n"));
        ASSERT_EQ(Info::readNodes(), 0);
        for (const std::string& name : names) {
            ASSERT_EQ(answer(Info::findNode(name)), expected[name]) << name;
        }
        EXPECT_EQ(nodes.size(), count);
        for (const std::string& name : names) {
            ASSERT_EQ(Info::readNodes(), 0);
            ASSERT_EQ(answer(Info::findNode(name)), expected[name]) << name;
            ASSERT_EQ(answer(Info::findNode(name)), expected[name]) << name << " again";
            EXPECT_EQ(nodes.size(), expected[name] == "none" ? 0U : 1U) << name;
        }
    }
    // A node that is made stays where it is when the others follow, and when nodes are added.
    const std::string& stored = Info::toAdminLongName("40");
    EXPECT_EQ(Info::getNodesMap({member(9, "n1"), member(99, "n99")}), 0);
    EXPECT_EQ(nodes.size(), count + 1);
    EXPECT_EQ(&Info::toAdminLongName("40"), &stored);
    EXPECT_EQ(Info::toNodeNumber("n99"), 99);
    setCluster({member(9, "n1")}); // the index follows
    EXPECT_EQ(Info::toNodeNumber("n1") + Info::toNodeNumber("n2"), 9);
}

TEST_F(ZlClusterInfoTest, AsksTheHostToolForUnknownNames)
{
    const std::pair<const char*, int> cases[] = {{"echo node2.zelf.test node2 192.168.0.1", 2},
                                                 {"echo other other 10.0.0.3 more", 3},
                                                 // The first line; the first node in number order.
                                                 {"echo node3 x node2 x; echo node1 node1 node1 x", 2},
                                                 {"echo other other 192.168.0.1", 0},
                                                 {"echo node2 node2", 0},
                                                 {"echo node2 node2 10.0.0.2; exit 1", 0},
                                                 {"true", 0}};
    for (const auto& [reply, number] : cases) {
        install("zelfadm", reply);
        EXPECT_EQ(Info::toNodeNumber("alias"), number) << reply;
        EXPECT_EQ(calls(), "zelfadm [host] [alias]\n");
    }
    // Known or empty names are not asked for, and nothing when it is switched off. All ways lead to the
    // stored strings.
    EXPECT_EQ(&Info::toAdminLongName("10.0.0.1"), &Info::getLocalNodeName());
    EXPECT_EQ(Info::toAdminShortName("1") + Info::toAdminLongName(""), "node1");
    Info::controlState = 0;
    EXPECT_EQ(Info::toNodeNumber("alias"), 0);
    EXPECT_EQ(calls(), "");
}

TEST_F(ZlClusterInfoTest, ManagerAndCollector)
{
    const std::pair<const char*, const char*> managers[] = {
        {"echo noise; echo a b c 10.0.0.3 d", "node3.zelf.test"},
        {"echo a b c node3 d; echo three words here", ""},
        {"echo a b c node3 d; exit 1", ""},
        {"true", ""}};
    for (const auto& [reply, node] : managers) {
        install("zelfmgr", reply);
        EXPECT_EQ(Info::getManagerNode(), node) << reply;
        EXPECT_EQ(calls(), "zelfmgr [-c]\n");
    }
    service.writeTrace();
    expectIn(contentOf(TMP + "test.log"),
             "::getManagerNode: list nodes manager rc = 1\n    response: a b c node3 d\n\n");
    const std::pair<const char*, const char*> collectors[] = {
        {"echo 'aa:standby;bb:active' >$3", "bb"},
        {"echo 'aa:standby' >$3", "aa"},
        {"printf 'zz:acti\\nve;bb:active;;no colon;cc:down' >$3", "zz"}, // the last in the set's order
        {"exit 149", ""},
        {"exit 7", ""},
        {"rm $3", ""}};
    for (const auto& [reply, node] : collectors) {
        install("zelfccr", reply);
        EXPECT_EQ(Info::getCollectorNode(), node) << reply;
        EXPECT_EQ(calls(), "zelfccr [fget] [collectors] [/var/zelf/tmp/collectors]\n");
    }
}

TEST_F(ZlClusterInfoTest, ConfigurationFile)
{
    // The first line of a key wins; a line without a blank repeats the pair before it.
    setZelfCfg("first\nkey one two  \nkey three\nword\n  lead x\nempty \n");
    const std::map<std::string, std::string> expected = {{"", ""}, {"key", "one two"}, {"empty", ""}};
    EXPECT_EQ(Info::getZelfCfg(), expected);
    std::filesystem::remove("/var/zelf/gen/zelf.cfg");
    EXPECT_EQ(Info::getZelfCfg(), expected); // read once
}

TEST_F(ZlClusterInfoTest, ReleasesOfClusterAndNodes)
{
    install("zelfprod", "case $1 in\n  1600)  result=\"4.2.0\" ;;\n 1700)  result=\"\" ;;\nesac");
    EXPECT_EQ(Info::releaseLevelToName(1600) + Info::releaseLevelToName(1700) +
                  Info::releaseLevelToName(1800),
              "4.2.01800");
    install("zelfprod", "1800)  result=\"5.0\" ;; 1600)  result=\"new\""); // what failed is asked again
    EXPECT_EQ(Info::releaseLevelToName(1800) + Info::releaseLevelToName(1600), "5.04.2.0");

    TestCli& cli = makeCli();
    const std::tuple<const char*, int, const char*> cases[] = {
        // line, result, version and level
        {"minReleaseLevel 1900 5.0.2.0\n", 0, "5.0.2.01900"},
        {"minReleaseLevel 1900\n", 1, "0"},
        {"minReleaseLevel 1900 5.0 x\n", 1, "0"},
        {"other 1900 5.0\n", 1, "old7"}};
    for (const auto& [line, result, expected] : cases) {
        setZelfCfg(std::string("myNodeConfigNumber 4\n") + line);
        nodeLevel_t level = 7;
        std::string version = "old";
        EXPECT_EQ(cli.getClusterMinReleaseLevel(&level, &version), result) << line;
        EXPECT_EQ(version + toString(level), expected);
    }
    EXPECT_EQ(cli.getNodeReleaseVersion() + toString(cli.getNodeReleaseLevel()), "4.1.1.01500");
    cli.setMinReleaseLevel(1600);
    EXPECT_TRUE(cli.ensureMinReleaseLevel("node1", 1900) && cli.ensureMinReleaseLevel("1", 0));
    EXPECT_FALSE(cli.ensureMinReleaseLevel("4", 0) || cli.ensureMinReleaseLevel("nobody", 1));
}

TEST(ZelfVersion, SixOperatorsOnOneComparison)
{
    // Part by part over the left one's parts: versions below the gate, and others.
    const std::string gate = "4.2.3.7";
    for (const auto& [versions, expected] :
         {std::pair{Words{"4.2.3.6", "4.1.9.9", "", "4.2.3-9.6"}, "100110"},
          {{"4.2.3.7", "4.2.3.8", "4.10.0.0", "5", "4"}, "010101"}}) {
        for (const std::string& text : versions) {
            const auto six = [a = ZelfVersion(text)](const auto& b) {
                return toString(a < b) + toString(a > b) + toString(a == b) + toString(a != b) +
                       toString(a <= b) + toString(a >= b);
            };
            EXPECT_EQ(six(gate), expected) << text;
            EXPECT_EQ(six(ZelfVersion(gate)), expected) << text;
        }
    }
}
