// The task runner: who may take the lock, and the way of a task from the user's process to its worker.
#include "fixture.h"

#include <cerrno>
#include <csignal>
#include <dlfcn.h>
#include <filesystem>
#include <iostream>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "services/executecmd.h"
#include "services/zlfunction.h"

namespace {

// The task under test. Its parent goes on behind fork(2) when the worker has ended.
struct {
    bool canFork = true;
    pid_t parent = -1;
    int result = -1;
    std::string worker; // its process id
    int status = -1;    // its exit status
} run;

} // namespace

extern "C" pid_t fork() noexcept
{
    static const auto next = reinterpret_cast<pid_t (*)()>(dlsym(RTLD_NEXT, "fork"));
    if (!run.canFork) {
        errno = EAGAIN;
        return -1;
    }
    const pid_t pid = next();
    if (pid > 0 && run.parent == getpid()) {
        run.worker = std::to_string(pid);
        waitpid(pid, &run.status, 0);
        run.status = WEXITSTATUS(run.status);
    }
    return pid;
}

namespace {

// zelfccr with versions.
const std::string KEY = TMP + "key";
const std::string REPOSITORY =
    "cd /var/zelf/tmp; case $1 in\n"
    "vget) cat key 2>/dev/null ;;\n"
    "vput) [ \"$(cut -d: -f2 key 2>/dev/null)\" = \"${3#0}\" ] && echo \"x:$5:$7\" >key ;;\n"
    "esac";

class ZlFunctionTest : public ZelfTest {
protected:
    void SetUp() override
    {
        ZelfTest::SetUp();
        install("zelfccr", REPOSITORY);
        service.setLogFileName("my.tool");
    }
    const std::string here = std::to_string(getpid());
};

ZlFunction task(int (*function)(), int mode = ZlFunction::MODE_SINGLE_IN_CLUSTER)
{
    ZlFunction task("option", "command", function);
    task.setOperationMode(static_cast<ZlFunction::MODES>(mode));
    task.setName("task");
    task.setID(5);
    return task;
}

// Executes a task; gives what it prints.
std::string execute(int (*function)(), bool canFork = true)
{
    run = {canFork, getpid(), -1, "", -1};
    const std::string out = printed([&] {
        std::cout << "once, ";
        run.result = task(function).execute();
    });
    run.parent = -1;
    run.canFork = true;
    ZlErrorService::errorServiceP->writeTrace();
    return out;
}

int succeed()
{
    return 0;
}

// Tells where it finds itself.
int lookAround()
{
    sigset_t blocked;
    sigprocmask(SIG_BLOCK, nullptr, &blocked);
    std::cout << std::filesystem::current_path() << " " << umask(022) << " " << (getsid(0) == getpid()) << " "
              << std::cin.get() << " " << sigismember(&blocked, SIGCHLD) << std::endl;
    std::cerr << "an error" << std::endl;
    _executeCMD("echo by command", nullptr);
    return 7;
}

} // namespace

TEST_F(ZlFunctionTest, ATaskFromItsStartToItsEnd)
{
    writeFile(TMP + "task.stdout", std::string(5000, 'o'));
    std::istringstream typed("typed");
    std::streambuf* const terminal = std::cin.rdbuf(typed.rdbuf());
    const std::string said = execute(lookAround);
    std::cin.rdbuf(terminal);
    EXPECT_EQ(run.result, 0);
    EXPECT_EQ(run.status, 7);
    EXPECT_EQ(said,
              "once, Child got lock. Send to background. Output redirected to /var/zelf/tmp/task.stdout, "
              "/var/zelf/tmp/task.stderr\nWorker process started: " +
                  run.worker + " taskID = 5\n");
    const std::string vget = "zelfccr [vget] [task]\n";
    const std::string vput = vget + "zelfccr [vput] [-c] ";
    const std::string node = "[task] [node1.zelf.test,";
    EXPECT_EQ(calls(), vput + "[0] [-v] [1] " + node + here + ",locked_by_parent,5]\n" +          //
                           vput + "[1] [-v] [2] " + node + run.worker + ",locked_by_child,5]\n" + //
                           vput + "[2] [-v] [3] " + node + run.worker + ",failed,5]\n" + vget + vget);
    EXPECT_EQ(std::regex_replace(contentOf(TMP + "task.stdout"), std::regex("[0-9.]+ sec"), "TIME sec"),
              "Worker process task: pid = " + run.worker +
                  " func pointer 1 is starting at time\n\"/\" 0 1 -1 0\nby command\nworker done with rc 7\n"
                  "workers execution time: TIME sec seconds.\n");
    EXPECT_EQ(contentOf(TMP + "task.stderr"), "an error\n");

    // From the fork on, both stories are told apart. That of a failure is whole.
    const std::string child = contentOf(TMP + "my.tool.child.log");
    expectIn(child, "\nZlFunction::analyseLock: begin\n");
    expectIn(child, "\nZlFunction::runChild: parent: " + here + " child: 0\n");
    expectIn(child, "\nZlFunction::execute: terminate child with rc = 7\nTrace messager end at: ");
    EXPECT_EQ(contentOf(TMP + "my.tool.log").find("ZlFunction::runChild"), std::string::npos);
}

TEST_F(ZlFunctionTest, TheResultOfTheFunctionIsTheStateOfTheLock)
{
    for (const auto& [function, state] : {std::pair{&succeed, "success"}, {+[] { return -2; }, "failed"}}) {
        SetUp();
        execute(function);
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(contentOf(KEY), "x:3:node1.zelf.test," + run.worker + "," + state + ",5\n");
        // The log tells a success, and nothing of what goes below the failures.
        EXPECT_EQ(contentOf(TMP + "my.tool.child.log").empty(), function != succeed);
    }
}

TEST_F(ZlFunctionTest, ATaskWithoutItsWorkerLeavesTheEntryAsItIs)
{
    const std::string own = "x:1:node1.zelf.test," + here + ",locked_by_parent,5\n";
    const std::string foreign = "x:1:n,11,locked_by_child,9\n";
    const std::tuple<bool, std::string, std::string, const char*> cases[] = {
        // whether fork(2) works, zelfccr, the entry, what the parent has seen of the worker
        {false, "", own, "not started yet"},
        {true, "case $7 in *locked_by_child*) exit 1 ;; esac\n", own, "started"},
        // Somebody else comes in between.
        {true, "case $7 in *locked_by_parent*) printf '" + foreign + "' >/var/zelf/tmp/key; exit ;; esac\n",
         foreign, "not started yet"},
    };
    for (const auto& [canFork, zelfccr, entry, seen] : cases) {
        SetUp();
        install("zelfccr", zelfccr + REPOSITORY);
        const std::string said = execute(succeed, canFork);
        EXPECT_EQ(said, canFork
                            ? "once, Child did not get lock. Terminate process.\nWorker process started: " +
                                  run.worker + " taskID = 5\n"
                            : "once, Fork Failed: 11\n");
        EXPECT_EQ(run.result, 0);
        EXPECT_EQ(run.status, canFork ? 1 : -1);
        EXPECT_EQ(contentOf(KEY), entry);
        EXPECT_FALSE(std::filesystem::exists(TMP + "task.stdout"));
        expectIn(contentOf(TMP + "my.tool.log"), std::string("Terminate: child ") + seen + ".\n");
    }
}

TEST_F(ZlFunctionTest, WhoMayTakeTheLock)
{
    const struct {
        const char* value;
        const char* zelfrun = ""; // empty: not asked
        int result = ZlFunction::STATE_FREE;
        const char* reason = "";
    } cases[] = {
        {"n,11,locked_by_child"},
        {"n,11,locked_by_child,9,"},
        {"n,11,locked,5"},
        {"n,11,success,6"},
        {"n,11,failed,55"},
        {"n,11,success,5", "", 1, "current process state: success. But specified ID is equel lock ID."},
        {"n,11,locked_by_child,9", "echo died"},
        {"n,11,locked_by_child,9", "printf ' died \\t\\r\\n'; exit 9"},
        {"n,11,locked_by_child,9", "echo; echo died", 4, "Lock: locked_by_child process still alive."},
        {"n,11,locked_by_parent,5", "exit 255", 3, "Lock: locked_by_parent process still alive."},
    };
    for (const auto& [value, zelfrun, result, reason] : cases) {
        SCOPED_TRACE(std::string(value) + " / " + zelfrun);
        install("zelfccr", std::string("echo x:7:") + value);
        install("zelfrun", zelfrun);
        EXPECT_EQ(task(succeed).analyseLock(), result);
        EXPECT_EQ(calls(),
                  std::string("zelfccr [vget]\n") + (*zelfrun != 0 ? "zelfrun [on1] [n] [pid] [11]\n" : ""));
        if (result != ZlFunction::STATE_FREE) {
            EXPECT_EQ(execute(succeed), std::string("once, Lock request rejected.\nReason: ") + reason +
                                            "\nccr entry: key: task    value: " + value + "\n");
            EXPECT_EQ(run.result, result);
            EXPECT_EQ(calls().find("vput"), std::string::npos);
        }
    }
}

TEST_F(ZlFunctionTest, TheModeChoosesNoLockTheRepositoryOrAFile)
{
    for (const int mode : {0, 1, 2, 3, 4}) {
        ZlFunction probe = task([] { return -1; }, mode);
        const bool isFree =
            mode % 4 == 0 ? probe.execute() == -1 : probe.analyseLock() == ZlFunction::STATE_FREE;
        EXPECT_TRUE(isFree) << mode;
        EXPECT_EQ(calls(), mode == 2 ? "zelfccr [vget]\n" : "") << mode;
    }
}

TEST_F(ZlFunctionTest, TheLockInAFile)
{
    using NumberAndText = std::pair<int, std::string>;
    const std::string path = "/var/zelf/ces/key";
    ZlFunction file = task(succeed, ZlFunction::MODE_SINGLE_ON_NODE);
    for (const char* text : {"vget:7:a", "vget:7\n", ""}) {
        writeFile(path, text);
        EXPECT_EQ(file.getKeyValue("key"), NumberAndText(-1, "")) << text;
    }
    writeFile(path, "vget:7:a:b\n");
    EXPECT_THROW(file.getKeyValue("key"), std::out_of_range);
    errno = EIO; // somebody else's
    EXPECT_EQ(file.setKeyValue({"key", "v"}, -1), NumberAndText(EIO, "ccr vput failed for (key, v) rc = 5"));
    errno = 0;
    EXPECT_EQ(file.setKeyValue({"key", "v"}, 7), NumberAndText(0, "ccr vput success for (key, v) rc = 0"));
    EXPECT_EQ(file.getKeyValue("key"), NumberAndText(7, "v")); // the version as given
    EXPECT_TRUE(file.delKey("key", -1));
    EXPECT_FALSE(file.delKey("key", -1));
    EXPECT_EQ(file.getKeyValue("key"), NumberAndText(-1, ""));
}
