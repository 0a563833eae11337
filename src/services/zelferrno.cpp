#include "services/zelferrno.h"

#include <algorithm>
#include <climits>
#include <iterator>

// clang-format off

const std::array<Errno, 130> linux2zelf = {
    0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15,
    16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31,
    32, 33, 34, 45, 36, 37, 38, 39, 40, 41, 35, 42, 43, 44, 46, 47,
    48, 49, 50, 51, 1052, 1053, 1054, 1055, 1056, 1057, 1058, 1059, 52, 53, 54, 55,
    56, 58, 59, 60, 61, 62, 63, 64, 65, 66, 67, 68, 69, 70, 71, 72,
    73, 74, 75, 76, 77, 79, 80, 81, 57, 82, 83, 84, 85, 86, 87, 89,
    90, 91, 92, 93, 94, 95, 96, 97, 98, 99, 100, 101, 102, 103, 78, 104,
    105, 106, 107, 108, 109, 110, 111, 112, 113, 114, 88, 115, 116, 117, 118, 119,
    120, 121,
};

const std::array<int, 128> zelf2linux = {
    0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15,
    16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31,
    32, 33, 34, 42, 36, 37, 38, 39, 40, 41, 43, 44, 45, 35, 46, 47,
    48, 49, 50, 51, 60, 61, 62, 63, 64, 88, 65, 66, 67, 68, 69, 70,
    71, 72, 73, 74, 75, 76, 77, 78, 79, 80, 81, 82, 83, 84, 110, 85,
    86, 87, 89, 90, 91, 92, 93, 94, 122, 95, 96, 97, 98, 99, 100, 101,
    102, 103, 104, 105, 106, 107, 108, 109, 111, 112, 113, 114, 115, 116, 117, 118,
    119, 120, 121, 123, 124, 125, 126, 127, 128, 129, 1122, 1123, 1124, 1125, 1126, 1127,
};

// clang-format on

namespace {

// Extended numbers from `first` to `last` fold to `common`.
struct FoldRow {
    Errno common;
    Errno first;
    Errno last;
};

// In the order of the extended numbers.
constexpr FoldRow FOLDS[] = {
    {22, 202, 203}, {12, 204, 204}, {16, 207, 207}, {52, 208, 208}, {1, 210, 210},  {52, 211, 212},
    {28, 213, 213}, {5, 214, 214},  {22, 215, 216}, {5, 217, 218},  {28, 219, 221}, {5, 222, 222},
    {11, 223, 223}, {52, 224, 225}, {5, 226, 230},  {80, 231, 233}, {5, 234, 234},  {80, 235, 235},
    {48, 236, 236}, {5, 238, 238},  {11, 239, 239}, {22, 240, 242}, {28, 244, 244}, {0, 246, 246},
    {16, 247, 247}, {52, 248, 248}, {5, 249, 249},  {5, 251, 251},  {28, 252, 252}, {48, 253, 253},
    {22, 301, 301}, {11, 302, 302}, {78, 304, 304}, {12, 305, 305}, {52, 307, 307}, {16, 309, 309},
    {1, 310, 310},  {11, 311, 311}, {1, 312, 314},  {1, 316, 316},  {22, 317, 317}, {1, 318, 318},
    {5, 319, 319},  {22, 323, 323}, {12, 324, 324}, {78, 332, 332}, {22, 333, 334}, {52, 666, 672},
    {22, 673, 673}, {16, 674, 674}, {22, 675, 677}, {5, 678, 678},  {46, 679, 679}, {16, 680, 680},
    {11, 681, 681}, {5, 682, 682},  {78, 683, 683}, {5, 684, 685},  {52, 686, 686}, {5, 687, 691},
    {23, 692, 692}, {80, 693, 694}, {22, 696, 696}, {1, 703, 703},  {26, 708, 708}, {22, 709, 710},
    {1, 711, 711},  {5, 715, 715},  {80, 717, 718}, {70, 719, 719}, {22, 720, 721}, {1, 722, 722},
    {48, 725, 725}, {1, 726, 727},  {1, 730, 730},  {5, 733, 733},  {22, 742, 742}, {11, 748, 748},
    {28, 751, 751}, {22, 752, 752}, {28, 759, 759}, {22, 763, 764}, {5, 770, 770},  {1, 778, 778},
    {22, 779, 779}, {5, 780, 782},  {22, 783, 785}, {2, 786, 786},  {22, 789, 789}, {1, 799, 799},
    {22, 837, 837}, {1, 840, 840},
};

constexpr int WITHOUT_COUNTERPART = 1000;

} // namespace

Errno ZelfErrnoFull(int number)
{
    if (number < 1) {
        return number;
    }
    if (number < static_cast<int>(linux2zelf.size())) {
        return linux2zelf[static_cast<size_t>(number)];
    }
    return number <= INT_MAX - WITHOUT_COUNTERPART ? number + WITHOUT_COUNTERPART : number;
}

int ZelfToSystemErrnoFull(Errno number)
{
    const Errno folded = FoldZelfErrno(number);
    if (folded < 1) {
        return folded;
    }
    if (folded < static_cast<Errno>(zelf2linux.size())) {
        return zelf2linux[static_cast<size_t>(folded)];
    }
    if (folded == 749) {
        return 529;
    }
    return folded >= WITHOUT_COUNTERPART ? folded - WITHOUT_COUNTERPART : folded;
}

Errno FoldZelfErrno(Errno number)
{
    const FoldRow* row = std::find_if(std::begin(FOLDS), std::end(FOLDS),
                                      [number](const FoldRow& fold) { return number <= fold.last; });
    return row != std::end(FOLDS) && number >= row->first ? row->common : number;
}

int ZelfToToolErrno(Errno number)
{
    return std::min(FoldZelfErrno(number), 255);
}

int ZelfToHostErrno(int number)
{
    return number == 0 ? 0 : ZelfToSystemErrnoFull(number);
}
