#include "services/zltable.h"

#include <algorithm>
#include <functional>
#include <memory>

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
    const auto column = std::find_if(listTable.begin(), listTable.end(),
                                     [&](const auto& entry) { return !entry.empty() && entry[0] == name; });
    if (column == listTable.end()) {
        return {};
    }
    return {column->begin() + 1, column->end()};
}

void ZlTable::replaceValue(const std::string& name, const std::string& from, const std::string& to)
{
    ZL_TRACE();
    if (rowTable.size() < 2) {
        return;
    }
    for (size_t row = 1; row < rowTable.size(); ++row) {
        std::replace(rowTable[row].begin(), rowTable[row].end(), from, to);
    }
    for (auto& column : listTable) {
        if (!column.empty() && column[0] == name) {
            std::replace(column.begin() + 1, column.end(), from, to);
        }
    }
}

void ZlTable::replaceHeader(const std::string& from, const std::string& to)
{
    ZL_TRACE();
    if (!rowTable.empty()) {
        std::replace(rowTable[0].begin(), rowTable[0].end(), from, to);
    }
    for (auto& column : listTable) {
        if (!column.empty() && column[0] == from) {
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

size_t ZlTable::columnOf(const std::string& name)
{
    const auto [entry, isNew] = columnIndex.try_emplace(name, columnIndex.size());
    if (isNew) {
        rowTable[0].push_back(name);
        listTable.push_back({name});
    }
    return entry->second;
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
    std::vector<std::string> decoded;
    cli->decode(decoded, values);
    for (size_t i = 0; i < names.size(); ++i) {
        std::string name;
        cli->decode(name, names[i]);
        const size_t column = columnOf(name);
        if (i < decoded.size()) {
            row.resize(std::max(row.size(), column + 1), emptyValue);
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
    std::vector<std::string> fields;
    size_t leadingFields = 0;
    for (std::string* line : lines) {
        trim(*line, RECORD_EDGE);
        if (line->empty()) {
            continue;
        }
        stringToVector(&fields, *line, ":");
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
    std::vector<std::string> lines;
    stringToVector(&lines, text, "\n");
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

size_t ZlTable::findColumn(const std::string& name) const
{
    if (rowTable.empty()) {
        return std::string::npos;
    }
    const auto& names = rowTable[0];
    const std::unique_ptr<ZlComparatorFactory> sameName(ZlComparatorFactory::getUnaryStrComp(
        name, caseSensitive ? ZlComparatorFactory::EXACT : ZlComparatorFactory::IGNORE_CASE));
    const auto column = std::find_if(names.begin(), names.end(), std::cref(*sameName));
    return column == names.end() ? std::string::npos : static_cast<size_t>(column - names.begin());
}

namespace {

// Merges two sorted halves of the rows, again and again. The comparator answers for equality alone and so is
// no order; std::sort may leave its range on one, this only ever moves rows between two tables of one size.
void sortRows(PlainTable& rows, const ZlComparatorFactory& comesFirst)
{
    PlainTable merged(rows.size());
    for (size_t width = 1; width < rows.size(); width *= 2) {
        for (size_t begin = 0; begin < rows.size(); begin += 2 * width) {
            const size_t middle = std::min(begin + width, rows.size());
            const size_t end = std::min(begin + 2 * width, rows.size());
            size_t left = begin;
            size_t right = middle;
            for (size_t out = begin; out < end; ++out) {
                const bool takeRight =
                    left == middle || (right != end && comesFirst(rows[right], rows[left]));
                merged[out] = std::move(rows[takeRight ? right++ : left++]);
            }
        }
        rows.swap(merged);
    }
}

} // namespace

int ZlTable::sortTable(const std::string& name, unsigned long flags)
{
    ZL_TRACE();
    if (rowTable.empty()) {
        errorServiceP->pushDebugMsg("ZlTable::sortTable: empty header");
        return 1;
    }
    const std::unique_ptr<ZlComparatorFactory> sameName(
        ZlComparatorFactory::getUnaryStrComp(name, flags & ZlComparatorFactory::EXACT));
    const auto& names = rowTable[0];
    const auto column = std::find_if(names.begin(), names.end(), std::cref(*sameName));
    if (rowTable.size() < 2 || names.empty() || rowTable[1].empty() || column == names.end()) {
        errorServiceP->pushDebugMsg("ZlTable::sortTable: Empty table or invalid header element.");
        return 1;
    }
    const std::unique_ptr<ZlComparatorFactory> comesFirst(
        ZlComparatorFactory::getVectorComparator(static_cast<int>(column - names.begin()), flags));
    PlainTable rows(std::make_move_iterator(rowTable.begin() + 1), std::make_move_iterator(rowTable.end()));
    sortRows(rows, *comesFirst);
    std::move(rows.begin(), rows.end(), rowTable.begin() + 1);
    return 0;
}

void ZlTable::filterByRow(const std::string& name, const std::vector<std::string>& values, bool keep)
{
    ZL_TRACE();
    const size_t column = findColumn(name);
    if (column == std::string::npos || rowTable.size() < 2) {
        return;
    }
    const auto mustGo = [&](const std::vector<std::string>& row) {
        return keep != contains(values, row.at(column));
    };
    rowTable.erase(std::remove_if(rowTable.begin() + 1, rowTable.end(), mustGo), rowTable.end());
}

void ZlTable::filterByHeader(const std::vector<std::string>& names)
{
    ZL_TRACE();
    if (rowTable.size() < 2) {
        errorServiceP->pushNewMsg("ZlTable::filterByHeader: data empty");
        return;
    }
    std::vector<bool> kept(rowTable[0].size());
    for (const std::string& name : names) {
        // Behind the first match, which may ignore case, only exact ones count.
        const size_t first = findColumn(name);
        for (size_t i = first; i < kept.size(); ++i) {
            kept[i] = kept[i] || i == first || rowTable[0][i] == name;
        }
    }
    for (auto& row : rowTable) {
        std::vector<std::string> cells;
        for (size_t i = 0; i < std::min(row.size(), kept.size()); ++i) {
            if (kept[i]) {
                cells.push_back(std::move(row[i]));
            }
        }
        row = std::move(cells);
    }
    filterList(names);
}

// Erases the entry behind each named one, or the last entry for itself. Callers rely on this place: after the
// call the list is not in step with the table.
void ZlTable::filterList(const std::vector<std::string>& names)
{
    for (size_t i = listTable.size(); i-- > 0;) {
        if (!listTable[i].empty() && contains(names, listTable[i][0])) {
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
