// The lists of the trace: every line comes out as it went in, however many there are.
#include "services/zltracelines.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <malloc.h>
#include <random>
#include <sstream>
#include <string>
#include <utility>

namespace {

std::string written(const ZlTraceLines& lines)
{
    std::ostringstream out;
    out << lines;
    return out.str();
}

// Gives the bytes that are allocated, large pieces included, which malloc(3) maps one by one.
size_t heldMemory()
{
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

} // namespace

TEST(ZlTraceLines, EveryLineComesOutAsItWentIn)
{
    std::mt19937 random(1);
    const std::pair<const char*, std::function<std::string()>> sorts[] = {
        {"bytes",
         [&] {
             std::string line(random() % 100, '\0');
             std::generate(line.begin(), line.end(), [&] { return static_cast<char>(random()); });
             return line;
         }},
        {"one byte again and again", [&] { return std::string(random() % 5000, 'x'); }},
        {"one line of many parts", [&] { return std::string(3'000'000, 'y') + std::to_string(random()); }},
        {"a cycle", [&] { return "sendChunk 77 " + std::to_string(random() % 7) + " --wait 86400"; }},
    };
    for (const auto& [name, makeLine] : sorts) {
        ZlTraceLines lines;
        std::string expected;
        EXPECT_TRUE(lines.empty());
        while (expected.size() < 2'000'000) {
            const std::string line = makeLine();
            lines.push(line);
            lines.pushIndented(line);
            expected += line + "\n\t" + line + "\n";
            ASSERT_FALSE(lines.empty());
        }
        EXPECT_TRUE(written(lines) == expected) << name;
        const ZlTraceLines copy = std::exchange(lines, {});
        EXPECT_TRUE(lines.empty());
        EXPECT_TRUE(written(copy) == expected) << name;
    }
}

// Hours of a file send must not fill the memory: 20 MB of lines that differ in their numbers.
TEST(ZlTraceLines, LinesThatRepeatThemselvesTakeLittleMemory)
{
    ZlTraceLines lines;
    const size_t before = heldMemory();
    for (int chunk = 0; chunk < 100'000; ++chunk) {
        lines.push("int ZlCallhome::runZelfmonCmdOnCallhomeNode(const std::string&, Lines*)");
        lines.pushIndented("_executeCMD cmd = /opt/zelf/bin/zelfmonc callhome sendChunk 77 /var/zelf/dump/"
                           "callhomeChunk_77_" +
                           std::to_string(chunk) + " --wait 86400");
        lines.pushIndented("_executeCMD done with rc = 0 duration 0." + std::to_string(chunk * 37 % 9973));
    }
    EXPECT_LT(heldMemory() - before, 3'000'000U);
}
