// What a node definition means, and the command that changes a node class.
#include "fixture.h"

#include <algorithm>
#include <filesystem>
#include <random>

#include "cluster/zlnodesdefinition.h"

using NodeDefinitionsTest = ZelfTest;

namespace {

const std::string CLASSES = "/var/zelf/gen/nodeFiles/";

} // namespace

TEST_F(NodeDefinitionsTest, ANodeGoesBeforeAFileAndAFileBeforeAClass)
{
    std::filesystem::current_path(TMP);
    Info::controlState = 0;
    const std::string letters = "AaBbCc12 ";
    std::mt19937 random(1);
    const auto pick = [&](size_t from) { return std::string(1, letters[from + random() % (9 - from)]); };
    for (int round = 0; round < 200; ++round) {
        setCluster({member(1, pick(0) + " - long" + pick(0)), member(2, pick(0) + " - long" + pick(0))});
        // What files in this folder, classes of the system and classes of users list: words behind their own
        // name, so that it ends.
        std::map<std::string, Words> lists;
        for (const std::string& prefix : {std::string(), CLASSES + "zelf", CLASSES + "user"}) {
            for (size_t i = 0; i < 8; ++i) {
                const std::string path = prefix + letters[i] + (prefix.empty() ? "" : ".ipa");
                std::filesystem::remove(path);
                if (random() % 3 == 0) {
                    Words& list = lists[path];
                    for (; random() % 3 != 0; list.push_back(pick(i + 1))) {
                    }
                    writeFile(path, containerToString(list, "\n"));
                }
            }
        }
        Names resolved;
        Names unresolved;
        const std::function<void(const std::string&)> expect = [&](const std::string& word) {
            std::string lower = word;
            toLower(lower);
            const std::string& node = Info::toAdminLongName(word);
            const std::string system = CLASSES + "zelf" + lower + ".ipa";
            const std::string path = lists.count(word) != 0     ? word
                                     : lists.count(system) != 0 ? system
                                                                : CLASSES + "user" + lower + ".ipa";
            if (!node.empty()) {
                resolved.insert(node);
            } else if (path != word &&
                       lists[path].empty()) { // an empty class is nothing, unlike an empty file
                unresolved.insert(word);
            } else {
                std::for_each(lists[path].begin(), lists[path].end(), expect);
            }
        };
        const Words words = {pick(0), pick(0), "long" + pick(0), "nosuch", "", pick(0)};
        std::for_each(words.begin(), words.end(), expect);
        const ZlNodesDefinition definition(containerToString(words, ","));
        EXPECT_EQ(definition.getResolved(), resolved) << round;
        EXPECT_EQ(definition.getUnresolved(), unresolved) << round;
    }
    std::filesystem::current_path("/");
}

TEST_F(NodeDefinitionsTest, TheSetsOfTheProcess)
{
    makeCli().resolveNodeDefinition("1,nosuch,2");
    EXPECT_EQ(*Info::allNodesP, *Info::validNodesP);
    Info::defineAllNode(*Info::allNodesP); // itself: nothing happens
    EXPECT_EQ(*Info::validNodesP, (Names{"node1.zelf.test", "node2.zelf.test"}));
    EXPECT_EQ(*Info::invalidNodeDefinitionsP, Names{"nosuch"});
    Info::defineAllNode(*Info::validNodesP->begin()); // an element of a set that is emptied
    EXPECT_EQ(*Info::allNodesP, Names{"node1.zelf.test"});
    EXPECT_TRUE(Info::validNodesP->empty() && Info::invalidNodeDefinitionsP->empty());
    Names none;
    EXPECT_EQ(Info::extractNodes(&none, Info::validNodesP, &none), 1);
    EXPECT_EQ(Info::allNodesP->size(), 1U);
}

TEST_F(NodeDefinitionsTest, FiltersByLevelAndRole)
{
    setCluster({member(1, "n1 - long1", 1600, "MX"), member(2, "n2 - long2", 1900, "M")});
    const Names in = {"1", "n2", "nosuch"};
    Names selected;
    Names rest = {"old"};
    const auto check = [&](const auto& filter, const Names& expected) {
        EXPECT_EQ(Info::filterNodes(filter, in, &selected, &rest), static_cast<int>(expected.size()));
        EXPECT_EQ(selected, expected) << filter;
        rest.merge(selected); // nothing of it is in both
        EXPECT_TRUE(rest == in && selected.empty()) << filter;
    };
    check(1600U, {"1", "n2"});
    check(1601U, {"n2"});
    check(1901U, {});
    check(std::string("X"), {"1"});
    check(std::string("M"), {"1", "n2"});
    check(std::string(), in);
}

TEST_F(NodeDefinitionsTest, ClassCommands)
{
    writeFile(CLASSES + "userthere.rel", "");
    EXPECT_EQ(Info::getNodeClassCmd("There", {"a", "b,c"}),
              "/opt/zelf/bin/zelfchclass There replace -N a,b,c 2>/dev/null");
    EXPECT_EQ(Info::getNodeClassCmd("There", {}), "/opt/zelf/bin/zelfdelclass There 2>/dev/null");
    EXPECT_EQ(Info::getNodeClassCmd("", {"a"}), "");
}
