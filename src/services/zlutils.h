// Text utilities: free functions on bytes, with no state and no trace.
//
// Several of them have edges that configuration files, forwarded command lines and argument checks are built
// on; each edge is named here. Predicates give 1 for true and 0 for false.
#pragma once

#include <concepts>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

// Blank, tab, newline, vertical tab, form feed, carriage return.
extern const std::string whitespace;
extern const std::string emptyStrg;

// Removes leading bytes that are in `set`; a text of nothing else stays as it is.
void trimLeft(std::string& text, const std::string& set);

// Removes trailing bytes that are in `set`, unless at most the first byte would stay: "a  " stays, "ab  " is
// cut.
void trimRight(std::string& text, const std::string& set);

// trimLeft, then trimRight.
void trim(std::string& text, const std::string& set);

void toLower(std::string& text);
void toUpper(std::string& text);

// Replaces each `from` that begins within the length that `text` had on entry. Gives the number of
// replacements. An empty `from` matches at every place, but is not replaced by an empty `to`.
int replaceAllSubstrg(std::string& text, const std::string& from, const std::string& to);

// Cuts `line` at its first byte out of `delimiters` and trims both halves. 2: no delimiter, nothing changed.
int stringToKeyValue(std::string& key, std::string& value, const std::string& line,
                     const std::string& delimiters);

// Replace the container by the pieces of `text` between bytes out of `delimiter`, empty pieces included. The
// search resumes behind the hit by the length of `delimiter`. 1: null pointer.
int stringToVector(std::vector<std::string>* list, const std::string& text, const std::string& delimiter);
int stringToSet(std::set<std::string>* set, const std::string& text, const std::string& delimiter);

// Adds the pieces of `text` between whole delimiters to the list. 1: null pointer.
int stringListToContainer(const std::string& text, const std::string& delimiter,
                          std::vector<std::string>* list);

// Replaces the container by views of the pieces of `text` between delimiters, empty pieces included.
void splitViews(std::vector<std::string_view>* pieces, std::string_view text, char delimiter);

// Gives the pieces of `text` between whole delimiters, empty pieces included.
std::vector<std::string> split(const std::string& text, const std::string& delimiter);

// Gives the lines of a text, each with its newline. A command's output is joined first: _executeCMD() gives
// long lines in pieces.
std::vector<std::string> linesOf(const std::string& text);

std::string containerToString(const std::vector<std::string>& list, const std::string& separator);

// Gives a number in plain decimal; a bool as 0 or 1.
template <typename Number>
requires std::integral<Number> || std::is_enum_v<Number> std::string toString(Number value)
{
    return std::to_string(value);
}

std::string toString(const std::string& value);
std::string toString(const std::vector<std::string>& list, const std::string& separator);
std::string toString(const std::set<std::string>& set, const std::string& separator);

bool contains(const std::vector<std::string>& list, std::string_view word);

// Gives one word for the shells of both sides: the local one takes the single quotes off, the remote one the
// double quotes.
std::string quoteForBothSides(const std::string& text);

// Gives a pointer to the value, null when the key is missing.
const std::string* getValue(const std::map<std::string, std::string>& map, const std::string& key);

// Gives a copy of the value, `missing` when the key is missing.
std::string valueOr(const std::map<std::string, std::string>& map, const std::string& key,
                    const std::string& missing = emptyStrg);

// Writes each byte of `in` that occurs in `set` as a percent sign and two upper-case hexadecimal digits.
void percentEncode(std::string& out, const std::string& in, std::string_view set);
void percentEncode(std::vector<std::string>& out, const std::vector<std::string>& in, std::string_view set);

// Undoes any percentEncode. Two bytes behind a percent sign are read as strtol does; none that are digits
// give a zero byte. Throws std::out_of_range when a percent sign stands less than two bytes from the end.
void percentDecode(std::string& out, std::string_view in);

// An optional sign, digits, at most one "." which is not last. The first byte is not examined: "a12" passes.
int isDecimal(const std::string& text);
// Digits, at most one "." which is not last.
int isUnsingedDecimal(const std::string& text);

// A 32-bit number in the very form in which toString writes it: "+5", "05", "-0" and "" fail.
int isInt(const std::string& text);

// Letters only; the empty text passes.
int isStringAlpha(const std::string& text);

// A support case number: "TS" and nine more bytes, or ddddd.ccc.ddd with digits d and digits or capitals c.
int isStringPMR(const std::string& text);

// Gives the file's size in bytes, -1 when it cannot be opened, or is a folder.
long getFileSize(const std::string& path);

// Gives the free bytes of the file system that holds `path`, the share reserved for root included
// (statvfs(3), f_bfree); 0 when it cannot be asked.
uint64_t getFreeDiskSpace(const std::string& path);
