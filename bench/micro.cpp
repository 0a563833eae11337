// Micro benchmarks, in process. bench.cpp starts them one by one, each in a fresh process.
#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <iostream>
#include <sstream>
#include <string>
#include <unistd.h>

#include "callhome/zlcallhome.h"
#include "cluster/zlclusterinfo.h"
#include "cluster/zlnodesdefinition.h"
#include "commands/chunkfile.h"
#include "commands/colonformat.h"
#include "services/zlerrorservice.h"
#include "services/zltable.h"
#include "services/zlutils.h"

namespace {

// The tool's object. It is left to the end of the process: its destructor is the end of a run.
ZlCallhome& callhome()
{
    static char words[3][9] = {"zelfhome", "info", "list"};
    static char* argv[] = {words[0], words[1], words[2], nullptr};
    static auto* object = new ZlCallhome(3, argv);
    return *object;
}

void countBytes(benchmark::State& state, size_t bytes)
{
    state.SetBytesProcessed(static_cast<int64_t>(bytes) * static_cast<int64_t>(state.iterations()));
}

std::string megabyteOfText()
{
    std::string text;
    while (text.size() < 1000000) {
        text += "node17.zelf.bench: 50% of the data; ";
    }
    return text;
}

void encode(benchmark::State& state)
{
    const std::string text = megabyteOfText();
    std::string encoded;
    for (auto _ : state) {
        percentEncode(encoded, text, "%:");
        benchmark::DoNotOptimize(encoded.data());
    }
    countBytes(state, text.size());
}

void decode(benchmark::State& state)
{
    std::string encoded;
    percentEncode(encoded, megabyteOfText(), "%:");
    std::string text;
    for (auto _ : state) {
        percentDecode(text, encoded);
        benchmark::DoNotOptimize(text.data());
    }
    countBytes(state, encoded.size());
}

// A record for each of that many nodes, with a cell that needs encoding.
PlainTable nodeTable(const benchmark::State& state)
{
    PlainTable table = {{"node", "group", "state", "lastRun", "comment"}};
    for (int64_t i = 1; i <= state.range(0); ++i) {
        const std::string number = std::to_string(i);
        table.push_back({"node" + number + ".zelf.bench", "group" + number, "enabled", "20180621140733042",
                         "at 14:07, 50% done"});
    }
    return table;
}

std::string recordsOf(const PlainTable& table)
{
    std::ostringstream text;
    std::streambuf* const standardOutput = std::cout.rdbuf(text.rdbuf());
    machineReadableOutput("zelfhome", "status", "list", table);
    std::cout.rdbuf(standardOutput);
    return text.str();
}

class NullBuffer : public std::streambuf {
    int overflow(int byte) override { return byte; }
    std::streamsize xsputn(const char* /*bytes*/, std::streamsize count) override { return count; }
};

void recordsOut(benchmark::State& state)
{
    const PlainTable table = nodeTable(state);
    NullBuffer nothing;
    std::streambuf* const standardOutput = std::cout.rdbuf(&nothing);
    for (auto _ : state) {
        machineReadableOutput("zelfhome", "status", "list", table);
    }
    std::cout.rdbuf(standardOutput);
}

void recordsIn(benchmark::State& state)
{
    const std::string text = recordsOf(nodeTable(state));
    const std::vector<std::string> lines = split(text, "\n");
    for (auto _ : state) {
        benchmark::DoNotOptimize(parseColonFormat(lines, COLON_HEADER));
    }
}

void recordsIntoTable(benchmark::State& state)
{
    const std::string text = recordsOf(nodeTable(state));
    ZlCli& cli = callhome();
    for (auto _ : state) {
        ZlTable table(&cli, '-', true);
        table.append(text);
        benchmark::DoNotOptimize(table.getSize());
        // A run reads such a table once; the trace of many must not pile up.
        state.PauseTiming();
        ZlErrorService::errorServiceP->writeTrace();
        state.ResumeTiming();
    }
}

// By this process's own time: the fetch from the CCR that comes with it is another program's.
void configuration(benchmark::State& state)
{
    ZlCallhome& tool = callhome();
    for (auto _ : state) {
        tool.parseConfig();
    }
}

// All nodes of the cluster in one definition, each by one of its names in turn. Once in a process: what is
// built for the first definition serves all further ones.
void resolve(benchmark::State& state)
{
    const ZlClusterInfo::NodeSet& cluster = *ZlClusterInfo::getClusterNodes();
    std::string definition;
    for (const ZlClusterNode& node : cluster) {
        const std::string names[] = {toString(node.getNumber()), node.getDaemonShortName(),
                                     node.getAdminLongName(), node.getDaemonIP()};
        definition += (definition.empty() ? "" : ",") + names[node.getNumber() % 4];
    }
    const size_t count = cluster.size();
    for (auto _ : state) {
        const ZlNodesDefinition nodes(definition);
        if (nodes.getResolved().size() != count) {
            state.SkipWithError("a node was not found");
        }
    }
}

void progressRecords(benchmark::State& state)
{
    const ZlCallhome& tool = callhome();
    for (auto _ : state) {
        PlainTable rows;
        tool.readProgressFile("daily", rows);
        benchmark::DoNotOptimize(rows.data());
    }
}

// A file of 64 MiB in chunks of 1 MiB; bench/run has made it.
void cutChunks(benchmark::State& state)
{
    constexpr int64_t MEBIBYTE = 1 << 20;
    for (auto _ : state) {
        const int file = open("/var/zelf/bench/64MiB", O_RDONLY | O_CLOEXEC);
        for (int64_t i = 0; i < 64; ++i) {
            copyChunk(file, i * MEBIBYTE, MEBIBYTE, "/var/zelf/bench/chunk" + std::to_string(i));
        }
        close(file);
    }
}

BENCHMARK(encode)->Name("percentEncode");
BENCHMARK(decode)->Name("percentDecode");
BENCHMARK(recordsOut)->Arg(1000)->Arg(10000);
BENCHMARK(recordsIn)->Arg(1000)->Arg(10000);
BENCHMARK(recordsIntoTable)->Arg(1000)->Arg(10000);
BENCHMARK(configuration);
BENCHMARK(progressRecords);
BENCHMARK(cutChunks)->Iterations(1);
BENCHMARK(resolve)->Iterations(1);

} // namespace

BENCHMARK_MAIN();
