// What the framework says at the end, where no command of the tool has it said: a closing text for failures.
#include "fixture.h"

using ZlCliTest = ZelfTest;

TEST_F(ZlCliTest, BothEndsOfTheProcess)
{
    const std::tuple<const char*, int, const char*, const char*, const char*> cases[] = {
        // response, code, verb, words when terminated, words when the object goes away
        {"", 0, "x", "Success\n", ""},
        {"", 7, "x", "Failed\nend", "end"},
        {"words \n\t\n", 0, "x", "words\n", "words\n"},
        {"words", 2, "--dryrun", "words\n", "words\n"}, // the closing text is for failures of real runs alone
        {"words", 2, "help", "words\n", "words\n"}};
    for (const auto& [response, code, verb, terminated, gone] : cases) {
        SCOPED_TRACE(std::string(response) + " " + verb);
        TestCli& cli = makeCli({"s", verb});
        cli.userResponse = response;
        cli.closingErrorMsg = "end";
        const auto expectWords = [status = code](const std::function<void()>& end, const char* text) {
            expectEnd(end, status, status == 0 ? text : "", status == 0 ? "" : text);
        };
        expectWords([&, status = code] { cli.terminateProgram(status); }, terminated);
        cli.execCmdRc = code;
        expectWords([&, status = code] { delete &cli, exit(status); }, gone);
    }
    TestCli& cli = makeCli();
    cli.userResponse = "bad";
    cli.pushMessage("hidden");
    cli.showAdditionalMessages = false;
    expectEnd([&] { cli.terminateProgram(1); }, 1, "", "bad\n");
}
