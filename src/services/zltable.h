// Tables out of colon records, from one node or many: their columns are matched by name, and the merged
// result is shown.
//
// No verb makes one; the class stands ready for commands that gather records from other nodes.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "services/plaintable.h"

class ZlCli;
class ZlErrorService;

class ZlTable {
public:
    ZlTable(ZlCli* cli, char separator, bool caseSensitive);

    void setSeparator(char value);
    void setListSeparator(const std::string& text);
    void setCaseSensitive(bool value);

    // Switches show() on or off, by a parser bit of the command line.
    void setDisplayAsTable(bool value);

    // Gives the rows of the table, the name row included, and the columns of the list.
    std::pair<unsigned long, unsigned long> getSize();

    // Gives a copy of a column's values; empty when there is no such column.
    std::vector<std::string> getColumn(const std::string& name);

    // Replaces cells equal to `from`: in the list in the columns of that name, in the table in every column.
    void replaceValue(const std::string& name, const std::string& from, const std::string& to);

    // Renames a column. Later records still know it by the old name; one of the new name starts a new column.
    void replaceHeader(const std::string& from, const std::string& to);

    void replaceAllSubstrings(const std::string& from, const std::string& to);

    // Adds one record: the value at each position belongs to the name at that position.
    void insert(const std::vector<std::string>& names, const std::vector<std::string>& values);

    // Read colon records, headers among them. The lines are trimmed in place. Null pointers are ignored.
    void append(const std::vector<std::string*>& lines);
    void append(std::vector<std::string>* lines);
    void append(const std::string& text);
    void append(std::map<std::string, std::string>* textOfNode);

    // Sorts the rows by one column with ZlComparatorFactory's flags. Its comparator knows equality alone, so
    // no order is promised. 1: no rows, an empty first one, or no such column.
    int sortTable(const std::string& name, unsigned long flags);

    // Keeps the rows whose cell is one of `values`, or, without `keep`, the others. The list stays as it is.
    void filterByRow(const std::string& name, const std::vector<std::string>& values, bool keep);

    // Keeps the named columns of the table, in the table's order. The list loses the entry behind each named
    // one, or the last entry for itself: it is not in step with the table then.
    void filterByHeader(const std::vector<std::string>& names);

    // Prints the table or the list, when display is on. Without data, records and list leave the result
    // message "No data available." with the code 1; an aligned table is just empty.
    void show();

    static ZlErrorService* errorServiceP;

private:
    ZlCli* cli;
    std::map<std::string, unsigned long> columnIndex;
    PlainTable rowTable;
    PlainTable listTable;
    char separator;
    std::string listSeparator;
    std::string emptyValue;
    bool caseSensitive;
};
