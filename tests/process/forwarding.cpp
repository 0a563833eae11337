// Commands that the server of the node's group runs: the line that crosses, and how the server reads it.
#include "support/installation.h"

namespace {

std::string child(const std::string& version)
{
    return configured(group("g", "node2", "node1,node2", version));
}

// Of two groups the last by name counts.
const std::string FORWARDING =
    configured(group("h", "node2", "node1", "4.2.3.7") + group("g", "node3", "node1", "4.2.3.6")) +
    "echo 'echo there; echo trouble >&2; exit 11' >answers/zelfrun";
const Result THERE = {11, "there\n", "trouble\n"};
const std::string ON_SERVER = "zelfrun on1 node2.zelf.test execzelfhome_2 '\"";

} // namespace

const Run RUNS_OF_CHILDREN[] = {
    {"test connection -Y", FORWARDING, THERE, ON_SERVER + "test connection %2DY\"'"},
    // What the handlers would see mapped crosses as it was typed, but for the case of option names.
    {"status list --TASK DAILY -Y --numbers 5 -v", FORWARDING, THERE,
     ON_SERVER + "status list %2D%2Dtask DAILY %2D%2Dnumbers 5 %2D%2Dverbose %2DY\"'"},
    {"status del --starttimebefore '2024-01-31 a\\'b%c/d_e'", FORWARDING, THERE,
     ON_SERVER + "status del %2D%2Dstarttimebefore 2024%2D01%2D31%20a%27b%25c%2Fd%5Fe\"'"},
    // These never cross, and do not keep the line here.
    {"status delete --all --dryrun -I -N node1", FORWARDING, THERE, ON_SERVER + "status delete %2D%2Dall\"'"},
    {"test connection", configured(group("g", "nosuch", "node1", "4.2.3.7")),
     failed("Failed", "nosuch.zelf.test is not a valid node. Terminate!"), "zelfadm host nosuch.zelf.test"},
    {"info list", child("4.2.3.7"), LISTED, ""},
    {"status delete --all", child("4.2.3.6"), success(""), "callhomeutils.pl status delete --all"},
    {"status delete --all", configured(group("g", "node1", "node1,node2", "4.2.3.7")), success(""),
     "callhomeutils.pl status delete --all"},
    {"test -h", child("4.2.3.7"), failed("Usage:\n\tzelfhome test connection"), ""},
};

TEST_F(Installation, ForwardedIsWhatTheServerHasToDo)
{
    inEach(RUNS_OF_CHILDREN, expectRun);
}

TEST_F(Installation, ForwardedOutputIsShownAtOnceAndAheadOfTheMessages)
{
    shell(child("4.2.3.7"));
    answer("zelfrun", "printf '%9000s\\nlast' x");
    EXPECT_EQ(runTool("test connection -N nosuch"),
              success(std::string(8999, ' ') +
                      "x\nlast\nAdditional messages:\nnosuch is not a valid node definition\n"));
    // What has come is not lost when the tool is killed.
    answer("zelfrun", "echo there; sleep 0.3; kill -9 0");
    EXPECT_EQ(runTool("test connection"), (Result{-9, "there\n", ""}));
}

// The receiving side: each encoded line does and says what the typed one does.
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
        const Result expected = runTool(typed);
        const Strings typedCalls = calls();
        EXPECT_EQ(runTool(encoded + " --fullDecode"), expected);
        EXPECT_EQ(calls(), typedCalls) << encoded;
    }
    EXPECT_TRUE(endedByRangeError(runTool("info change --email %4 --fullDecode")));
}
