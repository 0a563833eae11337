// What the framework says at the end, where no command of the tool has it said: a closing text for failures.
#include "fixture.h"

using ZlCliTest = ZelfTest;

TEST_F(ZlCliTest, BothEndsOfTheProcess)
{
    const std::tuple<const char*, int, const char*, const char*, const char*> cases[] = {
        // response, code, verb, words when terminated, words when the object goes away
        {"", 7, "x", "Failed\nend", "end"},
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
    TestCli& cli = makeCli();
    cli.pushMessage("hidden");
    cli.showAdditionalMessages = false;
    expectEnd([&] { cli.terminateProgram(1); }, 1, "", "Failed\n");
}
