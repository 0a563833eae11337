#include "commands/colonformat.h"

#include <algorithm>
#include <string_view>

#include "services/zlerrorservice.h"
#include "services/zlutils.h"

std::vector<ColonRecord> parseColonFormat(const std::vector<std::string>& lines, const std::string& header)
{
    ZL_TRACE();
    std::vector<std::string_view> fields;
    cut(&fields, header, ':');
    const size_t leadingFields = fields.size();

    std::map<std::string, std::vector<std::string_view>> columnsOfType;
    std::vector<ColonRecord> records;
    for (std::string_view line : lines) {
        if (!line.empty() && line.back() == '\n') {
            line.remove_suffix(1);
        }
        cut(&fields, line, ':');
        // Blank lines, and words of some other program in between.
        if (fields.size() < 2) {
            continue;
        }
        const std::string type(fields[1].empty() ? fields[0] : fields[1]);
        if (type.empty()) {
            continue;
        }
        fields.erase(fields.begin(),
                     fields.begin() + static_cast<std::ptrdiff_t>(std::min(leadingFields, fields.size())));
        if (line.find(header) != std::string_view::npos) {
            columnsOfType[type] = fields;
            continue;
        }
        ColonRecord record;
        const std::vector<std::string_view>& columns = columnsOfType[type];
        for (size_t i = 0; i < columns.size(); ++i) {
            percentDecode(record[std::string(columns[i])], std::string(i < fields.size() ? fields[i] : ""));
        }
        record["datatype"] = type;
        // A colon at the end of a header makes a column without a name.
        record.erase(emptyStrg);
        records.push_back(std::move(record));
    }
    return records;
}
