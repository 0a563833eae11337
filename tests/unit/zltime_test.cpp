// The times in the logs.
#include "services/zltime.h"

#include <cstdlib>
#include <ctime>

#include <gtest/gtest.h>

static timeval now{};

extern "C" int gettimeofday(timeval* __restrict time, void* __restrict /*zone*/) noexcept
{
    *time = now;
    return 0;
}

TEST(ZlTime, StampsAndDurations)
{
    setenv("TZ", "TST-02:00", 1);
    tzset();
    now = {1529582853, 42999};
    EXPECT_EQ(ZlTime::TimestampISO8601(), "2018-06-21_14:07:33.042+0200");
    ZlTime time;
    now = {5, 999998};
    time.start();
    now = {7, 3};
    time.stop();
    EXPECT_EQ(time.getTimeStr(), "1.5 sec"); // not padded
}
