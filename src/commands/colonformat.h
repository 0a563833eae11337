// The reader of colon records, the -Y output of this installation's programs.
#pragma once

#include <map>
#include <string>
#include <vector>

// Column name to decoded text; the key "datatype" holds the record's type.
using ColonRecord = std::map<std::string, std::string>;

// The mark of a header line, as all programs of the installation write it.
constexpr const char* COLON_HEADER = ":HEADER:version:reserved:reserved:";

// Gives a record for each data line, in their order. Each uses the newest header of its own type, which is
// the second field of a line, or the first when that is empty. A field that a short line does not have is
// empty.
std::vector<ColonRecord> parseColonFormat(const std::vector<std::string>& lines, const std::string& header);
