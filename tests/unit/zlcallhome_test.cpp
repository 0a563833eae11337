// The call-home configuration in memory.
#include "fixture.h"

#include <random>

namespace {

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
        setConfigFile("");
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
    const std::string groups = "<callhomeTopology>\n    <callhomeGroup>\n        name = a\n"
                               "    </callhomeGroup>\n</callhomeTopology>\n";
    setConfigFile(groups + "customer-name = The Name\nemail = x@y\n");
    callhome->config.clear(); // reads the file first
    callhome->setConfig({"global", {{"email", ""}, {"enabled", "true"}}});
    std::ostringstream text;
    callhome->getConfig(text);
    EXPECT_EQ(text.str(), groups + "customer-name = The Name\nenabled = true\n");
    install("zelfccr", "exit 1");
    expectEnd([this] { callhome->writeConfig(); }, 1, "", "Failed\n");
    callhome->config.clear();
    EXPECT_EQ(callhome->getConfig(text), 1U);
}

TEST_F(ZlCallhomeTest, TheNodesAreThoseOfTheConfigurationAsItStands)
{
    const std::string group = "<callhomeTopology>\n<callhomeGroup>\ncallhomeNode = s\ncallhomeChildNodes = ";
    setConfigFile(group + "node1.zelf.test,c\nname = g\n</callhomeGroup>\n</callhomeTopology>\n");
    EXPECT_EQ(callhome->getCallhomeChilds(), (Names{"c", "node1.zelf.test"}));
    EXPECT_EQ(callhome->getCallhomeNode(), "s");
    setConfigFile(group + "c\nname = g\n</callhomeGroup>\n</callhomeTopology>\n");
    EXPECT_EQ(callhome->getCallhomeNodes(), Names{"s"});
    EXPECT_EQ(callhome->getCallhomeNode(), "");
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
