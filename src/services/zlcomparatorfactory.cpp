#include "services/zlcomparatorfactory.h"

#include <cstdlib>
#include <strings.h>

#include "services/zlerrorservice.h"

ZlComparatorFactory::ZlComparatorFactory(const std::string& text, unsigned long flagBits, int place)
    : pattern(text), flags(flagBits), resultIfDifferent((flags & INVERTED) != 0),
      resultIfEqual(!resultIfDifferent), column(place)
{
    ZL_TRACE();
}

ZlComparatorFactory* ZlComparatorFactory::getVectorComparator(int column, unsigned long flags)
{
    ZL_TRACE();
    return new ZlComparatorFactory("", flags, column);
}

ZlComparatorFactory* ZlComparatorFactory::getUnaryStrComp(const std::string& pattern, unsigned long flags)
{
    ZL_TRACE();
    return new ZlComparatorFactory(pattern, flags, -1);
}

bool ZlComparatorFactory::operator()(const std::vector<std::string>& rowA,
                                     const std::vector<std::string>& rowB) const
{
    ZL_TRACE();
    const auto place = static_cast<size_t>(column); // beyond every row for a unary one
    if (place >= rowA.size() || place >= rowB.size()) {
        terminateProgram("vector comparator failed. Illeagal object.");
    }
    return stringComperator(rowA[place], rowB[place]);
}

bool ZlComparatorFactory::operator()(const std::string& text) const
{
    ZL_TRACE();
    if (column != -1) {
        terminateProgram("unary comparator failed. Illeagal object.");
    }
    return stringComperator(text, pattern);
}

bool ZlComparatorFactory::stringComperator(const std::string& a, const std::string& b) const
{
    ZL_TRACE();
    const bool equal = (flags & EXACT) != 0 ? a == b : strcasecmp(a.c_str(), b.c_str()) == 0;
    return equal ? resultIfEqual : resultIfDifferent;
}

void ZlComparatorFactory::terminateProgram(const std::string& text)
{
    ZL_TRACE();
    errorServiceP->pushDebugMsg(text);
    errorServiceP->fullLog();
    errorServiceP->writeTrace();
    std::exit(1);
}
