#include "services/zlutils.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace {

bool isDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}

bool isCapital(char byte)
{
    return byte >= 'A' && byte <= 'Z';
}

// Hands each piece of `text` between two hits of `find(from)` to `add`; `width` is the length of a hit.
template <typename Find, typename Add>
void forEachPiece(const std::string& text, size_t width, Find find, Add add)
{
    size_t begin = 0;
    for (size_t hit = find(begin); hit != std::string::npos; hit = find(begin)) {
        add(text.substr(begin, hit - begin));
        // A hit of a delimiter of several bytes may resume behind the end.
        begin = std::min(hit + width, text.size());
    }
    add(text.substr(begin));
}

template <typename Add>
void cutAtAnyOf(const std::string& text, const std::string& delimiters, Add add)
{
    // One byte, as nearly always, is found many times as fast as one of several.
    const auto find = [&](size_t from) {
        return delimiters.size() == 1 ? text.find(delimiters[0], from) : text.find_first_of(delimiters, from);
    };
    forEachPiece(text, delimiters.size(), find, add);
}

template <typename Add>
void cutAtWhole(const std::string& text, const std::string& delimiter, Add add)
{
    if (delimiter.empty()) {
        add(text);
        return;
    }
    forEachPiece(
        text, delimiter.size(), [&](size_t from) { return text.find(delimiter, from); }, add);
}

template <typename Container>
std::string join(const Container& container, const std::string& separator)
{
    std::string joined;
    bool first = true;
    for (const std::string& element : container) {
        if (!first) {
            joined += separator;
        }
        first = false;
        joined += element;
    }
    return joined;
}

} // namespace

void trimLeft(std::string& text, const std::string& set)
{
    const size_t first = text.find_first_not_of(set);
    if (first != std::string::npos) {
        text.erase(0, first);
    }
}

void trimRight(std::string& text, const std::string& set)
{
    const size_t last = text.find_last_not_of(set);
    if (last != std::string::npos && last > 0) {
        text.erase(last + 1);
    }
}

void trim(std::string& text, const std::string& set)
{
    trimLeft(text, set);
    trimRight(text, set);
}

void toLower(std::string& text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char byte) { return static_cast<char>(std::tolower(byte)); });
}

void toUpper(std::string& text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char byte) { return static_cast<char>(std::toupper(byte)); });
}

int replaceAllSubstrg(std::string& text, const std::string& from, const std::string& to)
{
    if (from.empty() && to.empty()) {
        return 0; // for ever
    }
    // The length on entry stays the bound even when the text grows or shrinks under it.
    const size_t bound = text.size();
    int count = 0;
    for (size_t hit = text.find(from); hit < bound; hit = text.find(from, hit + to.size())) {
        text.replace(hit, from.size(), to);
        ++count;
    }
    return count;
}

int stringToKeyValue(std::string& key, std::string& value, const std::string& line,
                     const std::string& delimiters)
{
    const size_t cut = line.find_first_of(delimiters);
    if (cut == std::string::npos) {
        return 2;
    }
    key = line.substr(0, cut);
    value = line.substr(cut + 1);
    trim(key, whitespace);
    trim(value, whitespace);
    return 0;
}

int stringToVector(std::vector<std::string>* list, const std::string& text, const std::string& delimiter)
{
    if (list == nullptr) {
        return 1;
    }
    list->clear();
    cutAtAnyOf(text, delimiter, [list](std::string&& piece) { list->push_back(std::move(piece)); });
    return 0;
}

int stringToSet(std::set<std::string>* set, const std::string& text, const std::string& delimiter)
{
    if (set == nullptr) {
        return 1;
    }
    set->clear();
    cutAtAnyOf(text, delimiter, [set](std::string&& piece) { set->insert(set->end(), std::move(piece)); });
    return 0;
}

int stringListToContainer(const std::string& text, const std::string& delimiter,
                          std::vector<std::string>* list)
{
    if (list == nullptr) {
        return 1;
    }
    cutAtWhole(text, delimiter, [list](std::string piece) { list->push_back(std::move(piece)); });
    return 0;
}

void cut(std::vector<std::string_view>* pieces, std::string_view text, char delimiter)
{
    pieces->clear();
    for (;;) {
        const size_t end = text.find(delimiter);
        pieces->push_back(text.substr(0, end));
        if (end == std::string_view::npos) {
            return;
        }
        text.remove_prefix(end + 1);
    }
}

std::vector<std::string> split(const std::string& text, const std::string& delimiter)
{
    std::vector<std::string> fields;
    stringListToContainer(text, delimiter, &fields);
    return fields;
}

std::string containerToString(const std::vector<std::string>& list, const std::string& separator)
{
    return join(list, separator);
}

std::string toString(int value)
{
    return std::to_string(value);
}

std::string toString(unsigned int value)
{
    return std::to_string(value);
}

std::string toString(long value)
{
    return std::to_string(value);
}

std::string toString(unsigned long value)
{
    return std::to_string(value);
}

std::string toString(bool value)
{
    return value ? "1" : "0";
}

std::string toString(const std::string& value)
{
    return value;
}

std::string toString(const std::vector<std::string>& list, const std::string& separator)
{
    return join(list, separator);
}

std::string toString(const std::set<std::string>& set, const std::string& separator)
{
    return join(set, separator);
}

bool contains(const std::vector<std::string>& list, std::string_view word)
{
    return std::ranges::find(list, word) != list.end();
}

std::string quoteForBothSides(const std::string& text)
{
    return "'\"" + text + "\"'";
}

const std::string* getValue(const std::map<std::string, std::string>& map, const std::string& key)
{
    const auto entry = map.find(key);
    return entry == map.end() ? nullptr : &entry->second;
}

std::string valueOr(const std::map<std::string, std::string>& map, const std::string& key,
                    const std::string& missing)
{
    const std::string* value = getValue(map, key);
    return value == nullptr ? missing : *value;
}

void percentEncode(std::string& out, const std::string& in, std::string_view set)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::array<bool, 256> encoded{};
    for (const char byte : set) {
        encoded[static_cast<unsigned char>(byte)] = true;
    }
    std::string result(3 * in.size() + 1, '\0');
    char* end = result.data();
    for (const char byte : in) {
        const auto value = static_cast<unsigned char>(byte);
        if (encoded[value]) {
            *end++ = '%';
            *end++ = digits[value >> 4];
            *end++ = digits[value & 0xf];
        } else {
            *end++ = byte;
        }
    }
    result.resize(static_cast<size_t>(end - result.data()));
    out = std::move(result);
}

void percentEncode(std::vector<std::string>& out, const std::vector<std::string>& in, std::string_view set)
{
    std::vector<std::string> result(in.size());
    for (size_t i = 0; i < in.size(); ++i) {
        percentEncode(result[i], in[i], set);
    }
    out = std::move(result);
}

void percentDecode(std::string& out, std::string_view in)
{
    const auto hexValue = [](char byte) {
        return isDigit(byte)                ? byte - '0'
               : byte >= 'A' && byte <= 'F' ? byte - 'A' + 10
               : byte >= 'a' && byte <= 'f' ? byte - 'a' + 10
                                            : -1;
    };
    size_t hit = in.find('%');
    if (hit == std::string_view::npos) {
        out = in;
        return;
    }
    std::string result;
    result.reserve(in.size());
    size_t begin = 0;
    for (; hit != std::string_view::npos; hit = in.find('%', begin)) {
        result.append(in, begin, hit - begin);
        begin = hit + 3;
        const int high = hit + 1 < in.size() ? hexValue(in[hit + 1]) : -1;
        const int low = hit + 2 < in.size() ? hexValue(in[hit + 2]) : -1;
        if (high >= 0 && low >= 0) {
            result += static_cast<char>(16 * high + low);
        } else {
            // Blanks and signs count as strtol counts them.
            result += static_cast<char>(std::strtol(std::string(in.substr(hit + 1, 2)).c_str(), nullptr, 16));
        }
    }
    // A percent sign too near to the end leaves `begin` behind it, and append() raises the range error.
    result.append(in, begin, std::string::npos);
    out = std::move(result);
}

int isDecimal(const std::string& text)
{
    const size_t first = text.find_first_not_of("+-");
    const size_t point = text.find('.');
    if (first > 1 || point == text.size() - 1) {
        return 0;
    }
    for (size_t i = 1; i < text.size(); ++i) {
        if (!isDigit(text[i]) && i != point) {
            return 0;
        }
    }
    return 1;
}

int isUnsingedDecimal(const std::string& text)
{
    const size_t point = text.find('.');
    if (text.empty() || point == text.size() - 1) {
        return 0;
    }
    for (size_t i = 0; i < text.size(); ++i) {
        if (!isDigit(text[i]) && i != point) {
            return 0;
        }
    }
    return 1;
}

int isInt(const std::string& text)
{
    const auto number = static_cast<int32_t>(std::strtol(text.c_str(), nullptr, 10));
    return toString(number) == text ? 1 : 0;
}

int isStringAlpha(const std::string& text)
{
    return std::all_of(text.begin(), text.end(), [](unsigned char byte) { return std::isalpha(byte) != 0; })
               ? 1
               : 0;
}

int isStringPMR(const std::string& text)
{
    constexpr std::string_view pattern = "xxxxx.yyy.zzz";
    if (text.size() > 2 && text.compare(0, 2, "TS") == 0) {
        return text.size() == 11 ? 1 : 0;
    }
    if (text.size() != pattern.size()) {
        return 0;
    }
    for (size_t i = 0; i < text.size(); ++i) {
        const bool fits = pattern[i] == '.'   ? text[i] == '.'
                          : pattern[i] == 'y' ? isDigit(text[i]) || isCapital(text[i])
                                              : isDigit(text[i]);
        if (!fits) {
            return 0;
        }
    }
    return 1;
}

long getFileSize(const std::string& path)
{
    // Without O_NONBLOCK a pipe given as a file would hold the run for ever.
    const int file = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (file < 0) {
        return -1;
    }
    struct stat status {};
    const bool isFolder = fstat(file, &status) == 0 && S_ISDIR(status.st_mode);
    const off_t size = isFolder ? -1 : lseek(file, 0, SEEK_END);
    close(file);
    return size;
}

uint64_t getFreeDiskSpace(const std::string& path)
{
    struct statvfs status {};
    if (statvfs(path.c_str(), &status) != 0) {
        return 0;
    }
    return static_cast<uint64_t>(status.f_bfree) * status.f_frsize;
}
