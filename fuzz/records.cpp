// Colon records: arbitrary lines are read or raise a range error, and what was written is read back.
#include <iostream>
#include <sstream>
#include <stdexcept>

#include "commands/colonformat.h"
#include "fuzz.h"
#include "services/plaintable.h"
#include "services/zlutils.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    FuzzedDataProvider input(bytes, size);
    const std::string first = input.ConsumeRandomLengthString(64);
    const std::string second = input.ConsumeRandomLengthString(64);
    const std::string text = input.ConsumeRemainingBytesAsString();
    try {
        const auto records = parseColonFormat(split(text, "\n"), COLON_HEADER);
        for (const ColonRecord& record : records) {
            DEMAND(record.count("datatype") == 1 && record.count("") == 0);
        }
    } catch (const std::out_of_range&) { // a broken percent sequence
    }

    std::ostringstream output;
    std::streambuf* const standardOutput = std::cout.rdbuf(output.rdbuf());
    extendedMachineReadableOutput("zelfhome", "status", "list", {{"one", "two"}, {first, second}}, true);
    std::cout.rdbuf(standardOutput);
    const auto written = parseColonFormat(split(output.str(), "\n"), COLON_HEADER);
    DEMAND(written.size() == 1);
    DEMAND(written[0] == (ColonRecord{{"datatype", "statusList"}, {"one", first}, {"two", second}}));
    dropTrace();
    return 0;
}
