// The two log files, and the times in them.
#include "fixture.h"

#include <cstdlib>
#include <ctime>
#include <sys/time.h>

#include "services/zltime.h"

namespace {

const std::string LOG = TMP + "test.log";
const std::string DEBUG_LOG = TMP + "debugtest.log";

timeval stoppedAt{}; // the clock of this program, when a test has stopped it

class ZlErrorServiceTest : public ZelfTest {
protected:
    void TearDown() override
    {
        ZelfTest::TearDown();
        stoppedAt = {};
    }
};

} // namespace

extern "C" int gettimeofday(timeval* __restrict time, void* __restrict /*zone*/) noexcept
{
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    *time = stoppedAt.tv_sec != 0 ? stoppedAt : timeval{now.tv_sec, now.tv_nsec / 1000};
    return 0;
}

TEST_F(ZlErrorServiceTest, SectionsOfOneProcessShareTheirStart)
{
    setenv("TZ", "TST-02:00", 1);
    tzset();
    service.pushNewMsg("message");
    service.pushDebugMsg("detail");
    service.writeTrace();
    expectIn(contentOf(DEBUG_LOG), "\nmessage\ndetail\n\n####");
    service.pushNewMsg("message");
    stoppedAt = {1529582853, 42999};
    service.writeTrace();
    const std::string log = contentOf(LOG);
    EXPECT_EQ(log.substr(1, 53), log.substr(log.rfind("Trace messages"), 53));
    // The two files of one write share their end; the debug log is the last write's alone.
    const std::string end = " end at: 2018-06-21_14:07:33.042+0200\n";
    const std::string debug = contentOf(DEBUG_LOG);
    EXPECT_EQ(log.substr(log.size() - end.size()) + debug.substr(debug.size() - end.size()), end + end);
    EXPECT_EQ(debug.find("detail"), std::string::npos);
}

TEST_F(ZlErrorServiceTest, Durations)
{
    const std::tuple<timeval, timeval, const char*> cases[] = {{{5, 0}, {6, 5}, "1.5 sec"}, // not padded
                                                               {{5, 999998}, {7, 3}, "1.5 sec"},
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
