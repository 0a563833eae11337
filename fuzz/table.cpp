// Colon records from other nodes into a table, and what is done with it then.
#include <iostream>
#include <sstream>
#include <stdexcept>

#include "fuzz.h"
#include "services/zltable.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    FuzzedDataProvider input(bytes, size);
    const std::string name = input.ConsumeRandomLengthString(8);
    const bool flag = input.ConsumeBool();
    const std::string text = input.ConsumeRemainingBytesAsString();
    FuzzCli& cli = FuzzCli::instance();
    std::ostringstream output;
    std::streambuf* const standardOutput = std::cout.rdbuf(output.rdbuf());
    // A broken percent sequence and a row too short for a filter raise range errors, which end the tool.
    try {
        ZlTable table(&cli, '-', flag);
        table.setDisplayAsTable(true);
        table.append(text);
        const auto [rows, columns] = table.getSize();
        DEMAND((rows == 0) == (columns == 0));
        table.getColumn(name);
        table.replaceValue(name, "", "-");
        table.sortTable(name, flag ? 3 : 0);
        cli.setMachineReadableOutput(false);
        table.show();
        table.filterByHeader({name, "node"});
        cli.setMachineReadableOutput(true);
        table.show();
        table.filterByRow(name, {"", name}, flag);
        DEMAND(table.getSize().first <= rows);
    } catch (const std::out_of_range&) {
    }
    std::cout.rdbuf(standardOutput);
    dropTrace();
    return 0;
}
