#include "support/installation.h"

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <regex.h>
#include <sstream>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// A word that would not stand as one in single quotes, with a backslash ahead of each of those in it.
std::string shown(const std::string& word)
{
    const bool isPlain = !word.empty() && word.find_first_of(" '\"") == std::string::npos;
    return isPlain ? word : "'" + replaced(word, "'", "\\'") + "'";
}

// Behind every run: no file in /var/zelf/tmp but those that stay, and no section of a log without its end.
void expectNothingLeft()
{
    std::error_code missing;
    for (const auto& entry : std::filesystem::directory_iterator(TMP, missing)) {
        const std::string name = entry.path().filename();
        EXPECT_EQ(replaced(name, "^([[:alpha:].]*[.]log|_callhomeconfig|zelfall[.]rel|callhome)$", ""), "");
        bool isOpen = false;
        for (const std::string& line :
             name.ends_with(".log") ? split(readFile(entry.path()), '\n') : Strings()) {
            const bool begins = line.starts_with("Trace messages start at: ");
            EXPECT_FALSE(begins && isOpen) << name;
            isOpen = begins || (isOpen && !line.starts_with("Trace messager end at: "));
        }
        EXPECT_FALSE(isOpen) << name;
    }
}

} // namespace

std::ostream& operator<<(std::ostream& out, const Result& result)
{
    return out << "status " << result.status << "\n--- out\n"
               << result.out << "--- err\n"
               << result.err << "---";
}

void Installation::SetUp()
{
    shell(ZELFHOME_SOURCE_DIR "/tests/support/prepare");
}

void Installation::TearDown()
{
    // What a test may have mounted there does not stay.
    while (umount2(TMP.c_str(), MNT_DETACH) == 0) {
    }
}

Result runTool(const std::string& line, const std::string& program)
{
    std::string path = ZELFHOME_TOOL;
    Strings args = {program};
    // With gdb, strace or valgrind around it, the tool has its own name.
    if (const char* wrapper = std::getenv("ZELFHOME_WRAPPER")) {
        args = split(wrapper, ' ');
        path = args.at(0);
        args.emplace_back(ZELFHOME_TOOL);
    }
    std::istringstream words(line);
    for (std::string word; words >> std::quoted(word, '\'');) {
        args.push_back(word);
    }
    std::vector<char*> argv;
    for (std::string& arg : args) {
        argv.push_back(arg.data());
    }
    argv.push_back(nullptr);

    const pid_t pid = fork();
    if (pid == 0) {
        setpgid(0, 0); // a stand-in may kill its whole group
        dup2(open("/dev/null", O_RDONLY | O_CLOEXEC), 0);
        dup2(open("/opt/zelf/out", O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600), 1);
        dup2(open("/opt/zelf/err", O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600), 2);
        execvp(path.c_str(), argv.data());
        _exit(126);
    }
    int status = -1;
    waitpid(pid, &status, 0);
    expectNothingLeft();
    return {WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status), readFile("/opt/zelf/out"),
            readFile("/opt/zelf/err")};
}

Result success(const std::string& out)
{
    return {0, out, ""};
}

Result failed(const std::string& response, const std::string& additionalMessages)
{
    const std::string more =
        additionalMessages.empty() ? "" : "\nAdditional messages:\n" + additionalMessages + "\n";
    return {1, "", response + "\n" + more};
}

bool endedByRangeError(const Result& result)
{
    const bool traced = result.status == 1 && result.out == "An unexpected Error occured.\n";
    return (result.status == -SIGABRT || traced) && result.err.find("std::out_of_range") != std::string::npos;
}

void answer(const std::string& program, const std::string& script)
{
    writeFile("/opt/zelf/answers/" + program, script + "\n");
}

void shell(const std::string& script)
{
    const std::string all = "cd /opt/zelf; GEN=/var/zelf/gen TMP=/var/zelf/tmp; " + script;
    ASSERT_EQ(std::system(all.c_str()), 0) << script;
}

Strings calls()
{
    Strings list;
    std::ifstream file("/opt/zelf/calls");
    for (std::string word; std::getline(file, word, '\0');) {
        int count = std::stoi(word);
        std::string call;
        for (std::getline(file, call, '\0'); count > 0 && std::getline(file, word, '\0'); --count) {
            call += " " + shown(word);
        }
        list.push_back(call);
    }
    std::filesystem::remove("/opt/zelf/calls");
    return list;
}

Strings startThen(const Strings& further)
{
    Strings list = {"zelfctl nqStatus -q", "zelfmonc callhome ensureConfigInCCR",
                    "zelfccr fget _callhomeconfig /var/zelf/tmp/_callhomeconfig"};
    list.insert(list.end(), further.begin(), further.end());
    return list;
}

void writeFile(const std::string& path, const std::string& text)
{
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream file(path, std::ios::binary);
    file << text << std::flush;
    EXPECT_TRUE(file.good()) << "cannot write " << path;
}

std::string readFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return file ? text.str() : "(no such file)";
}

Strings split(const std::string& text, char separator)
{
    Strings list;
    std::istringstream stream(text);
    for (std::string piece; std::getline(stream, piece, separator);) {
        list.push_back(piece);
    }
    return list;
}

Strings logged(const std::string& begin)
{
    Strings list;
    for (const std::string& line : split(readFile(LOG), '\n')) {
        if (line.compare(0, begin.size(), begin) == 0) {
            list.push_back(line.substr(begin.size()));
        }
    }
    return list;
}

std::string replaced(const std::string& text, const char* expression, const char* by)
{
    regex_t compiled;
    EXPECT_EQ(regcomp(&compiled, expression, REG_EXTENDED), 0);
    std::string result;
    const char* rest = text.c_str();
    for (regmatch_t match; regexec(&compiled, rest, 1, &match, 0) == 0; rest += match.rm_eo) {
        result.append(rest, static_cast<size_t>(match.rm_so)).append(by);
    }
    regfree(&compiled);
    return result + rest;
}

void configure(const std::string& text)
{
    writeFile("/opt/zelf/ccr/_callhomeconfig", text);
}

std::string group(const std::string& name, const std::string& server, const std::string& children,
                  const std::string& version, const std::string& more)
{
    return "    <callhomeGroup>\n        callhomeChildNodes = " + replaced(children, ",", ".zelf.test,") +
           ".zelf.test\n        callhomeNode = " + server + ".zelf.test\n" +
           (version.empty() ? "" : "        masterReleaseVersion = " + version + "\n") + more +
           "        name = " + name + "\n    </callhomeGroup>\n";
}

std::string topology(const std::string& groups, const std::string& global)
{
    return "<callhomeTopology>\n" + groups + "</callhomeTopology>\n" + global;
}
