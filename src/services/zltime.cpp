#include "services/zltime.h"

#include <array>
#include <cstdio>
#include <ctime>

#include "services/zlerrorservice.h"

void ZlTime::start()
{
    ZL_TRACE();
    gettimeofday(&begin, nullptr);
}

void ZlTime::stop()
{
    ZL_TRACE();
    gettimeofday(&end, nullptr);
    timersub(&end, &begin, &difference);
}

std::string ZlTime::getTimeStr() const
{
    ZL_TRACE();
    return std::to_string(difference.tv_sec) + "." + std::to_string(difference.tv_usec) + " sec";
}

std::string ZlTime::TimestampISO8601()
{
    ZL_TRACE();
    timeval time{};
    gettimeofday(&time, nullptr);
    tm local{};
    localtime_r(&time.tv_sec, &local);

    std::array<char, 20> dateAndTime{};
    std::array<char, 5> milliseconds{};
    std::array<char, 6> zone{};
    std::strftime(dateAndTime.data(), dateAndTime.size(), "%Y-%m-%d_%H:%M:%S", &local);
    std::snprintf(milliseconds.data(), milliseconds.size(), ".%03u",
                  static_cast<unsigned>(time.tv_usec / 1000) % 1000U);
    std::strftime(zone.data(), zone.size(), "%z", &local);
    return std::string(dateAndTime.data()) + milliseconds.data() + zone.data();
}
