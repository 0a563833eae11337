// Result tables.
//
// A list verb builds a plain table, a vector of rows with the column names in row 0, and prints it with one
// of the free functions: as aligned text for people, or as colon records for scripts (-Y).
//
// ZlTable goes the other way: it takes colon records, from one node or many, matches their columns by name
// and shows the merged result.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

class ZlCli;
class ZlErrorService;

using PlainTable = std::vector<std::vector<std::string>>;

// Prints a table on standard output in aligned columns, with a rule of `separator` below the names; the zero
// byte gives no rule. Lines keep the blanks at their end.
void formatedOutput(const PlainTable& table, char separator);

// Prints a table, which must have row 0, as colon records on standard output:
//   program:subjectVerb:HEADER:version:reserved:reserved:column:...:
//   program:subjectVerb:0:1:::cell:...:
// Colons and percent signs in cells are percent-encoded. Newlines are encoded too with `keepNewlines`, and
// dropped without.
void machineReadableOutput(const std::string& program, const std::string& subject, const std::string& verb,
                           const PlainTable& table);
void extendedMachineReadableOutput(const std::string& program, const std::string& subject,
                                   const std::string& verb, const PlainTable& table, bool keepNewlines);

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
    // no order is promised. 1: no rows, or no such column.
    int sortTable(const std::string& name, unsigned long flags);

    // Keeps the rows whose cell is one of `values`, or, without `keep`, the others. The list stays as it is.
    void filterByRow(const std::string& name, const std::vector<std::string>& values, bool keep);

    // Keeps the named columns of the table, in their order.
    void filterByHeader(const std::vector<std::string>& names);

    // Prints the table or the list, when display is on. Without data the run ends with "No data available."
    void show();

    static ZlErrorService* errorServiceP;

private:
    size_t findColumn(const std::string& name) const;
    size_t columnOf(const std::string& name);
    void filterList(const std::vector<std::string>& names);

    ZlCli* cli;
    std::map<std::string, unsigned long> columnIndex;
    PlainTable rowTable;
    PlainTable listTable;
    char separator;
    std::string listSeparator;
    std::string emptyValue;
    bool caseSensitive;
};
