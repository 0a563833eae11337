#include "services/plaintable.h"

#include <algorithm>
#include <cctype>
#include <iostream>
#include <string_view>

#include "services/zlutils.h"

void formatedOutput(const PlainTable& table, char separator)
{
    std::vector<size_t> widths;
    for (const auto& row : table) {
        widths.resize(std::max(widths.size(), row.size()));
        for (size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], row[i].size());
        }
    }
    std::string text;
    for (size_t line = 0; line < table.size(); ++line) {
        if (line == 1 && separator != '\0') {
            for (const size_t width : widths) {
                text.append(width + 2, separator).push_back(' ');
            }
            text += '\n';
        }
        const auto& row = table[line];
        for (size_t i = 0; i < row.size(); ++i) {
            text.append(row[i]).append(widths[i] + 3 - row[i].size(), ' ');
        }
        text += '\n';
    }
    std::cout << text;
}

void machineReadableOutput(const std::string& program, const std::string& subject, const std::string& verb,
                           const PlainTable& table)
{
    extendedMachineReadableOutput(program, subject, verb, table, false);
}

void extendedMachineReadableOutput(const std::string& program, const std::string& subject,
                                   const std::string& verb, const PlainTable& table, bool keepNewlines)
{
    std::string prefix = program + ":" + subject + verb;
    if (!verb.empty()) {
        char& first = prefix[prefix.size() - verb.size()];
        first = static_cast<char>(std::toupper(static_cast<unsigned char>(first)));
    }
    const std::string_view encodedBytes = keepNewlines ? "%:\n" : "%:";
    std::string text;
    std::string cellText;
    for (size_t line = 0; line < table.size(); ++line) {
        text.append(prefix).append(line == 0 ? ":HEADER:version:reserved:reserved:" : ":0:1:::");
        for (const std::string& cell : table[line]) {
            percentEncode(cellText, cell, encodedBytes);
            std::erase(cellText, '\n');
            text.append(cellText).push_back(':');
        }
        text += '\n';
    }
    std::cout << text;
}
