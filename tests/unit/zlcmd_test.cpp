// Commands and options: declaration, its errors, comparison, and the check of values and whole lines.
#include "fixture.h"

#include "services/zlerrorservice.h"
#include "services/zlutils.h"

namespace {

int work()
{
    return 0;
}

class ZlCmdTest : public ZelfTest {
protected:
    void SetUp() override
    {
        ZelfTest::SetUp();
        cli = &makeCli();
        cli->subject = "sub";
        cli->verb = "do";
        cli->setMinReleaseLevel(1600);
    }

    struct Option {
        std::string name;
        ZlCmd::valueType type;
        std::string token = "";
        bool required = false;
    };

    ZlCmd command(const std::vector<Option>& options)
    {
        ZlCmd cmd(cli, "sub", "do", "", nullptr, nullptr, 0);
        for (const auto& [name, type, token, required] : options) {
            cmd(name, type, required, token, nullptr, 0);
        }
        return cmd;
    }

    // Validates a line of arguments, as the arguments of the command line object.
    Words validated(const ZlCmd& cmd, const Words& args)
    {
        cli->cmdOptions = args;
        EXPECT_TRUE(cmd.validate(cli->shellCmd, cli->verb, cli->cmdOptions));
        return cli->cmdOptions;
    }

    // Expects that a line is refused with this response and additional message.
    void expectRefusal(const ZlCmd& cmd, const Words& args, const std::string& response,
                       const std::string& message = "")
    {
        SCOPED_TRACE(response);
        expectEnd([&] { validated(cmd, args); }, 1, "",
                  response + "\n" + (message.empty() ? "" : "\nAdditional messages:\n" + message + "\n"));
    }

    TestCli* cli = nullptr;
};

} // namespace

TEST_F(ZlCmdTest, BoundariesOfEachType)
{
    setCluster({member(1, "n1 - long1", 1900, "MX"), member(2, "n2 - long2")});
    const std::tuple<ZlCmd::valueType, const char*, Words, Words> cases[] = {
        // type, token, good values, bad values
        {ZlCmd::INT, "", {"0", "-1", "2147483647"}, {"", "05", "+1", "2147483648", "1.0"}},
        {ZlCmd::ALPHA, "", {"", "aZ"}, {"a1", "a b"}},
        {ZlCmd::IP,
         "",
         {"10.0.0.1", "999.1.2.-3"},
         {"", "10.0.0", "10.0.0.1.", "1.2.3.4.5", "1.2.3.x", "1.02.3.4"}},
        {ZlCmd::EMAIL, "", {"a@", "a@b c"}, {"", "a", "@a", "a@b@c", "@"}},
        {ZlCmd::COUNTRY_CODE, "", {"DE", "ZZ"}, {"", "D", "de", "De", "DEU", "D1"}},
        {ZlCmd::TOKEN, "DAILY | b", {"DAILY", "Daily", "B"}, {"", "DAIL", "DAILY | b", "| ", "daily "}},
        {ZlCmd::TOKEN_OPTION, "A | B", {"", "a", "B"}, {"C", "A | B"}},
        {ZlCmd::EXCLUSIV_CHAR, "a | b", {"", "xyz"}, {"xa", "b", "x y", "|"}},
        {ZlCmd::NODE, "", {"1", "n1,n2"}, {"", "n3", "n1,n3", "n1, n2"}},
        {ZlCmd::CES_NODE, "", {"n1"}, {"n2", "n1,n2", "n3"}}};
    for (const auto& [type, token, good, bad] : cases) {
        for (const Words& values : {good, bad}) {
            for (std::string arg : values) {
                EXPECT_EQ(ZlOption(cli, "--x", type, false, token, nullptr, 0).checkArgType(arg),
                          values == good)
                    << type << " {" << token << "} '" << arg << "'";
            }
        }
    }
    // Nodes are rewritten to what they resolve to.
    std::string arg = "n2,1,long1";
    EXPECT_TRUE(ZlOption(cli, "--x", ZlCmd::NODE, false, "", nullptr, 0).checkArgType(arg));
    EXPECT_EQ(arg, "long1,long2");
    cli->setParserResultBit(PARSER_TOKEN_CASE);
    EXPECT_FALSE(ZlOption(cli, "--x", ZlCmd::TOKEN, false, "DAILY", nullptr, 0).verifyToken("daily"));
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
    std::string mandatory;
    for (const ZlOption& option : cmd.getMandatoryOptions()) {
        mandatory += option.getName();
    }
    EXPECT_EQ(mandatory, "#0#--a--b");
    for (const ZlOption& option : cmd.getOptions()) {
        const bool own = option.getName() == "#2#"; // the others take what the command has
        EXPECT_EQ(option.getNodeLevel(), own ? 1700U : 1600U);
        EXPECT_EQ(option.getCmdFuncP(), own ? work : nullptr);
    }
}

TEST_F(ZlCmdTest, TheWalkOverTheArguments)
{
    std::vector<Option> options = {{"", ZlCmd::ANY, "", true},
                                   {"", ZlCmd::NODE},
                                   {"--n", ZlCmd::INT},
                                   {"--opt", ZlCmd::TOKEN_OPTION, "A | B"},
                                   {"--text", ZlCmd::ANY}};
    const ZlCmd cmd = command(options);
    EXPECT_EQ(validated(cmd, {"g", "2", "--n", "-5"}), (Words{"g", "node2.zelf.test", "--n", "-5"}));
    // An optional value does not begin with dashes: such a word is passed over, and what stands behind it is
    // a positional.
    for (const std::string line :
         {"--text --n g", "g --opt b", "g --opt", "--opt --n no", "--opt --unknown g"}) {
        EXPECT_EQ(validated(cmd, split(line, " ")), split(line, " "));
    }
    expectRefusal(cmd, {"--opt", "--n"}, "Missing arguments.");
    expectRefusal(cmd, {"g", "--opt", "x"}, "zelfhome sub: Invalid value: 'x'",
                  "Required argument type: member of {A | B}");
    // The first fault in the order of the line counts, whatever is missing.
    expectRefusal(cmd, {"--n", "--text", "--opt", "y"}, "zelfhome sub: Invalid value: '--text'",
                  "Required argument type: INTEGER");
    options.push_back({"--must", ZlCmd::NO_OR_ANY, "", true});
    EXPECT_EQ(validated(command(options), {"g", "--must"}).size(), 2U);
    expectRefusal(command(options), {"g", "--opt", "--must"}, "Missing arguments.");
}

TEST_F(ZlCmdTest, WhatPassesIsMappedInTheOrderOfTheKeys)
{
    ZlCmd cmd = command({{"", ZlCmd::ANY_INFINITE}});
    for (const auto& [from, to] : {std::pair{"b", "c"}, {"a", "b"}, {"c", "a"}}) {
        cmd.addMapping(from, to);
    }
    cmd.addVerbMapping("do", "make");
    cmd.addVerbMapping("make", "built");
    cmd.addVerbToCmdMapping("built", "script");
    cmd.addVerbToCmdMapping("do", "other");
    cmd.setChildAsDeamon(true);
    cmd.displayAsList();
    EXPECT_EQ(validated(cmd, {"a", "ab", "c"}), (Words{"a", "ab", "a"}));
    EXPECT_EQ(cli->verb + cli->getShellCmd(), "builtscript");
    EXPECT_EQ(ZlErrorService::controlFlags, 2U);
    EXPECT_EQ(cli->getParserBits(), 1024U + 2048U);
}
