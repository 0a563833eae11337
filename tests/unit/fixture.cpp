#include "fixture.h"

#include <cerrno>
#include <deque>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <unistd.h>

#include "cluster/zlclusterinfo.h"
#include "services/zlerrorservice.h"
#include "services/zlutils.h"

namespace fs = std::filesystem;

namespace {

const std::string GEN = "/var/zelf/gen/";

// Gives argv for a line. It stays for ever, as the real one does: getopt(3) keeps a pointer into it.
std::pair<int, char**> makeArgv(const Words& line)
{
    static std::deque<Words> texts;
    static std::deque<std::vector<char*>> pointers;
    Words& words = texts.emplace_back(Words{"/opt/zelf/bin/zelfhome"});
    words.insert(words.end(), line.begin(), line.end());
    std::vector<char*>& argv = pointers.emplace_back();
    for (std::string& word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);

    char* none[] = {argv[0], nullptr};
    optind = 0;
    (void)getopt(1, none, ZlCli::optstring.c_str());
    return {static_cast<int>(words.size()), argv.data()};
}

template <typename Cli>
Cli& makeAndKeep(const Words& line)
{
    static auto* objects = new std::vector<Cli*>;
    const auto [argc, argv] = makeArgv(line);
    return *objects->emplace_back(new Cli(argc, argv));
}

void writeTraceAs(const std::string& name)
{
    const int number = errno;
    ZlErrorService::errorServiceP->setLogFileName(name);
    ZlErrorService::errorServiceP->writeTrace();
    errno = number;
}

} // namespace

std::string contentOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

void writeFile(const std::string& path, const std::string& text)
{
    std::ofstream(path, std::ios::binary) << text;
}

void install(const std::string& name, const std::string& script)
{
    const std::string path = "/opt/zelf/bin/" + name;
    writeFile(path, "#!/bin/sh\n{ printf '" + name + "'; [ $# = 0 ] || printf ' [%s]' \"$@\"; echo; } >>" +
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

std::string logged(const std::function<void()>& action, bool debug)
{
    writeTraceAs("earlier");
    action();
    writeTraceAs("logged");
    const std::string text = contentOf(TMP + (debug ? "debuglogged.log" : "logged.log"));
    fs::remove(TMP + "logged.log");
    const size_t begin = text.find('\n', 1) + 1;
    return text.empty()
               ? ""
               : text.substr(begin, text.rfind(debug ? "\n#### function" : "Trace messager") - begin);
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

std::string member(int number, const std::string& names, int level, const std::string& roles)
{
    const Words name = split(names + "     ", " ");
    return "test:20_MEMBER_NODE:::" + toString(number) + ":" + name[0] + ":" + name[1] + ":" + name[2] +
           "::" + roles + ":::::" + name[3] + ":" + name[4] + ":" + toString(level) + ":5.0.2.0";
}

void setCluster(const Names& lines)
{
    ZlClusterInfo::getClusterNodes()->clear();
    ZlClusterInfo::getNodesMap(lines);
}

void setZelfCfg(const std::string& text)
{
    writeFile(GEN + "zelf.cfg", text);
    ZlClusterInfo::zelfcfgMapP->clear();
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

int parse(ZlCli& cli, const Words& line)
{
    const auto [argc, argv] = makeArgv(line);
    return cli.parseCmdLine(argc, argv);
}

void ZelfTest::SetUp()
{
    // Code that ends the process outside an expectEnd() must not look like a good end of all tests.
    static const pid_t testProgram = getpid();
    static const int registered = atexit([] {
        if (getpid() == testProgram && testing::UnitTest::GetInstance()->current_test_info() != nullptr) {
            _exit(99);
        }
    });
    ASSERT_EQ(registered, 0);
    for (const std::string& folder : {std::string("/opt/zelf/bin"), TMP, GEN + "nodeFiles"}) {
        for (const auto& entry : fs::directory_iterator(folder)) {
            fs::remove_all(entry);
        }
    }
    calls();
    setZelfCfg("myNodeConfigNumber 1\nccrEnabled yes\nminReleaseLevel 1900 5.0.2.0\n");
    static const std::string cluster = contentOf(GEN + "zelfsdr");
    writeFile(GEN + "zelfsdr", cluster);
    const Words lines = split(cluster, "\n");
    setCluster({lines.begin(), lines.end()});
    for (Names* names : {ZlClusterInfo::nodeDefinitionP, ZlClusterInfo::validNodesP, ZlClusterInfo::allNodesP,
                         ZlClusterInfo::invalidNodeDefinitionsP}) {
        names->clear();
    }
    ZlClusterInfo::cluserLevelToNameP->clear();
    errno = 0;
}

void ZelfTest::TearDown()
{
    ZlErrorService::controlFlags = 0;
    ZlClusterInfo::controlState = 1;
}
