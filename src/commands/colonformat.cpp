#include "commands/colonformat.h"

#include <algorithm>
#include <functional>
#include <string_view>

#include "services/zlerrorservice.h"
#include "services/zlutils.h"

std::vector<ColonRecord> parseColonFormat(const std::vector<std::string>& lines, const std::string& header)
{
    ZL_TRACE();
    std::vector<std::string_view> fields;
    cut(&fields, header, ':');
    const size_t leadingFields = fields.size();
    const std::boyer_moore_horspool_searcher headerMark(header.begin(), header.end());

    std::map<std::string, std::vector<std::string>, std::less<>> columnsOfType;
    std::vector<ColonRecord> records;
    records.reserve(lines.size());
    for (std::string_view line : lines) {
        if (!line.empty() && line.back() == '\n') {
            line.remove_suffix(1);
        }
        cut(&fields, line, ':');
        // Blank lines, and words of some other program in between.
        if (fields.size() < 2) {
            continue;
        }
        const std::string_view type = fields[1].empty() ? fields[0] : fields[1];
        if (type.empty()) {
            continue;
        }
        auto columns = columnsOfType.find(type);
        if (columns == columnsOfType.end()) {
            columns = columnsOfType.emplace(type, std::vector<std::string>()).first;
        }
        fields.erase(fields.begin(),
                     fields.begin() + static_cast<std::ptrdiff_t>(std::min(leadingFields, fields.size())));
        if (std::search(line.begin(), line.end(), headerMark) != line.end()) {
            columns->second.assign(fields.begin(), fields.end());
            continue;
        }
        ColonRecord& record = records.emplace_back();
        for (size_t i = 0; i < columns->second.size(); ++i) {
            percentDecode(record[columns->second[i]], i < fields.size() ? fields[i] : "");
        }
        record["datatype"] = type;
        // A colon at the end of a header makes a column without a name.
        record.erase(emptyStrg);
    }
    return records;
}
