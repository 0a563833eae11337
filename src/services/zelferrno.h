// The file system's own error numbers, and Linux's.
//
// Below 128 the file system counts in its own way: alike up to 34, in another order above. A number without a
// counterpart on the other side appears there with 1000 added. Above 200 it has numbers of its own, which
// fold to common ones.
//
// The maps serve the message catalogue alone, which no verb opens.
#pragma once

#include <array>

using Errno = int;

// By Linux number, and by file-system number.
extern const std::array<Errno, 130> linux2zelf;
extern const std::array<int, 128> zelf2linux;

// Gives the file-system number of a system number. Numbers below 1 stay, those above 129 get 1000 added.
Errno ZelfErrnoFull(int number);

// Gives the system number of a file-system number; negative numbers stay.
int ZelfToSystemErrnoFull(Errno number);

// Gives the common number of an extended one, any other number as it is.
Errno FoldZelfErrno(Errno number);

// Gives the common number, at most 255: it fits in an exit status.
int ZelfToToolErrno(Errno number);

// Gives the system number; 0 stays.
int ZelfToHostErrno(int number);
