#include "cli/dispatcher.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>
#include <string_view>
#include <unistd.h>

#include "services/zelfnls.h"
#include "services/zlutils.h"

const char* progname = nullptr;

namespace {

constexpr int UNKNOWN_COMMAND = 38;

bool isBlank(char byte)
{
    return std::isspace(static_cast<unsigned char>(byte)) != 0;
}

char* skipBlanks(char* text)
{
    while (isBlank(*text)) {
        ++text;
    }
    return text;
}

bool isHelpRow(const cmdTableRow& row)
{
    const std::string_view name = row.name;
    const std::string_view shortName = row.shortName;
    return name == "help" || name == "--help" || shortName == "?" || shortName == "-h";
}

// Gives the first row that `fits`, null when there is none.
template <typename Test>
const cmdTableRow* findRow(const cmdTableRow* table, const Test& fits)
{
    while (table->name != nullptr && !fits(*table)) {
        ++table;
    }
    return table->name != nullptr ? table : nullptr;
}

} // namespace

int processCmd(char* prompt, char* cmdLine, const cmdTableRow* table, bool interactive)
{
    // A word too long for a command line buffer is cut.
    char* rest = skipBlanks(cmdLine);
    std::string word;
    while (*rest != '\0' && !isBlank(*rest) && word.size() < CMD_LINE_SIZE - 1) {
        word += *rest++;
    }
    toLower(word);
    if (word.empty()) {
        if (const cmdTableRow* help = findRow(table, isHelpRow)) {
            return help->handler(prompt, rest, interactive);
        }
    }
    rest = skipBlanks(rest);
    char* end = rest + std::strlen(rest);
    while (end != rest && isBlank(end[-1])) {
        --end;
    }
    *end = '\0';
    const auto isNamed = [&](const cmdTableRow& row) { return word == row.name || word == row.shortName; };
    if (const cmdTableRow* row = findRow(table, isNamed)) {
        return row->handler(prompt, rest, interactive);
    }
    printCatMessage(MSG_INVALID_COMMAND, "Invalid command: %s\n", word.c_str());
    return interactive ? 0 : UNKNOWN_COMMAND;
}

int executeCommand(char* prompt, char* cmdLine, const cmdTableRow* table, bool interactive)
{
    if (*cmdLine != '\0' || !interactive) {
        return processCmd(prompt, cmdLine, table, interactive);
    }
    const bool isTerminal = isatty(fileno(stdin)) != 0;
    // A line of its own: a loop within a loop has only the rest of the outer one's line.
    std::array<char, CMD_LINE_SIZE> line{};
    int result = 0;
    while (result >= 0) {
        std::fflush(stderr);
        std::cout << "\n" << prompt << "> " << std::flush;
        if (std::fgets(line.data(), static_cast<int>(line.size()), stdin) == nullptr) {
            std::exit(0);
        }
        line[std::strcspn(line.data(), "\n")] = '\0';
        if (!isTerminal) {
            std::cout << line.data() << "\n";
        }
        result = processCmd(prompt, line.data(), table, true);
    }
    return 0;
}

int mapOption(char* text, const char* from, const char* to)
{
    const size_t fromLength = std::strlen(from);
    const size_t toLength = std::strlen(to);
    if (toLength > fromLength) {
        std::fprintf(stderr, "error at mapOption(..) replacement string has length %i. Maximum allowed %i\n",
                     static_cast<int>(toLength), static_cast<int>(fromLength));
        std::exit(1);
    }
    char* hit = text == nullptr ? nullptr : std::strstr(text, from);
    if (hit == nullptr) {
        return 0;
    }
    char* behind = hit + fromLength;
    std::fill(hit, behind, ' ');
    std::copy_n(to, toLength, hit);
    if (hit != text && hit[-1] == '"' && *behind == '"') {
        *behind = ' ';
        hit[toLength] = '"';
    }
    return 1;
}
