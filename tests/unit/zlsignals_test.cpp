// What signals do to the tool: nothing of the trace is lost, and who asks gets an answer.
#include "fixture.h"

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <regex>
#include <sys/wait.h>
#include <unistd.h>

#include "services/executecmd.h"
#include "services/zlerrorservice.h"

namespace {

ZlErrorService& service()
{
    return *ZlErrorService::errorServiceP;
}

const std::string OUT = "/var/zelf/gen/out";
const std::string SLOW = "/var/zelf/gen/slow";
const std::string LOG = TMP + "child.log";
const std::string DEBUG_LOG = TMP + "debugchild.log";

// Starts a process with its standard output in OUT and a log of its own. Gives its id as soon as it has
// begun.
pid_t start(const std::function<void()>& action)
{
    logged([] {}); // it shall not inherit what this process has traced
    int ready[2];
    EXPECT_EQ(pipe2(ready, O_CLOEXEC), 0);
    const pid_t pid = fork();
    if (pid == 0) {
        sigset_t none;
        sigemptyset(&none);
        sigprocmask(SIG_SETMASK, &none, nullptr);
        service().setLogFileName("child");
        if (freopen(OUT.c_str(), "w", stdout) != nullptr) {
            close(ready[1]);
            action();
        }
        _exit(99);
    }
    close(ready[1]);
    char byte = 0;
    EXPECT_EQ(read(ready[0], &byte, 1), 0);
    close(ready[0]);
    return pid;
}

// Starts the tool, and gives its id when it is in the midst of its first command.
pid_t startTool()
{
    std::filesystem::remove(SLOW);
    install("zelfctl", "echo $$ >" + SLOW + "; exec sleep 60");
    const pid_t pid = start([] { execl(ZELFHOME_TOOL, "child", "info", "list", nullptr); });
    for (int i = 0; i < 2000 && contentOf(SLOW).empty(); ++i) {
        usleep(5000);
    }
    return pid;
}

// Waits for the end of a process; gives its exit status, or the signal that it died of, negative.
int statusOf(pid_t pid)
{
    int status = 0;
    EXPECT_EQ(waitpid(pid, &status, 0), pid);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

void waitForever()
{
    for (;;) {
        pause();
    }
}

void expectIn(const std::string& path, const std::string& part)
{
    const std::string text = contentOf(path);
    EXPECT_NE(text.find(part), std::string::npos) << "'" << part << "' is not in\n" << text;
}

// The test itself may be the peer of a process: its own SIGUSR1 waits until it asks for it.
class ZlSignalsTest : public ZelfTest {
protected:
    void SetUp() override
    {
        ZelfTest::SetUp();
        sigemptyset(&answers);
        sigaddset(&answers, SIGUSR1);
        sigprocmask(SIG_BLOCK, &answers, nullptr);
    }
    void TearDown() override
    {
        ZelfTest::TearDown();
        sigprocmask(SIG_UNBLOCK, &answers, nullptr);
    }
    siginfo_t answer(time_t seconds) const
    {
        siginfo_t info{};
        const timespec limit = {seconds, 0};
        sigtimedwait(&answers, &info, &limit);
        return info;
    }
    // Asks as kill(2) does, or with a value other than 0.
    static void ask(pid_t pid, int number)
    {
        sigval value{};
        value.sival_int = number;
        EXPECT_EQ(number == 0 ? kill(pid, SIGUSR1) : sigqueue(pid, SIGUSR1, value), 0);
    }

    sigset_t answers{};
};

} // namespace

TEST_F(ZlSignalsTest, AnEndBySignalLeavesBothLogsAndOneLine)
{
    const std::pair<int, const char*> signals[] = {
        {SIGHUP, "SIGHUP (1)"},    {SIGINT, "SIGINT (2)"},    {SIGQUIT, "SIGQUIT (3)"},
        {SIGILL, "SIGILL (4)"},    {SIGTRAP, "SIGTRAP (5)"},  {SIGABRT, "SIGABRT (6)"},
        {SIGTERM, "SIGTERM (15)"}, {SIGSEGV, "SIGSEGV (11)"},
    };
    const std::string last = "Terminate from ZlErrorService::signalHandler\n";
    for (const bool inCommand : {false, true}) {
        for (const auto& [number, name] : signals) {
            SCOPED_TRACE(std::string(name) + (inCommand ? " in a command" : " at rest"));
            std::filesystem::remove(LOG);
            std::filesystem::remove(DEBUG_LOG);
            const pid_t pid = inCommand ? startTool() : start(waitForever);
            kill(pid, number);
            EXPECT_EQ(statusOf(pid), 1);
            EXPECT_EQ(contentOf(OUT), "An unexpected Error occured.\n");
            const std::string received = std::string("\nInterrupt signal ") + name + " received.\n\n";
            expectIn(LOG, received + (number == SIGSEGV ? "Stack Trace\n" : last));
            expectIn(LOG, last + "Trace messager end at: ");
            expectIn(DEBUG_LOG, received);
            expectIn(DEBUG_LOG, "\nstatic void ZlErrorService::signalHandler(int, siginfo_t*, void*)\n");
            if (inCommand) {
                expectIn(LOG, "_executeCMD cmd = /opt/zelf/bin/zelfctl nqStatus");
                kill(std::stoi(contentOf(SLOW)), SIGKILL);
            }
        }
    }
    // The last one was a crash of the tool.
    const std::string log = contentOf(LOG);
    const size_t begin = log.find("Stack Trace\n") + 12;
    const std::string stack = log.substr(begin, log.find(last) - begin);
    EXPECT_NE(stack.find("(_Z11_executeCMD"), std::string::npos) << stack;
    EXPECT_NE(stack.find("(main+"), std::string::npos) << stack;
    EXPECT_LE(std::count(stack.begin(), stack.end(), '\n'), 21) << stack; // the text has a newline of its own

    const pid_t pid = startTool();
    kill(pid, SIGPIPE); // not ours
    EXPECT_EQ(statusOf(pid), -SIGPIPE);
    kill(std::stoi(contentOf(SLOW)), SIGKILL);
}

TEST_F(ZlSignalsTest, EachCommandLeavesOneLineOfItsEnd)
{
    for (const bool isDaemon : {false, true}) {
        ZlErrorService::controlFlags |= isDaemon ? +ZlErrorService::CHILD_IS_DAEMON : 0U;
        const std::string line = std::string("\nZlErrorService::signalHandlerChild: ") +
                                 (isDaemon ? "set alarm(10).\n" : "child is not daemon. Ignore signal.\n");
        const auto threeCommands = [] {
            for (int i = 0; i < 3; ++i) {
                _executeCMD("true | true", nullptr);
            }
        };
        std::string debug = logged(threeCommands, true);
        const unsigned left = alarm(0);
        EXPECT_TRUE(isDaemon ? left >= 9 : left == 0) << left;
        for (int i = 0; i < 3; ++i) {
            ASSERT_NE(debug.find(line), std::string::npos) << i;
            debug.erase(0, debug.find(line) + 1);
        }
        EXPECT_EQ(debug.find(line), std::string::npos);
    }
}

TEST_F(ZlSignalsTest, TheAlarmEndsTheRunWithAShortLog)
{
    const pid_t pid = start([] {
        service().pushNewMsg("message");
        service().pushDebugMsg("detail");
        raise(SIGALRM);
    });
    EXPECT_EQ(statusOf(pid), 1);
    const std::string reason = "Terminate because alarm signal was received.\n";
    EXPECT_EQ(contentOf(OUT), reason);
    EXPECT_TRUE(std::regex_match(contentOf(LOG), std::regex("\n.*\nmessage\n.*\n"))) << contentOf(LOG);
    expectIn(DEBUG_LOG, "\nmessage\ndetail\nZlErrorService::signalHandlerAlarm: " + reason + "\n####");
}

TEST_F(ZlSignalsTest, AnswersWhoAsksAndGoesOn)
{
    int input[2];
    ASSERT_EQ(pipe(input), 0);
    const pid_t pid = start([&] {
        char byte = 0;
        const bool isUndisturbed = read(input[0], &byte, 1) == 1;
        service().writeTrace();
        _exit(isUndisturbed ? 7 : 8);
    });
    std::string reports;
    for (const int value : {0, 77}) {
        ask(pid, value);
        const siginfo_t info = answer(10);
        EXPECT_EQ(info.si_code, SI_QUEUE);
        EXPECT_EQ(info.si_pid, pid);
        EXPECT_EQ(info.si_value.sival_int, pid);
        reports += "ZlErrorService::signalHandlerUSR1: signal = SIGUSR1(10), si_signo = 10, si_pid = " +
                   std::to_string(getpid()) + " si_info = " + std::to_string(value) + "\n";
    }
    EXPECT_EQ(write(input[1], "", 1), 1);
    EXPECT_EQ(statusOf(pid), 7);
    EXPECT_EQ(contentOf(OUT), reports);
    expectIn(DEBUG_LOG, reports);
    EXPECT_EQ(contentOf(LOG), "");
}

TEST_F(ZlSignalsTest, ADaemonEndsWithoutAnAnswer)
{
    for (const int value : {0, 4711}) {
        ZlErrorService::controlFlags = ZlErrorService::CHILD_IS_DAEMON;
        const pid_t pid = start(waitForever);
        ZlErrorService::controlFlags = 0;
        ask(pid, value);
        EXPECT_EQ(statusOf(pid), 0);
        EXPECT_EQ(answer(0).si_signo, 0);
        const std::string text = "Process (" + std::to_string(value == 0 ? getpid() : value) +
                                 ") runs as deamon. Terminate without response.\n";
        EXPECT_EQ(contentOf(OUT), text);
        expectIn(LOG, "\n" + text +
                          "Interrupt signal SIGUSR1 (10) received.\n "
                          "Terminate from ZlErrorService::signalHandlerChild\n");
    }
}

TEST_F(ZlSignalsTest, TheFatalHandlerBoundToTheAskingSignalDumpsAndKeepsTheTrace)
{
    const pid_t pid = start([] {
        ZlErrorService::addSignal(SIGUSR1, ZlErrorService::signalHandler);
        service().pushDebugMsg("detail");
        raise(SIGUSR1);
        service().setLogFileName("after");
        service().writeTrace();
        ZlErrorService::addSignal(SIGUSR1, SIG_DFL);
        raise(SIGUSR1);
    });
    EXPECT_EQ(statusOf(pid), -SIGUSR1);
    const std::regex dump("Debug Trace start at: .*\ndetail\n\nInterrupt signal SIGUSR1 .10. received.\n\n"
                          "Debug Trace end at: \\d{4}-\\d\\d-\\d\\d\\.\\d\\d:\\d\\d\n");
    EXPECT_TRUE(std::regex_match(contentOf(DEBUG_LOG), dump)) << contentOf(DEBUG_LOG);
    expectIn(TMP + "debugafter.log", "\ndetail\n\nInterrupt signal SIGUSR1 (10) received.\n\n");
}

TEST_F(ZlSignalsTest, AHandlerThatCannotBeInstalledEndsTheRun)
{
    const auto refused = [](auto handler) {
        service().setLogFileName("child");
        service().pushDebugMsg("detail");
        ZlErrorService::addSignal(SIGKILL, handler);
    };
    expectEnd([&] { refused(ZlErrorService::signalHandler); }, 1, "", "Define signal handler failed.\n");
    expectIn(LOG, "detail\nZlErrorService::addSigna Setting new action failed. Terminate.\nTrace messager");
    expectEnd([&] { refused(SIG_DFL); }, 1, "", "Define default signal handling failed.\n");
    expectIn(LOG,
             "detail\nZlErrorService::addSignal Setting default action failed. Terminate.\nTrace messager");
}
