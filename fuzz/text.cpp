// The text utilities: what is cut can be joined again, what a predicate says holds.
#include <set>

#include "cluster/zelfversion.h"
#include "fuzz.h"
#include "services/zlutils.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    FuzzedDataProvider input(bytes, size);
    const std::string word = input.ConsumeRandomLengthString(4);
    const std::string text = input.ConsumeRemainingBytesAsString();

    DEMAND(containerToString(split(text, word), word) == text);
    std::vector<std::string> pieces;
    stringToVector(&pieces, text, ",");
    DEMAND(containerToString(pieces, ",") == text);
    stringToVector(&pieces, text, word);
    std::set<std::string> set;
    stringToSet(&set, text, word);
    DEMAND(set == std::set<std::string>(pieces.begin(), pieces.end()));

    std::string trimmed = text;
    trim(trimmed, whitespace);
    std::string again = trimmed;
    trim(again, whitespace);
    DEMAND(trimmed == again && text.find(trimmed) != std::string::npos);

    std::string replaced = text;
    const int count = replaceAllSubstrg(replaced, word, "--");
    DEMAND(replaced.size() ==
           text.size() + static_cast<size_t>(count) * 2 - static_cast<size_t>(count) * word.size());

    std::string key;
    std::string value;
    DEMAND((stringToKeyValue(key, value, text, word) == 2) ==
           (text.find_first_of(word) == std::string::npos));

    DEMAND(isInt(text) == 0 || std::to_string(std::stoi(text)) == text);
    DEMAND(isUnsingedDecimal(text) == 0 || isDecimal(text) == 1);
    DEMAND(isStringPMR(text) == 0 || text.size() == 11 || text.size() == 13);
    DEMAND(isStringAlpha(text) == 0 || isInt(text) == 0);

    const ZelfVersion a(text);
    const ZelfVersion b(word);
    DEMAND((a < b) != (a >= b) && !(a < a));
    dropTrace();
    return 0;
}
