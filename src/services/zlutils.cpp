#include "services/zlutils.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <fcntl.h>
#include <iterator>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace {

bool isDigit(char byte)
{
    return byte >= '0' && byte <= '9';
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
    std::ranges::transform(text, text.begin(), [](unsigned char byte) { return std::tolower(byte); });
}

void toUpper(std::string& text)
{
    std::ranges::transform(text, text.begin(), [](unsigned char byte) { return std::toupper(byte); });
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
    const size_t end = line.find_first_of(delimiters);
    if (end == std::string::npos) {
        return 2;
    }
    key = line.substr(0, end);
    value = line.substr(end + 1);
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
    size_t begin = 0;
    for (size_t end; (end = text.find_first_of(delimiter, begin)) != std::string::npos;) {
        list->push_back(text.substr(begin, end - begin));
        begin = std::min(end + delimiter.size(), text.size());
    }
    list->push_back(text.substr(begin));
    return 0;
}

int stringToSet(std::set<std::string>* set, const std::string& text, const std::string& delimiter)
{
    if (set == nullptr) {
        return 1;
    }
    std::vector<std::string> pieces;
    stringToVector(&pieces, text, delimiter);
    *set = {pieces.begin(), pieces.end()};
    return 0;
}

int stringListToContainer(const std::string& text, const std::string& delimiter,
                          std::vector<std::string>* list)
{
    if (list == nullptr) {
        return 1;
    }
    std::ranges::move(split(text, delimiter), std::back_inserter(*list));
    return 0;
}

void splitViews(std::vector<std::string_view>* pieces, std::string_view text, char delimiter)
{
    pieces->clear();
    size_t begin = 0;
    for (size_t end = 0; end < text.size(); ++end) {
        if (text[end] == delimiter) {
            pieces->push_back(text.substr(begin, end - begin));
            begin = end + 1;
        }
    }
    pieces->push_back(text.substr(begin));
}

std::vector<std::string> split(const std::string& text, const std::string& delimiter)
{
    std::vector<std::string> fields;
    size_t begin = 0;
    if (!delimiter.empty()) {
        for (size_t end; (end = text.find(delimiter, begin)) != std::string::npos;) {
            fields.push_back(text.substr(begin, end - begin));
            begin = end + delimiter.size();
        }
    }
    fields.push_back(text.substr(begin));
    return fields;
}

std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> lines;
    for (size_t begin = 0; begin < text.size(); begin += lines.back().size()) {
        const size_t last = std::min(text.find('\n', begin), text.size() - 1);
        lines.push_back(text.substr(begin, last - begin + 1));
    }
    return lines;
}

std::string containerToString(const std::vector<std::string>& list, const std::string& separator)
{
    std::string joined;
    for (size_t i = 0; i < list.size(); ++i) {
        joined.append(i == 0 ? emptyStrg : separator).append(list[i]);
    }
    return joined;
}

std::string toString(const std::string& value)
{
    return value;
}

std::string toString(const std::vector<std::string>& list, const std::string& separator)
{
    return containerToString(list, separator);
}

std::string toString(const std::set<std::string>& set, const std::string& separator)
{
    return containerToString({set.begin(), set.end()}, separator);
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
    std::string result;
    result.reserve(3 * in.size() + 1);
    size_t begin = 0;
    for (size_t hit; (hit = in.find_first_of(set, begin)) != std::string::npos; begin = hit + 1) {
        const auto value = static_cast<unsigned char>(in[hit]);
        result.append(in, begin, hit - begin).append({'%', digits[value / 16], digits[value % 16]});
    }
    result.append(in, begin);
    out = std::move(result);
}

void percentEncode(std::vector<std::string>& out, const std::vector<std::string>& in, std::string_view set)
{
    out.clear();
    for (const std::string& text : in) {
        percentEncode(out.emplace_back(), text, set);
    }
}

void percentDecode(std::string& out, std::string_view in)
{
    std::string result;
    size_t begin = 0;
    for (size_t hit; (hit = in.find('%', begin)) != std::string_view::npos; begin = hit + 3) {
        const std::string digits(in.substr(hit + 1, 2));
        result.append(in, begin, hit - begin);
        result += static_cast<char>(std::strtol(digits.c_str(), nullptr, 16));
    }
    // A percent sign too near to the end leaves `begin` behind it: this raises the range error.
    result.append(in, begin);
    out = std::move(result);
}

namespace {

// Digits from `begin` on, and at most one ".", which is not last.
bool isNumberFrom(const std::string& text, size_t begin)
{
    const size_t point = text.find('.');
    for (size_t i = begin; i < text.size(); ++i) {
        if (!isDigit(text[i]) && i != point) {
            return false;
        }
    }
    return point != text.size() - 1;
}

} // namespace

int isDecimal(const std::string& text)
{
    return text.find_first_not_of("+-") <= 1 && isNumberFrom(text, 1) ? 1 : 0;
}

int isUnsingedDecimal(const std::string& text)
{
    return !text.empty() && isNumberFrom(text, 0) ? 1 : 0;
}

int isInt(const std::string& text)
{
    const auto number = static_cast<int32_t>(std::strtol(text.c_str(), nullptr, 10));
    return toString(number) == text ? 1 : 0;
}

int isStringAlpha(const std::string& text)
{
    return std::ranges::all_of(text, [](unsigned char byte) { return std::isalpha(byte) != 0; }) ? 1 : 0;
}

int isStringPMR(const std::string& text)
{
    constexpr std::string_view pattern = "xxxxx.yyy.zzz";
    if (text.size() > 2 && text.starts_with("TS")) {
        return text.size() == 11 ? 1 : 0;
    }
    const auto fits = [](char place, char byte) {
        return place == '.' ? byte == '.' : isDigit(byte) || (place == 'y' && byte >= 'A' && byte <= 'Z');
    };
    return std::ranges::equal(pattern, text, fits) ? 1 : 0;
}

long getFileSize(const std::string& path)
{
    // Without O_NONBLOCK a pipe given as a file would hold the run for ever.
    const int file = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (file == -1) {
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
