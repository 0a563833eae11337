// The message catalogue, with one that gencat(1) has made.
#include "fixture.h"

#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstdlib>
#include <dlfcn.h>
#include <stdio_ext.h>

#include "services/zelfnls.h"

namespace {

bool isBlocked(int signal)
{
    sigset_t mask;
    sigprocmask(SIG_BLOCK, nullptr, &mask);
    return sigismember(&mask, signal) == 1;
}

bool wasBlocked = false; // SIGUSR1, in the lookup seen last

class ZelfNlsTest : public ZelfTest {
protected:
    void SetUp() override
    {
        ZelfTest::SetUp();
        writeFile(TMP + "msg", "$set 66\n6 Falscher Befehl: %s\\n\n78 a\n79 b\n80 c\n$set 1\n6 andere\n");
        ASSERT_EQ(std::system(("gencat " + TMP + "zelf.cat " + TMP + "msg").c_str()), 0);
        setenv("NLSPATH", (TMP + "%N").c_str(), 1);
    }
    void TearDown() override
    {
        CleanupZelfNLS();
        unsetenv("NLSPATH");
        setlocale(LC_ALL, "C");
        setvbuf(stderr, nullptr, _IONBF, 0);
        ZelfTest::TearDown();
    }
};

} // namespace

extern "C" char* catgets(nl_catd catalogue, int set, int number, const char* text) noexcept
{
    static const auto next = reinterpret_cast<decltype(&catgets)>(dlsym(RTLD_NEXT, "catgets"));
    wasBlocked = isBlocked(SIGUSR1);
    return next(catalogue, set, number, text);
}

TEST_F(ZelfNlsTest, TextsComeFromTheCatalogueWhileItIsOpen)
{
    const char* const text = "default";
    setvbuf(stdout, nullptr, _IOFBF, BUFSIZ);
    InitZelfNLS();
    EXPECT_TRUE(__flbf(stdout) && __flbf(stderr));
    EXPECT_STREQ(CatGets(1, 6, text), "andere");
    EXPECT_EQ(CatGets(67, 6, text), text);
    testing::internal::CaptureStderr();
    printCatMessage(MSG_INVALID_COMMAND, "Invalid command: %s\n", "nix");
    printCatMessage(MSG_SEE_TRACE, "number %d\n", 92);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Falscher Befehl: nix\nnumber 92\n");
    const auto threeTexts = [] {
        return std::string(openFailedText()) + readFailedText() + programErrorText();
    };
    EXPECT_EQ(threeTexts(), "abc");
    CleanupZelfNLS();
    EXPECT_EQ(threeTexts(), "Open file failed: errno = Read from file failed: errno = Program error: ");
    setenv("NLSPATH", (TMP + "missing/%N").c_str(), 1);
    InitZelfNLS();
    EXPECT_EQ(CatHandle, nullptr);
    EXPECT_EQ(CatGets(66, 6, text), text);
}

TEST_F(ZelfNlsTest, ALookupKeepsTheErrorNumberAndHoldsTheAnswerToSIGUSR1)
{
    InitZelfNLS();
    for (const int number : {0, 1, 35, 122, 130, -3}) {
        errno = number;
        CatGets(66, 1000, "default"); // a failure, which sets errno
        EXPECT_EQ(errno, number);
        EXPECT_TRUE(wasBlocked && !isBlocked(SIGUSR1));
    }
}

TEST_F(ZelfNlsTest, TheTwoAnswers)
{
    // The locale "C" has none.
    EXPECT_STREQ(new_nl_langinfo(0x50002), "yes");
    EXPECT_STREQ(new_nl_langinfo(0x50003), "no");
    EXPECT_STREQ(new_nl_langinfo(0x50000), "^[yY]");
    for (const auto& [system, zelf] : {std::pair{0x50002, 46}, {0x50003, 47}, {0x50001, 0x50001}}) {
        EXPECT_EQ(SystemToZelfNlsVal(system), zelf);
        EXPECT_EQ(ZelfToSystemNlsVal(zelf), system);
    }
}
