// Who the nodes are: their definitions, names and releases, the local node, manager and collector.
#include "fixture.h"

#include <algorithm>
#include <random>
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
    // 18 fields are enough, 17 are not.
    EXPECT_THROW(Info::getNodesMap({good.substr(0, good.rfind(':'))}), std::out_of_range);

    ZlClusterNode four;
    four.setNumber(4);
    EXPECT_TRUE(four < seven && !(seven < four) && !(seven < seven));
    EXPECT_TRUE(seven < 7 && !(four < 7)); // an equality, and the next a difference
    EXPECT_TRUE(seven < std::string("other") && !(seven < std::string("dl7")));
    EXPECT_TRUE(seven.equal(7) && four.equal(4) && seven.equal(seven) && !seven.equal(four));
}

TEST_F(ZlClusterInfoTest, FieldsOfANode)
{
    using Node = ZlClusterNode;
    ZlClusterNode node;
    node.setLevel("1800x");
    node.setNumber("-7x");
    node.setRelease("r");
    node.setDaemonShortName("ds");
    node.setDaemonLongName("dl");
    node.setAdminShortName("as");
    node.setAdminLongName("al");
    node.setDaemonIP("ip");
    node.setOtherNodeRoles("Q");
    ZlClusterNode assigned;
    assigned = node;
    for (const Node& same : {node, Node(node), assigned}) {
        std::string all = toString(same.getLevel()) + toString(same.getNumber());
        for (const auto get : {&Node::getRelease, &Node::getDaemonShortName, &Node::getDaemonLongName,
                               &Node::getAdminShortName, &Node::getAdminLongName, &Node::getDaemonIP}) {
            all += " " + (same.*get)();
        }
        EXPECT_EQ(all, "1800-7 r ds dl as al ip");
    }
    EXPECT_EQ(Node(node).getOtherNodeRoles() + assigned.getOtherNodeRoles(), "Q"); // not assigned
}

TEST_F(ZlClusterInfoTest, EveryLookUpIsTheWalkWhateverHappensToTheSet)
{
    Info::controlState = 0;
    Info::NodeSet& nodes = *Info::getClusterNodes();
    std::mt19937 random(1);
    const auto below = [&](size_t limit) { return static_cast<int>(random() % limit); };
    // Few texts, so that each is the name, the address or the number of several nodes.
    const auto text = [&] {
        return Words{"", "n", "n.zelf", "10.0.0.", "0"}[below(5)] + toString(below(30) - 1);
    };
    for (int step = 0; step < 500; ++step) {
        if (below(4) == 0) {
            nodes.clear();
        } else if (below(2) == 0 && nodes.size() != 0) {
            const size_t size = nodes.size();
            nodes.erase(std::next(nodes.begin(), below(size)));
            ASSERT_EQ(nodes.size(), size - 1);
        }
        Names lines;
        for (int i = below(20); i > 0; --i) {
            lines.insert(
                member(below(30) - 1, text() + " " + text() + " " + text() + " " + text() + " " + text()));
        }
        Info::getNodesMap({lines.begin(), lines.end()});
        // More often than is answered without an index.
        for (int i = 0; i < 40; ++i) {
            const std::string name = text();
            const auto isIt = [&](const ZlClusterNode& node) { return node.equal(name); };
            ASSERT_EQ(Info::toNodeIterator(name), std::find_if(nodes.begin(), nodes.end(), isIt)) << name;
        }
    }
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
    // Not for known or empty names, nor when it is switched off. All ways lead to the stored strings.
    EXPECT_EQ(&Info::toAdminLongName("10.0.0.1"), &Info::getLocalNodeName());
    EXPECT_EQ(Info::toAdminShortName("1") + Info::toAdminLongName(""), "node1");
    Info::controlState = 0;
    EXPECT_EQ(Info::toNodeNumber("alias"), 0);
    EXPECT_EQ(calls(), "");
}

TEST_F(ZlClusterInfoTest, ManagerAndCollector)
{
    const std::tuple<std::string, const char*, const char*> replies[] = {
        {"zelfmgr", "echo noise; echo a b c 10.0.0.3 d", "node3.zelf.test"},
        {"zelfmgr", "echo a b c node3 d; echo three words here", ""},
        {"zelfmgr", "echo a b c node3 d; exit 1", ""},
        {"zelfmgr", "true", ""},
        {"zelfccr", "echo 'aa:standby' >$3", "aa"},
        // The last in the set's order.
        {"zelfccr", "printf 'zz:acti\\nve;bb:active;yy:standby;no colon;cc:down' >$3", "zz"},
        {"zelfccr", "exit 7", ""}};
    for (const auto& [program, reply, node] : replies) {
        install(program, reply);
        EXPECT_EQ(program == "zelfmgr" ? Info::getManagerNode() : Info::getCollectorNode(), node) << reply;
    }
    EXPECT_EQ(calls().substr(0, 13), "zelfmgr [-c]\n");
}

TEST_F(ZlClusterInfoTest, ConfigurationFile)
{
    // The first line of a key wins; a line without a blank repeats the pair before it.
    setZelfCfg("first\nkey one two  \nkey three\nword\n  lead x\nempty \n");
    const std::map<std::string, std::string> expected = {{"", ""}, {"key", "one two"}, {"empty", ""}};
    EXPECT_EQ(Info::getZelfCfg(), expected);
    std::filesystem::remove("/var/zelf/gen/zelf.cfg");
    EXPECT_EQ(Info::getZelfCfg(), expected); // read once
    EXPECT_EQ(Info::readZelfCfg(), 1);
    std::filesystem::create_directory("/var/zelf/gen/zelf.cfg"); // there, but not to be read
    EXPECT_EQ(Info::readZelfCfg(), 1);
    std::filesystem::remove("/var/zelf/gen/zelf.cfg");
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
    nodeLevel_t level = 7;
    std::string version = "old";
    for (const auto& [line, expected] : {std::pair{"other 1900 5.0", "1old7"},
                                         {"minReleaseLevel 1900 5.0 x", "10"},
                                         {"minReleaseLevel 1900 5.0.2.0", "05.0.2.01900"}}) {
        setZelfCfg(std::string("myNodeConfigNumber 4\n") + line + "\n");
        const std::string result = toString(cli.getClusterMinReleaseLevel(&level, &version));
        EXPECT_EQ(result + version + toString(level), expected);
    }
    EXPECT_EQ(cli.getNodeReleaseVersion() + toString(cli.getNodeReleaseLevel()), "4.1.1.01500");
    cli.setMinReleaseLevel(1600);
    EXPECT_TRUE(cli.ensureMinReleaseLevel("node1", 1900) && cli.ensureMinReleaseLevel("1", 0));
    EXPECT_FALSE(cli.ensureMinReleaseLevel("4", 0) || cli.ensureMinReleaseLevel("nobody", 1));
}

TEST(ZelfVersion, SixOperatorsOnOneComparison)
{
    const std::string gate = "4.2.3.7";
    // The left one's parts count.
    const std::pair<const char*, const char*> cases[] = {{"4.1.9.9", "100110"},   {"", "100110"},
                                                         {"4.2.3-9.6", "100110"}, {"4.2.3.7", "010101"},
                                                         {"4.10", "010101"},      {"4", "010101"}};
    for (const auto& [text, expected] : cases) {
        const auto six = [a = ZelfVersion(text)](const auto& b) {
            return toString(a < b) + toString(a > b) + toString(a == b) + toString(a != b) +
                   toString(a <= b) + toString(a >= b);
        };
        EXPECT_EQ(six(gate), expected) << text;
        EXPECT_EQ(six(ZelfVersion(gate)), expected) << text;
    }
}
