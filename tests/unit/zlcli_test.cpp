// The command line object: reading a line, what is said at the end and on which stream, and the two ends.
#include "fixture.h"

#include <sstream>

#include "services/zlerrorservice.h"
#include "services/zlutils.h"

using ZlCliTest = ZelfTest;

TEST_F(ZlCliTest, TheBlockOfMessages)
{
    const std::map<std::string, std::vector<char>> bad = {
        {"parser error: ", {'q'}}, {"missing value for:", {'N'}}, {"invalid option:", {'x', 'y'}}};
    TestCli& cli = makeCli();
    cli.closingErrorMsg = "end";
    const auto block = [&](const std::string& response) {
        cli.userResponse = response;
        std::ostringstream stream;
        EXPECT_EQ(cli.createMessages(stream), cli.msgs.empty() && cli.badArgs.empty() ? 0 : 1);
        return stream.str();
    };
    EXPECT_EQ(block("done \n\t\n"), "done\nend");
    EXPECT_EQ(block("  "), "  \nend");
    cli.badArgs = bad;
    EXPECT_EQ(block(""), "\nAdditional messages:\n  invalid option: -x, -y\n  missing value for: -N\n"
                         "  parser error:  -q\nend");
    cli.badArgs = {{"invalid option:", {'x'}}};
    cli.msgs = {"one\n", "two"};
    EXPECT_EQ(block("bad"), "bad\n\nAdditional messages:\none\n\ntwo\n  invalid option: -x\nend");
    cli.showAdditionalMessages = false;
    EXPECT_EQ(block("bad"), "bad\nend");
}

TEST_F(ZlCliTest, BothEndsOfTheProcess)
{
    const std::tuple<const char*, int, const char*, const char*, const char*> cases[] = {
        // response, code, argument, words when terminated, words when the object goes away
        {"", 0, "x", "Success\n", ""},
        {"", 7, "x", "Failed\nend", "end"},
        {"words\n", 0, "x", "words\n", "words\n"},
        {"words\n", 255, "x", "words\nend", "words\nend"},
        {"words", 2, "--dryrun", "words\n", "words\n"}, // the closing text is for failures of real runs alone
        {"words", 2, "help", "words\n", "words\n"}};
    for (const auto& [response, code, argument, terminated, gone] : cases) {
        SCOPED_TRACE(std::string(response) + " " + argument);
        TestCli& cli = makeCli();
        parse(cli, {"s", "v", argument});
        cli.userResponse = response;
        cli.closingErrorMsg = "end";
        const auto expectWords = [status = code](const std::function<void()>& end, const char* text) {
            expectEnd(end, status, status == 0 ? text : "", status == 0 ? "" : text);
        };
        const auto goAway = [&, status = code] {
            cli.execCmdRc = status;
            delete &cli;
            exit(status);
        };
        expectWords([&, status = code] { cli.terminateProgram(status); }, terminated);
        expectWords(goAway, gone);
    }
}
