// Tasks with a lock on the nodes of a cluster: two that start at once, and what becomes of the lock.
#include <csignal>
#include <cstdlib>
#include <regex>

#include <gtest/gtest.h>

#include "lab.h"

namespace {

// The lock, as this machine sees it.
const std::string KEY = "$ZELFLAB_DIR/ccr/keys/task";
// No command may have a ";".
const std::string UNTIL_GO = "until [ -e /opt/zelf/lab/go ]\ndo sleep 0.05\ndone\n";

// Gives a command that runs the task tool on a node.
std::string task(const std::string& id, const std::string& command)
{
    return TASKTOOL " cluster task " + id + " " + quoted(command);
}

// Starts a task at a terminal, and waits for the parent alone.
Outcome start(const std::string& node, const std::string& id, const std::string& command)
{
    return onNode(node, "script -qec " + quoted(task(id, command)) + " /dev/null");
}

// Waits until the lock in the repository, "VERSION:VALUE", matches.
void expectEntry(const std::string& pattern)
{
    const std::string text = runShell(until("grep -qsxE " + quoted(pattern) + " " + KEY) + "cat " + KEY).out;
    EXPECT_TRUE(std::regex_match(text, std::regex(pattern + "\n"))) << text << "is not " << pattern;
}

// Gives the process id of the worker that a start has announced.
std::string workerOf(const Outcome& start)
{
    std::smatch parts;
    const bool isStarted =
        std::regex_search(start.out, parts, std::regex("Worker process started: (\\d+) taskID"));
    EXPECT_TRUE(isStarted) << start.out;
    return isStarted ? parts[1].str() : "no worker";
}

class Task : public testing::Test {
protected:
    void SetUp() override
    {
        runShell("cd $ZELFLAB_DIR && rm -f ccr/keys/task notes go nodes/node?/var/ces/task "
                 "nodes/node?/var/tmp/*task*");
    }
};

} // namespace

// A long run of this one is "./dev soak".
TEST_F(Task, OfTwoNodesThatStartAtOnceExactlyOneWins)
{
    // Where the machine is slow, the other finds the parent gone and the worker not there yet.
    const std::regex loser(
        "Lock request rejected\\.\nReason: (|Lock: locked_by_(parent|child) process still alive\\.|current "
        "process state: success\\. But specified ID is equel lock ID\\.)\nccr entry|Child did not get lock");
    const char* const rounds = std::getenv("TASK_ROUNDS");
    for (int round = 1; round <= (rounds == nullptr ? 30 : std::stoi(rounds)); ++round) {
        const std::string id = std::to_string(round);
        std::string both;
        for (const char* node : {" exec node1 ", " exec node2 "}) {
            both += "(sleep 0.0$(shuf -n 1 -i 10-49); " + ZELFLAB + node +
                    task(id, "echo >>/opt/zelf/lab/notes && sleep 0.05") + " 2>&1) & ";
        }
        const std::string out = runShell(both + "wait").out;
        EXPECT_TRUE(std::regex_search(out, loser)) << out;
        expectEntry("[0-9]+:node[12].zelf.test,[0-9]+,success," + id);
        ASSERT_EQ(runShell("wc -l <$ZELFLAB_DIR/notes").out, id + "\n") << out;
    }
}

// The holder outlives its terminal, too.
TEST_F(Task, ALiveHolderIsRespectedADeadOneIsNot)
{
    const std::string worker = workerOf(start("node1", "7", UNTIL_GO));
    const std::string held = "node1.zelf.test," + worker + ",locked_by_child,7";
    for (const char* node : {"node2", "node1"}) {
        const Outcome refused = onNode(node, task("8", "true"));
        EXPECT_EQ(refused.status, 4);
        EXPECT_EQ(refused.out, "Lock request rejected.\nReason: Lock: locked_by_child process still alive.\n"
                               "ccr entry: key: task    value: " +
                                   held + "\n");
    }
    expectEntry("2:" + held);
    kill(std::stoi(worker), SIGKILL);
    runShell("touch $ZELFLAB_DIR/go");
    const std::string next = workerOf(start("node2", "8", "echo late && exit 3"));
    expectEntry("5:node2.zelf.test," + next + ",failed,8");
    EXPECT_EQ(onNode("node2", "sed '1d; 3q' /var/zelf/tmp/task.stdout").out, "late\nworker done with rc 3\n");
    EXPECT_NE(lab("calls").out.find("node2 zelfrun on1 node1.zelf.test pid " + worker + "\n"),
              std::string::npos);
}

TEST_F(Task, TheVersionsBeginAnewAheadOfTheirEnd)
{
    for (const auto& [before, after] : {std::pair{"2147483599", "2147483602"}, {"2147483600", "3"}}) {
        runShell(std::string("echo ") + before + ":node3.zelf.test,1,success,9 >" + KEY);
        start("node1", "1", "true");
        expectEntry(after + std::string(":node1.zelf.test,[0-9]+,success,1"));
    }
}
