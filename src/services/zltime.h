// Stopwatch and time stamp.
//
// The stopwatch measures external commands and whole-file I/O for the trace; the stamp heads and closes each
// section of the log files.
#pragma once

#include <string>
#include <sys/time.h>

class ZlTime {
public:
    // Stores the time of day as the beginning of the measurement.
    void start();

    // Stores the time of day as its end, and the difference.
    void stop();

    // Gives the measured duration as "<seconds>.<microseconds> sec". The microseconds are not padded: one
    // second and five microseconds reads "1.5 sec". Support scripts read this form.
    std::string getTimeStr() const;

    // Gives the local time as "2018-06-21_14:07:33.042+0200": milliseconds are cut, not rounded, and the zone
    // has no colon.
    static std::string TimestampISO8601();

private:
    timeval begin{};
    timeval end{};
    timeval difference{};
};
