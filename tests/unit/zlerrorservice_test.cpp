// The two log files, byte for byte, and the times in them.
#include "fixture.h"

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <sys/mount.h>
#include <sys/time.h>

#include "services/zlerrorservice.h"
#include "services/zltime.h"
#include "services/zlutils.h"

namespace {

timeval stoppedAt{}; // the clock of this program, when a test has stopped it

} // namespace

extern "C" int gettimeofday(timeval* __restrict time, void* __restrict /*zone*/) noexcept
{
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    *time = stoppedAt.tv_sec != 0 ? stoppedAt : timeval{now.tv_sec, now.tv_nsec / 1000};
    return 0;
}

namespace {

class ZlErrorServiceTest : public ZelfTest {
protected:
    void SetUp() override
    {
        ZelfTest::SetUp();
        setenv("TZ", "TST-02:00", 1);
        tzset();
        logged([this] { service.pushNewMsg("forgets what came before"); });
        service.setLogFileName("run");
    }
    void TearDown() override
    {
        ZelfTest::TearDown();
        stoppedAt = {};
    }

    // Gives a file with its stamps and the arguments of functions made equal.
    static std::string read(const std::string& name)
    {
        Words lines;
        for (std::string line : split(contentOf(TMP + name), "\n")) {
            const size_t stamp = line.find(" at: ");
            if (stamp != std::string::npos) {
                line.replace(stamp + 5, 28, "STAMP");
            }
            if (line.find(" ZlTime::") == std::string::npos) {
                lines.push_back(line.substr(0, line.find('(')));
            }
        }
        return containerToString(lines, "\n");
    }

    ZlErrorService& service = *ZlErrorService::errorServiceP;
};

const char* const SECTION = "\nTrace messages start at: STAMP\nmessage\nTrace messager end at: STAMP\n";

} // namespace

TEST_F(ZlErrorServiceTest, LayoutOfBothFiles)
{
    service.pushNewMsg("message");
    service.pushDebugMsg("detail\n  of two lines");
    service.writeTrace();
    EXPECT_EQ(read("run.log"), SECTION);
    EXPECT_EQ(read("debugrun.log"), "Debug Trace start at: STAMP\n"
                                    "message\n"
                                    "detail\n  of two lines\n"
                                    "\n"
                                    "#### function trace ####\n"
                                    "void ZlErrorService::setLogFileName\n"
                                    "void ZlErrorService::pushNewMsg\n"
                                    "\tmessage\n"
                                    "void ZlErrorService::pushDebugMsg\n"
                                    "\tdetail\n  of two lines\n"
                                    "void ZlErrorService::writeTrace\n"
                                    "Debug Trace end at: STAMP\n");

    // Sections of one process share their start, the two files of one write their end; the debug log is the
    // last write's alone.
    service.pushNewMsg("message");
    stoppedAt = {1529582853, 42999};
    service.writeTrace();
    EXPECT_EQ(read("run.log"), std::string(SECTION) + SECTION);
    const std::string log = contentOf(TMP + "run.log");
    const std::string debug = contentOf(TMP + "debugrun.log");
    EXPECT_EQ(log.substr(1, 53), log.substr(log.rfind("Trace messages"), 53));
    const std::string end = " end at: 2018-06-21_14:07:33.042+0200\n";
    EXPECT_EQ(log.substr(log.size() - end.size()) + debug.substr(debug.size() - end.size()), end + end);
    EXPECT_EQ(debug.find("detail"), std::string::npos);
}

TEST_F(ZlErrorServiceTest, EmptyListsLeaveTheirFilesAlone)
{
    service.pushDebugMsg("detail");
    service.writeTrace();
    const std::string debug = contentOf(TMP + "debugrun.log");
    service.writeTrace();
    service.fullLog();
    service.writeTrace();
    EXPECT_FALSE(std::filesystem::exists(TMP + "run.log"));
    EXPECT_EQ(contentOf(TMP + "debugrun.log"), debug);

    // Of a failed run the log tells all, in the order in which it happened. The function trace of the writes
    // without debug lines has waited.
    service.pushDebugMsg("before");
    service.pushNewMsg("message");
    service.fullLog();
    service.writeTrace();
    EXPECT_EQ(read("run.log"),
              "\nTrace messages start at: STAMP\nbefore\nmessage\nTrace messager end at: STAMP\n");
    const std::string waited = "####\nvoid ZlErrorService::writeTrace\nvoid ZlErrorService::fullLog\n"
                               "void ZlErrorService::writeTrace\nvoid ZlErrorService::pushDebugMsg\n";
    EXPECT_NE(read("debugrun.log").find(waited), std::string::npos);
}

TEST_F(ZlErrorServiceTest, AFileThatCannotBeWrittenLosesItsSectionSilently)
{
    const std::pair<unsigned long, const char*> folders[] = {
        {MS_RDONLY, ""}, {0, "nr_inodes=1"}, {0, "size=4k"}};
    for (const auto& [flags, options] : folders) {
        service.pushNewMsg(std::string(20000, 'm'));
        ASSERT_EQ(mount("tmpfs", TMP.c_str(), "tmpfs", flags, options), 0);
        EXPECT_EQ(printed([&] { service.writeTrace(); }), "");
        umount(TMP.c_str());
        service.writeTrace();
        EXPECT_FALSE(std::filesystem::exists(TMP + "run.log") ||
                     std::filesystem::exists(TMP + "debugrun.log"));
    }
    service.pushNewMsg("message");
    std::filesystem::remove_all(TMP);
    service.writeTrace();
    EXPECT_FALSE(std::filesystem::exists(TMP));
    std::filesystem::create_directory(TMP);
}

TEST_F(ZlErrorServiceTest, LastErrorIsAppended)
{
    EXPECT_EQ(service.getLastError(nullptr), 1);
    std::string text = "kept, ";
    EXPECT_EQ(service.getLastError(&text), 0);
    EXPECT_EQ(text, "kept, getLastError failed. Parameter is NULL.");
}

TEST_F(ZlErrorServiceTest, StampsAndDurations)
{
    for (const auto& [microseconds, milliseconds] :
         {std::pair{999999, "999"}, {999, "000"}, {42000, "042"}}) {
        stoppedAt = {1529582853, microseconds};
        EXPECT_EQ(ZlTime::TimestampISO8601(), std::string("2018-06-21_14:07:33.") + milliseconds + "+0200");
    }
    const std::tuple<timeval, timeval, const char*> cases[] = {{{5, 0}, {6, 5}, "1.5 sec"}, // not padded
                                                               {{5, 999998}, {7, 3}, "1.5 sec"},
                                                               {{5, 7}, {5, 7}, "0.0 sec"},
                                                               {{5, 0}, {5, 203150}, "0.203150 sec"}};
    for (const auto& [begin, end, text] : cases) {
        ZlTime time;
        stoppedAt = begin;
        time.start();
        stoppedAt = end;
        time.stop();
        EXPECT_EQ(time.getTimeStr(), text);
    }
}

TEST(ZlErrorServiceDeathTest, ARunThatEndsBeforeItHasANameUsesTheDefault)
{
    // A process of its own, in which nobody has named the log.
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    const auto run = [] {
        ZlErrorService::errorServiceP->pushNewMsg("message");
        ZlErrorService::errorServiceP->writeTrace();
        exit(0);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(0), testing::Matcher<const std::string&>(""));
    EXPECT_NE(contentOf(TMP + "zlCliLog.log"), "");
    EXPECT_NE(contentOf(TMP + "debugzlCliLog.log"), "");
}
