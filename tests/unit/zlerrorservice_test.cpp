// The two log files, byte for byte, and the times in them.
#include "fixture.h"

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <sys/time.h>

#include "services/zlerrorservice.h"
#include "services/zltime.h"

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

    ZlErrorService& service = *ZlErrorService::errorServiceP;
};

} // namespace

TEST_F(ZlErrorServiceTest, SectionsOfOneProcessShareTheirStart)
{
    service.pushNewMsg("message");
    service.pushDebugMsg("detail\n  of two lines");
    service.writeTrace();
    EXPECT_NE(contentOf(TMP + "debugrun.log").find("\nmessage\ndetail\n  of two lines\n\n####"),
              std::string::npos);
    service.pushNewMsg("message");
    stoppedAt = {1529582853, 42999};
    service.writeTrace();
    const std::string log = contentOf(TMP + "run.log");
    EXPECT_EQ(log.substr(1, 53), log.substr(log.rfind("Trace messages"), 53));
    // The two files of one write share their end; the debug log is the last write's alone.
    const std::string debug = contentOf(TMP + "debugrun.log");
    const std::string end = " end at: 2018-06-21_14:07:33.042+0200\n";
    EXPECT_EQ(log.substr(log.size() - end.size()) + debug.substr(debug.size() - end.size()), end + end);
    EXPECT_EQ(debug.find("detail"), std::string::npos);
}

TEST_F(ZlErrorServiceTest, EmptyListsLeaveTheirFilesAlone)
{
    service.pushDebugMsg("detail");
    service.writeTrace();
    const std::string debug = contentOf(TMP + "debugrun.log");
    service.fullLog();
    service.writeTrace();
    EXPECT_FALSE(std::filesystem::exists(TMP + "run.log"));
    EXPECT_EQ(contentOf(TMP + "debugrun.log"), debug);

    // Of a failed run the log tells all, in the order in which it happened.
    service.pushDebugMsg("before");
    service.pushNewMsg("message");
    service.fullLog();
    service.writeTrace();
    EXPECT_NE(contentOf(TMP + "run.log").find("\nbefore\nmessage\nTrace messager end"), std::string::npos);
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
