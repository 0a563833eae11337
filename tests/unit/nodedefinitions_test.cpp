// What a node definition means, and the command that changes a node class.
#include "fixture.h"

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
    for (unsigned seed = 0; seed < 200; ++seed) {
        std::mt19937 random(seed);
        // Words that may be a node, a file in this folder, a class, several of these or nothing. What a file
        // or a class lists comes behind it, so that it ends.
        const auto pick = [&](size_t from) {
            return std::string(1, "AaBbCc12 "[from + random() % (9 - from)]);
        };
        Names lines;
        std::map<std::string, Names> files;
        std::map<std::string, Names> classes;
        for (int i = 0; i < 3; ++i) {
            lines.insert(member(static_cast<int>(random() % 3), pick(0) + " - long" + pick(0)));
        }
        setCluster(lines);
        const auto fill = [&](std::map<std::string, Names>& lists, const std::string& prefix, bool isClass) {
            for (size_t i = 0; i < 8; ++i) {
                std::string word(1, "AaBbCc12"[i]);
                if (random() % 3 != 0 || (isClass && isupper(word[0]) != 0)) {
                    std::filesystem::remove(prefix + word + (isClass ? ".ipa" : ""));
                    continue;
                }
                Names list;
                while (random() % 3 != 0) {
                    list.insert(pick(i + 1));
                }
                std::string text;
                for (const std::string& entry : list) {
                    text += entry + "\n";
                }
                writeFile(prefix + word + (isClass ? ".ipa" : ""), text);
                lists.try_emplace(word, list);
            }
        };
        fill(files, TMP, false);
        fill(classes, CLASSES + "zelf", true); // ahead of the users' classes
        fill(classes, CLASSES + "user", true);

        Names resolved;
        Names unresolved;
        const std::function<void(const std::string&)> expect = [&](const std::string& word) {
            const std::string& node = Info::toAdminLongName(word);
            std::string lower = word;
            toLower(lower);
            const auto& lists = files.count(word) != 0 ? files : classes;
            const auto list = lists.find(files.count(word) != 0 ? word : lower);
            if (!node.empty()) {
                resolved.insert(node);
            } else if (list == lists.end() || (&lists == &classes && list->second.empty())) {
                unresolved.insert(word);
            } else {
                std::for_each(list->second.begin(), list->second.end(), expect);
            }
        };
        const Words words = {pick(0), pick(0), "long" + pick(0), "nosuch", pick(0)};
        std::for_each(words.begin(), words.end(), expect);
        const ZlNodesDefinition definition(containerToString(words, ","));
        EXPECT_EQ(definition.getResolved(), resolved) << seed;
        EXPECT_EQ(definition.getUnresolved(), unresolved) << seed;
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
