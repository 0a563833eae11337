// What a node definition means, and the command that changes a node class.
#include "fixture.h"

#include "cluster/zlnodesdefinition.h"

using NodeDefinitionsTest = ZelfTest;

namespace {

const std::string CLASSES = "/var/zelf/gen/nodeFiles/";

} // namespace

TEST_F(NodeDefinitionsTest, ANodeGoesBeforeAFileAndAFileBeforeAClass)
{
    std::filesystem::current_path(TMP);
    setCluster({member(1, "a - long1"), member(2, "b - long2")});
    const std::pair<std::string, std::string> files[] = {{"a", "b"},
                                                         {"f", "b\nf2\n"},
                                                         {"f2", "C\nnosuch"},
                                                         {"empty", ""},
                                                         {CLASSES + "zelff.ipa", "a"},
                                                         {CLASSES + "zelfc.ipa", "a\nu"},
                                                         {CLASSES + "userc.ipa", "b"},
                                                         {CLASSES + "useru.ipa", "long2"},
                                                         {CLASSES + "zelfnone.ipa", ""}};
    for (const auto& [path, text] : files) {
        writeFile(path, text);
    }
    const std::tuple<const char*, Names, Names> cases[] = {
        // words, resolved, unresolved
        {"a", {"long1"}, {}},
        {"long2,1", {"long1", "long2"}, {}},
        {"f", {"long1", "long2"}, {"nosuch"}},
        {"c", {"long1", "long2"}, {}},
        {"U", {"long2"}, {}},
        {"empty,b,", {"long2"}, {""}},
        {"none", {}, {"none"}}}; // an empty class is nothing, unlike an empty file
    for (const auto& [words, resolved, unresolved] : cases) {
        const ZlNodesDefinition definition(words);
        EXPECT_EQ(definition.getResolved(), resolved) << words;
        EXPECT_EQ(definition.getUnresolved(), unresolved) << words;
    }
    std::filesystem::current_path("/");
}

TEST_F(NodeDefinitionsTest, TheSetsOfTheProcess)
{
    const TestCli& cli = makeCli({"s", "v", "-N1", "-N", "nosuch", "-xYIN2"});
    EXPECT_EQ(cli.repeatedRemoteOptions, (Words{"-N", "-N"}));
    EXPECT_EQ(cli.getParserBits(), 4U + 16U + 32U + 64U);
    EXPECT_EQ(*Info::allNodesP, *Info::validNodesP);
    Info::defineAllNode(*Info::allNodesP); // itself: nothing happens
    EXPECT_EQ(*Info::validNodesP, (Names{"node1.zelf.test", "node2.zelf.test"}));
    EXPECT_EQ(*Info::invalidNodeDefinitionsP, Names{"nosuch"});
    Info::defineAllNode(*Info::validNodesP->begin()); // an element of a set that is emptied
    EXPECT_EQ(*Info::allNodesP, Names{"node1.zelf.test"});
    EXPECT_TRUE(Info::validNodesP->empty() && Info::invalidNodeDefinitionsP->empty());
    *Info::validNodesP = *Info::invalidNodeDefinitionsP = {"x"};
    Info::defineAllNode(Names{"a"});
    EXPECT_EQ(*Info::allNodesP, Names{"a"});
    EXPECT_TRUE(Info::validNodesP->empty() && Info::invalidNodeDefinitionsP->empty());
}

TEST_F(NodeDefinitionsTest, FiltersByLevelAndRole)
{
    setCluster({member(1, "n1 - long1", 1600, "MX"), member(2, "n2 - long2", 1900, "M")});
    const Names in = {"1", "n2", "nosuch"};
    Names selected;
    Names rest = {"old"};
    EXPECT_EQ(Info::filterNodes(1600U, in, &selected, &rest), 2);
    EXPECT_EQ(Info::filterNodes(1601U, in, &selected, &rest), 1);
    EXPECT_TRUE(selected == Names{"n2"} && rest == (Names{"1", "nosuch"}));
    EXPECT_EQ(Info::filterNodes("X", in, &selected, &rest), 1);
    EXPECT_TRUE(selected == Names{"1"} && rest == (Names{"n2", "nosuch"}));
    EXPECT_EQ(Info::filterNodes("", in, &selected, &rest), 3);
    EXPECT_TRUE(selected == in && rest.empty());
    EXPECT_EQ(Info::filterNodes(1600U, in, nullptr, &rest) + Info::filterNodes("X", in, &selected, nullptr),
              0);
    EXPECT_EQ(Info::filterNodes(1600U, rest, &selected, &rest), 0);
}

TEST_F(NodeDefinitionsTest, WithoutASetNothingIsResolved)
{
    Names none;
    writeFile(CLASSES + "zelfc.ipa", "node1");
    EXPECT_EQ(Info::saveNodeDefinition(nullptr, &none) + Info::saveNodeDefinition("x", nullptr), 2);
    EXPECT_EQ(Info::extractNodes(&none, &none, &none), 1);
    EXPECT_EQ(Info::processNodeFile(CLASSES + "zelfc.ipa", nullptr) + Info::processNodeClass("c", nullptr),
              2);
    EXPECT_EQ(Info::getNodeClassCmd("", {"node1"}), "");
}

TEST_F(NodeDefinitionsTest, AClassWithoutNodesIsDeleted)
{
    writeFile(CLASSES + "userthere.rel", "");
    EXPECT_EQ(Info::getNodeClassCmd("There", {}), "/opt/zelf/bin/zelfdelclass There 2>/dev/null");
}
