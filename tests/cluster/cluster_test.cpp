// The tool on the nodes of a cluster: what crosses from one node to another arrives as it was typed. Then
// tasks with a lock: two that start at once, and what becomes of the lock. The lab is raised ahead of the
// first test and taken down behind the last.
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

#include <gtest/gtest.h>

namespace {

const std::string ZELFLAB = ZELFHOME_SOURCE_DIR "/lab/zelflab";
const std::string FOLDER = "/tmp/zelfhome-test-lab." + std::to_string(getpid());
const std::string NO_GROUP = "printf '<callhomeTopology>\\n</callhomeTopology>\\nenabled = true\\n'";
// The one of the lab's page: node1 the server, node1 and node2 the children.
const std::string ONE_GROUP =
    "sed -n 's/^    //; /^<callhomeTopology>/,/^weekly/p' " ZELFHOME_SOURCE_DIR "/lab/README.md";
// The lock, as this machine sees it.
const std::string KEY = FOLDER + "/ccr/keys/task";
// No command of a task may have a ";".
const std::string UNTIL_GO = "until [ -e /opt/zelf/lab/go ]\ndo sleep 0.05\ndone\n";

struct Outcome {
    int status = -1;
    std::string out;
    std::string err;
};

std::string contentOf(const std::string& path)
{
    std::ostringstream content;
    content << std::ifstream(path).rdbuf();
    return content.str();
}

// Runs a shell command on this machine.
Outcome runShell(const std::string& command)
{
    const std::string stem = "/tmp/zelfhome-test." + std::to_string(getpid());
    const std::string line = "(" + command + ") </dev/null >" + stem + ".out 2>" + stem + ".err";
    const int status = std::system(line.c_str());
    Outcome outcome = {WEXITSTATUS(status), contentOf(stem + ".out"), contentOf(stem + ".err")};
    unlink((stem + ".out").c_str());
    unlink((stem + ".err").c_str());
    if (WIFSIGNALED(status)) {
        raise(WTERMSIG(status)); // std::system kept an interrupt at the terminal from this program
    }
    return outcome;
}

Outcome lab(const std::string& arguments)
{
    return runShell(ZELFLAB + " " + arguments);
}

// Gives the text as one word of the shell.
std::string quoted(const std::string& text)
{
    return "'" + std::regex_replace(text, std::regex("'"), R"('\'')") + "'";
}

// Runs a shell command on a node.
Outcome onNode(const std::string& node, const std::string& command)
{
    return lab("exec " + node + " bash -c " + quoted(command));
}

// Gives a piece of shell that waits, some fifteen seconds at most, for a command to succeed.
std::string until(const std::string& command)
{
    return "for i in $(seq 1500); do { " + command + "; } && break; sleep 0.01; done; ";
}

void expectIn(const std::string& text, const std::string& part)
{
    EXPECT_NE(text.find(part), std::string::npos) << "not in\n" << text;
}

// What the lab leaves behind is a fault of its own.
void expectNothingLeft(const std::string& behind)
{
    EXPECT_NE(access(FOLDER.c_str(), F_OK), 0) << behind;
    const std::string mark = "zelflab-$(printf %s " + FOLDER + " | cksum | cut -d ' ' -f 1)";
    EXPECT_EQ(runShell("grep -l \"" + mark + "\" /proc/[0-9]*/mountinfo 2>/dev/null").out, "") << behind;
}

class LabEnvironment : public testing::Environment {
public:
    void SetUp() override
    {
        setenv("ZELFLAB_DIR", FOLDER.c_str(), 1);
        setenv("ZELFHOME", ZELFHOME_TOOL, 1);
        setenv("ZELFLAB_WAIT", "60", 1); // another lab on this machine, of another clone's tests perhaps
        // Its input ends when this program does, however it does.
        guard = popen(("trap '' HUP INT TERM; cat; exec " + ZELFLAB + " down >/dev/null").c_str(), "we");
        for (const std::string early :
             {"timeout -s INT 0.3 $LAB up", "timeout -s KILL 0.3 $LAB up; $LAB down",
              "$LAB up & sleep 0.2; $LAB down; wait"}) {
            runShell("LAB=" + ZELFLAB + "; " + early);
            lab("down"); // where the machine is slow, the other came first
            expectNothingLeft(early);
        }
        const Outcome up = lab("up 3");
        ASSERT_EQ(up.status, 0) << up.err;
    }
    void TearDown() override
    {
        EXPECT_TRUE(guard != nullptr && pclose(guard) == 0);
        expectNothingLeft("the tests");
    }

private:
    FILE* guard = nullptr;
};

[[maybe_unused]] const auto* const environment = testing::AddGlobalTestEnvironment(new LabEnvironment);

// Makes the output of a command the cluster's call-home configuration.
void seed(const std::string& command)
{
    ASSERT_EQ(runShell(command + " | " + ZELFLAB + " seed /dev/stdin").status, 0);
}

class Cluster : public testing::Test {
protected:
    void SetUp() override
    {
        for (const char* service :
             {"start-ssh node1", "start-ssh node2", "start-ssh node3", "start-support"}) {
            ASSERT_EQ(lab(service).status, 0);
        }
        seed(NO_GROUP);
        runShell("cd $ZELFLAB_DIR && rm -f ccr/keys/task notes go nodes/node?/var/tmp/*task*");
    }
};
using Task = Cluster;

TEST_F(Cluster, ALabThatIsUpIsNobodyElses)
{
    const std::string other = "export ZELFLAB_DIR=/tmp/zelfhome-test-other; ";
    const std::pair<std::string, std::string> refusals[] = {
        {ZELFLAB + " up", "the lab is up already, in " + FOLDER + " (see "},
        {other + ZELFLAB + " up", "another lab is up, in " + FOLDER + ": only one can be on this machine\n"},
        {other + ZELFLAB + " status; " + ZELFLAB + " down >&2; false", "on this machine: " + FOLDER},
    };
    for (const auto& [command, words] : refusals) {
        const Outcome refused = runShell("export ZELFLAB_WAIT=0; " + command);
        EXPECT_EQ(refused.status, 1) << command;
        expectIn(refused.err, words);
    }
    ASSERT_EQ(lab("stop-ssh node2").status, 0);
    expectIn(lab("status").out, "node1     127.77.0.1       ssh is up\n"
                                "node2     127.77.0.2       ssh is stopped\n");
    const std::string typed = "printf 'zelfhome gr\\tli\\t-Y\\nexit\\n' | ";
    expectIn(runShell(typed + "script -qec '" + ZELFLAB + " shell node1' /dev/null").out,
             "zelfhome group list -Y");
}

TEST_F(Cluster, ASettingMadeOnOneNodeIsReadOnEveryOther)
{
    // Text that some shell on the way would like to change.
    for (const std::string name :
         {"O'Neil  Ltd", "50% \"off\"", "$HOME `id` $(id)", "a&b|c>d<e(f)", "~#!{}[]", "Zürich"}) {
        const Outcome change =
            onNode("node2", "zelfhome info change --email a@b.c --customer-name " + quoted(name));
        EXPECT_EQ(change.status, 0) << name << change.err;
        expectIn(onNode("node3", "zelfhome info list").out, "global   " + name + "   ");
    }
}

TEST_F(Cluster, AChildForwardsToItsServerAndHandsBackWhatItSays)
{
    seed(ONE_GROUP);
    const std::string command = "zelfhome status list --task SENDFILE --numbers 3 -Y";
    const Outcome onServer = onNode("node1", command);
    const Outcome onChild = onNode("node2", command);
    EXPECT_EQ(onChild.status, onServer.status);
    EXPECT_EQ(onChild.out, onServer.out);
    EXPECT_EQ(onChild.err, onServer.err);
    expectIn(lab("calls").out, "node1 zelfremote execzelfhome_2 "
                               "status\\ list\\ %2D%2Dtask\\ SENDFILE\\ %2D%2Dnumbers\\ 3\\ %2DY\n");

    // One that cannot be reached is a failure, and no hang.
    ASSERT_EQ(lab("stop-ssh node1").status, 0);
    const Outcome unreached = onNode("node2", "timeout 20 zelfhome status list");
    EXPECT_EQ(unreached.status, 255);
    expectIn(unreached.err, "connect to host node1.zelf.test");
}

TEST_F(Cluster, GroupsReachTheNodesThatAreUp)
{
    EXPECT_EQ(onNode("node2", "zelfhome group add west node1 --node 2,node1").status, 0);
    // A node that is down is named in an addition, and keeps its state in a deletion.
    ASSERT_EQ(lab("stop-ssh node2").status, 0);
    const Outcome add = onNode("node3", "zelfhome group add east node3 --node all");
    EXPECT_EQ(add.status, 1);
    expectIn(add.err, "No call home packages installed on the following nodes: node2.zelf.test\n");
    EXPECT_EQ(onNode("node3", "zelfhome group delete west").out, "Successfully deleted\n");
    const std::string state = "cat /opt/zelf/data/callhome/etc/UPLmain.properties";
    EXPECT_EQ(onNode("node1", state).out, "EnableCallHome=false\n");
    EXPECT_NE(onNode("node2", state).status, 0);

    onNode("node2", "zelfhome info change --customer-name \"O'Neil & 50%\"");
    EXPECT_EQ(onNode("node1", "zelfhome group auto --enable --server node3").status, 0);
    expectIn(lab("calls").out, "node3 zelfmonc callhome changeConfig customer-name O\\'Neil\\ \\&\\ 50%");
    seed(NO_GROUP);
    ASSERT_EQ(lab("stop-ssh node3").status, 0);
    const Outcome unreached = onNode("node2", "zelfhome group auto --server node3");
    EXPECT_EQ(unreached.status, 1);
    expectIn(unreached.err, "Problem with zelfrun/zelfremote. See /var/zelf/tmp/zelfhome.log for details\n");
    for (const std::string node : {"node1", "node2", "node3"}) {
        EXPECT_EQ(onNode(node, "ls /var/zelf/tmp/ | grep 'zlTemp\\|zelfrun'").out, "") << node;
    }
}

TEST_F(Cluster, AFileArrivesWhole)
{
    seed(ONE_GROUP);
    onNode("node1", "echo 1000 >/opt/zelf/lab/chunksize");
    onNode("node2", "head -c 3500 /dev/urandom >/var/zelf/tmp/core");
    const Outcome sent =
        onNode("node2", "zelfhome run SendFile --file /var/zelf/tmp/core --pmr 12345.ABC.000");
    ASSERT_EQ(sent.status, 0) << sent.err;
    onNode("node1", until("grep -qs '|success|.*|1|' /var/zelf/tmp/callhome/progress/*sendpmrdata"));
    EXPECT_EQ(onNode("node2", "cmp /var/zelf/tmp/core /opt/zelf/lab/support/12345.ABC.000.1").err, "");
    expectIn(onNode("node2", "zelfhome status list -Y").out, ":success:0:1:");
    for (const std::string node : {"node1", "node2"}) {
        EXPECT_EQ(onNode(node, "ls /var/zelf/tmp/dump").out, "") << "no chunk stays on " << node;
    }
}

// Gives a command that runs the task tool.
std::string task(const std::string& id, const std::string& command)
{
    return TASKTOOL " cluster task " + id + " " + quoted(command);
}

// Starts a task at a terminal, and waits for the parent alone. Gives the process id of the worker.
std::string start(const std::string& node, const std::string& id, const std::string& command)
{
    const std::string out = onNode(node, "script -qec " + quoted(task(id, command)) + " /dev/null").out;
    std::smatch worker;
    EXPECT_TRUE(std::regex_search(out, worker, std::regex("Worker process started: (\\d+) taskID"))) << out;
    return worker[1];
}

// Waits until the lock in the repository, "VERSION:VALUE", matches.
void expectEntry(const std::string& pattern)
{
    const std::string text = runShell(until("grep -qsxE " + quoted(pattern) + " " + KEY) + "cat " + KEY).out;
    EXPECT_TRUE(std::regex_match(text, std::regex(pattern + "\n"))) << text << "is not " << pattern;
}

// A long run of this one is "./dev soak".
TEST_F(Task, OfTwoNodesThatStartAtOnceExactlyOneWins)
{
    const char* const rounds = std::getenv("TASK_ROUNDS");
    for (int round = 1; round <= (rounds == nullptr ? 30 : std::stoi(rounds)); ++round) {
        const std::string id = std::to_string(round);
        std::string both;
        for (const char* node : {" exec node1 ", " exec node2 "}) {
            both += "(sleep 0.0$(shuf -n 1 -i 10-49); " + ZELFLAB + node +
                    task(id, "echo >>/opt/zelf/lab/notes && sleep 0.05") + " 2>&1) & ";
        }
        const std::string out = runShell(both + "wait").out;
        EXPECT_TRUE(std::regex_search(out, std::regex("Lock request rejected|did not get lock"))) << out;
        expectEntry("[0-9]+:node[12].zelf.test,[0-9]+,success," + id);
        ASSERT_EQ(runShell("wc -l <$ZELFLAB_DIR/notes").out, id + "\n") << out;
    }
}

// The holder outlives its terminal, too.
TEST_F(Task, ALiveHolderIsRespectedADeadOneIsNot)
{
    const std::string worker = start("node1", "7", UNTIL_GO);
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
    const std::string next = start("node2", "8", "echo late && exit 3");
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

} // namespace
