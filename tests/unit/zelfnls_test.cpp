// The message catalogue, with one that gencat(1) has made.
#include "fixture.h"

#include <cerrno>
#include <clocale>
#include <cstdlib>

#include "services/zelfnls.h"

using ZelfNlsTest = ZelfTest;

TEST_F(ZelfNlsTest, TextsComeFromTheCatalogueWhileItIsOpen)
{
    writeFile(TMP + "msg", "$set 66\n6 Falscher Befehl: %s\\n\n78 a\n$set 1\n6 andere\n");
    ASSERT_EQ(std::system(("gencat " + TMP + "zelf.cat " + TMP + "msg").c_str()), 0);
    setenv("NLSPATH", (TMP + "%N").c_str(), 1);
    const char* const text = "default";
    InitZelfNLS();
    EXPECT_STREQ(CatGets(1, 6, text), "andere");
    for (const int number : {0, 35, 130, -3}) {
        errno = number;
        EXPECT_EQ(CatGets(67, 6, text), text); // a failure, which sets errno
        EXPECT_EQ(errno, number);
    }
    testing::internal::CaptureStderr();
    printCatMessage(MSG_INVALID_COMMAND, "Invalid command: %s\n", "nix");
    printCatMessage(MSG_SEE_TRACE, "number %d\n", 92);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Falscher Befehl: nix\nnumber 92\n");
    EXPECT_STREQ(openFailedText(), "a");
    CleanupZelfNLS();
    EXPECT_STREQ(openFailedText(), "Open file failed: errno = ");
    setenv("NLSPATH", (TMP + "missing/%N").c_str(), 1);
    InitZelfNLS();
    EXPECT_EQ(CatHandle, nullptr);
    unsetenv("NLSPATH");
    setlocale(LC_ALL, "C");
    setvbuf(stderr, nullptr, _IONBF, 0);
}

TEST_F(ZelfNlsTest, TheTwoAnswers)
{
    EXPECT_STREQ(new_nl_langinfo(0x50002), "yes");
    EXPECT_STREQ(new_nl_langinfo(0x50003), "no");
    EXPECT_STREQ(new_nl_langinfo(0x50000), "^[yY]");
    for (const auto& [system, zelf] : {std::pair{0x50002, 46}, {0x50003, 47}, {0x50001, 0x50001}}) {
        EXPECT_EQ(SystemToZelfNlsVal(system), zelf);
        EXPECT_EQ(ZelfToSystemNlsVal(zelf), system);
    }
}
