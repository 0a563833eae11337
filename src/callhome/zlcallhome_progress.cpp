// The progress records that gather and send runs leave behind, one file for each task.
//
// A record is a line of exactly 12 fields with "|" between them; later lines are newer, and a run has a line
// for each change of its state. This tool reads the files and never writes them.
#include "callhome/zlcallhome.h"

#include <unordered_set>

#include "services/zlerrorservice.h"
#include "services/zlfileio.h"
#include "services/zlutils.h"

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
    std::unordered_set<std::string> startTimes;
    std::vector<std::string> fields;
    for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
        stringToVector(&fields, *line, "|");
        if (fields.size() != PROGRESS_FIELD_COUNT) {
            errorServiceP->pushNewMsg(
                "ZlCallhome::readProgressFile: Skipping a progress line because of a wrong format: " + *line);
            continue;
        }
        // The newest line of a run is met first, and stands for the run.
        if (!startTimes.insert(fields[PROGRESS_START_TIME]).second) {
            continue;
        }
        std::vector<std::string> row = {groupName, fields[PROGRESS_TASK], fields[PROGRESS_START_TIME],
                                        fields[PROGRESS_STATUS]};
        const std::string& path = fields[PROGRESS_PACKAGE];
        const std::string package = path.substr(path.rfind('/') + 1);
        if (isVerbose) {
            const std::string& code = fields[PROGRESS_RETURN_CODE];
            row.insert(row.end(), {isMachineReadable ? code.substr(code.find('=') + 1) : code,
                                   fields[PROGRESS_DATA_ID], fields[PROGRESS_ORIGINAL_FILENAME], package});
        } else {
            // What fits a table: all from seven bytes before "gat_" on. A name that did not come from the
            // gathering tools has no such place, which is a range error.
            row.push_back("..." + package.substr(package.find("gat_") - 7));
        }
        newestFirst.push_back(row);
    }
    rows.insert(rows.end(), newestFirst.begin(), newestFirst.end());
    return 0;
}
