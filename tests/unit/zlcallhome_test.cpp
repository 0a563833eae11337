// The call-home configuration in memory.
#include "fixture.h"

#include <algorithm>
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
    EXPECT_EQ(callhome->setConfig({"a", {{"k1", "new"}, {"k2", ""}, {"none", ""}, {"k4", "4"}}}) +
                  callhome->setConfig({"b", {}}) +
                  callhome->setConfig({"c", {{"k", ""}}}), // a new section is stored as it is
              0);
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
    expectFailure([this] { callhome->writeConfig(); }, "Failed");
    callhome->config.clear();
    EXPECT_EQ(callhome->getConfig(text) + callhome->writeConfig(), 2);
}

TEST_F(ZlCallhomeTest, TheCommandLineInMemory)
{
    callhome->cmdOptions = {"a", "--Opt", "--opt"};
    EXPECT_EQ(callhome->removeOption("--oPt", false), 0);
    EXPECT_EQ(callhome->removeOption("--oPt", true) + callhome->removeOption("--opt", false), 2);
    EXPECT_EQ(callhome->getCmdOptions(), "a");
    callhome->cmdOptions.clear();
    char words[3][5] = {"tool", "info", "list"};
    char* line[] = {words[0], words[1], words[2], nullptr};
    EXPECT_EQ(callhome->parseCmdLine(3, line), 0); // a second time
    EXPECT_TRUE(callhome->functions.empty() && callhome->cmds.size() == 20 &&
                callhome->cmdP->getVerb() == "list | ls");
    EXPECT_EQ(callhome->getCmdLineArgs(), (Words{"info", "list"}));
    callhome->subject = "-h";
    EXPECT_EXIT(callhome->parseCmdLine(1, line), testing::ExitedWithCode(1), "^Usage:");
}

TEST_F(ZlCallhomeTest, TheNodesAreThoseOfTheConfigurationAsItStands)
{
    const auto setGroup = [](const std::string& server, const std::string& childs) {
        setConfigFile("<callhomeTopology>\n<callhomeGroup>\ncallhomeNode = " + server +
                      "\ncallhomeChildNodes = " + childs +
                      "\nname = g\n</callhomeGroup>\n</callhomeTopology>\n");
    };
    setGroup("s", "node1.zelf.test,c");
    EXPECT_EQ(callhome->getCallhomeChilds(), (Names{"c", "node1.zelf.test"}));
    EXPECT_EQ(callhome->getCallhomeNode(), "s");
    setGroup("t", "c");
    EXPECT_TRUE(callhome->getCallhomeNodes() == Names{"t"} && callhome->getCallhomeChilds() == Names{"c"});
    EXPECT_EQ(callhome->getCallhomeNode(), "");
    callhome->executeCHcmd("a", "b", nullptr, nullptr, "/bin/true"); // a program for one call
    EXPECT_EQ(callhome->helperCmd, callhome->defaultHelperCmd);
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
        EXPECT_EQ(callhome->configSectionToCmds("none", &commandSet, true) +
                      callhome->configSectionToCmds("global", nullptr, true),
                  0);
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
        ASSERT_EQ(callhome->parseConfig(), 0);
        ASSERT_EQ(callhome->config, expected) << contentOf(TMP + "ccr._callhomeconfig");
    }
}

TEST_F(ZlCallhomeTest, LinesOfTheGrammarPassAndTheirFirstFaultIsNamed)
{
    const std::map<ZlCmd::valueType, std::string> goodValues = {{ZlCmd::ANY, "any text"},
                                                                {ZlCmd::INT, "-7"},
                                                                {ZlCmd::EMAIL, "a@b"},
                                                                {ZlCmd::COUNTRY_CODE, "DE"},
                                                                {ZlCmd::TICKET_NUMBER, "12345.A1B.000"},
                                                                {ZlCmd::NODE, "2"},
                                                                {ZlCmd::TOKEN, "weekly"}};
    std::mt19937 random(1);
    for (size_t round = 0; round < 5 * callhome->cmds.size(); ++round) {
        const ZlCmd& cmd = callhome->cmds[round % callhome->cmds.size()];
        Words line;
        const auto expectFault = [&](const std::string& word, const std::string& fault) {
            Words faulty = line;
            faulty.insert(faulty.end(), word.empty() ? 0 : 1, word);
            EXPECT_EXIT(cmd.validate(callhome->shellCmd, callhome->verb, faulty), testing::ExitedWithCode(1),
                        fault)
                << cmd.allNames() << ": " << toString(faulty, " ");
        };
        std::vector<ZlOption> options(cmd.getOptions().begin(), cmd.getOptions().end());
        std::shuffle(options.begin(), options.end(), random);
        int place = 0;
        for (const ZlOption& drawn : options) {
            // Positionals keep their order among themselves.
            const bool isNamed = drawn.getName()[0] == '-';
            const ZlOption option =
                isNamed ? drawn
                        : *std::ranges::find(options, "#" + toString(place++) + "#", &ZlOption::getName);
            if (option.isRequired()) {
                expectFault("", "^Missing arguments.");
            } else if (random() % 4 == 0) {
                continue;
            }
            if (isNamed) {
                line.push_back(option.getName());
            }
            if (option.getType() != ZlCmd::NO) {
                if (isNamed) {
                    expectFault("", "^Missing value. Option " + option.getName() + " needs a value");
                }
                if (option.getType() != ZlCmd::ANY) {
                    expectFault("bad", "(Invalid value:|Incorrect option:|Can not resolve) 'bad'");
                }
                line.push_back(goodValues.at(option.getType()));
            }
        }
        expectFault("surplus", "Invalid argument: 'surplus'");
        EXPECT_TRUE(cmd.validate(callhome->shellCmd, callhome->verb, line)) << cmd.allNames();
    }
}
