#include "cluster/zelfversion.h"

#include <cstdlib>

#include "services/zlerrorservice.h"
#include "services/zlutils.h"

ZelfVersion::ZelfVersion(const std::string& version) : text(version)
{
    ZL_TRACE();
    std::vector<std::string> pieces;
    stringToVector(&pieces, text, ".");
    for (const std::string& piece : pieces) {
        numbers.push_back(static_cast<int32_t>(std::strtol(piece.c_str(), nullptr, 10)));
    }
}

bool ZelfVersion::operator<(const ZelfVersion& other) const
{
    ZL_TRACE();
    for (size_t i = 0; i < numbers.size(); ++i) {
        const int32_t otherNumber = i < other.numbers.size() ? other.numbers[i] : 0;
        if (numbers[i] != otherNumber) {
            return numbers[i] < otherNumber;
        }
    }
    return false;
}

bool ZelfVersion::operator>(const ZelfVersion& other) const
{
    ZL_TRACE();
    return !(*this < other);
}

bool ZelfVersion::operator==(const ZelfVersion& other) const
{
    ZL_TRACE();
    return !(*this < other) && !(*this > other);
}

bool ZelfVersion::operator!=(const ZelfVersion& other) const
{
    ZL_TRACE();
    return !(*this == other);
}

bool ZelfVersion::operator<=(const ZelfVersion& other) const
{
    ZL_TRACE();
    return *this < other || *this == other;
}

bool ZelfVersion::operator>=(const ZelfVersion& other) const
{
    ZL_TRACE();
    return *this > other || *this == other;
}

bool ZelfVersion::operator<(const std::string& other) const
{
    ZL_TRACE();
    return *this < ZelfVersion(other);
}

bool ZelfVersion::operator>(const std::string& other) const
{
    ZL_TRACE();
    return *this > ZelfVersion(other);
}

bool ZelfVersion::operator==(const std::string& other) const
{
    ZL_TRACE();
    return *this == ZelfVersion(other);
}

bool ZelfVersion::operator!=(const std::string& other) const
{
    ZL_TRACE();
    return *this != ZelfVersion(other);
}

bool ZelfVersion::operator<=(const std::string& other) const
{
    ZL_TRACE();
    return *this <= ZelfVersion(other);
}

bool ZelfVersion::operator>=(const std::string& other) const
{
    ZL_TRACE();
    return *this >= ZelfVersion(other);
}
