// What a node definition means, and the command that changes a node class.
#include "fixture.h"

#include <filesystem>

#include "cluster/zlclusterinfo.h"
#include "cluster/zlnodesdefinition.h"

using Info = ZlClusterInfo;

namespace {

const std::string CLASSES = "/var/zelf/gen/nodeFiles/";

class NodeDefinitionsTest : public ZelfTest {
protected:
    void SetUp() override
    {
        ZelfTest::SetUp();
        const Words files[] = {{CLASSES + "zelfall.ipa", "1\n2\n"},
                               {CLASSES + "userweb.ipa", "node3\n10.0.0.4"},
                               {CLASSES + "zelfboth.ipa", "1\n"},
                               {CLASSES + "userboth.ipa", "2\n"},
                               {CLASSES + "zelfempty.ipa", ""},
                               {TMP + "list", "web\n\nnosuch\n/var/zelf/tmp/list\n"},
                               {TMP + "none", ""},
                               {TMP + "node1", "node2"},
                               {TMP + "all", "node4"}};
        for (const Words& file : files) {
            writeFile(file[0], file[1]);
        }
        std::filesystem::current_path(TMP);
    }
    void TearDown() override
    {
        std::filesystem::current_path("/");
        ZelfTest::TearDown();
    }
};

} // namespace

TEST_F(NodeDefinitionsTest, WordsResolveToNodesFilesAndClasses)
{
    const std::string tail = ".zelf.test";
    const std::string n1 = "node1" + tail, n2 = "node2" + tail, n3 = "node3" + tail, n4 = "node4" + tail;
    const std::tuple<const char*, Names, Names> cases[] = {
        {"node1", {n1}, {}}, // a node goes ahead of a file
        {"all", {n4}, {}},   // a file ahead of a class
        {"ALL,Web", {n1, n2, n3, n4}, {}},
        {"both", {n1}, {}},
        {"empty,none", {}, {"empty"}}, // an empty class is nothing, an empty file is a file
        {"1, 2,NODE3,,2", {n1, n2}, {" 2", "NODE3", ""}},
        {"/var/zelf/tmp/list,2", {n2, n3, n4}, {"", "nosuch"}},
        {"", {}, {""}}};
    for (const auto& [text, resolved, unresolved] : cases) {
        const ZlNodesDefinition definition(text);
        EXPECT_EQ(definition.getResolved(), resolved) << text;
        EXPECT_EQ(definition.getUnresolved(), unresolved) << text;
    }
    EXPECT_TRUE(Info::validNodesP->empty() && Info::allNodesP->empty());
}

TEST_F(NodeDefinitionsTest, TheSetsOfTheProcess)
{
    makeCli().resolveNodeDefinition("1,none,nosuch,2");
    EXPECT_EQ(*Info::validNodesP, (Names{"node1.zelf.test", "node2.zelf.test"}));
    EXPECT_EQ(*Info::allNodesP, *Info::validNodesP);
    EXPECT_EQ(*Info::invalidNodeDefinitionsP, Names{"nosuch"});
    Info::defineAllNode(*Info::allNodesP); // itself: nothing happens
    EXPECT_EQ(Info::validNodesP->size(), 2U);
    Info::defineAllNode(*Info::validNodesP->begin()); // an element of a set that is emptied
    EXPECT_EQ(*Info::allNodesP, Names{"node1.zelf.test"});
    EXPECT_TRUE(Info::validNodesP->empty() && Info::invalidNodeDefinitionsP->empty());
}

TEST_F(NodeDefinitionsTest, FiltersByLevelAndRole)
{
    setCluster({member(1, "n1 - long1", 1600, "MX"), member(2, "n2 - long2", 1900, "M")});
    const Names in = {"1", "n2", "nosuch"};
    const std::tuple<nodeLevel_t, const char*, Names, Names> cases[] = {// level, role, selected by each
                                                                        {1600, "X", {"1", "n2"}, {"1"}},
                                                                        {1601, "M", {"n2"}, {"1", "n2"}},
                                                                        {1901, "", {}, in}};
    for (const auto& [level, role, ofLevel, ofRole] : cases) {
        Names selected;
        Names rest = {"old"};
        EXPECT_EQ(Info::filterNodes(level, in, &selected, &rest), static_cast<int>(ofLevel.size()));
        EXPECT_EQ(selected, ofLevel) << level;
        EXPECT_EQ(selected.size() + rest.size(), in.size());
        EXPECT_EQ(Info::filterNodes(std::string(role), in, &selected, &rest),
                  static_cast<int>(ofRole.size()));
        EXPECT_EQ(selected, ofRole) << role;
        EXPECT_EQ(selected.size() + rest.size(), in.size());
    }
}

TEST_F(NodeDefinitionsTest, ClassCommands)
{
    writeFile(CLASSES + "userthere.rel", "");
    EXPECT_EQ(Info::getNodeClassCmd("There", {"a", "b,c"}),
              "/opt/zelf/bin/zelfchclass There replace -N a,b,c 2>/dev/null");
    EXPECT_EQ(Info::getNodeClassCmd("There", {}), "/opt/zelf/bin/zelfdelclass There 2>/dev/null");
    EXPECT_EQ(Info::getNodeClassCmd("web", {"a"}), "/opt/zelf/bin/zelfcrclass web -N a 2>/dev/null");
    EXPECT_EQ(Info::getNodeClassCmd("", {"a"}), "");
}
