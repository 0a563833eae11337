// A healthy installation for each test, whose stand-ins for programs record each call and answer as told.
#pragma once

#include <cstdlib>
#include <fcntl.h>
#include <iomanip>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <tuple>
#include <unistd.h>
#include <vector>

#include "support/files.h"

using Strings = std::vector<std::string>;

const std::string TMP = "/var/zelf/tmp";
const std::string LOG = TMP + "/zelfhome.log";
const std::string DEBUG_LOG = TMP + "/debugzelfhome.log";

inline Strings split(const std::string& text, char separator)
{
    Strings list;
    std::istringstream stream(text);
    for (std::string piece; std::getline(stream, piece, separator);) {
        list.push_back(piece);
    }
    return list;
}

// One group; nodes are short names, children separated by ",". No version: no such key. `more`: whole lines.
inline std::string group(const std::string& name, const std::string& server, const std::string& children,
                         const std::string& version, const std::string& more = "")
{
    std::string names;
    for (const std::string& child : split(children, ',')) {
        names += (names.empty() ? "" : ",") + child + ".zelf.test";
    }
    return "<callhomeGroup>\ncallhomeChildNodes = " + names + "\ncallhomeNode = " + server + ".zelf.test\n" +
           (version.empty() ? "" : "masterReleaseVersion = " + version + "\n") + more + "name = " + name +
           "\n</callhomeGroup>\n";
}

// The configuration with these groups, and `global` behind them.
inline std::string topology(const std::string& groups, const std::string& global = "")
{
    return "<callhomeTopology>\n" + groups + "</callhomeTopology>\n" + global;
}

// Makes `text` the call-home configuration in the CCR.
inline void configure(const std::string& text)
{
    writeFile("/opt/zelf/ccr/_callhomeconfig", text);
}

// Runs a piece of shell in /opt/zelf; $GEN and $TMP are the folders of /var/zelf.
inline void shell(const std::string& script)
{
    const std::string all = "cd /opt/zelf; GEN=/var/zelf/gen TMP=/var/zelf/tmp; " + script;
    ASSERT_EQ(std::system(all.c_str()), 0) << script;
}

// Such a piece that makes this the call-home configuration.
inline std::string configured(const std::string& groups, const std::string& global = "")
{
    return "cat >ccr/_callhomeconfig <<'END'\n" + topology(groups, global) + "END\n";
}

// Makes the stand-in of a program end with this piece of shell; "$@" holds the arguments. "start" is what the
// monitoring client does at the start of each run.
inline void answer(const std::string& program, const std::string& script)
{
    writeFile("/opt/zelf/answers/" + program, script + "\n");
}

// The calls since it was last asked, in order, as the stand-ins have written them.
inline Strings calls()
{
    Strings list = split(contentOf("/opt/zelf/calls"), '\n');
    writeFile("/opt/zelf/calls", "");
    return list;
}

// The calls of every run that gets as far as the configuration, and `further` behind them.
const std::string FETCH = "zelfccr fget _callhomeconfig /var/zelf/tmp/_callhomeconfig";
inline Strings startThen(const Strings& further)
{
    Strings list = {"zelfctl nqStatus -q", "zelfmonc callhome ensureConfigInCCR", FETCH};
    list.insert(list.end(), further.begin(), further.end());
    return list;
}

// What the user sees of one run.
struct Result {
    int status = 0; // negative: the signal that it died of
    std::string out;
    std::string err;

    bool operator==(const Result&) const = default;
    friend std::ostream& operator<<(std::ostream& to, const Result& result)
    {
        return to << result.status << "\n--- out\n" << result.out << "--- err\n" << result.err << "---";
    }
};

// A good run that says this on standard output.
inline Result success(const std::string& out)
{
    return {0, out, ""};
}

// What the framework says on a failure with status 1.
inline Result failed(const std::string& response, const std::string& additionalMessages = "")
{
    const std::string more = "\nAdditional messages:\n" + additionalMessages + "\n";
    return {1, "", response + "\n" + (additionalMessages.empty() ? "" : more)};
}

// What "info list" says of an empty configuration.
const Result LISTED = success("group    customerName   customerID   email   countryCode   \n"
                              "-------- -------------- ------------ ------- ------------- \n"
                              "global                                                     \n");

// True when a range error ended the run that nobody caught, with the trace saved or not.
inline bool endedByRangeError(const Result& result)
{
    const bool traced = result.status == 1 && result.out == "An unexpected Error occured.\n";
    return (result.status == -SIGABRT || traced) && result.err.find("std::out_of_range") != std::string::npos;
}

// Gives how many sections of a log have their end. None but the first may lack its begin, or any its end.
inline size_t sections(const std::string& log)
{
    size_t count = 0;
    bool isOpen = false;
    for (const std::string& line : split(contentOf(log), '\n')) {
        const bool begins = line.starts_with("Trace messages start at: ");
        const bool ends = line.starts_with("Trace messager end at: ");
        EXPECT_FALSE((begins && isOpen) || (ends && !isOpen && count > 0)) << log;
        isOpen = begins || (isOpen && !ends);
        count += ends ? 1 : 0;
    }
    EXPECT_FALSE(isOpen) << log;
    return count;
}

// Runs the tool with the words of `line`, as a shell would cut them at blanks; '...' holds words together.
// The tool believes that it was called as `program`, unless ZELFHOME_WRAPPER puts another command around it:
// gdb, strace, valgrind. Nothing may be left behind, and no section of a log without its end.
inline Result runTool(const std::string& line, const std::string& program = "/opt/zelf/bin/zelfhome")
{
    const char* wrapper = std::getenv("ZELFHOME_WRAPPER");
    Strings words =
        wrapper == nullptr ? Strings{program} : split(wrapper + std::string(" " ZELFHOME_TOOL), ' ');
    std::istringstream stream(line);
    for (std::string word; stream >> std::quoted(word, '\'');) {
        words.push_back(word);
    }
    std::vector<char*> argv;
    for (std::string& word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);
    const pid_t pid = fork();
    if (pid == 0) {
        setpgid(0, 0); // a stand-in may kill its whole group
        dup2(open("/dev/null", O_RDONLY | O_CLOEXEC), 0);
        dup2(open("/opt/zelf/out", O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600), 1);
        dup2(open("/opt/zelf/err", O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600), 2);
        execvp(wrapper == nullptr ? ZELFHOME_TOOL : argv[0], argv.data());
        _exit(126);
    }
    int status = -1;
    waitpid(pid, &status, 0);
    std::error_code missing;
    for (const auto& entry : std::filesystem::directory_iterator(TMP, missing)) {
        const std::string name = entry.path().filename();
        const bool stays = name == "_callhomeconfig" || name == "zelfall.rel" || name == "callhome";
        EXPECT_TRUE(stays || name.ends_with(".log")) << name;
        if (name.ends_with(".log")) {
            sections(entry.path());
        }
    }
    return {WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status), contentOf("/opt/zelf/out"),
            contentOf("/opt/zelf/err")};
}

// A run: the line, what is done ahead, by a piece of shell, what the user sees, the calls behind the start.
using Run = std::tuple<std::string, std::string, Result, std::string>;
inline void expectRun(const std::string& line, const std::string& ahead, const Result& expected,
                      const std::string& further)
{
    shell(ahead);
    EXPECT_EQ(runTool(line), expected);
    EXPECT_EQ(calls(), startThen(split(further, '\n')));
}

class Installation : public testing::Test {
protected:
    void SetUp() override { shell(ZELFHOME_SOURCE_DIR "/tests/support/prepare"); }

    // Checks each row of a table of tuples in an installation of its own. The first cell names the row.
    template <typename Row, size_t N, typename Check>
    void inEach(const Row (&rows)[N], const Check& check)
    {
        for (const Row& row : rows) {
            SCOPED_TRACE(std::get<0>(row));
            SetUp();
            std::apply(check, row);
        }
    }
};
