// Commands and options: declaration, comparison, and the check of values and whole lines.
#include "fixture.h"

namespace {

struct Option {
    std::string name;
    ZlCmd::valueType type;
    std::string token = "";
    bool required = false;
};

class ZlCmdTest : public ZelfTest {
protected:
    ZlCmd command(const std::vector<Option>& options)
    {
        ZlCmd cmd(&cli, "sub", "do", "", nullptr, nullptr, 1600);
        for (const auto& [name, type, token, required] : options) {
            cmd(name, type, required, token, nullptr, 0);
        }
        return cmd;
    }

    // Validates a line of arguments, as the arguments of the command line object.
    std::string validated(const ZlCmd& cmd, const std::string& line)
    {
        cli.cmdOptions = split(line, " ");
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
        {ZlCmd::EXCLUSIV_CHAR, "a | b", {"", "xyz"}, {"xa", "b", "x y", "|"}},
        {ZlCmd::CES_NODE, "", {"n1"}, {"n1,n2", "n3"}}};
    for (const auto& [type, token, good, bad] : cases) {
        for (const Words& values : {good, bad}) {
            for (std::string arg : values) {
                EXPECT_EQ(ZlOption(&cli, "--x", type, false, token, nullptr, 0).checkArgType(arg),
                          values == good)
                    << type << " {" << token << "} '" << arg << "'";
            }
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
    int (*const work)() = [] { return 0; };
    cmd("GroupName", ZlCmd::INT, false, "", work, 1700);
    EXPECT_EQ(cmd.allNames(),
              "sub - do: #0# member of {A | B} #1# ANY argument #2# INTEGER --a INTEGER --b INTEGER --flag");
    for (const ZlOption& option : cmd.getOptions()) {
        const bool own = option.getName() == "#2#"; // the others take what the command has
        EXPECT_EQ(option.getNodeLevel(), own ? 1700U : 1600U);
        EXPECT_EQ(option.getCmdFuncP(), own ? work : nullptr);
    }
}

// The walk over the arguments, where it goes beyond what the tool's own grammar needs.
TEST_F(ZlCmdTest, OptionsWithAnOptionalValue)
{
    std::vector<Option> options = {{"", ZlCmd::ANY, "", true},
                                   {"--n", ZlCmd::INT},
                                   {"--opt", ZlCmd::TOKEN_OPTION, "A | B"},
                                   {"--text", ZlCmd::ANY}};
    const ZlCmd cmd = command(options);
    // An optional value does not begin with dashes: such a word is passed over, and what stands behind it is
    // a positional.
    for (const std::string line : {"--text --n g --n -5", "g --opt b", "g --opt", "--opt --n no"}) {
        EXPECT_EQ(validated(cmd, line), line);
    }
    options.push_back({"--must", ZlCmd::NO_OR_ANY, "", true});
    EXPECT_EQ(validated(command(options), "g --must"), "g --must");
    expectEnd([&] { validated(cmd, "g --opt x"); }, 1, "",
              "zelfhome sub: Invalid value: 'x'\n\nAdditional messages:\n"
              "Required argument type: member of {A | B}\n");
    expectEnd([&] { validated(command(options), "g --opt --must"); }, 1, "", "Missing arguments.\n");
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
    EXPECT_EQ(validated(cmd, "a ab c"), "a ab a");
    EXPECT_EQ(cli.verb + cli.getShellCmd(), "builtscript");
    EXPECT_EQ(ZlErrorService::controlFlags, 2U);
    EXPECT_EQ(cli.getParserBits(), 1024U + 2048U);
}
