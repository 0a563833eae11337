// The dispatcher on a table of its own, and the rewriting of options in place.
#include "fixture.h"

#include <cstring>

#include "cli/cmdtable.h"

namespace {

std::string handled;

// Notes what a handler was given. Gives the number in its arguments.
template <char NAME>
int note(char* prompt, char* args, bool interactive)
{
    handled += std::string(1, NAME) + "(" + prompt + "," + args + (interactive ? ",i) " : ") ");
    const char* number = std::strpbrk(args, "-0123456789");
    return number == nullptr ? 5 : std::atoi(number);
}

const cmdTableRow TABLE[] = {{"first", "f", note<'1'>, 0},
                             {"second", "first", note<'2'>, 0},
                             {"--help", "h", note<'h'>, 0},
                             {"other", "-h", note<'3'>, 0},
                             {nullptr, nullptr, nullptr, 0}};
char prompt[] = "zelf";

// Runs a line in a writable buffer. Gives the handlers, the result and what was said on standard error.
std::string run(const std::string& line, const cmdTableRow* table = TABLE)
{
    std::string buffer = line;
    handled.clear();
    testing::internal::CaptureStderr();
    const int result = processCmd(prompt, buffer.data(), table, false);
    return handled + std::to_string(result) + " " + testing::internal::GetCapturedStderr();
}

} // namespace

TEST(CmdTable, TheFirstRowWithTheFirstWordIsCalled)
{
    const std::pair<const char*, const char*> cases[] = {{"first", "1(zelf,) 5 "},
                                                         {" \t FIRST  a  B \n", "1(zelf,a  B) 5 "},
                                                         {"f\t7", "1(zelf,7) 7 "},
                                                         {" \t\n", "h(zelf,) 5 "},
                                                         {"NoSuch thing", "38 Invalid command: nosuch\n"},
                                                         {"firs", "38 Invalid command: firs\n"}};
    for (const auto& [line, expected] : cases) {
        EXPECT_EQ(run(line), expected);
    }
    EXPECT_EQ(run(" ", TABLE + 4), "38 Invalid command: \n"); // a table without a help row
    // A word is cut to what a command line buffer holds.
    EXPECT_EQ(run(std::string(9000, 'X')), "38 Invalid command: " + std::string(8195, 'x') + "\n");
}

TEST(CmdTable, OptionsAreRewrittenInPlace)
{
    const std::tuple<const char*, const char*, const char*, const char*> cases[] = {
        {"a --task b", "--task", "-F", "a -F     b"},
        {"a \"DAILY\" b", "DAILY", "day", "a \"day\"   b"}, // the closing quote follows
        {"DAILY\" b", "DAILY", "day", "day  \" b"},
        {"none", "DAILY", "day", "none"}};
    for (const auto& [text, from, to, result] : cases) {
        std::string buffer = text;
        EXPECT_EQ(mapOption(buffer.data(), from, to), std::strstr(text, from) != nullptr ? 1 : 0);
        EXPECT_EQ(buffer, result);
    }
    char text[] = "-F";
    expectEnd([&] { mapOption(text, "-F", "--file"); }, 1, "",
              "error at mapOption(..) replacement string has length 6. Maximum allowed 2\n");
}
