// The two numberings of errors.
#include "services/zelferrno.h"

#include <climits>
#include <map>
#include <set>
#include <tuple>

#include <gtest/gtest.h>

TEST(ZelfErrno, SystemNumbersComeBackAsTheyWere)
{
    std::set<Errno> zelfs;
    std::set<int> systems;
    for (int number = -1; number < 600; ++number) {
        const Errno zelf = ZelfErrnoFull(number);
        EXPECT_EQ(ZelfToSystemErrnoFull(zelf), number);
        EXPECT_TRUE(zelfs.insert(zelf).second) << number << " stands twice";
        EXPECT_TRUE(number > 127 || systems.insert(ZelfToSystemErrnoFull(number)).second) << number;
    }
    EXPECT_EQ(ZelfErrnoFull(35), 45);
    EXPECT_EQ(ZelfErrnoFull(130), 1130);
}

TEST(ZelfErrno, ExtendedNumbersFold)
{
    const std::tuple<Errno, Errno, int> cases[] = {
        // number, the common number, the system's
        {201, 201, 201}, {202, 22, 22},   {203, 22, 22},   {205, 205, 205},
        {208, 52, 60},   {246, 0, 0},     {304, 78, 110},  {666, 52, 60},
        {672, 52, 60},   {673, 22, 22},   {749, 749, 529}, {840, 1, 1},
        {841, 841, 841}, {999, 999, 999}, {1000, 1000, 0}, {INT_MIN, INT_MIN, INT_MIN}};
    for (const auto& [number, common, system] : cases) {
        EXPECT_EQ(FoldZelfErrno(number), common) << number;
        EXPECT_EQ(ZelfToToolErrno(number), common > 255 ? 255 : common) << number;
        EXPECT_EQ(ZelfToSystemErrnoFull(number), system) << number;
        EXPECT_EQ(ZelfToHostErrno(number), system) << number;
    }
    // How many numbers fold to each common one.
    const std::map<Errno, int> expected = {{0, 1},  {1, 16},  {2, 1},  {5, 29}, {11, 6}, {12, 3},
                                           {16, 5}, {22, 31}, {23, 1}, {26, 1}, {28, 8}, {46, 1},
                                           {48, 3}, {52, 15}, {70, 1}, {78, 3}, {80, 8}};
    std::map<Errno, int> counts;
    for (Errno number = -300; number < 2000; ++number) {
        counts[FoldZelfErrno(number)] += FoldZelfErrno(number) != number ? 1 : 0;
    }
    std::erase_if(counts, [](const auto& entry) { return entry.second == 0; });
    EXPECT_EQ(counts, expected);
}
