// What the framework says at the end, where no command of the tool has it said: a closing text for failures.
#include "fixture.h"

#include <iostream>

using ZlCliTest = ZelfTest;

TEST_F(ZlCliTest, BothEndsOfTheProcess)
{
    const std::tuple<const char*, int, const char*, const char*, const char*> cases[] = {
        // response, code, verb, words when terminated, words when the object goes away
        {"", 7, "x", "Failed\nend", "end"},
        {"\n", 2, "x", "end", "end"},                          // as none
        {"words \n\t\n", 2, "--dryrun", "words\n", "words\n"}, // no closing text
        {"words", 2, "help", "words\n", "words\n"}};
    for (const auto& [response, code, verb, terminated, gone] : cases) {
        TestCli& cli = makeCli({"s", verb});
        cli.userResponse = response;
        cli.closingErrorMsg = "end";
        expectEnd([&, status = code] { cli.terminateProgram(status); }, code, "", terminated);
        cli.execCmdRc = code;
        expectEnd([&, status = code] { delete &cli, exit(status); }, code, "", gone);
    }
    TestCli& cli = makeCli({"s", "H"});
    EXPECT_EQ(cli.verb + toString(cli.getParserBits()), "--help1");
    for (const char* verb : {"a", "b", "c"}) {
        cli.cmds.emplace_back(&cli, "s", verb, "", nullptr, nullptr, 0);
    }
    cli.cleanupCmds(cli.cmds.begin() + 1);
    EXPECT_TRUE(cli.cmds.size() == 1 && cli.cmds[0].getVerb() == "b");
    expectFailure([&] { cli.cleanupCmds(cli.cmds.end()); }, "Command detection error.");
    EXPECT_EQ(cli.createMessages(std::cout), 0);
    cli.pushMessage("hidden");
    cli.showAdditionalMessages = false;
    EXPECT_EQ(cli.createMessages(std::cout), 1);
    expectFailure([&] { cli.terminateProgram(1); }, "Failed");
}
