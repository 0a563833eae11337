// Commands that the server of the node's group runs: the line that crosses, and how the server reads it.
#include "support/installation.h"

namespace {

std::string child(const std::string& version)
{
    return topology(group("g", "node2", "node1,node2", version));
}

// A group of this child list, with short names.
std::string children(const std::string& list)
{
    return "<callhomeGroup>\ncallhomeChildNodes = " + list +
           "\ncallhomeNode = node1\nmasterReleaseVersion = 5\n</callhomeGroup>\n";
}

} // namespace

const std::tuple<std::string, std::string> FORWARDED[] = {
    {"test connection -Y", "test connection %2DY"},
    // What the handlers would see mapped crosses as it was typed, but for the case of option names.
    {"status list --TASK DAILY -Y --numbers 5 -v",
     "status list %2D%2Dtask DAILY %2D%2Dnumbers 5 %2D%2Dverbose %2DY"},
    {"status del --starttimebefore '2024-01-31 a\\'b%c/d_e'",
     "status del %2D%2Dstarttimebefore 2024%2D01%2D31%20a%27b%25c%2Fd%5Fe"},
    // These never cross, and do not keep the line here.
    {"status delete --all --dryrun -I -N node1", "status delete %2D%2Dall"},
};

TEST_F(Installation, ForwardedCrossesAsTypedAndEncoded)
{
    inEach(FORWARDED, [](const std::string& line, const std::string& encoded) {
        configure(child("4.2.3.7"));
        answer("zelfrun", "echo there; echo trouble >&2; exit 11");
        EXPECT_EQ(runTool(line), (Result{11, "there\n", "trouble\n"}));
        const std::string command = " on1 node2.zelf.test execzelfhome_2 '\"" + encoded + "\"'";
        EXPECT_EQ(calls(), startThen({"zelfrun" + command}));
        EXPECT_EQ(logged("ZlCallhome::main remote cmd: "), Strings{"/opt/zelf/bin/zelfrun" + command + " "});
        EXPECT_EQ(logged("ZlCallhome::main local cmd: "), Strings());
    });
}

const std::tuple<const char*, std::string, std::string, bool> PLACES[] = {
    {"outside", "status list -N node2", topology(group("g", "node2", "node2,node3", "4.2.3.7")), false},
    {"child, 4.2.3.6", "test connection", child("4.2.3.6"), false},
    {"child, 4.2.3.7", "test connection -a", child("4.2.3.7"), true},
    {"child, no version", "status list", child(""), false},
    {"server", "test connection", topology(group("g", "node1", "node1,node2", "4.2.3.7")), false},
    {"two groups: the last by name", "test connection",
     topology(group("h", "node2", "node1", "4.2.3.7") + group("g", "node3", "node1", "4.2.3.6")), true},
    {"local command", "info list", child("4.2.3.7"), false},
    {"help", "status list -h", child("4.2.3.7"), false},
    {"short name", "test connection", children("node1"), false},
    {"long name behind a blank", "test connection", children("node2, node1.zelf.test"), false},
};

TEST_F(Installation, PlaceDecidesWhereTheCommandRuns)
{
    inEach(PLACES, [](const char*, const std::string& line, const std::string& configuration, bool crosses) {
        configure(configuration);
        runTool(line);
        EXPECT_EQ(logged("ZlCallhome::main remote cmd: ").size(), crosses ? 1u : 0u);
        EXPECT_EQ(logged("ZlCallhome::main local cmd: ").size(), crosses ? 0u : 1u);
    });
}

TEST_F(Installation, ForwardedOutputIsShownAtOnceAndAheadOfTheMessages)
{
    configure(child("4.2.3.7"));
    answer("zelfrun", "printf '%9000s\\nlast' x");
    EXPECT_EQ(runTool("test connection -N nosuch"),
              success(std::string(8999, ' ') +
                      "x\nlast\nAdditional messages:\nnosuch is not a valid node definition\n"));
    // What has come is not lost when the tool is killed.
    answer("zelfrun", "echo there; sleep 0.3; kill -9 0");
    EXPECT_EQ(runTool("test connection"), (Result{-9, "there\n", ""}));
}

TEST_F(Installation, ForwardingToAServerThatIsNoNodeFails)
{
    configure(topology(group("g", "nosuch", "node1", "4.2.3.7")));
    EXPECT_EQ(runTool("test connection"),
              failed("Failed", "nosuch.zelf.test is not a valid node. Terminate!"));
    EXPECT_EQ(calls(), startThen({"zelfadm host nosuch.zelf.test"}));
}

// --- the receiving side ----------------------------------------------------------------------------------

// Each encoded line does and says what the typed one does.
TEST_F(Installation, ForwardedLinesReadLikeTypedOnes)
{
    const std::pair<std::string, std::string> lines[] = {
        {"inf%6f l%69st %2DY", "info list -Y"},
        {"info change %2D%2Dcustomer%2Dname O%27Neil%20%26%20Co %2D%2Demail a%40b%25",
         "info change --customer-name 'O\\'Neil & Co' --email a@b%"},
        {"group list %2DN", "group list -N"},
        // What is no digit ends the number, and a zero byte the word.
        {"info list %zzabc", "info list ''"},
    };
    for (const auto& [encoded, typed] : lines) {
        SetUp();
        const Result expected = runTool(typed);
        const Strings typedCalls = calls();
        SetUp();
        EXPECT_EQ(runTool(encoded + " --fullDecode"), expected) << encoded;
        EXPECT_EQ(calls(), typedCalls) << encoded;
    }
    EXPECT_TRUE(endedByRangeError(runTool("info change --email %4 --fullDecode")));
}
