#include "fixture.h"

#include <cerrno>
#include <cstdio>
#include <iostream>
#include <linux/magic.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

const std::string GEN = "/var/zelf/gen/";

// Ahead of everything: a machine's own installation must never be taken for the private one.
[[gnu::constructor(101)]] void demandNamespace()
{
    struct statfs status {};
    if (statfs("/var/zelf", &status) != 0 || status.f_type != TMPFS_MAGIC) {
        std::fputs("unit_tests: start me with tests/in-namespace\n", stderr);
        _exit(2);
    }
}

template <typename Cli>
Cli& makeAndKeep(Words line)
{
    static auto* objects = new std::vector<Cli*>;
    line.insert(line.begin(), "/opt/zelf/bin/zelfhome");
    std::vector<char*> argv;
    for (std::string& word : line) {
        argv.push_back(word.data());
    }
    return *objects->emplace_back(new Cli(static_cast<int>(argv.size()), argv.data()));
}

} // namespace

void install(const std::string& name, const std::string& script)
{
    const std::string path = "/opt/zelf/bin/" + name;
    // In one write: two may record at once.
    writeFile(path, "#!/bin/sh\nprintf '%s\\n' \"" + name + "$([ $# = 0 ] || printf ' [%s]' \"$@\")\" >>" +
                        GEN + "calls\n" + script + "\n");
    fs::permissions(path, fs::perms::all);
}

std::string calls()
{
    const std::string text = contentOf(GEN + "calls");
    fs::remove(GEN + "calls");
    return text;
}

std::string printed(const std::function<void()>& action)
{
    testing::internal::CaptureStdout();
    action();
    std::cout.flush();
    return testing::internal::GetCapturedStdout();
}

void expectEnd(const std::function<void()>& action, int status, const std::string& out,
               const std::string& err)
{
    const auto run = [&] {
        if (freopen((GEN + "stdout").c_str(), "w", stdout) != nullptr) {
            action();
        }
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(status), testing::Matcher<const std::string&>(err));
    EXPECT_EQ(contentOf(GEN + "stdout"), out);
}

void expectFailure(const std::function<void()>& action, const std::string& response,
                   const std::string& message)
{
    const std::string more = "\nAdditional messages:\n" + message + "\n";
    expectEnd(action, 1, "", response + "\n" + (message.empty() ? "" : more));
}

std::string member(int number, const std::string& names, int level, const std::string& roles)
{
    const Words name = split(names + "     ", " ");
    return "test:20_MEMBER_NODE:::" + toString(number) + ":" + name[0] + ":" + name[1] + ":" + name[2] +
           "::" + roles + ":::::" + name[3] + ":" + name[4] + ":" + toString(level) + ":5.0.2.0";
}

void setCluster(const Names& lines)
{
    Info::getClusterNodes()->clear();
    Info::getNodesMap({lines.begin(), lines.end()});
}

void setZelfCfg(const std::string& text)
{
    writeFile(GEN + "zelf.cfg", text);
    Info::zelfcfgMapP->clear();
}

TestCli& makeCli(const Words& line)
{
    return makeAndKeep<TestCli>(line);
}

ZlCallhome& makeCallhome(const Words& line)
{
    chServiceP = &makeAndKeep<ZlCallhome>(line);
    return *chServiceP;
}

void ZelfTest::SetUp()
{
    // Code that ends the process outside an expectEnd() must not look like a good end of all tests.
    static const pid_t testProgram = getpid();
    [[maybe_unused]] static const int registered = atexit([] {
        if (getpid() == testProgram && testing::UnitTest::GetInstance()->current_test_info() != nullptr) {
            _exit(99);
        }
    });
    // No test leaves a file open.
    const auto openFiles = [] { return std::distance(fs::directory_iterator("/proc/self/fd"), {}); };
    static const auto atFirst = openFiles();
    EXPECT_EQ(openFiles(), atFirst);
    ZlErrorService::controlFlags = 0;
    alarm(0); // which a daemon sets
    Info::controlState = 1;
    service.setLogFileName("test");
    service.writeTrace();
    for (const std::string& folder : {std::string("/opt/zelf/bin"), TMP, GEN + "nodeFiles"}) {
        for (const auto& entry : fs::directory_iterator(folder)) {
            fs::remove_all(entry);
        }
    }
    calls();
    setZelfCfg("myNodeConfigNumber 1\nccrEnabled yes\nminReleaseLevel 1900 5.0.2.0\n");
    const Words lines = split(contentOf(GEN + "zelfsdr"), "\n");
    setCluster({lines.begin(), lines.end()});
    Info::defineAllNode(Names());
    Info::cluserLevelToNameP->clear();
    errno = 0;
}
