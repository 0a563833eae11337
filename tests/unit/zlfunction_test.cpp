// The task runner: who may take the lock, and the way of a task from the user's process to its worker.
#include "fixture.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <regex>
#include <stdexcept>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "services/executecmd.h"
#include "services/zlerrorservice.h"
#include "services/zlfunction.h"

namespace {

// What the system refuses.
bool noFork = false;
bool noSession = false;

// Called in the parent, ahead of anything that it does behind fork(2).
std::function<void(pid_t)> behindFork = [](pid_t) {};

template <typename Function>
Function real(const char* name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" pid_t fork() noexcept
{
    if (noFork) {
        errno = EAGAIN;
        return -1;
    }
    const pid_t pid = real<pid_t (*)()>("fork")();
    if (pid > 0) {
        behindFork(pid);
    }
    return pid;
}

extern "C" pid_t setsid() noexcept
{
    return noSession ? -1 : real<pid_t (*)()>("setsid")();
}

namespace {

// The value of the lock, and the versions, as the CCR has them.
const char* const REPOSITORY =
    "key=/var/zelf/tmp/key.$2\n"
    "case $1 in\n"
    "vget) echo >>/var/zelf/tmp/reads; cat $key 2>/dev/null ;;\n"
    "vput) key=/var/zelf/tmp/key.$6\n"
    "    [ \"$(cut -d: -f2 $key 2>/dev/null || echo 0)\" = \"$3\" ] || [ ! -e $key ] || exit 1\n"
    "    echo \"x:$5:$7\" >$key ;;\n"
    "esac";

struct TaskRun {
    int result = -1;
    std::string out;
    pid_t worker = -1;
    int workerStatus = -1; // its exit status; a signal is negative
};

class ZlFunctionTest : public ZelfTest {
protected:
    void SetUp() override
    {
        ZelfTest::SetUp();
        install("zelfccr", REPOSITORY);
        ZlErrorService::errorServiceP->setLogFileName("my.tool");
    }
    void TearDown() override
    {
        noFork = noSession = false;
        ZelfTest::TearDown();
    }

    static ZlFunction task(int (*function)(), int mode = ZlFunction::MODE_SINGLE_IN_CLUSTER)
    {
        ZlFunction task("option", "command", function);
        task.setOperationMode(static_cast<ZlFunction::MODES>(mode));
        task.setName("task");
        task.setID(5);
        return task;
    }

    // Executes a task; the parent goes on when the worker has ended.
    static TaskRun execute(ZlFunction task, const char* before = "")
    {
        TaskRun run;
        const pid_t here = getpid();
        behindFork = [&](pid_t worker) {
            int status = 0;
            waitpid(worker, &status, 0);
            run.worker = worker;
            run.workerStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
        };
        run.out = printed([&] {
            std::cout << before;
            run.result = task.execute();
            if (getpid() != here) {
                _exit(42); // a worker that has come back
            }
        });
        behindFork = [](pid_t) {};
        return run;
    }

    static std::string entry() { return contentOf(TMP + "key.task"); }
};

int succeed()
{
    return 0;
}

// Tells where it finds itself.
int lookAround()
{
    std::array<char, 64> folder{};
    sigset_t blocked;
    sigprocmask(SIG_BLOCK, nullptr, &blocked);
    std::cout << getcwd(folder.data(), folder.size()) << " " << umask(022) << " " << (getsid(0) == getpid())
              << " " << std::cin.get() << " " << sigismember(&blocked, SIGCHLD) << std::endl;
    std::cerr << "an error" << std::endl;
    _executeCMD("echo by command", nullptr);
    return 7;
}

std::string pidAnd(pid_t pid, const std::string& text)
{
    return "[node1.zelf.test," + std::to_string(pid) + "," + text + "]\n";
}

} // namespace

TEST_F(ZlFunctionTest, ATaskFromItsStartToItsEnd)
{
    writeFile(TMP + "task.stdout", std::string(5000, 'o'));
    const TaskRun run = execute(task(lookAround), "once ");
    const std::string worker = std::to_string(run.worker);
    EXPECT_EQ(run.result, 0);
    EXPECT_EQ(run.workerStatus, 7);
    // The worker shares the terminal until it is in the background.
    EXPECT_EQ(run.out,
              "once Child got lock. Send to background. Output redirected to /var/zelf/tmp/task.stdout, "
              "/var/zelf/tmp/task.stderr\nWorker process started: " +
                  worker + " taskID = 5\n");
    const std::string vget = "zelfccr [vget] [task]\n";
    const std::string vput = "zelfccr [vput] [-c] ";
    EXPECT_EQ(calls(), vget + vput + "[0] [-v] [1] [task] " + pidAnd(getpid(), "locked_by_parent,5") + vget +
                           vput + "[1] [-v] [2] [task] " + pidAnd(run.worker, "locked_by_child,5") + vget +
                           vput + "[2] [-v] [3] [task] " + pidAnd(run.worker, "failed,5") + vget + vget);
    const std::string out = contentOf(TMP + "task.stdout");
    EXPECT_EQ(std::regex_replace(out, std::regex(R"(\d+\.\d+ sec)"), "TIME"),
              "Worker process task: pid = " + worker +
                  " func pointer 1 is starting at time\n/ 0 1 -1 0\nby command\n"
                  "worker done with rc 7\nworkers execution time: TIME seconds.\n");
    EXPECT_EQ(contentOf(TMP + "task.stderr"), "an error\n");
    struct stat status {};
    stat((TMP + "task.stderr").c_str(), &status);
    EXPECT_EQ(status.st_mode & 0777U, 0666U);

    // Both stories are told apart, from the fork on.
    const std::string childLog = contentOf(TMP + "my.tool.child.log");
    const std::string switched = "ZlFunction::runChild: switch logging to child process with pid: 0\n"
                                 "ZlFunction::runChild: parent: " +
                                 std::to_string(getpid()) + " child: 0\n";
    EXPECT_NE(childLog.find(switched), std::string::npos) << childLog;
    EXPECT_NE(childLog.find("ZlFunction::setLock: for task at state 5 for version -1\n"), std::string::npos);
    EXPECT_NE(childLog.find("ZlFunction::getLockData: begin\n"), std::string::npos) << "a failure logs all";
    const std::string end = "ZlFunction::execute: terminate child with rc = 7\nTrace messager end at: ";
    EXPECT_NE(childLog.find(end), std::string::npos) << childLog;
    ZlErrorService::errorServiceP->writeTrace();
    const std::string log = contentOf(TMP + "my.tool.log");
    EXPECT_NE(log.find("ZlFunction::runDetached: parent("), std::string::npos) << log;
    EXPECT_EQ(log.find("ZlFunction::runChild"), std::string::npos) << log;
}

TEST_F(ZlFunctionTest, TheResultOfTheFunctionIsTheEndOfTheWorker)
{
    const struct {
        int (*function)();
        int status;
        const char* state;
        bool hasLog;
    } cases[] = {
        {succeed, 0, "success", true},
        {[] { return 255; }, 255, "failed", true},
        {[] { return -2; }, 0, "failed", false},
        {[] { return -1; }, 42, "failed", false}, // taken for the parent
    };
    for (const auto& [function, status, state, hasLog] : cases) {
        SCOPED_TRACE(status);
        std::filesystem::remove(TMP + "key.task");
        std::filesystem::remove(TMP + "my.tool.child.log");
        ZlErrorService::errorServiceP->setLogFileName("my.tool");
        const TaskRun run = execute(task(function));
        EXPECT_EQ(run.result, 0);
        EXPECT_EQ(run.workerStatus, status);
        EXPECT_EQ(entry(), "x:3:node1.zelf.test," + std::to_string(run.worker) + "," + state + ",5\n");
        EXPECT_EQ(std::filesystem::exists(TMP + "my.tool.child.log"), hasLog);
    }
}

TEST_F(ZlFunctionTest, TheParentTellsWhetherItSawTheWorker)
{
    const std::string done = "ZlFunction::execute: parent post process. Terminate: child ";
    // With the worker's entry in place the parent does not see its own.
    const std::string late = logged([] { execute(task(succeed)); });
    EXPECT_NE(late.find(done + "not started yet.\n"), std::string::npos) << late;
    std::filesystem::remove(TMP + "key.task");
    std::filesystem::remove(TMP + "reads");
    install("zelfccr",
            std::string("case $7 in *locked_by_child*) until [ $(wc -l </var/zelf/tmp/reads) = 3 ]; do "
                        "sleep 0.01; done ;; esac\n") +
                REPOSITORY);
    std::string log;
    printed([&log] { log = logged([] { task(succeed).execute(); }); });
    EXPECT_NE(log.find(done + "started.\n"), std::string::npos) << log;
    while (wait(nullptr) > 0) {
    }
}

TEST_F(ZlFunctionTest, WhoMayTakeTheLock)
{
    const char* const child = "echo x:7:node2,11,locked_by_child,9";
    const struct {
        const char* vget;
        const char* zelfrun; // empty: not asked
        int result;
    } cases[] = {
        {"exit 1", "", 5},
        {"echo x:7", "", 5},
        {"echo x:7:node2,11,locked_by_child", "", 5},
        {"echo x:7:node2,11,locked_by_child,9,", "", 5},
        {"echo x:7:node2,11,locked,5", "", 5},
        {"echo x:7:node2,11,success,5", "", 1},
        {"echo x:7:node2,11,failed,5", "", 2},
        {"echo x:7:node2,11,success,6", "", 5},
        {"echo x:7:node2,11,failed,55", "", 5},
        {child, "echo died", 5},
        {child, "printf ' died \\t\\r\\n'; exit 9", 5},
        {child, "echo alive", 4},
        {child, "echo Died", 4},
        {child, "echo; echo died", 4},
        {child, "exit 255", 4},
        {"echo x:7:node2,11,locked_by_parent,5", "echo alive", 3},
        {"echo x:7:node2,11,locked_by_parent,5", "echo died", 5},
    };
    for (const auto& [vget, zelfrun, result] : cases) {
        SCOPED_TRACE(std::string(vget) + " / " + zelfrun);
        install("zelfccr", vget);
        install("zelfrun", zelfrun);
        EXPECT_EQ(task(succeed).analyseLock(), result);
        EXPECT_EQ(calls(), std::string("zelfccr [vget]\n") +
                               (*zelfrun == '\0' ? "" : "zelfrun [on1] [node2] [pid] [11]\n"));
    }
}

TEST_F(ZlFunctionTest, ARefusalTellsTheReasonAndTheEntry)
{
    const struct {
        const char *zelfccr, *out;
        int result;
    } cases[] = {
        {"echo x:7:n,11,locked_by_child,9",
         "Lock: locked_by_child process still alive.\nccr entry: key: task    value: "
         "n,11,locked_by_child,9\n",
         4},
        {"echo x:7:n,11,success,5",
         "current process state: success. But specified ID is equel lock ID.\n"
         "ccr entry: key: task    value: n,11,success,5\n",
         1},
        // Another was faster.
        {"[ $1 = vput ] && exit 3; echo x:7:n,11,failed,9",
         "\nccr entry: key: task    value: n,11,failed,9\n", 1},
        {"exit 1", "\nccr entry: key: task    value: invalid key task\n", 1},
    };
    install("zelfrun", "echo alive");
    for (const auto& [zelfccr, out, result] : cases) {
        install("zelfccr", zelfccr);
        const TaskRun run = execute(task(succeed));
        EXPECT_EQ(run.out, std::string("Lock request rejected.\nReason: ") + out);
        EXPECT_EQ(run.result, result);
        EXPECT_EQ(run.worker, -1);
    }
}

TEST_F(ZlFunctionTest, TheWorkerNeedsTheLockForItself)
{
    // Between the two writes of the task somebody else has come in.
    install(
        "zelfccr",
        std::string("case $7 in *locked_by_parent*) echo x:1:n,11,locked_by_child,9 >/var/zelf/tmp/key.task;"
                    " exit ;; esac\n") +
            REPOSITORY);
    const TaskRun run = execute(task(succeed));
    EXPECT_EQ(run.out.substr(0, run.out.find('\n')), "Child did not get lock. Terminate process.");
    EXPECT_EQ(run.workerStatus, 1);
    EXPECT_EQ(entry(), "x:1:n,11,locked_by_child,9\n");
    EXPECT_FALSE(std::filesystem::exists(TMP + "task.stdout"));
}

TEST_F(ZlFunctionTest, WhatTheSystemRefuses)
{
    noFork = true;
    const TaskRun parent = execute(task(succeed));
    EXPECT_EQ(parent.out, "Fork Failed: 11\n");
    EXPECT_EQ(parent.result, 0);
    EXPECT_EQ(entry(), "x:1:node1.zelf.test," + std::to_string(getpid()) + ",locked_by_parent,5\n");

    noFork = false;
    noSession = true;
    std::filesystem::remove(TMP + "key.task");
    const TaskRun run = execute(task(succeed));
    EXPECT_EQ(run.workerStatus, 1);
    EXPECT_EQ(entry(), "x:2:node1.zelf.test," + std::to_string(run.worker) + ",locked_by_child,5\n");
    EXPECT_FALSE(std::filesystem::exists(TMP + "task.stdout"));
}

TEST_F(ZlFunctionTest, TheModeChoosesTheStore)
{
    for (const int mode : {0, 4}) {
        EXPECT_EQ(execute(task([] { return -1; }, mode)).result, -1) << mode;
        EXPECT_EQ(calls(), "");
    }
    for (const int mode : {1, 2, 3}) {
        task(succeed, mode).analyseLock();
        EXPECT_EQ(calls(), mode == 2 ? "zelfccr [vget]\n" : "") << mode;
    }
}

TEST_F(ZlFunctionTest, TheLockInAFile)
{
    const std::tuple<const char*, int, const char*> entries[] = {
        {"vget:7:a,b\n", 7, "a,b"},
        {"vget:-1:a\n", -1, "a"},
        {"vget:7:a\nb\n", 7, "a\nb"},
        {"vget:x:\n", 0, ""},
        {"vget:7:a", -1, ""},
        {"vget:7\n", -1, ""},
        {"", -1, ""},
    };
    const std::string path = "/var/zelf/ces/key";
    ZlFunction file = task(succeed, 1);
    for (const auto& [text, version, value] : entries) {
        writeFile(path, text);
        EXPECT_EQ(file.getKeyValue("key"), std::pair(version, std::string(value))) << text;
    }
    writeFile(path, "vget:7:a:b\n");
    EXPECT_THROW(file.getKeyValue("key"), std::out_of_range);

    using StatusAndText = std::pair<int, std::string>;
    errno = 0;
    EXPECT_EQ(file.setKeyValue({"key", "v"}, 7), StatusAndText(0, "ccr vput success for (key, v) rc = 0"));
    EXPECT_EQ(contentOf(path), "vget:7:v\n"); // the version as given
    errno = EIO;                              // left behind by somebody else
    EXPECT_EQ(file.setKeyValue({"key", "w"}, -1), StatusAndText(EIO, "ccr vput failed for (key, w) rc = 5"));
    EXPECT_EQ(contentOf(path), "vget:-1:w\n");
    const std::string log = logged([&] { EXPECT_EQ(file.setKeyValue({"no/key", "v"}, 1).first, ENOENT); });
    EXPECT_NE(log.find("ZlFunction::setKeyValue failed wit rc = 2for (no/key, v) rc = 2\n"),
              std::string::npos)
        << log;

    EXPECT_TRUE(file.delKey("key", -1));
    EXPECT_EQ(logged([&] { EXPECT_FALSE(file.delKey("key", -1)); }),
              "ZlFileIO::statFile: failed to get stats for file '" + path +
                  "' failed. Reason: No such file or directory\nZlFunction::delKey no file " + path + "\n");
    EXPECT_EQ(file.getKeyValue("key"), StatusAndText(-1, ""));
}
