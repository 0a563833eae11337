// A plain table: a vector of rows with the column names in row 0, and the two ways to print one, as aligned
// text for people and as colon records for scripts (-Y).
#pragma once

#include <string>
#include <vector>

class ZlCli;

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

// Shows the table of a list verb: as colon records with -Y, else as text. (showlist.cpp)
void showList(const ZlCli& cli, const PlainTable& table);
