// The call-home configuration in memory, and this node's place in it.
#include "fixture.h"

#include <random>

#include "cli/cmdtable.h"
#include "cli/dispatcher.h"
#include "commands/zlcallhome_excute.h"

namespace {

const std::string TWO_GROUPS = R"(<callhomeTopology>
    <callhomeGroup>
        callhomeChildNodes = node1.zelf.test,node2.zelf.test
        callhomeNode = node2.zelf.test
        name = a
    </callhomeGroup>
    <callhomeGroup>
        callhomeChildNodes = node1.zelf.test,,node3.zelf.test
        callhomeNode = node4.zelf.test
        masterReleaseVersion = 4.2.3.6
        name = b
    </callhomeGroup>
</callhomeTopology>
customer-name = The Name
email = x@y
)";

// What a start needs; the CCR's file is TMP "ccr._callhomeconfig".
class ZlCallhomeTest : public ZelfTest {
protected:
    void SetUp() override
    {
        ZelfTest::SetUp();
        for (const char* tool : {"callhomeutils.pl", "zelfctl", "zelfmonc"}) {
            install(tool, "");
        }
        install("zelfccr",
                "case $1 in fget) cp /var/zelf/tmp/ccr.$2 $3 ;; fput) cp $3 /var/zelf/tmp/ccr.$2 ;; esac");
        setConfigFile(TWO_GROUPS);
        callhome = &makeCallhome({"info", "change"});
    }

    static void setConfigFile(const std::string& text) { writeFile(TMP + "ccr._callhomeconfig", text); }

    ZlCallhome* callhome = nullptr;
};

} // namespace

TEST_F(ZlCallhomeTest, ChangesInMemoryAndWritesTheWholeFileBack)
{
    callhome->config = {{"a", {{"k1", "1"}, {"k2", "2"}, {"k3", "3"}}}, {"b", {{"k", "v"}}}};
    callhome->setConfig({"a", {{"k1", "new"}, {"k2", ""}, {"none", ""}, {"k4", "4"}}});
    callhome->setConfig({"b", {}});
    callhome->setConfig({"c", {{"k", ""}}}); // a new section is stored as it is
    EXPECT_EQ(callhome->config, (std::map<std::string, ZlCallhome::Section>{
                                    {"a", {{"k1", "new"}, {"k3", "3"}, {"k4", "4"}}}, {"c", {{"k", ""}}}}));
    callhome->config.clear(); // reads the file first
    callhome->setConfig({"global", {{"email", ""}, {"enabled", "true"}}});
    std::ostringstream text;
    callhome->getConfig(text);
    EXPECT_EQ(text.str(), TWO_GROUPS.substr(0, TWO_GROUPS.find("email")) + "enabled = true\n");
    install("zelfccr", "exit 1");
    expectEnd([this] { callhome->writeConfig(); }, 1, "", "Failed\n");
}

TEST_F(ZlCallhomeTest, CommandsThatRecreateASection)
{
    const std::pair<const char*, const char*> cases[] = {
        {"customer-name = A B\nemail = unknown\ncountry-code = DE\ndaily = enabled\nweekly = disabled\n"
         "enabled = true\nproxy-port = 80\nproxy-location = host\nproxy-enabled = true\n"
         "proxy-auth-enabled = true\nname = g\ndisabled = x\n",
         "capability enable,info change --country-code DE --customer-name A B,"
         "proxy change --proxy-location host --proxy-port 80,proxy enable --with-proxy-auth,"
         "schedule add --task DAILY,schedule delete --task WEEKLY"},
        {"enabled = no\nproxy-enabled = true\n", "capability disable,proxy enable"},
        {"proxy-auth-enabled = true\n", "proxy disable"}};
    for (const auto& [settings, commands] : cases) {
        setConfigFile(settings);
        std::set<Words> commandSet = {{"old"}};
        EXPECT_EQ(callhome->configSectionToCmds("global", &commandSet, true), 1);
        Words lines;
        for (const Words& words : commandSet) {
            lines.push_back(containerToString(words, " "));
        }
        EXPECT_EQ(containerToString(lines, ","), commands);
    }
}

TEST_F(ZlCallhomeTest, AllOptionsStandInTheUsage)
{
    for (const ZlCmd& command : callhome->cmds) {
        std::string subject = command.getSubject();
        testing::internal::CaptureStderr();
        processCmd(nullptr, subject.data(), cmdTable, false); // without a verb: the usage
        const std::string usage = testing::internal::GetCapturedStderr();
        for (const ZlOption& option : command.getOptions()) {
            std::string name = option.getName();
            toLower(name);
            EXPECT_TRUE(name[0] == '#' || usage.find(name) != std::string::npos) << usage << name;
        }
    }
}

TEST_F(ZlCallhomeTest, WhatIsWrittenIsReadBack)
{
    std::mt19937 random(1);
    const auto word = [&random] {
        std::string text = "x";
        for (size_t length = random() % 9; text.size() < length;) {
            text += "aZ09<>/-_.,:;%'\"$\\#\t "[random() % 21];
        }
        return text + "y";
    };
    for (int round = 0; round < 20; ++round) {
        std::map<std::string, ZlCallhome::Section> expected = {{"global", {}}};
        for (size_t groups = random() % 5; expected.size() <= groups;) {
            const std::string name = word();
            expected[name] = {{"name", name}, {word(), word()}};
            expected["global"].emplace(word(), word());
        }
        callhome->config = expected;
        ASSERT_EQ(callhome->writeConfig(), 0);
        callhome->parseConfig();
        ASSERT_EQ(callhome->config, expected) << contentOf(TMP + "ccr._callhomeconfig");
    }
}

TEST_F(ZlCallhomeTest, ThePlaceOfThisNodeIsReadAnewAndThenUsedAsItStands)
{
    EXPECT_EQ(callhome->callhomeChilds, (Names{"", "node1.zelf.test", "node2.zelf.test", "node3.zelf.test"}));
    EXPECT_EQ(callhome->callhomeNodes, (Names{"node2.zelf.test", "node4.zelf.test"}));
    EXPECT_EQ(callhome->groupName + callhome->getCallhomeNode(), "bnode4.zelf.test");
    setConfigFile("");
    EXPECT_TRUE(isOldMaster());
    EXPECT_TRUE(callhome->getCallhomeChilds().empty());
    EXPECT_FALSE(isOldMaster()); // outside every group no master is old
    callhome->callhomeNodes = {"node1.zelf.test"};
    EXPECT_TRUE(isOldMaster());
}
