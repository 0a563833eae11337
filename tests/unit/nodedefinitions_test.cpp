// What a node definition means, and the command that changes a node class.
#include "fixture.h"

#include <filesystem>

#include "cluster/zlnodesdefinition.h"

using NodeDefinitionsTest = ZelfTest;

namespace {

const std::string CLASSES = "/var/zelf/gen/nodeFiles/";

} // namespace

TEST_F(NodeDefinitionsTest, WordsResolveToNodesFilesAndClasses)
{
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
    const std::string tail = ".zelf.test";
    const std::string n1 = "node1" + tail, n2 = "node2" + tail, n3 = "node3" + tail, n4 = "node4" + tail;
    const std::tuple<const char*, Names, Names> cases[] = {
        {"node1", {n1}, {}}, // a node goes ahead of a file
        {"all", {n4}, {}},   // a file ahead of a class
        {"ALL,Web", {n1, n2, n3, n4}, {}},
        {"both", {n1}, {}},
        {"empty,none", {}, {"empty"}}, // an empty class is nothing, an empty file is a file
        {"1, 2,NODE3,,2", {n1, n2}, {" 2", "NODE3", ""}},
        {"/var/zelf/tmp/list,2", {n2, n3, n4}, {"", "nosuch"}}};
    for (const auto& [text, resolved, unresolved] : cases) {
        const ZlNodesDefinition definition(text);
        EXPECT_EQ(definition.getResolved(), resolved) << text;
        EXPECT_EQ(definition.getUnresolved(), unresolved) << text;
    }
    std::filesystem::current_path("/");
}

TEST_F(NodeDefinitionsTest, TheSetsOfTheProcess)
{
    makeCli().resolveNodeDefinition("1,nosuch,2");
    Info::defineAllNode(*Info::allNodesP); // itself: nothing happens
    EXPECT_EQ(*Info::validNodesP, (Names{"node1.zelf.test", "node2.zelf.test"}));
    EXPECT_EQ(*Info::invalidNodeDefinitionsP, Names{"nosuch"});
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
    for (const auto& [level, expected] : {std::pair{1600U, Names{"1", "n2"}}, {1601U, {"n2"}}, {1901U, {}}}) {
        EXPECT_EQ(Info::filterNodes(level, in, &selected, &rest), static_cast<int>(expected.size()));
        EXPECT_EQ(selected, expected) << level;
        EXPECT_EQ(selected.size() + rest.size(), in.size());
    }
    for (const auto& [role, expected] : {std::pair{"X", Names{"1"}}, {"M", {"1", "n2"}}, {"", in}}) {
        EXPECT_EQ(Info::filterNodes(std::string(role), in, &selected, &rest),
                  static_cast<int>(expected.size()));
        EXPECT_EQ(selected, expected) << role;
        EXPECT_EQ(selected.size() + rest.size(), in.size());
    }
}

TEST_F(NodeDefinitionsTest, ClassCommands)
{
    writeFile(CLASSES + "userthere.rel", "");
    EXPECT_EQ(Info::getNodeClassCmd("There", {"a", "b,c"}),
              "/opt/zelf/bin/zelfchclass There replace -N a,b,c 2>/dev/null");
    EXPECT_EQ(Info::getNodeClassCmd("There", {}), "/opt/zelf/bin/zelfdelclass There 2>/dev/null");
    EXPECT_EQ(Info::getNodeClassCmd("", {"a"}), "");
}
