// The progress records that gather and send runs leave behind, one file for each task.
//
// A record is a line of exactly 12 fields with "|" between them; later lines are newer, and a run has a line
// for each change of its state. This tool reads the files and never writes them.
#include "callhome/zlcallhome.h"

#include <array>
#include <string_view>
#include <unordered_set>

#include "services/zlerrorservice.h"
#include "services/zlfileio.h"

namespace {

const char* const PROGRESS_FILE = "/var/zelf/tmp/callhome/progress/callhome-progress.";

// Places of the fields that are used, counted from 0.
enum PROGRESS_FIELDS : size_t {
    PROGRESS_TASK = 1,
    PROGRESS_START_TIME = 2,
    PROGRESS_STATUS = 4,
    PROGRESS_RETURN_CODE = 7, // a name, "=", a value
    PROGRESS_PACKAGE = 8,     // a path
    PROGRESS_DATA_ID = 9,
    PROGRESS_ORIGINAL_FILENAME = 10,
    PROGRESS_FIELD_COUNT = 12,
};

using Fields = std::array<std::string_view, PROGRESS_FIELD_COUNT>;

// Cuts a line at each "|". False when it has not exactly as many fields as a record.
bool cutRecord(std::string_view line, Fields& fields)
{
    for (size_t i = 0; i < fields.size(); ++i) {
        const size_t end = line.find('|');
        const bool isLast = i + 1 == fields.size();
        if ((end == std::string_view::npos) != isLast) {
            return false;
        }
        fields[i] = line.substr(0, end);
        line.remove_prefix(isLast ? line.size() : end + 1);
    }
    return true;
}

// Gives what of the package's file name fits a table, behind "...": all from seven bytes ahead of "gat_". A
// name that did not come from the gathering tools has no such place, which is a range error.
std::string_view endOfPackageName(std::string_view name)
{
    return name.substr(name.find("gat_") - 7);
}

} // namespace

int ZlCallhome::readProgressFile(const std::string& task, PlainTable& rows) const
{
    ZL_TRACE();
    ZlFileIO file(PROGRESS_FILE + task);
    if (file.readFile() != 0) {
        return 1;
    }
    std::vector<std::string> lines;
    file.getData(&lines);
    const bool isVerbose = (statusFlags & STATUS_VERBOSE) != 0;
    const bool isMachineReadable = getMachineReadableOutput();

    PlainTable newestFirst;
    std::unordered_set<std::string_view> startTimes;
    Fields fields;
    for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
        if (!cutRecord(*line, fields)) {
            errorServiceP->pushNewMsg(
                "ZlCallhome::readProgressFile: Skipping a progress line because of a wrong format: " + *line);
            continue;
        }
        // The newest line of a run is met first, and stands for the run.
        if (!startTimes.insert(fields[PROGRESS_START_TIME]).second) {
            continue;
        }
        std::vector<std::string>& row = newestFirst.emplace_back();
        row.reserve(isVerbose ? 8 : 5);
        row.push_back(groupName);
        for (const size_t field : {PROGRESS_TASK, PROGRESS_START_TIME, PROGRESS_STATUS}) {
            row.emplace_back(fields[field]);
        }
        const std::string_view package =
            fields[PROGRESS_PACKAGE].substr(fields[PROGRESS_PACKAGE].rfind('/') + 1);
        if (isVerbose) {
            const std::string_view code = fields[PROGRESS_RETURN_CODE];
            row.emplace_back(isMachineReadable ? code.substr(code.find('=') + 1) : code);
            row.emplace_back(fields[PROGRESS_DATA_ID]);
            row.emplace_back(fields[PROGRESS_ORIGINAL_FILENAME]);
            row.emplace_back(package);
        } else {
            row.emplace_back("...").append(endOfPackageName(package));
        }
    }
    rows.insert(rows.end(), std::make_move_iterator(newestFirst.begin()),
                std::make_move_iterator(newestFirst.end()));
    return 0;
}
