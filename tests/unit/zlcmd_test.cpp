// Commands and options: declaration, comparison, and the check of values and whole lines.
#include "fixture.h"

namespace {

struct Option {
    std::string name;
    ZlCmd::valueType type;
    std::string token = "";
    bool required = false;
};

int work()
{
    return 0;
}

class ZlCmdTest : public ZelfTest {
protected:
    ZlCmd command(const std::vector<Option>& options)
    {
        ZlCmd cmd(&cli, "sub", "do", "", usage, nullptr, 1600);
        for (const auto& [name, type, token, required] : options) {
            cmd(name, type, required, token, nullptr, 0);
        }
        return cmd;
    }

    std::string validated(const ZlCmd& cmd, const Words& line)
    {
        cli.cmdOptions = line;
        EXPECT_TRUE(cmd.validate(cli.shellCmd, cli.verb, cli.cmdOptions));
        return cli.getCmdOptions();
    }

    TestCli& cli = makeCli({"sub", "do"});
};

} // namespace

TEST_F(ZlCmdTest, BoundariesOfEachType)
{
    setCluster({member(1, "n1 - long1", 1900, "MX"), member(2, "n2 - long2")});
    const std::tuple<ZlCmd::valueType, const char*, Words, Words> cases[] = {
        // type, token, good values, bad values
        {ZlCmd::DECIMAL, "", {"1.0"}, {"a.b"}},
        {ZlCmd::ALPHA, "", {"aZ"}, {"a1"}},
        {ZlCmd::IP, "", {"999.1.2.-3"}, {"10.0.0", "1.2.3.4.5", "1.2.3.x", "1.02.3.4"}},
        {ZlCmd::EMAIL, "", {"a@", "a@b c"}, {"", "a", "@a", "a@b@c"}},
        {ZlCmd::COUNTRY_CODE, "", {"AZ", "ZA"}, {"D", "De", "DEU", "D1"}},
        {ZlCmd::TOKEN_OPTION, "A | B", {"", "a", "B"}, {"C", "A | B"}},
        {ZlCmd::TOKEN_AS_TYPE, "INT", {"5"}, {"x", "1.5"}},
        {ZlCmd::TOKEN_AS_TYPE, "DECIMAL", {"1.5"}, {"x.y"}},
        {ZlCmd::TOKEN_AS_TYPE, "ALPHA", {"x"}, {"5"}},
        {ZlCmd::TOKEN_AS_TYPE, "INT | word", {}, {"5", "word"}},
        {ZlCmd::EXCLUSIV_CHAR, "a | b", {"", "xyz"}, {"xa", "b", "x y", "|"}},
        {ZlCmd::CES_NODE, "", {"n1"}, {"n1,n2", "n3"}}};
    for (auto [type, token, good, bad] : cases) {
        ZlOption option(&cli, "--x", type, false, token, nullptr, 0);
        for (std::string& arg : good) {
            EXPECT_TRUE(option.checkArgType(arg)) << type << " '" << arg << "'";
        }
        for (std::string& arg : bad) {
            EXPECT_FALSE(option.checkArgType(arg)) << type << " '" << arg << "'";
        }
    }
    cli.setParserResultBit(PARSER_TOKEN_CASE);
    EXPECT_FALSE(ZlOption(&cli, "--x", ZlCmd::TOKEN, false, "DAILY", nullptr, 0).verifyToken("daily"));
}

TEST_F(ZlCmdTest, DeclarationOfOptionsAndPositionals)
{
    ZlCmd cmd = command({{"", ZlCmd::TOKEN, "A | B", true},
                         {"-x", ZlCmd::NO}, // no two dashes: a positional
                         {"--b | --a", ZlCmd::INT, "", true},
                         {"--flag", ZlCmd::NO}});
    cmd("GroupName", ZlCmd::INT, false, "", work, 1700);
    EXPECT_EQ(cmd.allNames(),
              "sub - do: #0# member of {A | B} #1# ANY argument #2# INTEGER --a INTEGER --b INTEGER --flag");
    for (const ZlOption& option : cmd.getOptions()) {
        const bool own = option.getName() == "#2#"; // the others take what the command has
        EXPECT_EQ(option.getNodeLevel(), own ? 1700U : 1600U);
        EXPECT_EQ(option.getCmdFuncP(), own ? work : nullptr);
    }
}

TEST_F(ZlCmdTest, DeclarationsThatContradictThemselves)
{
    ZlCmd cmd = command({{"--x", ZlCmd::NO}});
    const std::tuple<Option, const char*, const char*> cases[] = {
        {{"--y | --x", ZlCmd::NO}, "addMapping", "Verb --x already replaced!"},
        {{"n", ZlCmd::ANY, "A | B"}, "operator()", "possitional parameter >n< cannot have token >A | B<"},
        {{"", ZlCmd::NO, "A"}, "operator() check type of token", "A token must not have type ZlCMD::NO"}};
    for (const auto& [option, place, fault] : cases) {
        expectFailure([&, o = option] { cmd(o.name, o.type, false, o.token, nullptr, 0); },
                      std::string("Program error at  ZlCmd::") + place, fault);
    }
    expectFailure([&] { cmd.reset("sub", "do", "helper", work, usage, 0); },
                  "helper script and function command is specified or non of them is specified.\nUsage",
                  "invalid code");
}

TEST_F(ZlCmdTest, HelpAndTheLackOfAVerbEndTheValidation)
{
    ZlCmd cmd(&cli, "sub", "do", "", usage, nullptr, 0);
    std::string verb;
    EXPECT_EXIT(cmd.validate(cli.shellCmd, verb, cli.cmdOptions), testing::ExitedWithCode(1),
                "^zelfhome sub: Missing arguments. \nUsage\n$");
    cli.setParserResultBit(PARSER_HELP);
    cli.setRemoteExecution(true);
    EXPECT_EXIT(validated(cmd, {}), testing::ExitedWithCode(1),
                "^'zelfhome sub do' does not has any argument that ask for help.\nUsage\n");
    cmd("--help", ZlCmd::NO, false, "", nullptr, 0);
    EXPECT_EQ(validated(cmd, {"x"}), "--help");
    EXPECT_FALSE(cli.doRemoteExecution());
    cmd("sub", "do", "echo helper", nullptr, 0);
    expectEnd([&] { cmd.validate(cli.shellCmd, verb = "--help", cli.cmdOptions); }, 1, "helper\n", "");
}

TEST_F(ZlCmdTest, ALineIsTakenOrRefusedForItsFirstFault)
{
    const ZlCmd closed = command({{"", ZlCmd::INT, "", true},
                                  {"", ZlCmd::TOKEN, "A | B"},
                                  {"--may", ZlCmd::TOKEN_OPTION, "A | B", true},
                                  {"--int", ZlCmd::INT},
                                  {"--flag", ZlCmd::NO}});
    const ZlCmd open = command({{"", ZlCmd::INT}, {"", ZlCmd::ANY_INFINITE}, {"--any", ZlCmd::ANY}});
    const std::tuple<const ZlCmd*, std::string, std::string> cases[] = {
        {&closed, "--flag 5 --may", ""},
        {&closed, "5 --may a --int 5 B", ""},
        {&closed, "5 --may --int", ""}, // passed over
        {&closed, "5 --flag", "^Missing arguments. \nUsage\n$"},
        {&closed, "5 b c", "^Invalid argument: 'c'\nUsage\n$"},
        {&closed, "5 --int", "^Missing value. Option --int needs a value of type: INTEGER\nUsage\n$"},
        {&closed, "--may 5", "^zelfhome sub: Invalid value: '5'\nUsage\n"},
        {&open, "5 x --any --any y --no z", ""},
        {&open, "x", "^zelfhome sub: Invalid value: 'x'"}};
    for (const auto& [cmd, text, fault] : cases) {
        const Words line = split(text, " ");
        if (fault.empty()) {
            EXPECT_EQ(validated(*cmd, line), text);
        } else {
            EXPECT_EXIT(validated(*cmd, line), testing::ExitedWithCode(1), fault);
        }
    }
    EXPECT_TRUE(cli.functions.empty());
}

TEST_F(ZlCmdTest, WhatValidationLeavesForOtherCommands)
{
    ZlCmd cmd = command({});
    cmd("sub", "do", work, usage, 0);
    expectFailure([&] { validated(cmd, {"x"}); }, "'zelfhome sub do' does not allow any arguments.\nUsage",
                  "Invalid argument: 'x'");
    cmd.setFunctionMode(ZlFunction::MODE_SINGLE_ON_NODE, "lock");
    EXPECT_EQ(validated(cmd, {}), "");
    cmd("id", ZlCmd::INT, true, "", nullptr, 0);
    cmd("--flag", ZlCmd::NO, false, "", nullptr, 0);
    EXPECT_EQ(validated(cmd, {"7", "--flag"}), "7 --flag");
    cmd("sub", "do", work, nullptr, 0);
    cmd.disableValidation();
    EXPECT_EQ(validated(cmd, {"08", "?"}), "08 ?");
    ASSERT_EQ(cli.functions.size(), 3U);
    for (const auto& [place, id] : {std::pair{0, "0"}, {1, "7"}, {2, "8"}}) { // each refused for its id
        writeFile("/var/zelf/ces/lock", std::string("x:1:n,1,success,") + id + "\n");
        EXPECT_EQ(printed([&, place = place] { EXPECT_EQ(cli.functions[place].execute(), 1); }).substr(0, 14),
                  "Lock request r");
    }
    expectFailure([&] { cmd("--x", ZlCmd::NO, false, "", nullptr, 0); },
                  "Program error at  ZlCmd::operator()",
                  "Adding options is not allowed if validation is disabled.");
}

TEST_F(ZlCmdTest, WhatPassesIsMappedInTheOrderOfTheKeys)
{
    ZlCmd cmd = command({{"", ZlCmd::ANY_INFINITE}});
    for (const auto& [from, to] : {std::pair{"b", "c"}, {"a", "b"}, {"c", "a"}}) {
        cmd.addMapping(from, to);
    }
    cmd.addVerbMapping("do", "make");
    cmd.addVerbMapping("make", "built");
    cmd.addVerbMapping("other", "never");
    cmd.addVerbToCmdMapping("built", "script");
    cmd.addVerbToCmdMapping("do", "other");
    cmd.setChildAsDeamon(true);
    cmd.displayAsTable();
    EXPECT_EQ(validated(cmd, {}), "");
    EXPECT_EQ(cli.getParserBits(), 1024U);
    cli.verb = "do";
    cmd.displayAsList();
    EXPECT_EQ(validated(cmd, {"a", "ab", "c"}), "a ab a");
    EXPECT_EQ(cli.verb + cli.getShellCmd(), "builtscript");
    EXPECT_EQ(ZlErrorService::controlFlags, 2U);
    EXPECT_EQ(cli.getParserBits(), 1024U + 2048U);

    using Add = void (ZlCmd::*)(const std::string&, const std::string&);
    const std::tuple<Add, const char*, const char*, const char*> again[] = {
        {&ZlCmd::addMapping, "addMapping", "a", "a already replaced"},
        {&ZlCmd::addVerbMapping, "addVerbMapping", "do", "do already replaced"},
        {&ZlCmd::addVerbToCmdMapping, "addVerbToCmdMapping", "do", "do already mapped"}};
    for (const auto& [add, name, from, fault] : again) {
        expectFailure([&, add = add, from = from] { (cmd.*add)(from, "x"); },
                      std::string("Program error at  ZlCmd::") + name, fault);
    }
}

TEST_F(ZlCmdTest, OrderOfCommandsIsDescendingButForSharedAlternatives)
{
    const std::tuple<const char*, const char*, const char*, bool> cases[] = {
        // the verb of "b", subject and verb of another one, whether "b" goes ahead of it
        {"x", "a", "x", true},  {"x", "c", "x", false},     {"y", "b", "x", true},     {"x", "b", "y", false},
        {"x", "b", "yy", true}, {"x | y", "b", "y", false}, {"y", "b", "x | y", false}};
    for (const auto& [verb, otherSubject, otherVerb, isLess] : cases) {
        const ZlCmd cmd(&cli, "b", verb, "", nullptr, nullptr, 0);
        EXPECT_EQ(cmd < ZlCmd(&cli, otherSubject, otherVerb, "", nullptr, nullptr, 0), isLess) << verb;
    }
}
