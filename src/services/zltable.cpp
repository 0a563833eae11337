#include "services/zltable.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <set>

#include "cli/zlcli.h"
#include "services/zlcomparatorfactory.h"
#include "services/zlerrorservice.h"
#include "services/zlutils.h"

namespace {

// What surrounds a colon record: blanks, the colons of its empty last cells, and the newline.
const char* const RECORD_EDGE = " :\n";

bool isMissingOrEmpty(const PlainTable& table)
{
    return table.empty() || table[0].empty();
}

// Gives the place of the first column of that name; npos without one.
size_t findColumn(const PlainTable& table, const std::string& name, bool exact)
{
    if (table.empty()) {
        return std::string::npos;
    }
    const std::vector<std::string>& names = table[0];
    auto column = names.end();
    if (exact) {
        column = std::ranges::find(names, name);
    } else {
        const std::unique_ptr<ZlComparatorFactory> sameName(
            ZlComparatorFactory::getUnaryStrComp(name, ZlComparatorFactory::IGNORE_CASE));
        column = std::ranges::find_if(names, std::cref(*sameName));
    }
    return column == names.end() ? std::string::npos : static_cast<size_t>(column - names.begin());
}

} // namespace

ZlTable::ZlTable(ZlCli* owner, char ruleSeparator, bool exactNames)
    : cli(owner), separator(ruleSeparator), caseSensitive(exactNames)
{
    ZL_TRACE();
}

void ZlTable::setSeparator(char value)
{
    ZL_TRACE();
    separator = value;
}

void ZlTable::setListSeparator(const std::string& text)
{
    ZL_TRACE();
    listSeparator = text;
}

void ZlTable::setCaseSensitive(bool value)
{
    ZL_TRACE();
    caseSensitive = value;
}

void ZlTable::setDisplayAsTable(bool value)
{
    ZL_TRACE();
    if (value) {
        cli->setParserResultBit(PARSER_DISPLAY_TABLE);
    } else {
        cli->unsetParserResultBit(PARSER_DISPLAY_TABLE);
    }
}

std::pair<unsigned long, unsigned long> ZlTable::getSize()
{
    ZL_TRACE();
    return {rowTable.size(), listTable.size()};
}

std::vector<std::string> ZlTable::getColumn(const std::string& name)
{
    ZL_TRACE();
    for (const auto& column : listTable) {
        if (column[0] == name) {
            return {column.begin() + 1, column.end()};
        }
    }
    return {};
}

void ZlTable::replaceValue(const std::string& name, const std::string& from, const std::string& to)
{
    ZL_TRACE();
    if (rowTable.size() < 2) {
        return;
    }
    for (size_t row = 1; row < rowTable.size(); ++row) {
        std::ranges::replace(rowTable[row], from, to);
    }
    for (auto& column : listTable) {
        if (column[0] == name) {
            std::replace(column.begin() + 1, column.end(), from, to);
        }
    }
}

void ZlTable::replaceHeader(const std::string& from, const std::string& to)
{
    ZL_TRACE();
    if (!rowTable.empty()) {
        std::ranges::replace(rowTable[0], from, to);
    }
    for (auto& column : listTable) {
        if (column[0] == from) {
            column[0] = to;
        }
    }
}

void ZlTable::replaceAllSubstrings(const std::string& from, const std::string& to)
{
    ZL_TRACE();
    for (PlainTable* table : {&rowTable, &listTable}) {
        for (auto& row : *table) {
            for (std::string& cell : row) {
                replaceAllSubstrg(cell, from, to);
            }
        }
    }
}

void ZlTable::insert(const std::vector<std::string>& names, const std::vector<std::string>& values)
{
    ZL_TRACE();
    errorServiceP->pushNewMsg("ZlTable::insert: " + toString(names, " "));
    errorServiceP->pushNewMsg("ZlTable::insert: " + toString(values, " "));
    if (names.empty() || values.empty()) {
        return;
    }
    if (rowTable.empty()) {
        rowTable.emplace_back();
    }
    std::vector<std::string> row(rowTable[0].size(), emptyValue);
    for (size_t i = 0; i < names.size(); ++i) {
        std::string name;
        cli->decode(name, names[i]);
        const auto [entry, isNew] = columnIndex.try_emplace(name, columnIndex.size());
        const size_t column = entry->second;
        if (isNew) {
            rowTable[0].push_back(name);
            listTable.push_back({name});
        }
        if (i < values.size()) {
            row.resize(std::max(row.size(), column + 1), emptyValue);
            std::vector<std::string> decoded;
            cli->decode(decoded, values);
            row[column] = decoded[i];
            // The first place of the record, not the first column, goes without the separator.
            listTable.at(column).push_back(i == 0 ? decoded[i] : listSeparator + decoded[i]);
        }
    }
    errorServiceP->pushNewMsg("ZlTable::insert: push_back: " + toString(row, " "));
    rowTable.push_back(std::move(row));
    if (rowTable.size() > 2) {
        for (size_t i = 1; i < rowTable.size() && rowTable[i].size() < rowTable[0].size(); ++i) {
            rowTable[i].resize(rowTable[0].size(), emptyValue);
        }
    }
}

void ZlTable::append(const std::vector<std::string*>& lines)
{
    ZL_TRACE();
    errorServiceP->pushDebugMsg("ZlTable::append vector: begin for " + toString(lines.size()) + " rows.");
    if (lines.size() < 2) {
        return;
    }
    std::vector<std::string> names;
    size_t leadingFields = 0;
    for (std::string* line : lines) {
        trim(*line, RECORD_EDGE);
        if (line->empty()) {
            continue;
        }
        std::vector<std::string> fields = split(*line, ":");
        if (line->find("HEADER") != std::string::npos) {
            const auto lastReserved = std::find(fields.rbegin(), fields.rend(), "reserved");
            names.assign(lastReserved.base(), fields.end());
            leadingFields = fields.size() - names.size();
        } else if (fields.size() > leadingFields) {
            fields.erase(fields.begin(), fields.begin() + static_cast<std::ptrdiff_t>(leadingFields));
            insert(names, fields);
        }
    }
}

void ZlTable::append(std::vector<std::string>* lines)
{
    ZL_TRACE();
    if (lines == nullptr) {
        return;
    }
    std::vector<std::string*> pointers;
    pointers.reserve(lines->size());
    for (std::string& line : *lines) {
        pointers.push_back(&line);
    }
    append(pointers);
}

void ZlTable::append(const std::string& text)
{
    ZL_TRACE();
    std::vector<std::string> lines = split(text, "\n");
    append(&lines);
}

void ZlTable::append(std::map<std::string, std::string>* textOfNode)
{
    ZL_TRACE();
    if (textOfNode == nullptr) {
        return;
    }
    std::vector<std::string*> singleLines;
    for (auto& [node, text] : *textOfNode) {
        trim(text, RECORD_EDGE);
        if (text.find('\n') != std::string::npos) {
            append(text);
        } else {
            singleLines.push_back(&text);
        }
    }
    append(singleLines);
}

int ZlTable::sortTable(const std::string& name, unsigned long flags)
{
    ZL_TRACE();
    if (rowTable.empty()) {
        errorServiceP->pushDebugMsg("ZlTable::sortTable: empty header");
        return 1;
    }
    const size_t column = findColumn(rowTable, name, (flags & ZlComparatorFactory::EXACT) != 0);
    if (rowTable.size() < 2 || rowTable[1].empty() || column == std::string::npos) {
        errorServiceP->pushDebugMsg("ZlTable::sortTable: Empty table or invalid header element.");
        return 1;
    }
    const std::unique_ptr<ZlComparatorFactory> comesFirst(
        ZlComparatorFactory::getVectorComparator(static_cast<int>(column), flags));
    // Equality alone is no order that std::sort could take. What it can tell of a row is whether it is like
    // the first one.
    std::stable_partition(rowTable.begin() + 2, rowTable.end(),
                          [&](const auto& row) { return (*comesFirst)(row, rowTable[1]); });
    return 0;
}

void ZlTable::filterByRow(const std::string& name, const std::vector<std::string>& values, bool keep)
{
    ZL_TRACE();
    const size_t column = findColumn(rowTable, name, caseSensitive);
    if (column == std::string::npos) {
        return;
    }
    for (size_t row = rowTable.size() - 1; row > 0; --row) {
        if (contains(values, rowTable[row].at(column)) != keep) {
            rowTable.erase(rowTable.begin() + static_cast<std::ptrdiff_t>(row));
        }
    }
}

void ZlTable::filterByHeader(const std::vector<std::string>& names)
{
    ZL_TRACE();
    if (rowTable.size() < 2) {
        errorServiceP->pushNewMsg("ZlTable::filterByHeader: data empty");
        return;
    }
    std::set<size_t> kept;
    for (const std::string& name : names) {
        // Behind the first match, which may ignore case, only exact ones count.
        const size_t first = findColumn(rowTable, name, caseSensitive);
        for (size_t i = first; i < rowTable[0].size(); ++i) {
            if (i == first || rowTable[0][i] == name) {
                kept.insert(i);
            }
        }
    }
    for (auto& row : rowTable) {
        for (size_t i = row.size(); i-- > 0;) {
            if (!kept.contains(i)) {
                row.erase(row.begin() + static_cast<std::ptrdiff_t>(i));
            }
        }
    }
    for (size_t i = listTable.size(); i-- > 0;) {
        if (contains(names, listTable[i][0])) {
            const size_t behind = std::min(i + 1, listTable.size() - 1);
            listTable.erase(listTable.begin() + static_cast<std::ptrdiff_t>(behind));
        }
    }
}

void ZlTable::show()
{
    ZL_TRACE();
    if (!cli->hasAnyParserResultBits(PARSER_DISPLAY_TABLE)) {
        errorServiceP->pushDebugMsg("ZlTable::show: displayTable is off: return.");
        return;
    }
    const bool asList = cli->hasAnyParserResultBits(PARSER_DISPLAY_LIST);
    const bool machineReadable = cli->getMachineReadableOutput();
    if ((machineReadable && isMissingOrEmpty(rowTable)) || (asList && isMissingOrEmpty(listTable))) {
        errorServiceP->pushNewMsg("ZlTable::show: no data");
        cli->userResponse = "No data available.";
        cli->execCmdRc = 1;
    }
    errorServiceP->pushDebugMsg("ZlTable::show: table as list = " + toString(asList) +
                                " machineReadable = " + toString(machineReadable));
    if (machineReadable) {
        extendedMachineReadableOutput(cli->programName, cli->subject, cli->verb, rowTable, cli->fullDecode);
    } else if (asList) {
        formatedOutput(listTable, separator);
    } else {
        formatedOutput(rowTable, separator);
    }
}
