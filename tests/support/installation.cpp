#include "support/installation.h"

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <regex.h>
#include <sstream>
#include <sys/mount.h>
#include <sys/vfs.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

constexpr long TMPFS = 0x01021994;

const char* const PROGRAMS[] = {
    "zelfctl",  "zelfmonc",    "zelfccr",     "zelfrun",      "zelfadm",          "zelfmgr",       "zelfprod",
    "zelfdiag", "zelfcrclass", "zelfchclass", "zelfdelclass", "callhomeutils.pl", "zelfautoconfig"};

// Counted and cut by zero bytes, so that no argument can be taken for another.
const char* const STAND_IN = R"(#!/bin/sh
name=${0##*/}
printf '%s\0' $# "$name" "$@" >>/opt/zelf/calls
[ ! -f "/opt/zelf/answers/$name" ] || . "/opt/zelf/answers/$name"
)";

const char* const CCR_ANSWER = R"(
[ "$1" = fget ] || exit 0
[ -f "/opt/zelf/ccr/$2" ] || exit 149
exec cat "/opt/zelf/ccr/$2" >"$3")";

void emptyFolder(const char* path)
{
    // The machine's own installation must never be taken for the private one.
    struct statfs status {};
    if (statfs(path, &status) != 0 || status.f_type != TMPFS) {
        std::fprintf(stderr, "%s is not private: run this through tests/in-namespace\n", path);
        std::exit(1);
    }
    for (const auto& entry : fs::directory_iterator(path)) {
        fs::remove_all(entry);
    }
}

Strings words(const std::string& line)
{
    Strings list;
    for (size_t i = line.find_first_not_of(' '); i < line.size(); i = line.find_first_not_of(' ', i)) {
        std::string& word = list.emplace_back();
        while (i < line.size() && line[i] != ' ') {
            const bool quoted = line[i] == '\'' || line[i] == '"';
            const size_t end = quoted ? line.find(line[i], i + 1) : i + 1;
            word += quoted ? line.substr(i + 1, end - i - 1) : line.substr(i, 1);
            i = quoted && end != std::string::npos ? end + 1 : end;
        }
    }
    return list;
}

std::string shown(const std::string& word)
{
    const char* const plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789%+,-./:=@_";
    if (!word.empty() && word.find_first_not_of(plain) == std::string::npos) {
        return word;
    }
    std::string text = "'";
    for (const char byte : word) {
        text += byte == '\'' || byte == '\\' ? "\\" : "";
        text += byte;
    }
    return text + "'";
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
    emptyFolder("/opt/zelf");
    emptyFolder("/var/zelf");
    for (const std::string path : {"/opt/zelf/bin", "/opt/zelf/answers", "/opt/zelf/ccr",
                                   "/var/zelf/gen/nodeFiles", "/var/zelf/tmp"}) {
        fs::create_directories(path);
    }
    writeFile("/opt/zelf/stand-in", STAND_IN);
    fs::permissions("/opt/zelf/stand-in", fs::perms::owner_all);
    for (const std::string program : PROGRAMS) {
        fs::create_symlink("/opt/zelf/stand-in", "/opt/zelf/bin/" + program);
    }
    answer("zelfccr", CCR_ANSWER);
    answer("zelfadm", "echo \"$2: no such host\"; exit 1");

    std::string cluster = "test:10_CLUSTER:::zelf.test:\n";
    for (const int number : {1, 2, 3, 4}) {
        cluster += memberLine(number, "node" + std::to_string(number));
    }
    writeFile("/var/zelf/gen/zelfsdr", cluster);
    writeFile("/var/zelf/gen/zelf.cfg",
              "myNodeConfigNumber 1\nccrEnabled yes\nminReleaseLevel 1900 5.0.2.0\n");
    writeFile("/var/zelf/gen/nodeFiles/zelfall.ipa", "1\n2\n3\n4\n");
    configure(topology(""));
}

void Installation::TearDown()
{
    // What a test may have mounted there.
    while (umount2(TMP.c_str(), MNT_DETACH) == 0) {
    }
}

Result runTool(const std::string& line, const std::string& program)
{
    std::string name = program;
    Strings args = words(line);
    std::vector<char*> argv = {name.data()};
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
        execv(ZELFHOME_TOOL, argv.data());
        _exit(126);
    }
    int status = -1;
    waitpid(pid, &status, 0);
    return {WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status), readFile("/opt/zelf/out"),
            readFile("/opt/zelf/err")};
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

void uninstall(const std::string& program)
{
    fs::remove("/opt/zelf/bin/" + program);
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
    fs::create_directories(fs::path(path).parent_path());
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

std::string memberLine(int number, const std::string& shortName)
{
    const std::string n = std::to_string(number);
    const std::string name = shortName + ".zelf.test";
    return "test:20_MEMBER_NODE:::" + n + ":" + shortName + ":10.0.0." + n + ":" + name + "::M:::::" + name +
           ":" + shortName + ":1900:5.0.2.0:\n";
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
