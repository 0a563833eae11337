// The dispatcher's edges, and the rewriting of options in place.
#include "fixture.h"

#include <cstring>

#include "cli/cmdtable.h"

TEST(CmdTable, AWordIsCutToWhatACommandLineBufferHolds)
{
    const cmdTableRow withoutHelp = {nullptr, nullptr, nullptr, 0};
    for (const size_t length : {size_t{0}, size_t{9000}}) {
        std::string line(length, 'X');
        testing::internal::CaptureStderr();
        EXPECT_EQ(processCmd(line.data(), line.data(), &withoutHelp, false), 38);
        EXPECT_EQ(testing::internal::GetCapturedStderr(),
                  "Invalid command: " + std::string(std::min<size_t>(length, 8195), 'x') + "\n");
    }
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
