// The gate to the shell: where the output goes, and which code comes back.
#include "fixture.h"

#include <sys/resource.h>

#include "services/executecmd.h"

using ExecuteCmdTest = ZelfTest;

TEST_F(ExecuteCmdTest, GivesTheExitCodeAndThePieces)
{
    const std::string longLine(8195, '0');
    const std::tuple<std::string, int, Words> cases[] = {
        {"true", 0, {}},
        {"echo 'a  b'; echo; printf two; exit 3", 3, {"a  b\n", "\n", "two"}},
        {"printf '%08195d\\n' 0", 0, {longLine, "\n"}}};
    Words pieces = {"old"};
    for (const auto& [command, code, expected] : cases) {
        EXPECT_EQ(_executeCMD(command, &pieces), code) << command;
        EXPECT_EQ(pieces, expected) << command;
    }
}

TEST_F(ExecuteCmdTest, FailsWhereNoPipeIsToBeHad)
{
    Words lines = {"old"};
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    const rlimit none = {3, limit.rlim_max};
    setrlimit(RLIMIT_NOFILE, &none);
    EXPECT_EQ(_executeCMD("true", &lines), 1);
    setrlimit(RLIMIT_NOFILE, &limit);
    EXPECT_EQ(lines, Words{"old"});
}
