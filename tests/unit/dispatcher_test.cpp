// The dispatcher's edges, its prompt loop, and the rewriting of options in place.
#include "fixture.h"

#include <cstring>
#include <iostream>

#include "cli/dispatcher.h"

using DispatcherTest = ZelfTest;

TEST_F(DispatcherTest, AWordIsCutToWhatACommandLineBufferHolds)
{
    const cmdTableRow noRow;
    std::string line(9000, 'X');
    expectEnd([&] { exit(executeCommand(line.data(), line.data(), &noRow, false)); }, 38, "",
              "Invalid command: " + std::string(8195, 'x') + "\n");
}

TEST_F(DispatcherTest, ThePromptLoopEndsAtANegativeResultOrTheEndOfInput)
{
    const cmdTableRow table[] = {{"say", "s",
                                  [](char*, char* args, bool interactive) {
                                      std::cout << "<" << args << ">" << interactive << std::flush;
                                      return 1;
                                  }},
                                 {"help", "x", [](char*, char*, bool) { return std::puts("help") * 0; }},
                                 {"leave", "l", [](char*, char*, bool) { return -1; }},
                                 {}};
    char prompt[] = "tool";
    char line[CMD_LINE_SIZE] = "";
    const auto loop = [&] {
        ASSERT_NE(freopen("/var/zelf/gen/input", "r", stdin), nullptr);
        exit(executeCommand(prompt, line, table, true));
    };
    writeFile("/var/zelf/gen/input", "S  a b \nnosuch\nl\nsay never\n");
    expectEnd(loop, 0, "\ntool> S  a b \n<a b>1\ntool> nosuch\n\ntool> l\n", "Invalid command: nosuch\n");
    writeFile("/var/zelf/gen/input", " \nsay");
    expectEnd(loop, 0, "\ntool>  \nhelp\n\ntool> say\n<>1\ntool> ", "");
}

TEST_F(DispatcherTest, OptionsAreRewrittenInPlace)
{
    const std::tuple<const char*, const char*, const char*, const char*> cases[] = {
        {"a --task b", "--task", "-F", "a -F     b"},
        {"a \"DAILY\" b", "DAILY", "day", "a \"day\"   b"}, // the closing quote follows
        {"DAILY\" b", "DAILY", "day", "day  \" b"},
        {"no", "DAILY", "day", "no"}};
    for (const auto& [text, from, to, result] : cases) {
        std::string buffer = text;
        EXPECT_EQ(mapOption(buffer.data(), from, to), std::strstr(text, from) != nullptr ? 1 : 0);
        EXPECT_EQ(buffer, result);
    }
    char text[] = "-F";
    expectFailure([&] { mapOption(text, "-F", "--file"); },
                  "error at mapOption(..) replacement string has length 6. Maximum allowed 2");
}
