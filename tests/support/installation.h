// A healthy installation for each test, in the private /opt/zelf and /var/zelf of tests/in-namespace: a
// cluster of four nodes, an empty call-home configuration in the CCR, and a stand-in for each program that
// the tool calls. A stand-in records its call and then answers as the test says.
#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

using Strings = std::vector<std::string>;

// What the user sees of one run.
struct Result {
    int status = 0; // negative: the signal that it died of
    std::string out;
    std::string err;

    bool operator==(const Result&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Result& result);

class Installation : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;
};

// A fixture for tables. The rows show as their `name`, which may be the command line.
template <typename Row>
class InstallationWith : public Installation, public testing::WithParamInterface<Row> {
};

template <typename Row>
requires requires(const Row& row)
{
    row.name;
}
void PrintTo(const Row& row, std::ostream* out)
{
    *out << row.name;
}

// Runs the tool with the words of `line`, as a shell would cut them at blanks; '...' and "..." hold words
// together. Kills what is not done after 20 seconds. The tool believes that it was called as `program`.
Result runTool(const std::string& line, const std::string& program = "/opt/zelf/bin/zelfhome");

// What the framework says on a failure with status 1.
Result failed(const std::string& response, const std::string& additionalMessages = "");

// True when a range error ended the run that nobody caught, with the trace saved or not.
bool endedByRangeError(const Result& result);

// --- the programs ----------------------------------------------------------------------------------------

// Makes the stand-in of a program end with this piece of shell; "$@" holds the arguments.
void answer(const std::string& program, const std::string& script);

void uninstall(const std::string& program);

// The calls so far, in order: program and words, with a blank between each two. A word that a shell would not
// read as it stands is shown in single quotes, with a backslash ahead of quotes and backslashes in it.
Strings calls();

// The calls of every run that gets as far as the configuration, and `further` behind them.
Strings startThen(const Strings& further);

// --- the files -------------------------------------------------------------------------------------------

const std::string TMP = "/var/zelf/tmp";
const std::string LOG = TMP + "/zelfhome.log";
const std::string DEBUG_LOG = TMP + "/debugzelfhome.log";

// Writes a file, and makes the folders that it needs.
void writeFile(const std::string& path, const std::string& text);

// Gives a file's text, "(no such file)" when there is none.
std::string readFile(const std::string& path);

// What the log says behind `begin`, up to the line's end, for each line that begins so.
Strings logged(const std::string& begin);

// Replaces all that an extended regular expression matches. (g++ 12 does not get through std::regex with
// sanitizers and all warnings.)
std::string replaced(const std::string& text, const char* expression, const char* by);

// One line of the cluster definition file.
std::string memberLine(int number, const std::string& shortName);

// Makes `text` the call-home configuration in the CCR.
void configure(const std::string& text);

// One group of the configuration; nodes are short names, children separated by ",". No version: no such key.
std::string group(const std::string& name, const std::string& server, const std::string& children,
                  const std::string& version);

// The configuration with these groups, and `global` behind them.
std::string topology(const std::string& groups, const std::string& global = "");
