// The two numberings of errors.
#include "services/zelferrno.h"

#include <climits>
#include <map>
#include <sstream>

#include <gtest/gtest.h>

// Common numbers, each with a colon, ahead of the extended ones that fold to them.
const char* const FOLDS =
    "0: 246 1: 210 310 312 313 314 316 318 703 711 722 726 727 730 778 799 840 2: 786 "
    "5: 214 217 218 222 226-230 234 238 249 251 319 678 682 684 685 687-691 715 733 770 780-782 "
    "11: 223 239 302 311 681 748 12: 204 305 324 16: 207 247 309 674 680 "
    "22: 202 203 215 216 240-242 301 317 323 333 334 673 675-677 696 709 710 720 721 742 752 763 764 779 "
    "783-785 789 837 23: 692 26: 708 28: 213 219-221 244 252 751 759 46: 679 48: 236 253 725 "
    "52: 208 211 212 224 225 248 307 666-672 686 70: 719 78: 304 332 683 80: 231-233 235 693 694 717 718";

TEST(ZelfErrno, ExtendedNumbersFoldAndAllOthersStay)
{
    std::map<Errno, Errno> folds;
    Errno common = 0;
    std::istringstream words(FOLDS);
    for (std::string word; words >> word;) {
        const Errno last = std::stoi(word.substr(word.find('-') + 1));
        for (Errno number = std::stoi(word); word.back() != ':' && number <= last; ++number) {
            folds[number] = common;
        }
        common = word.back() == ':' ? last : common;
    }
    for (Errno number = -300; number < 2000; ++number) {
        const Errno folded = folds.contains(number) ? folds[number] : number;
        EXPECT_EQ(FoldZelfErrno(number), folded) << number;
        EXPECT_EQ(ZelfToToolErrno(number), folded > 255 ? 255 : folded) << number;
        EXPECT_EQ(ZelfToSystemErrnoFull(number), ZelfToSystemErrnoFull(folded)) << number;
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
}
