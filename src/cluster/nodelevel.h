// A release level: one number that grows with each release of the file system, such as 1600.
#pragma once

#include <cstdint>

using nodeLevel_t = uint32_t;
