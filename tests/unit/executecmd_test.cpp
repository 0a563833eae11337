// The gate to the shell: pieces, code, and what happens when there is no gate.
#include "fixture.h"

#include <sys/resource.h>

#include "services/executecmd.h"

TEST(ExecuteCmd, GivesTheExitCodeAndThePieces)
{
    const std::string longLine(8195, '0');
    Words pieces = {"old"};
    EXPECT_EQ(_executeCMD("echo 'a  b'; echo; printf '%08195d\\n' 0; printf two; exit 3", &pieces), 3);
    EXPECT_EQ(pieces, (Words{"a  b\n", "\n", longLine, "\n", "two"}));

    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    const rlimit none = {3, limit.rlim_max};
    setrlimit(RLIMIT_NOFILE, &none);
    EXPECT_EQ(_executeCMD("true", &pieces), 1);
    setrlimit(RLIMIT_NOFILE, &limit);
    EXPECT_EQ(pieces.size(), 5U); // as it was
}
