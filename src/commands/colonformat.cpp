#include "commands/colonformat.h"

#include <algorithm>

#include "services/zlerrorservice.h"
#include "services/zlutils.h"

std::vector<ColonRecord> parseColonFormat(const std::vector<std::string>& lines, const std::string& header)
{
    ZL_TRACE();
    std::vector<std::string> fields;
    stringToVector(&fields, header, ":");
    const size_t leadingFields = fields.size();

    std::map<std::string, std::vector<std::string>> columnsOfType;
    std::vector<ColonRecord> records;
    for (std::string line : lines) {
        if (!line.empty() && line.back() == '\n') {
            line.pop_back();
        }
        stringToVector(&fields, line, ":");
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
        if (line.find(header) != std::string::npos) {
            columnsOfType[type] = fields;
            continue;
        }
        ColonRecord record;
        const std::vector<std::string>& columns = columnsOfType[type];
        for (size_t i = 0; i < columns.size(); ++i) {
            percentDecode(record[columns[i]], i < fields.size() ? fields[i] : emptyStrg);
        }
        record["datatype"] = type;
        // A colon at the end of a header makes a column without a name.
        record.erase(emptyStrg);
        records.push_back(std::move(record));
    }
    return records;
}
