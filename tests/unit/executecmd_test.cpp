// The gate to the shell: where the output goes, and which code comes back.
#include "fixture.h"

#include <csignal>
#include <sys/resource.h>

#include "services/executecmd.h"

using ExecuteCmdTest = ZelfTest;

TEST_F(ExecuteCmdTest, GivesTheExitCodeAndThePieces)
{
    const std::string longLine(8195, '0');
    const std::tuple<std::string, int, Words> cases[] = {
        {"true", 0, {}},
        {"exit 149", 149, {}},
        {"exit 255", 255, {}},
        {"kill -9 $$", 0, {}}, // not told from success
        {"echo 'a  b'; echo; printf two; exit 3", 3, {"a  b\n", "\n", "two"}},
        {"{ echo err >&2; } 2>&1", 0, {"err\n"}},
        {"printf '%08195d\\n' 0", 0, {longLine, "\n"}},
        {"printf '%016391d' 0", 0, {longLine, longLine, "0"}}};
    Words pieces = {"old"};
    for (const auto& [command, code, expected] : cases) {
        int got = -1;
        EXPECT_EQ(printed([&, &text = command] { got = _executeCMD(text, &pieces); }), "");
        EXPECT_EQ(got, code) << command;
        EXPECT_EQ(pieces, expected) << command;
    }
}

TEST_F(ExecuteCmdTest, FailuresOfTheRunnerItself)
{
    Words lines = {"old"};
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    const rlimit none = {3, limit.rlim_max};
    setrlimit(RLIMIT_NOFILE, &none);
    EXPECT_EQ(_executeCMD("true", &lines), 1);
    setrlimit(RLIMIT_NOFILE, &limit);
    EXPECT_EQ(lines, Words{"old"});

    struct sigaction old {};
    struct sigaction ignore {};
    ignore.sa_handler = SIG_IGN; // nobody is left to wait for
    sigaction(SIGCHLD, &ignore, &old);
    EXPECT_EQ(_executeCMD("true", &lines), 255);
    sigaction(SIGCHLD, &old, nullptr);
    EXPECT_EQ(lines, Words{});
}
