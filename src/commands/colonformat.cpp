#include "commands/colonformat.h"

#include <algorithm>

#include "services/zlerrorservice.h"
#include "services/zlutils.h"

std::vector<ColonRecord> parseColonFormat(const std::vector<std::string>& lines, const std::string& header)
{
    ZL_TRACE();
    const size_t leadingFields = split(header, ":").size();
    std::map<std::string, std::vector<std::string>> columnsOfType;
    std::vector<ColonRecord> records;
    for (const std::string& line : lines) {
        std::vector<std::string> fields = split(line.substr(0, line.find('\n')), ":");
        // Blank lines, and words of some other program in between.
        if (fields.size() < 2) {
            continue;
        }
        const std::string type = fields[1].empty() ? fields[0] : fields[1];
        if (type.empty()) {
            continue;
        }
        fields.erase(fields.begin(),
                     fields.begin() + static_cast<std::ptrdiff_t>(std::min(leadingFields, fields.size())));
        std::vector<std::string>& columns = columnsOfType[type];
        if (line.find(header) != std::string::npos) {
            columns = fields;
            continue;
        }
        fields.resize(std::max(fields.size(), columns.size()));
        ColonRecord& record = records.emplace_back();
        for (size_t i = 0; i < columns.size(); ++i) {
            percentDecode(record[columns[i]], fields[i]);
        }
        record["datatype"] = type;
        // A colon at the end of a header makes a column without a name.
        record.erase(emptyStrg);
    }
    return records;
}
