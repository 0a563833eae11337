// What a node specification means, and the command that changes a node class.
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
        for (const auto& [file, words] : {std::pair{"zelfall.ipa", "1\n2\n"},
                                          {"userweb.ipa", "node3\n10.0.0.4"},
                                          {"zelfboth.ipa", "1\n"},
                                          {"userboth.ipa", "2\n"},
                                          {"zelfempty.ipa", ""}}) {
            writeFile(CLASSES + file, words);
        }
        for (const auto& [file, words] : {std::pair{"list", "web\n\nnosuch\n/var/zelf/tmp/list\n"},
                                          {"none", ""},
                                          {"node1", "node2"},
                                          {"all", "node4"}}) {
            writeFile(TMP + file, words);
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
    const std::string n1 = "node1.zelf.test", n2 = "node2.zelf.test", n3 = "node3.zelf.test",
                      n4 = "node4.zelf.test";
    const std::tuple<const char*, Names, Names> cases[] = {
        {"3,node3,10.0.0.3", {n3}, {}},
        {"node1", {n1}, {}}, // a node goes ahead of a file
        {"all", {n4}, {}},   // a file ahead of a class
        {"ALL", {n1, n2}, {}},
        {"Web", {n3, n4}, {}},
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
    Names pending;
    EXPECT_EQ(Info::extractNodes(&pending, Info::validNodesP, Info::invalidNodeDefinitionsP), 1);
    Names other;
    pending = {"3"};
    EXPECT_EQ(Info::extractNodes(&pending, &other, &other), 0);
    EXPECT_EQ(pending.size() + other.size() + Info::allNodesP->size(), 3U);
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
    Names selected;
    Names rest = {"old"};
    for (const auto& [level, expected] :
         {std::pair<nodeLevel_t, Names>{1600, {"1", "n2"}}, {1601, {"n2"}}, {~nodeLevel_t{0}, {}}}) {
        EXPECT_EQ(Info::filterNodes(level, in, &selected, &rest), static_cast<int>(expected.size()));
        EXPECT_EQ(selected, expected) << level;
        EXPECT_EQ(selected.size() + rest.size(), in.size());
    }
    for (const auto& [role, expected] :
         {std::pair<std::string, Names>{"X", {"1"}}, {"M", {"1", "n2"}}, {"", in}, {"Q", {}}}) {
        EXPECT_EQ(Info::filterNodes(role, in, &selected, &rest), static_cast<int>(expected.size()));
        EXPECT_EQ(selected, expected) << role;
        EXPECT_EQ(selected.size() + rest.size(), in.size());
    }
    EXPECT_EQ(Info::filterNodes(1600, in, nullptr, &rest) + Info::filterNodes("M", in, &selected, nullptr),
              0);
    EXPECT_EQ(logged(
                  [&] {
                      Info::filterNodes(1601, {"1", "2"}, &selected, &rest);
                  },
                  true),
              "ZlClusterInfo::filterNodes: result for min release 1601 = 2\n    skipped nodes: 2\n");
}

TEST_F(NodeDefinitionsTest, ClassCommands)
{
    writeFile(CLASSES + "userthere.rel", "");
    EXPECT_EQ(Info::getNodeClassCmd("There", {"a", "b,c"}),
              "/opt/zelf/bin/zelfchclass There replace -N a,b,c 2>/dev/null");
    EXPECT_EQ(Info::getNodeClassCmd("There", {}), "/opt/zelf/bin/zelfdelclass There 2>/dev/null");
    EXPECT_EQ(Info::getNodeClassCmd("web", {"a"}), "/opt/zelf/bin/zelfcrclass web -N a 2>/dev/null");
    EXPECT_EQ(Info::getNodeClassCmd("web", {}), "/opt/zelf/bin/zelfcrclass web -N  2>/dev/null");
    EXPECT_EQ(Info::getNodeClassCmd("", {"a"}), "");
}
