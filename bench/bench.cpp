// What the tool costs, measured beside what it is compared with, as one table. Started by bench/run, which
// has made the clusters and the scripts that are named here, in the folder of the build.
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <spawn.h>
#include <sstream>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

// What one run of a program shows.
enum Figure {
    NONE,
    WALL,      // ms, from the start of the process to its end
    OWN_CPU,   // ms, user and system time of the process itself
    CHILD_CPU, // ms, the same of the programs that it started, and theirs
    PEAK,      // MiB, the largest resident set among all of them
    TIME,      // ms of CPU, as the micro benchmark says
    RATE,      // MB/s, likewise by CPU time
    FIGURES,
};
constexpr std::array<const char*, FIGURES> UNITS = {"", "ms", "ms", "ms", "MiB", "ms", "MB/s"};
using Sample = std::array<double, FIGURES>;

// A cluster (NODES.GROUPS) and a command: words between blanks, the first one a path.
using Program = std::pair<std::string, std::string>;

struct Source {
    Figure figure = NONE;
    Program program = {};
};

// The aim is a limit for the ratio, or for the value of a row without reference.
struct Row {
    const char* text;
    Source value;
    const char* referenceText;
    Source reference;
    const char* aim;
};

const std::string TOOL = "./zelfhome info list";
const std::string COMPLETE = "/bin/bash /var/zelf/bench/complete";
const std::string SPLIT = "/usr/bin/split -b 1M /var/zelf/bench/64MiB /var/zelf/bench/split";
const std::string LIST = "./zelfhome group list ";
const std::string RECORDS = "./zelfhome status list -Y";
const std::string ITS_COMMANDS = "/bin/sh /var/zelf/bench/info-list";
const std::string COUNT_NODES = "/bin/sh /var/zelf/bench/count-nodes";
const std::string MICRO =
    "./zelfhome_micro --benchmark_format=csv --benchmark_min_time=0.1 --benchmark_filter=";

// A new figure is a line here. Where the reference is a pipeline, the shell that runs it does not count.
// Ten times as much may take up to 20 times as long where caches end in between: more is more than linear.
// clang-format off
const Row ROWS[] = {
    {"info list, wall time", {WALL, {"5.1", TOOL}}, "its command lines from sh", {WALL, {"5.1", ITS_COMMANDS}}, "<= 1.25"},
    {"info list, own CPU", {OWN_CPU, {"5.1", TOOL}}, "", {}, ""},
    {"  10,000 nodes", {OWN_CPU, {"10000.0", TOOL}}, "sort -u | grep -c", {CHILD_CPU, {"10000.0", COUNT_NODES}}, "<= 1.2"},
    {"  10,000 nodes in a group", {OWN_CPU, {"10000.1", TOOL}}, "sort -u | grep -c", {CHILD_CPU, {"10000.0", COUNT_NODES}}, ""},
    {"  10,000 nodes", {OWN_CPU, {"10000.0", TOOL}}, "1,000 nodes", {OWN_CPU, {"1000.0", TOOL}}, "<= 10"},
    {"resolving 10,000 node names", {TIME, {"10000.0", MICRO + "resolve"}}, "1,000 node names", {TIME, {"1000.0", MICRO + "resolve"}}, "<= 12"},
    {"peak memory, 5 nodes", {PEAK, {"5.1", TOOL}}, "", {}, "<= 8"},
    {"  10,000 nodes", {PEAK, {"10000.0", TOOL}}, "", {}, "<= 16"},
    {"  10,000 nodes in a group", {PEAK, {"10000.1", TOOL}}, "", {}, "<= 16"},
    {"group list --long, 10,000 nodes", {OWN_CPU, {"10000.1", LIST + "--long"}}, "1,000 nodes", {OWN_CPU, {"1000.1", LIST + "--long"}}, "<= 12"},
    {"  with -Y", {OWN_CPU, {"10000.1", LIST + "-Y"}}, "1,000 nodes", {OWN_CPU, {"1000.1", LIST + "-Y"}}, "<= 12"},
    {"  peak memory", {PEAK, {"10000.1", LIST + "--long"}}, "1,000 nodes", {PEAK, {"1000.1", LIST + "--long"}}, "<= 10"},
    {"group auto up to its tool, 10,000 nodes", {OWN_CPU, {"10000.1", "./zelfhome group auto"}}, "1,000 nodes", {OWN_CPU, {"1000.1", "./zelfhome group auto"}}, "<= 12"},
    {"status list -Y, 10,000 records", {OWN_CPU, {"1.1", RECORDS}}, "1,000 records", {OWN_CPU, {"2.1", RECORDS}}, "<= 12"},
    {"cutting 64 MiB into chunks", {TIME, {"5.1", MICRO + "cutChunks"}}, "split -b 1M", {OWN_CPU, {"5.1", SPLIT}}, "< 1"},
    {"completion of a node name, 10,000 nodes", {WALL, {"10000.1000", COMPLETE}}, "", {}, "<= 100"},
    {"percent encoding", {RATE, {"5.1", MICRO + "percentEncode"}}, "", {}, ">= 300"},
    {"percent decoding", {RATE, {"5.1", MICRO + "percentDecode"}}, "", {}, ">= 300"},
    {"colon records, writing 10,000", {TIME, {"5.1", MICRO + "recordsOut/10000$"}}, "1,000 records", {TIME, {"5.1", MICRO + "recordsOut/1000$"}}, "<= 20"},
    {"colon records, reading 10,000", {TIME, {"5.1", MICRO + "recordsIn/10000$"}}, "1,000 records", {TIME, {"5.1", MICRO + "recordsIn/1000$"}}, "<= 20"},
    {"  into a table", {TIME, {"5.1", MICRO + "recordsIntoTable/10000$"}}, "1,000 records", {TIME, {"5.1", MICRO + "recordsIntoTable/1000$"}}, "<= 20"},
    {"progress records, reading 10,000", {TIME, {"1.1", MICRO + "progressRecords"}}, "1,000 records", {TIME, {"2.1", MICRO + "progressRecords"}}, "<= 20"},
    {"configuration, 1,000 groups", {TIME, {"10000.1000", MICRO + "configuration"}}, "100 groups", {TIME, {"1000.100", MICRO + "configuration"}}, "<= 12"},
};
// clang-format on

constexpr int ROUNDS = 150;
constexpr int LONG_EVERY =
    15; // rounds: some programs take longer, and a micro benchmark is a median by itself

const char* const OUTPUT = "/var/zelf/bench/output";

bool isMicro(const Program& program)
{
    return program.second.compare(0, MICRO.size(), MICRO) == 0;
}

bool isLong(const Program& program)
{
    const std::string& command = program.second;
    return isMicro(program) || command == RECORDS || command == SPLIT || command == COMPLETE ||
           command.find("group") != std::string::npos;
}

void enterCluster(const std::string& name)
{
    for (const std::string part : {"gen", "tmp"}) {
        std::filesystem::remove("/var/zelf/" + part);
        std::filesystem::create_directory_symlink("bench/" + name + "/" + part, "/var/zelf/" + part);
    }
}

pid_t start(const std::string& command)
{
    std::istringstream stream(command);
    std::vector<std::string> words{std::istream_iterator<std::string>(stream), {}};
    std::vector<char*> argv;
    for (std::string& word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, OUTPUT, O_WRONLY | O_CREAT | O_TRUNC, 0600);
    posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
    pid_t process = 0;
    const int error = posix_spawn(&process, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        throw std::runtime_error("cannot start " + command);
    }
    return process;
}

double toMs(const timeval& time)
{
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
}

// Takes the figures of the one benchmark that ran:
//   "name",iterations,real_time,cpu_time,time_unit,bytes_per_second,...
void takeMicroFigures(Sample& sample)
{
    std::ifstream output(OUTPUT);
    std::string line;
    while (std::getline(output, line) && line.find('"') != 0) {
    }
    std::istringstream cells(line);
    std::vector<std::string> fields;
    for (std::string field; std::getline(cells, field, ',');) {
        fields.push_back(field);
    }
    if (fields.size() < 6 || line.find("true") != std::string::npos) {
        throw std::runtime_error("a micro benchmark failed: " + line);
    }
    sample[TIME] = std::stod(fields[3]) / 1e6;
    sample[RATE] = fields[5].empty() ? 0 : std::stod(fields[5]) / 1e6;
}

// wait4(2) counts a process together with all that it waited for. Between its end and that call the clock of
// the process alone can still be read (clock_getcpuclockid(3)); the difference is what its children used.
Sample run(const Program& program)
{
    const auto& [cluster, command] = program;
    enterCluster(cluster);
    const auto begin = std::chrono::steady_clock::now();
    const pid_t process = start(command);
    siginfo_t info{};
    waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | WNOWAIT);
    const std::chrono::duration<double, std::milli> wall = std::chrono::steady_clock::now() - begin;

    clockid_t clock{};
    timespec own{};
    rusage all{};
    int status = 0;
    if (clock_getcpuclockid(process, &clock) != 0 || clock_gettime(clock, &own) != 0 ||
        wait4(process, &status, 0, &all) != process || status != 0) {
        throw std::runtime_error(command + " failed");
    }
    Sample sample{};
    sample[WALL] = wall.count();
    sample[OWN_CPU] = static_cast<double>(own.tv_sec) * 1e3 + static_cast<double>(own.tv_nsec) / 1e6;
    sample[CHILD_CPU] = toMs(all.ru_utime) + toMs(all.ru_stime) - sample[OWN_CPU];
    sample[PEAK] = static_cast<double>(all.ru_maxrss) / 1024;
    if (isMicro(program)) {
        takeMicroFigures(sample);
    }
    return sample;
}

using Samples = std::map<Program, std::vector<Sample>>;

// Runs the programs of all rows. Each round runs each of them once, so that a busy moment of the machine
// meets them all.
Samples measure()
{
    Samples samples;
    for (const Row& row : ROWS) {
        samples[row.value.program];
        samples[row.reference.program];
    }
    samples.erase(Program());
    for (int round = 0; round < ROUNDS; ++round) {
        for (auto& [program, taken] : samples) {
            if (!isLong(program) || round % LONG_EVERY == 0) {
                taken.push_back(run(program));
            }
        }
    }
    return samples;
}

double median(const Source& source, const Samples& samples)
{
    std::vector<double> values;
    for (const Sample& sample : samples.at(source.program)) {
        values.push_back(sample[source.figure]);
    }
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

bool isMet(const std::string& aim, double value)
{
    const double limit = std::stod(aim.substr(aim.find(' ')));
    return aim[0] == '>' ? value >= limit : aim[1] == '=' ? value <= limit : value < limit;
}

void print(const Row& row, const Samples& samples)
{
    double judged = median(row.value, samples);
    std::printf("%-38s %8.2f %-5s", row.text, judged, UNITS[row.value.figure]);
    if (row.reference.figure == NONE) {
        std::printf("%45s", "");
    } else {
        const double reference = median(row.reference, samples);
        judged /= reference;
        std::printf(" %-26s %8.2f %8.2f", row.referenceText, reference, judged);
    }
    std::printf("   %-6s %s\n", row.aim, *row.aim == '\0' ? "" : isMet(row.aim, judged) ? "met" : "MISSED");
}

} // namespace

int main()
{
    try {
        const Samples samples = measure();
        std::printf(
            "Medians of %d interleaved runs. Own CPU is without the programs that the tool starts.\n\n"
            "%-38s %8s %-5s %-26s %8s %8s   %s\n",
            ROUNDS, "figure", "value", "", "reference", "value", "ratio", "aim");
        for (const Row& row : ROWS) {
            print(row, samples);
        }
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "zelfhome_bench: %s\n", failure.what());
        return 1;
    }
    return 0;
}
