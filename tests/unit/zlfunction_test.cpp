// The task runner: who may take the lock, and the way of a task from the user's process to its worker.
#include "fixture.h"

#include <cerrno>
#include <cstdlib>
#include <iostream>
#include <regex>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "services/executecmd.h"
#include "services/heldsignal.h"
#include "services/zlfunction.h"

namespace {

const std::string REPOSITORY =
    "cd /var/zelf/tmp; case $1 in\n"
    "vget) cat key.$2 2>/dev/null ;;\n"
    "vdel) rm key.$2 ;;\n"
    "vput) [ \"$(cut -d: -f2 key.$6 2>/dev/null)\" = \"${3#0}\" ] && echo \"x:$5:$7\" >key.$6 ;;\n"
    "esac";

class ZlFunctionTest : public ZelfTest {
protected:
    void SetUp() override
    {
        ZelfTest::SetUp();
        install("zelfccr", REPOSITORY);
        service.setLogFileName("my.tool");
    }

    static ZlFunction task(int (*function)(), int mode = ZlFunction::MODE_SINGLE_IN_CLUSTER)
    {
        ZlFunction task("option", "command", function);
        task.setOperationMode(static_cast<ZlFunction::MODES>(mode));
        task.setName("task");
        task.setID(5);
        return task;
    }

    // Executes a task up to the end of its worker. Gives what both print.
    std::string execute(int (*function)())
    {
        const HeldSignal endOfWorker(SIGCHLD); // whose handler writes the trace in the midst of anything
        return printed([&] {
            std::cout << "once, ";
            result = task(function).execute();
            worker = std::to_string(waitpid(-1, &status, 0));
        });
    }

    const std::string here = std::to_string(getpid());
    int result = -1;    // of execute()
    std::string worker; // its process id
    int status = -1;    // its exit status
};

int succeed()
{
    return 0;
}

} // namespace

TEST_F(ZlFunctionTest, ATaskFromItsStartToItsEnd)
{
    writeFile(TMP + "task.stdout", std::string(5000, 'o'));
    std::filesystem::create_symlink("/var/zelf/gen/notes", TMP + "task.stderr");
    ASSERT_EQ(lchown((TMP + "task.stderr").c_str(), 9, 9), 0); // another user's
    const std::string said = execute([] {                      // tells where it finds itself
        std::cout << std::filesystem::current_path() << umask(022) << (getsid(0) == getpid()) << std::endl;
        std::cerr << "an error" << std::endl;
        _executeCMD("echo by command", nullptr);
        return 7;
    });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(WEXITSTATUS(status), 7);
    const std::string started = "Worker process started: " + worker + " taskID = 5\n";
    const std::string redirected = "Child got lock. Send to background. Output redirected to "
                                   "/var/zelf/tmp/task.stdout, /var/zelf/tmp/task.stderr\n";
    expectIn(said, started);
    expectIn(said, redirected);
    EXPECT_EQ(said.size(), ("once, " + started + redirected).size()) << said;
    const std::string node = "[task] [node1.zelf.test,";
    EXPECT_EQ(std::regex_replace(calls(), std::regex("zelfccr .vget. .task.\n"), ""),
              "zelfccr [vput] [-c] [0] [-v] [1] " + node + here + ",locked_by_parent,5]\n" +
                  "zelfccr [vput] [-c] [1] [-v] [2] " + node + worker + ",locked_by_child,5]\n" +
                  "zelfccr [vput] [-c] [2] [-v] [3] " + node + worker + ",failed,5]\n");
    EXPECT_EQ(std::regex_replace(contentOf(TMP + "task.stdout"), std::regex("[0-9.]+ sec"), "TIME sec"),
              "Worker process task: pid = " + worker +
                  " func pointer 1 is starting at time\n\"/\"01\nby command\nworker done with rc 7\n"
                  "workers execution time: TIME sec seconds.\n");
    EXPECT_EQ(contentOf(TMP + "task.stderr") + contentOf("/var/zelf/gen/notes"), "an error\n");
    expectIn(contentOf(TMP + "my.tool.child.log"), "\nZlFunction::analyseLock: begin\n"); // the whole story
}

TEST_F(ZlFunctionTest, HowATaskLeavesTheEntry)
{
    const std::string foreign = "x:1:n,11,locked_by_child,9\n";
    const std::tuple<int (*)(), std::string, int, std::string> cases[] = {
        // the function, ahead of zelfccr, the worker's exit status, the entry with a W for the worker
        {succeed, "", 0, "x:3:node1.zelf.test,W,success,5\n"},
        {[] { return -2; }, "", 0, "x:3:node1.zelf.test,W,failed,5\n"},
        {succeed, "case $7 in *locked_by_child*) exit 1 ;; esac\n", 1,
         "x:1:node1.zelf.test," + here + ",locked_by_parent,5\n"},
        {succeed,
         "case $7 in *locked_by_p*) printf '" + foreign + "' >/var/zelf/tmp/key.task; exit ;; esac\n", 1,
         foreign}};
    for (const auto& [function, zelfccr, exitStatus, entry] : cases) {
        SetUp();
        install("zelfccr", zelfccr + REPOSITORY);
        const std::string said = execute(function);
        EXPECT_EQ(WEXITSTATUS(status), exitStatus);
        EXPECT_EQ(said.find("Child did not get lock.") != std::string::npos, exitStatus == 1) << said;
        EXPECT_EQ(contentOf(TMP + "key.task"), std::regex_replace(entry, std::regex("W"), worker));
    }
}

TEST_F(ZlFunctionTest, WhoMayTakeTheLock)
{
    const std::tuple<const char*, const char*, int, const char*> cases[] = {
        // value, what zelfrun says if it is asked, result, reason of a refusal
        {"n,11,locked_by_child", nullptr, ZlFunction::STATE_FREE, ""},
        {"n,11,locked_by_child,9,", nullptr, ZlFunction::STATE_FREE, ""},
        {"n,11,locked,5", nullptr, ZlFunction::STATE_FREE, ""},
        {"n,11,success,6", nullptr, ZlFunction::STATE_FREE, ""},
        {"n,11,success,5", nullptr, 1, "current process state: success. But specified ID is equel lock ID."},
        {"n,11,locked_by_child,9", "printf ' died \\t\\r\\n'; exit 9", ZlFunction::STATE_FREE, ""},
        {"n,11,locked_by_child,9", "echo; echo died", 4, "Lock: locked_by_child process still alive."},
        {"n,11,locked_by_parent,5", "exit 255", 3, "Lock: locked_by_parent process still alive."}};
    for (const auto& [value, zelfrun, refusal, reason] : cases) {
        SCOPED_TRACE(value);
        install("zelfccr", std::string("echo x:7:") + value);
        install("zelfrun", zelfrun == nullptr ? "" : zelfrun);
        EXPECT_EQ(task(succeed).analyseLock(), refusal);
        EXPECT_EQ(calls(), std::string("zelfccr [vget]\n") +
                               (zelfrun == nullptr ? "" : "zelfrun [on1] [n] [pid] [11]\n"));
        if (refusal != ZlFunction::STATE_FREE) {
            EXPECT_EQ(execute(succeed), std::string("once, Lock request rejected.\nReason: ") + reason +
                                            "\nccr entry: key: task    value: " + value + "\n");
            EXPECT_EQ(result, refusal);
            calls();
        }
    }
}

// A long run of this one is "./dev soak".
TEST_F(ZlFunctionTest, OfTwoThatStartAtOnceExactlyOneWins)
{
    constexpr int PAIRS = 10;
    const char* const wanted = std::getenv("TASK_ROUNDS");
    install("zelfccr", "sleep 0.$(shuf -n 1 -i 0-3); exec 9>/var/zelf/gen/lock; flock 9\n" + REPOSITORY);
    install("zelfrun", "kill -0 $4 && echo lives || echo died");
    prctl(PR_SET_CHILD_SUBREAPER, 1); // a worker outlives who has started it
    for (int done = 0; done < (wanted == nullptr ? 1 : std::stoi(wanted)); done += PAIRS) {
        for (int racer = 0; racer < 2 * PAIRS; ++racer) {
            if (fork() == 0) {
                ZlFunction race = task([] { return _executeCMD("echo >>/var/zelf/tmp/won", nullptr); });
                race.setName(std::to_string(racer / 2));
                race.setID(done);
                std::cout.setstate(std::ios::failbit);
                exit(race.execute());
            }
        }
        while (wait(nullptr) > 0) {
        }
        EXPECT_EQ(contentOf(TMP + "won"), std::string(done + PAIRS, '\n'));
        for (int race = 0; race < PAIRS; ++race) {
            expectIn(contentOf(TMP + "key." + std::to_string(race)), ",success," + std::to_string(done));
        }
    }
    prctl(PR_SET_CHILD_SUBREAPER, 0);
}

TEST_F(ZlFunctionTest, TheModeChoosesNoLockTheRepositoryOrAFile)
{
    EXPECT_EQ(task([] { return 6; }, ZlFunction::MODE_DEFAULT).execute(), 6);
    task(succeed).analyseLock();
    EXPECT_EQ(calls(), "zelfccr [vget]\n");
    task(succeed, ZlFunction::MODE_SINGLE_ON_NODE).analyseLock();
    EXPECT_EQ(calls(), "");
}

TEST_F(ZlFunctionTest, TheVersionsBeginAnewAheadOfTheirEnd)
{
    EXPECT_TRUE(task(nullptr) < task(succeed) && !(task(succeed) < task(succeed)));
    for (const auto& [before, after] : {std::pair{"2147483599", "2147483602"}, {"2147483600", "3"}}) {
        writeFile(TMP + "key.task", std::string("x:") + before + ":n,1,success,9\n");
        execute(succeed);
        EXPECT_EQ(contentOf(TMP + "key.task"),
                  std::string("x:") + after + ":node1.zelf.test," + worker + ",success,5\n");
    }
}

TEST_F(ZlFunctionTest, TheLockInAFile)
{
    using NumberAndText = std::pair<int, std::string>;
    ZlFunction file = task(succeed, ZlFunction::MODE_SINGLE_ON_NODE);
    errno = EIO; // somebody else's
    EXPECT_EQ(file.setKeyValue({"key", "v"}, -1), NumberAndText(EIO, "ccr vput failed for (key, v) rc = 5"));
    errno = 0;
    EXPECT_EQ(file.setKeyValue({"key", "v"}, 7), NumberAndText(0, "ccr vput success for (key, v) rc = 0"));
    EXPECT_EQ(file.getKeyValue("key"), NumberAndText(7, "v")); // the version as given
    EXPECT_TRUE(file.delKey("key", -1));
    EXPECT_FALSE(file.delKey("key", -1));
    EXPECT_EQ(file.getKeyValue("key"), NumberAndText(-1, ""));
}
