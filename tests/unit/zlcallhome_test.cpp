// The call-home configuration, this node's place in it, and the requests to the monitoring service.
#include "fixture.h"

#include <sstream>
#include <stdexcept>

#include "commands/zlcallhome_excute.h"
#include "services/zlutils.h"

namespace {

const std::string NO_GROUPS = "<callhomeTopology>\n</callhomeTopology>\n";
const std::string TWO_GROUPS = "<callhomeTopology>\n"
                               "    <callhomeGroup>\n"
                               "        callhomeChildNodes = node1.zelf.test,node2.zelf.test\n"
                               "        callhomeNode = node2.zelf.test\n"
                               "        enabled = true\n"
                               "        masterReleaseVersion = 4.2.3.7\n"
                               "        name = a\n"
                               "    </callhomeGroup>\n"
                               "    <callhomeGroup>\n"
                               "        callhomeChildNodes = node1.zelf.test,,node3.zelf.test\n"
                               "        callhomeNode = node4.zelf.test\n"
                               "        masterReleaseVersion = 4.2.3.6\n"
                               "        name = b\n"
                               "    </callhomeGroup>\n"
                               "</callhomeTopology>\n"
                               "customer-name = The Name\n"
                               "email = x@y\n";

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
        calls();
    }

    static void setConfigFile(const std::string& text) { writeFile(TMP + "ccr._callhomeconfig", text); }

    std::string text() const
    {
        std::ostringstream stream;
        EXPECT_EQ(callhome->getConfig(stream), callhome->config.empty() ? 1U : 0U);
        return stream.str();
    }

    // Gives the commands that recreate a section, one a line.
    std::string commands(const ZlCallhome::Section& keys)
    {
        std::set<Words> cmds = {{"old"}};
        callhome->config["section"] = keys;
        EXPECT_EQ(callhome->configSectionToCmds("section", &cmds, false), 1);
        std::string lines;
        for (const Words& words : cmds) {
            lines += containerToString(words, "|") + "\n";
        }
        return lines;
    }

    ZlCallhome* callhome = nullptr;
};

} // namespace

TEST_F(ZlCallhomeTest, AsksAndChangesInMemoryAndWritesTheWholeFileBack)
{
    setConfigFile(TWO_GROUPS);
    callhome->parseConfig();
    EXPECT_EQ(text(), TWO_GROUPS);
    callhome->config["global"]["void"] = "";
    callhome->config["global"]["proxy"] = "unknown";
    for (const auto& [section, key, answer] : {std::tuple{"a", "enabled", "true1"},
                                               {"b", "enabled", "unknown0"},
                                               {"c", "name", "unknown0"},
                                               {"global", "none", "unknown0"},
                                               {"global", "proxy", "unknown0"},
                                               {"global", "void", "0"}}) {
        EXPECT_EQ(callhome->getConfigAttribute(section, key) +
                      toString(callhome->isConfigAttributeDefinedAndNotEmpty(section, key)),
                  answer);
    }
    callhome->config = {{"a", {{"k1", "1"}, {"k2", "2"}, {"k3", "3"}}}, {"b", {{"k", "v"}}}};
    callhome->setConfig({"a", {{"k1", "new"}, {"k2", ""}, {"none", ""}, {"k4", "4"}}});
    callhome->setConfig({"b", {}});
    callhome->setConfig({"c", {{"k", ""}}}); // a new section is stored as it is
    EXPECT_EQ(callhome->config, (std::map<std::string, ZlCallhome::Section>{
                                    {"a", {{"k1", "new"}, {"k3", "3"}, {"k4", "4"}}}, {"c", {{"k", ""}}}}));
    callhome->config.clear(); // reads the file first
    callhome->setConfig({"global", {{"email", ""}, {"enabled", "true"}}});
    calls();
    EXPECT_EQ(callhome->writeConfig(), 0);
    EXPECT_EQ(calls(), "zelfccr [fput] [_callhomeconfig] [/var/zelf/tmp/_callhomeconfig]\n");
    EXPECT_EQ(contentOf(TMP + "ccr._callhomeconfig"),
              TWO_GROUPS.substr(0, TWO_GROUPS.find("email")) + "enabled = true\n");
    install("zelfccr", "exit 1");
    expectEnd([this] { callhome->writeConfig(); }, 1, "", "Failed\n");
    callhome->config.clear();
    EXPECT_EQ(callhome->writeConfig(), 1);
}

TEST_F(ZlCallhomeTest, RemovesTheFirstOptionOfAName)
{
    for (const auto& [name, ignoreCase, rest] : {std::tuple{"--x", false, "--X a --x"},
                                                 {"--X", true, "a --x --x"},
                                                 {"--XX", true, "--X a --x --x"},
                                                 {"A", false, "--X a --x --x"}}) {
        callhome->cmdOptions = {"--X", "a", "--x", "--x"};
        const int removed = callhome->removeOption(name, ignoreCase);
        EXPECT_EQ(callhome->cmdOptions.size(), 4U - static_cast<size_t>(removed));
        EXPECT_EQ(callhome->getCmdOptions(), rest);
    }
}

TEST_F(ZlCallhomeTest, CommandsThatRecreateASection)
{
    EXPECT_EQ(commands({{"name", "g"}, {"callhomeNode", "n"}, {"callhomeChildNodes", "n"}}),
              "proxy|disable\n");
    EXPECT_EQ(commands({{"customer-name", "A B"},
                        {"email", "unknown"},
                        {"country-code", "DE"},
                        {"daily", "enabled"},
                        {"weekly", "disabled"},
                        {"enabled", "true"},
                        {"proxy-port", "80"},
                        {"proxy-location", "host"},
                        {"proxy-enabled", "true"},
                        {"proxy-auth-enabled", "true"},
                        {"strange", "x"},
                        {"disabled", "x"}}),
              "capability|enable\n"
              "info|change|--country-code|DE|--customer-name|A B\n"
              "proxy|change|--proxy-location|host|--proxy-port|80\n"
              "proxy|enable|--with-proxy-auth\n"
              "schedule|add|--task|DAILY\n"
              "schedule|delete|--task|WEEKLY\n");
    EXPECT_EQ(commands({{"enabled", "no"}, {"proxy-enabled", "true"}}), "capability|disable\nproxy|enable\n");
    EXPECT_EQ(commands({{"proxy-auth-enabled", "true"}}), "proxy|disable\n");
    std::set<Words> cmds = {{"old"}};
    EXPECT_EQ(callhome->configSectionToCmds("none", &cmds, false), 0);
    EXPECT_EQ(callhome->configSectionToCmds("global", nullptr, false), 0);
    setConfigFile("email = x@y");
    EXPECT_EQ(callhome->configSectionToCmds("global", &cmds, true), 1);
    EXPECT_EQ(cmds, (std::set<Words>{{"info", "change", "--email", "x@y"}, {"proxy", "disable"}}));
}

TEST_F(ZlCallhomeTest, TheSetsOfNodesStayUntilTheyAreReadAnew)
{
    setConfigFile(TWO_GROUPS);
    EXPECT_EQ(callhome->isCurrNodeInCallhomeGroup(), 0);
    EXPECT_EQ(callhome->getCallhomeNodes(), (Names{"node2.zelf.test", "node4.zelf.test"}));
    EXPECT_EQ(callhome->getCallhomeChilds(),
              (Names{"", "node1.zelf.test", "node2.zelf.test", "node3.zelf.test"}));
    EXPECT_EQ(callhome->getCallhomeNode() + callhome->groupName, "node4.zelf.testb"); // the last group
    setConfigFile("");
    EXPECT_EQ(callhome->isCurrNodeInCallhomeGroup(), 1);
    EXPECT_TRUE(isOldMaster());
    EXPECT_TRUE(callhome->getCallhomeChilds().empty());
    EXPECT_EQ(callhome->getCallhomeNode() + callhome->groupName, "b");
    EXPECT_FALSE(isOldMaster()); // outside every group no master is old
}

TEST_F(ZlCallhomeTest, RequestsByHelperProgramAndClient)
{
    install("callhomeutils.pl", "exit 6");
    install("tool", "");
    callhome->cmdOptions = {"a b$HOME"};
    EXPECT_EQ(callhome->executeCHcmd("", "", "buffer", nullptr, ""), 6); // no -I: the buffer is not looked at
    EXPECT_EQ(callhome->getCmdOptions(), "'a b$HOME'");                  // the quotes stay
    callhome->cmdOptions = {"x"};
    EXPECT_EQ(callhome->executeCHcmd(" ", " ", nullptr, nullptr, "/opt/zelf/bin/tool"), 0);
    callhome->cmdOptions.clear();
    callhome->executeCHcmd("sub", "do", nullptr, nullptr, ""); // the tool was for one call
    EXPECT_EQ(calls(), "callhomeutils.pl [info] [change] [a b$HOME]\ntool [x]\n"
                       "callhomeutils.pl [sub] [do]\n");
    callhome = &makeCallhome({"info", "change", "-I"});
    calls();
    callhome->executeCHcmd("sub", "do", "group list", nullptr, "");
    EXPECT_EQ(calls(), "callhomeutils.pl [group] [list]\n");

    callhome->cmdOptions = {"--email", "O'N $x", "--customer-id", "\\", "--email", "b'", "--odd"};
    EXPECT_EQ(changeSettingsBasedOnOptions(), 0);
    EXPECT_EQ(calls(), "zelfmonc [callhome] [changeConfig] [customer-id] [\\] [email] [b']\n");
    callhome->cmdOptions = {"-", "x"};
    EXPECT_THROW(changeSettingsBasedOnOptions(), std::out_of_range);
}
