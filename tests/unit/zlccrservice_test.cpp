// The road to the CCR, with a scripted zelfccr.
#include "fixture.h"

#include <filesystem>
#include <stdexcept>

#include "services/zlccrservice.h"

using ZlCcrServiceTest = ZelfTest;
using NumberAndText = std::pair<int, std::string>;

TEST_F(ZlCcrServiceTest, ReadsTheLocalCopyOnlyAfterAFetchThatCounts)
{
    const std::tuple<const char*, bool, int, Words> cases[] = {
        // script, is there a local copy, result, lines
        {"echo noise; echo noise >&2; echo new >$3", false, 0, {"new"}},
        {"exit 149", true, 1, {"buffer"}},
        {"exit 155", true, 0, {"local"}},
        {"exit 155", false, 3, {"buffer"}},
        {"exit 0", false, 3, {"buffer"}},
        {"exit 1", true, 2, {"buffer"}}};
    for (const auto& [script, haveCopy, result, expected] : cases) {
        install("zelfccr", script);
        std::filesystem::remove(TMP + "copy");
        if (haveCopy) {
            writeFile(TMP + "copy", "local\n");
        }
        ZlCcrService ccr("name", "/var/zelf/tmp", "copy");
        ccr.setCcr("buffer");
        int got = -1;
        EXPECT_EQ(printed([&] { got = ccr.readCcrFile(); }), "");
        EXPECT_EQ(got, result) << script;
        Words lines;
        ccr.getCcrData(&lines);
        EXPECT_EQ(lines, expected) << script;
        EXPECT_EQ(calls(), "zelfccr [fget] [name] [/var/zelf/tmp/copy]\n");
    }
}

TEST_F(ZlCcrServiceTest, WritesTheLocalCopyAheadOfTheStore)
{
    install("zelfccr", "cp $3 /var/zelf/tmp/stored; [ $2 != bad ] || exit 9");
    ZlCcrService ccr("name", "/var/zelf/tmp");
    ccr.setCcr("text\n");
    EXPECT_EQ(ccr.writeCcrFile(), 0);
    EXPECT_EQ(contentOf(TMP + "stored"), "text\n");
    EXPECT_EQ(ZlCcrService("bad", "/var/zelf/tmp").writeCcrFile(), 1);
    EXPECT_EQ(ZlCcrService("name", "/var/zelf/missing").writeCcrFile(), 1);
    EXPECT_EQ(calls(),
              "zelfccr [fput] [name] [/var/zelf/tmp/name]\nzelfccr [fput] [bad] [/var/zelf/tmp/bad]\n");
}

TEST_F(ZlCcrServiceTest, RepliesOfVget)
{
    const std::pair<const char*, NumberAndText> cases[] = {
        {"echo x:7:abc", {7, "abc"}},
        {"echo x:0:", {0, ""}},
        {"echo 'x:12:n,77,locked,5'", {12, "n,77,locked,5"}},
        {"echo x:7", {-1, ""}},
        {"printf x:7:abc", {-1, ""}}, // no newline
        {"true", {-1, ""}},
        {"echo x:7:abc; exit 3", {0, "invalid key the.key"}}};
    for (const auto& [script, result] : cases) {
        install("zelfccr", script);
        EXPECT_EQ(ZlCcrService::getKeyValue("the.key"), result) << script;
        EXPECT_EQ(calls(), "zelfccr [vget] [the.key]\n");
    }
    // A value must not hold a colon: rather no answer than half of one.
    install("zelfccr", "echo x:7:ab:c");
    EXPECT_THROW(ZlCcrService::getKeyValue("key"), std::out_of_range);
}

TEST_F(ZlCcrServiceTest, ConditionalWrites)
{
    const std::tuple<int, const char*, NumberAndText, const char*, const char*> cases[] = {
        // version, script, result, call, output
        {-1,
         "",
         {0, "ccr vput success for (k, a b) rc = 0"},
         "zelfccr [vput] [-c] [0] [-v] [1] [k] [a b]\n",
         ""},
        {7,
         "echo out; echo err >&2; exit 12",
         {1, "ccr vput failed for (k, a b) rc = 12"},
         "zelfccr [vput] [-c] [7] [-v] [8] [k] [a b]\n",
         "out\nerr\n"},
        {-2, "", {0, "Invalid version specified: -2"}, "", ""}};
    for (const auto& [version, script, result, called, output] : cases) {
        install("zelfccr", script);
        NumberAndText got;
        EXPECT_EQ(printed([&, number = version] {
                      got = ZlCcrService::setKeyValue({"k", "a b"}, number);
                  }),
                  output);
        EXPECT_EQ(got, result);
        EXPECT_EQ(calls(), called);
    }
    install("zelfccr", "exit 5");
    const std::string log = logged([] { ZlCcrService::setKeyValue({"k", "v"}, 0); });
    EXPECT_NE(log.find("\nZlCcrService::setKeyValue failed wit rc = 5for (k, v) rc = 5\n"),
              std::string::npos);
}

TEST_F(ZlCcrServiceTest, Deletion)
{
    install("zelfccr", "[ $2 = -c ] || exit 5");
    EXPECT_EQ(ZlCcrService::delKey("mykey", 4), 1);
    EXPECT_EQ(ZlCcrService::delKey("mykey", 0), 1);
    const std::string log = logged([] { EXPECT_EQ(ZlCcrService::delKey("mykey", -1), 0); });
    EXPECT_EQ(calls(),
              "zelfccr [vdel] [-c] [4] [mykey]\nzelfccr [vdel] [-c] [0] [mykey]\nzelfccr [vdel] [mykey]\n");
    EXPECT_NE(log.find("\nZlCcrService::delKey: Value with rc = 5for mykey\n"), std::string::npos);
}
