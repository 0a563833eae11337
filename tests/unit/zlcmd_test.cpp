// Commands and options: declaration, its errors, comparison, and the check of values and whole lines.
#include "fixture.h"

#include <sstream>

#include "services/zlerrorservice.h"
#include "services/zlutils.h"

namespace {

int work()
{
    return 0;
}

int otherWork()
{
    return 1;
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

    ZlCmd command(const std::vector<Option>& options, ZlCmd::Function function = nullptr)
    {
        ZlCmd cmd(cli, "", "", "", nullptr, nullptr, 0);
        cmd.setFunctionMode(ZlFunction::MODE_SINGLE_IN_CLUSTER, "task"); // what follows leaves it alone
        cmd("sub", "do", function, nullptr, 0);
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

TEST_F(ZlCmdTest, TypesInWordsAndWhetherTheyTakeAValue)
{
    std::string texts;
    std::string values;
    for (int type = 0; type < 18; ++type) {
        const ZlOption option(cli, "--x", static_cast<ZlCmd::valueType>(type), false, "A | B", nullptr, 0);
        texts += option.getTypeStrg() + "/";
        values += toString(static_cast<int>(option.hasValue()));
    }
    EXPECT_EQ(
        texts,
        "NO argument/ANY argument/ANY arguments/INTEGER/DECIMAL/ALPHA = [a-z][A-Z]/IP number/EMAIL address/"
        "A valid ISO 3166-1 alpha-2 code (A-Z)/member of {A | B}/member of {A | B}/A | B/"
        "Node(s) as ID, short / long name, IP, node class or nodes file./"
        "CES Node(s) as ID, short / long name, IP, node class or nodes file./NO or ANY argument./"
        "string without any char out of {A | B}/A PMR identifier, in the format xxxxx.yyy.zzz or a Case "
        "identifier, in the format TSxxxxxxxxx/UNKNOWN/");
    EXPECT_EQ(values, "022222222122221222");
    std::ostringstream stream;
    stream << ZlOption(cli, "#0#", ZlCmd::ANY, true, "", nullptr, 0) << "/"
           << ZlOption(cli, "--x", ZlCmd::NO, false, "", nullptr, 0);
    EXPECT_EQ(stream.str(), "#0# ANY argument which is required./--x NO argument which is not requiered. ");
}

TEST_F(ZlCmdTest, BoundariesOfEachType)
{
    setCluster({member(1, "n1 - long1", 1900, "MX"), member(2, "n2 - long2")});
    const std::tuple<ZlCmd::valueType, const char*, Words, Words> cases[] = {
        // type, token, good values, bad values
        {ZlCmd::NO, "", {"", "x"}, {}},
        {ZlCmd::ANY, "", {"", "--x"}, {}},
        {ZlCmd::INT, "", {"0", "-1", "2147483647"}, {"", "05", "+1", "2147483648", "1.0"}},
        {ZlCmd::DECIMAL, "", {"1.5", "+5", "-.5"}, {"", "1.", "1.5.5"}},
        {ZlCmd::ALPHA, "", {"", "aZ"}, {"a1", "a b"}},
        {ZlCmd::IP,
         "",
         {"10.0.0.1", "999.1.2.-3"},
         {"", "10.0.0", "10.0.0.1.", "1.2.3.4.5", "1.2.3.x", "1.02.3.4"}},
        {ZlCmd::EMAIL, "", {"a@", "a@b c"}, {"", "a", "@a", "a@b@c", "@"}},
        {ZlCmd::COUNTRY_CODE, "", {"DE", "ZZ"}, {"", "D", "de", "De", "DEU", "D1"}},
        {ZlCmd::TOKEN, "DAILY | b", {"DAILY", "Daily", "B"}, {"", "DAIL", "DAILY | b", "| ", "daily "}},
        {ZlCmd::TOKEN_OPTION, "A | B", {"", "a", "B"}, {"C", "A | B"}},
        {ZlCmd::TOKEN_AS_TYPE, "INT", {"5"}, {"x", ""}},
        {ZlCmd::TOKEN_AS_TYPE, "DECIMAL", {"5.5"}, {"5."}},
        {ZlCmd::TOKEN_AS_TYPE, "ALPHA", {"x"}, {"5"}},
        {ZlCmd::TOKEN_AS_TYPE, "int", {"5", "x", ""}, {}},
        {ZlCmd::TOKEN_AS_TYPE, "INT | ALPHA", {}, {"5", "x"}},
        {ZlCmd::EXCLUSIV_CHAR, "a | b", {"", "xyz"}, {"xa", "b", "x y", "|"}},
        {ZlCmd::TICKET_NUMBER, "", {"12345.A1B.000", "TS123456789"}, {"", "TS123", "12345.a1b.000"}},
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
    cmd("GroupName", ZlCmd::INT, false, "", otherWork, 1700);
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
        EXPECT_EQ(option.getCmdFuncP(), own ? otherWork : nullptr);
    }
    // With a new subject the next positional is the first again.
    ZlCmd copy = cmd;
    copy.setRemoteNodeHandling(ZlCmd::REMOTE_FORBIDDEN);
    copy("sub", "next", "helper", nullptr, 1800);
    copy("", ZlCmd::ANY, true, "", nullptr, 0);
    EXPECT_EQ(copy.allNames() + copy.getCmd() + toString(copy.getNodeLevel()),
              "sub - next: #0# ANY argumenthelper1800");
    EXPECT_EQ(copy.getRemoteNodeHandling(), ZlCmd::REMOTE_NORMAL);
    EXPECT_EQ(ZlCmd(cli, "s", "v", "helper", nullptr, work, 0).getCmdFuncP(), nullptr); // dropped on purpose
}

TEST_F(ZlCmdTest, WrongDeclarationsEndTheProcess)
{
    ZlCmd cmd = command({{"--x", ZlCmd::NO}});
    const auto expectError = [&](const std::string& place, const std::string& message, const auto& declare) {
        expectEnd([&] { declare(); }, 1, "",
                  "Program error at  ZlCmd::" + place + "\n\nAdditional messages:\n" + message + "\n");
    };
    expectError("operator()", "possitional parameter >word< cannot have token >A | B<",
                [&] { cmd("word", ZlCmd::ANY, false, "A | B", nullptr, 0); });
    expectError("operator() check type of token", "A token must not have type ZlCMD::NO",
                [&] { cmd("", ZlCmd::NO, false, "A | B", nullptr, 0); });
    expectError("addMapping", "Verb --x already replaced!",
                [&] { cmd("--y | --x", ZlCmd::ANY, false, "", nullptr, 0); });
    cmd.addMapping("a", "b");
    cmd.addVerbMapping("a", "b");
    cmd.addVerbToCmdMapping("a", "b");
    expectError("addMapping", "a already replaced", [&] { cmd.addMapping("a", "c"); });
    expectError("addVerbMapping", "a already replaced", [&] { cmd.addVerbMapping("a", "b"); });
    expectError("addVerbToCmdMapping", "a already mapped", [&] { cmd.addVerbToCmdMapping("a", "b"); });
    cmd.disableValidation();
    expectError("operator()", "Adding options is not allowed if validation is disabled.",
                [&] { cmd("--z", ZlCmd::NO, false, "", nullptr, 0); });
    expectEnd([&] { cmd.reset("s", "v", "helper", work, nullptr, 0); }, 1, "",
              "helper script and function command is specified or non of them is specified.\n\n"
              "Additional messages:\ninvalid code\n");
}

TEST_F(ZlCmdTest, ComparisonBySubjectAndVerbAlternatives)
{
    const auto compare = [&](const Words& left, const Words& right) {
        const ZlCmd a(cli, left[0], left[1], "", nullptr, nullptr, 0);
        const ZlCmd b(cli, right[0], right[1], "", nullptr, nullptr, 0);
        return std::string(a == b ? "=" : "") + (a < b ? "<" : "");
    };
    EXPECT_EQ(compare({"s", "list | ls"}, {"s", "ls"}), "=");
    EXPECT_EQ(compare({"s", "ls"}, {"s", "list | ls"}), ""); // the left side holds the alternatives
    EXPECT_EQ(compare({"s", "list | ls"}, {"s", "LIST"}), "");
    EXPECT_EQ(compare({"s", "list"}, {"t", "list"}), "");
    EXPECT_EQ(compare({"t", "list"}, {"s", "list"}), "<"); // descending by subject
    EXPECT_EQ(compare({"s", "b"}, {"s", "a"}), "<");
    EXPECT_EQ(compare({"s", "z"}, {"s", "aa"}), "<"); // the shorter verb goes first
    EXPECT_EQ(compare({"s", "aa"}, {"s", "z"}), "");
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

TEST_F(ZlCmdTest, LinesWithoutTheWalk)
{
    expectRefusal(command({}), {"a", "b"}, "'zelfhome sub do' does not allow any arguments.",
                  "Invalid argument: 'a b'");
    const ZlCmd infinite = command({{"", ZlCmd::ANY_INFINITE}, {"", ZlCmd::INT}});
    EXPECT_EQ(validated(infinite, {"x", "5", "any", "--thing"}).size(), 4U);
    expectRefusal(infinite, {"a", "b"}, "zelfhome sub: Invalid value: 'b'",
                  "Required argument type: INTEGER");
    cli->setParserResultBit(PARSER_HELP); // wins over everything else, where it is declared
    expectRefusal(infinite, {"a", "b"}, "'zelfhome sub do' does not has any argument that ask for help.",
                  "Invalid argument: 'a b'");
    EXPECT_EQ(validated(command({{"--help", ZlCmd::NO}}), {"wrong", "--wrong"}), Words{"--help"});
    cli->verb = "";
    expectRefusal(infinite, {}, "zelfhome sub: Missing arguments.");
    cli->verb = "--help";
    expectEnd([&] { validated(infinite, {}); }, 1, "", "");
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
    cli->unsetParserResultBit(~uint64_t{0});
    cmd.displayAsTable();
    validated(cmd, {});
    EXPECT_EQ(cli->getParserBits(), 1024U);
}

TEST_F(ZlCmdTest, FunctionsMade)
{
    const auto made = [&](const ZlCmd& cmd, const Words& args) {
        validated(cmd, args);
        std::string text;
        for (const ZlFunction& function : cli->functions) {
            text += function.getOptionName() + "/" + function.getCmdName() + "/" + function.getName() + "/" +
                    toString(static_cast<int>(function.getOperationMode())) + "/" +
                    toString(function.getID()) + " ";
        }
        cli->functions.clear();
        return text;
    };
    ZlCmd cmd = command({{"", ZlCmd::ANY}, {"--x", ZlCmd::ANY}, {"--flag", ZlCmd::NO}}, work);
    EXPECT_EQ(made(cmd, {"12ab", "--x", "v"}), "#0#/12ab/task/2/12 --x/v/task/2/12 ");
    EXPECT_EQ(made(cmd, {"--flag"}), "sub/sub/task/2/0 "); // no value, no function of its own: the command's
    cmd("sub", "do", work, nullptr, 0);
    cmd.disableValidation();
    EXPECT_EQ(made(cmd, {"7", "--what", "ever"}), "sub/sub/task/2/7 ");
    EXPECT_EQ(made(command({}), {}), "");
}
