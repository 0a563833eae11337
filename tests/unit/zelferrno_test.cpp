// The two numberings of errors.
#include "services/zelferrno.h"

#include <climits>

#include <gtest/gtest.h>

TEST(ZelfErrno, ExtendedNumbersFoldAndAllOthersStay)
{
    const std::pair<Errno, Errno> cases[] = {{-1, -1},  {201, 201}, {202, 22}, {203, 22}, {204, 12},
                                             {225, 52}, {226, 5},   {230, 5},  {246, 0},  {254, 254},
                                             {780, 5},  {783, 22},  {786, 2},  {840, 1},  {841, 841}};
    for (const auto& [number, folded] : cases) {
        EXPECT_EQ(FoldZelfErrno(number), folded) << number;
        EXPECT_EQ(ZelfToToolErrno(number), folded > 255 ? 255 : folded) << number;
        EXPECT_EQ(ZelfToHostErrno(number), ZelfToSystemErrnoFull(number)) << number;
    }
}

TEST(ZelfErrno, SystemNumbersAndBack)
{
    for (const auto& [system, zelf] : {std::pair{35, 45}, {42, 35}, {52, 1052}, {88, 57}, {130, 1130}}) {
        EXPECT_EQ(ZelfErrnoFull(system), zelf);
    }
    // What the system gives comes back as it was.
    for (int number = -1; number < 600; ++number) {
        EXPECT_EQ(ZelfToSystemErrnoFull(ZelfErrnoFull(number)), number);
    }
    // Numbers outside the tables.
    for (const auto& [zelf, system] : {std::pair{128, 128}, {749, 529}, {999, 999}, {1000, 0}, {1001, 1}}) {
        EXPECT_EQ(ZelfToSystemErrnoFull(zelf), system) << zelf;
    }
    EXPECT_EQ(ZelfErrnoFull(INT_MAX), INT_MAX);
    EXPECT_EQ(ZelfErrnoFull(INT_MAX - 1000), INT_MAX);
}
