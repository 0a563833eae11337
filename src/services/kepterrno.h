// Keeps errno as it is, as long as this object lives. The end of a write tells its success by errno (see
// ZlFileIO::writeFile), so what comes in between, a signal handler say, must not change it.
#pragma once

#include <cerrno>

class KeptErrno {
public:
    KeptErrno() = default;
    ~KeptErrno() { errno = number; }
    KeptErrno(const KeptErrno&) = delete;
    KeptErrno& operator=(const KeptErrno&) = delete;

private:
    int number = errno;
};
