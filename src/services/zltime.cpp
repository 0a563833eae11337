#include "services/zltime.h"

#include <array>
#include <cstdio>
#include <ctime>

#include "services/zlerrorservice.h"

ZlTime::TimePair ZlTime::now()
{
    timeval time{};
    gettimeofday(&time, nullptr);
    return {time.tv_sec, time.tv_usec};
}

void ZlTime::start()
{
    ZL_TRACE();
    begin = now();
}

void ZlTime::stop()
{
    ZL_TRACE();
    end = now();
    difference = {end.seconds - begin.seconds, end.microseconds - begin.microseconds};
    if (difference.microseconds < 0) {
        difference.seconds -= 1;
        difference.microseconds += 1000000;
    }
}

std::string ZlTime::getTimeStr() const
{
    ZL_TRACE();
    return std::to_string(difference.seconds) + "." + std::to_string(difference.microseconds) + " sec";
}

std::string ZlTime::TimestampISO8601()
{
    ZL_TRACE();
    const TimePair time = now();
    const time_t seconds = time.seconds;
    tm local{};
    localtime_r(&seconds, &local);

    std::array<char, 20> dateAndTime{};
    std::array<char, 5> milliseconds{};
    std::array<char, 6> zone{};
    std::strftime(dateAndTime.data(), dateAndTime.size(), "%Y-%m-%d_%H:%M:%S", &local);
    std::snprintf(milliseconds.data(), milliseconds.size(), ".%03u",
                  static_cast<unsigned>(time.microseconds / 1000) % 1000U);
    std::strftime(zone.data(), zone.size(), "%z", &local);
    return std::string(dateAndTime.data()) + milliseconds.data() + zone.data();
}
