// The gate to the shell.
#include "fixture.h"

#include "services/executecmd.h"

TEST(ExecuteCmd, GivesTheExitCodeAndThePieces)
{
    Words pieces = {"old"};
    EXPECT_EQ(_executeCMD("echo 'a  b'; echo; printf '%08195d\\n' 0; printf two; exit 3", &pieces), 3);
    EXPECT_EQ(pieces, (Words{"a  b\n", "\n", std::string(8195, '0'), "\n", "two"}));
}
