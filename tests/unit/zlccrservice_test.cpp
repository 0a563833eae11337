// The road to the CCR, with a scripted zelfccr.
#include "fixture.h"

#include <cerrno>
#include <stdexcept>

#include "services/zlccrservice.h"

using ZlCcrServiceTest = ZelfTest;
using NumberAndText = std::pair<int, std::string>;

TEST_F(ZlCcrServiceTest, RepliesOfVget)
{
    const std::pair<const char*, NumberAndText> cases[] = {
        {"echo 'x:12:n,77,locked,5'", {12, "n,77,locked,5"}},
        {"printf x:7:abc", {-1, ""}}, // no newline
        {"echo x:7:a; exit 3", {0, "invalid key the.key"}}};
    for (const auto& [script, result] : cases) {
        install("zelfccr", script);
        EXPECT_EQ(ZlCcrService::getKeyValue("the.key"), result) << script;
    }
    install("zelfccr", "echo x:7:ab:c"); // rather no answer than half of one
    EXPECT_THROW(ZlCcrService::getKeyValue("key"), std::out_of_range);
}

TEST_F(ZlCcrServiceTest, AFileComesAndGoes)
{
    ZlCcrService file("name", "/var/zelf/tmp", "copy");
    Words lines;
    for (const auto& [script, result] :
         {std::pair{"exit 155", 3}, {"exit 149", 1}, {"exit 150", 2}, {"echo x >$3; exit 155", 0}}) {
        install("zelfccr", script);
        EXPECT_EQ(file.readCcrFile(), result) << script;
    }
    EXPECT_EQ(calls().substr(0, 42), "zelfccr [fget] [name] [/var/zelf/tmp/copy]");
    errno = 0; // a write gives it
    EXPECT_EQ(file.writeCcrFile(), 1);
    install("zelfccr", "");
    calls();
    EXPECT_EQ(file.writeCcrFile() + file.getCcrData(&lines), 0);
    EXPECT_EQ(calls() + toString(lines, ","), "zelfccr [fput] [name] [/var/zelf/tmp/copy]\nx");
    EXPECT_EQ(ZlCcrService("name", "/var/zelf/no").writeCcrFile(), 1);
    EXPECT_EQ(calls(), "");
}

TEST_F(ZlCcrServiceTest, ConditionalWritesAndRemovals)
{
    const std::tuple<int, int, NumberAndText, const char*> cases[] = {
        // version, exit code of the client, result, call
        {-1, 0, {0, "ccr vput success for (k, a b) rc = 0"}, "zelfccr [vput] [-c] [0] [-v] [1] [k] [a b]\n"},
        {7, 12, {1, "ccr vput failed for (k, a b) rc = 12"}, "zelfccr [vput] [-c] [7] [-v] [8] [k] [a b]\n"},
        {-2, 0, {0, "Invalid version specified: -2"}, ""}};
    for (const auto& [version, code, result, called] : cases) {
        install("zelfccr", "exit " + std::to_string(code));
        EXPECT_EQ(ZlCcrService::setKeyValue({"k", "a b"}, version), result);
        EXPECT_EQ(calls(), called);
    }
    install("zelfccr", "[ $2 = -c ] || exit 5");
    EXPECT_EQ(ZlCcrService::delKey("k", 0), 1);
    EXPECT_EQ(ZlCcrService::delKey("k", -1), 0);
    EXPECT_EQ(calls(), "zelfccr [vdel] [-c] [0] [k]\nzelfccr [vdel] [k]\n");
}
