// A healthy installation for each test, as support/prepare makes it. A stand-in for a program records its
// call and then answers as the test says.
#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <tuple>
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

    // Checks each row of a table of tuples in an installation of its own. The first cell names the row.
    template <typename Row, size_t N, typename Check>
    void inEach(const Row (&rows)[N], const Check& check)
    {
        for (const Row& row : rows) {
            SCOPED_TRACE(std::get<0>(row));
            SetUp();
            std::apply(check, row);
            TearDown();
        }
    }
};

// Runs the tool with the words of `line`, as a shell would cut them at blanks; '...' and "..." hold words
// together. The tool believes that it was called as `program`. The words of $ZELFHOME_WRAPPER, such as
// "strace -fo FILE" or "valgrind --log-file=FILE", go ahead of it. Nothing may be left behind.
Result runTool(const std::string& line, const std::string& program = "/opt/zelf/bin/zelfhome");

// A good run that says this on standard output.
Result success(const std::string& out);

// What the framework says on a failure with status 1.
Result failed(const std::string& response, const std::string& additionalMessages = "");

// True when a range error ended the run that nobody caught, with the trace saved or not.
bool endedByRangeError(const Result& result);

// --- the programs ----------------------------------------------------------------------------------------

// Makes the stand-in of a program end with this piece of shell; "$@" holds the arguments. "start" is what the
// monitoring client does at the start of each run.
void answer(const std::string& program, const std::string& script);

// Runs a piece of shell in /opt/zelf; $GEN and $TMP are the folders of /var/zelf.
void shell(const std::string& script);

// The calls since it was last asked, in order: program and words, with a blank between each two. An
// empty word and one with blanks or quotes is shown in single quotes, with a backslash ahead of those in it.
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

// Cuts a text at a byte.
Strings split(const std::string& text, char separator);

// What the log says behind `begin`, up to the line's end, for each line that begins so.
Strings logged(const std::string& begin);

// Replaces all that an extended regular expression matches. (g++ 12 does not get through std::regex with
// sanitizers and all warnings.)
std::string replaced(const std::string& text, const char* expression, const char* by);

// Makes `text` the call-home configuration in the CCR.
void configure(const std::string& text);

// One group of the configuration; nodes are short names, children separated by ",". No version: no such key.
// `more` holds whole lines.
std::string group(const std::string& name, const std::string& server, const std::string& children,
                  const std::string& version, const std::string& more = "");

// The configuration with these groups, and `global` behind them.
std::string topology(const std::string& groups, const std::string& global = "");
