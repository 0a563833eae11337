// What signals do to the tool: nothing is lost of the trace, and who asks gets an answer.
#include "fixture.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <iostream>
#include <regex>
#include <sys/wait.h>
#include <unistd.h>

#include "services/executecmd.h"
#include "services/zlerrorservice.h"

namespace {

const char* const OUT = "/var/zelf/gen/out";
const char* const SLOW = "/var/zelf/gen/slow";
const std::string LOG = TMP + "child.log";
const std::string DEBUG_LOG = TMP + "debugchild.log";

// Starts a process with its standard output in OUT and no signal blocked.
pid_t start(const std::function<void()>& action)
{
    std::filesystem::remove(OUT);
    std::cout.flush();
    std::fflush(nullptr);
    const pid_t pid = fork();
    if (pid == 0) {
        sigset_t none;
        sigemptyset(&none);
        sigprocmask(SIG_SETMASK, &none, nullptr);
        if (freopen(OUT, "w", stdout) != nullptr) {
            action();
        }
        _exit(99);
    }
    return pid;
}

// The same with a log of its own. Returns when the process is in the midst of `action`.
pid_t startChild(const std::function<void()>& action)
{
    int ready[2];
    EXPECT_EQ(pipe(ready), 0);
    logged([] {}); // the child shall not inherit what this process has traced
    const pid_t pid = start([&] {
        ZlErrorService::errorServiceP->setLogFileName("child");
        close(ready[1]);
        action();
    });
    close(ready[1]);
    char byte = 0;
    EXPECT_EQ(read(ready[0], &byte, 1), 0);
    close(ready[0]);
    return pid;
}

// Starts the tool, and returns when it is in the midst of its first command.
pid_t startTool()
{
    std::filesystem::remove(SLOW);
    install("zelfctl", std::string("echo $$ >") + SLOW + "; exec sleep 60");
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

bool holds(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

// A test that is the peer of a child: SIGUSR1 waits until the test asks for it.
class ZlSignalsPeerTest : public ZelfTest {
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
    // Sends the signal as kill(2) does, or with a value other than 0.
    static void ask(pid_t pid, int number)
    {
        sigval value{};
        value.sival_int = number;
        EXPECT_EQ(number == 0 ? kill(pid, SIGUSR1) : sigqueue(pid, SIGUSR1, value), 0);
    }

    sigset_t answers{};
};

using ZlSignalsTest = ZelfTest;

} // namespace

TEST_F(ZlSignalsTest, AnEndBySignalLeavesBothLogsAndOneLine)
{
    const std::pair<int, const char*> signals[] = {
        {SIGHUP, "SIGHUP (1)"},    {SIGINT, "SIGINT (2)"},    {SIGQUIT, "SIGQUIT (3)"},
        {SIGILL, "SIGILL (4)"},    {SIGTRAP, "SIGTRAP (5)"},  {SIGABRT, "SIGABRT (6)"},
        {SIGSEGV, "SIGSEGV (11)"}, {SIGTERM, "SIGTERM (15)"},
    };
    for (const bool inCommand : {false, true}) {
        for (const auto& [number, name] : signals) {
            SCOPED_TRACE(std::string(name) + (inCommand ? " in a command" : " at rest"));
            std::filesystem::remove(LOG);
            std::filesystem::remove(DEBUG_LOG);
            const pid_t pid = inCommand ? startTool() : startChild(waitForever);
            kill(pid, number);
            EXPECT_EQ(statusOf(pid), 1);
            if (inCommand) {
                kill(std::stoi(contentOf(SLOW)), SIGKILL);
            }
            EXPECT_EQ(contentOf(OUT), "An unexpected Error occured.\n");
            const std::string received = std::string("\nInterrupt signal ") + name + " received.\n\n";
            const std::string last = "Terminate from ZlErrorService::signalHandler\n";
            const std::string log = contentOf(LOG);
            EXPECT_TRUE(holds(log, received + (number == SIGSEGV ? "Stack Trace\n" : last))) << log;
            EXPECT_TRUE(holds(log, last + "Trace messager end at: ")) << log;
            EXPECT_EQ(holds(log, "_executeCMD cmd = /opt/zelf/bin/zelfctl nqStatus"), inCommand) << log;
            const std::string debug = contentOf(DEBUG_LOG);
            EXPECT_TRUE(holds(debug, received)) << debug;
            EXPECT_TRUE(holds(debug, "static void ZlErrorService::signalHandler(int, siginfo_t*, void*)\n"))
                << debug;
        }
    }
    // Not ours.
    const pid_t pid = startTool();
    kill(pid, SIGPIPE);
    EXPECT_EQ(statusOf(pid), -SIGPIPE);
    kill(std::stoi(contentOf(SLOW)), SIGKILL);
}

TEST_F(ZlSignalsTest, TheStackOfACrashNamesTheFunctionsOfTheTool)
{
    const pid_t pid = startTool();
    kill(pid, SIGSEGV);
    statusOf(pid);
    kill(std::stoi(contentOf(SLOW)), SIGKILL);
    const std::string log = contentOf(LOG);
    const size_t begin = log.find("Stack Trace\n") + 12;
    const std::string stack = log.substr(begin, log.find("Terminate from") - begin);
    EXPECT_TRUE(holds(stack, "_Z11_executeCMD")) << stack;
    EXPECT_TRUE(holds(stack, "(main+")) << stack;
    EXPECT_LE(std::count(stack.begin(), stack.end(), '\n'), 21)
        << stack; // the text ends in a newline of its own
}

TEST_F(ZlSignalsTest, EachCommandLeavesOneLineOfItsEnd)
{
    const auto lines = [](const std::string& text) {
        const auto fiveCommands = [] {
            for (int i = 0; i < 5; ++i) {
                _executeCMD("true | true", nullptr);
            }
        };
        const std::string debug = logged(fiveCommands, true);
        long count = 0;
        for (size_t at = debug.find(text); at != std::string::npos; at = debug.find(text, at + 1)) {
            ++count;
        }
        return count;
    };
    EXPECT_EQ(lines("\nZlErrorService::signalHandlerChild: child is not daemon. Ignore signal.\n"), 5);
    EXPECT_EQ(alarm(0), 0U);
    ZlErrorService::controlFlags |= ZlErrorService::CHILD_IS_DAEMON;
    EXPECT_EQ(lines("\nZlErrorService::signalHandlerChild: set alarm(10).\n"), 5);
    EXPECT_GE(alarm(0), 9U);
}

TEST_F(ZlSignalsTest, TheAlarmEndsTheRunWithAShortLog)
{
    const pid_t pid = startChild([] {
        ZlErrorService::errorServiceP->pushNewMsg("message");
        ZlErrorService::errorServiceP->pushDebugMsg("detail");
        raise(SIGALRM);
    });
    EXPECT_EQ(statusOf(pid), 1);
    const std::string reason = "Terminate because alarm signal was received.\n";
    EXPECT_EQ(contentOf(OUT), reason);
    EXPECT_TRUE(std::regex_match(contentOf(LOG), std::regex("\n.*\nmessage\n.*\n"))) << contentOf(LOG);
    const std::string lines = "\nmessage\ndetail\nZlErrorService::signalHandlerAlarm: " + reason + "\n####";
    EXPECT_TRUE(holds(contentOf(DEBUG_LOG), lines)) << contentOf(DEBUG_LOG);
}

TEST_F(ZlSignalsPeerTest, AnswersWhoAsksAndGoesOn)
{
    int input[2];
    ASSERT_EQ(pipe(input), 0);
    const pid_t pid = startChild([&] {
        char byte = 0;
        const bool isUndisturbed = read(input[0], &byte, 1) == 1;
        ZlErrorService::errorServiceP->writeTrace();
        _exit(isUndisturbed ? 7 : 8);
    });
    std::string reports;
    for (const int value : {0, 77}) {
        ask(pid, value);
        const siginfo_t info = answer(10);
        EXPECT_EQ(info.si_signo, SIGUSR1);
        EXPECT_EQ(info.si_code, SI_QUEUE);
        EXPECT_EQ(info.si_pid, pid);
        EXPECT_EQ(info.si_value.sival_int, pid);
        reports += "ZlErrorService::signalHandlerUSR1: signal = SIGUSR1(10), si_signo = 10, si_pid = " +
                   std::to_string(getpid()) + " si_info = " + std::to_string(value) + "\n";
    }
    EXPECT_EQ(write(input[1], "", 1), 1);
    EXPECT_EQ(statusOf(pid), 7);
    EXPECT_EQ(contentOf(OUT), reports);
    EXPECT_TRUE(holds(contentOf(DEBUG_LOG), reports)) << contentOf(DEBUG_LOG);
    EXPECT_EQ(contentOf(LOG), "");
}

TEST_F(ZlSignalsPeerTest, ADaemonEndsWithoutAnAnswer)
{
    for (const int value : {0, 4711}) {
        ZlErrorService::controlFlags |= ZlErrorService::CHILD_IS_DAEMON;
        const pid_t pid = startChild(waitForever);
        ZlErrorService::controlFlags = 0;
        ask(pid, value);
        EXPECT_EQ(statusOf(pid), 0);
        EXPECT_EQ(answer(0).si_signo, 0);
        const std::string text = "Process (" + std::to_string(value == 0 ? getpid() : value) +
                                 ") runs as deamon. Terminate without response.\n";
        EXPECT_EQ(contentOf(OUT), text);
        const std::string received = "Interrupt signal SIGUSR1 (10) received.\n "
                                     "Terminate from ZlErrorService::signalHandlerChild\n";
        EXPECT_TRUE(holds(contentOf(LOG), "\n" + text + received)) << contentOf(LOG);
    }
}

TEST_F(ZlSignalsTest, WhoSentASignalAndWithWhat)
{
    const std::tuple<int, int, int> cases[] = {
        {SI_QUEUE, -1, 5}, {SI_USER, 42, -1}, {SI_TKILL, -1, -1}, {SI_KERNEL, -1, -1}, {CLD_EXITED, -1, -1}};
    for (const auto& [code, pid, value] : cases) {
        siginfo_t info{};
        info.si_code = code;
        info.si_pid = 42;
        info.si_value.sival_int = 5;
        ZlErrorService::analyseSiginfo(&info);
        EXPECT_EQ(ZlErrorService::signalPid, pid) << code;
        EXPECT_EQ(ZlErrorService::signalValue, value) << code;
    }
}

TEST_F(ZlSignalsTest, TheFatalHandlerOnTheAskingSignalDumpsAndKeepsTheTrace)
{
    const pid_t pid = startChild([] {
        ZlErrorService::addSignal(SIGUSR1, ZlErrorService::signalHandler);
        ZlErrorService::errorServiceP->pushDebugMsg("detail");
        raise(SIGUSR1);
        ZlErrorService::errorServiceP->setLogFileName("after");
        ZlErrorService::errorServiceP->writeTrace();
        ZlErrorService::addSignal(SIGUSR1, SIG_DFL);
        raise(SIGUSR1);
    });
    EXPECT_EQ(statusOf(pid), -SIGUSR1);
    const std::string lines = "\ndetail\n\nInterrupt signal SIGUSR1 (10) received.\n\n";
    const std::regex dump("Debug Trace start at: .*" + std::regex_replace(lines, std::regex("[()]"), "\\$&") +
                          R"(Debug Trace end at: \d{4}-\d\d-\d\d\.\d\d:\d\d\n)");
    EXPECT_TRUE(std::regex_match(contentOf(DEBUG_LOG), dump)) << contentOf(DEBUG_LOG);
    EXPECT_TRUE(holds(contentOf(TMP + "debugafter.log"), lines));
}

TEST_F(ZlSignalsTest, AHandlerThatCannotBeInstalledEndsTheRun)
{
    const auto refused = [](auto handler) {
        ZlErrorService::errorServiceP->setLogFileName("child");
        ZlErrorService::errorServiceP->pushDebugMsg("detail");
        ZlErrorService::addSignal(SIGKILL, handler);
    };
    expectEnd([&] { refused(ZlErrorService::signalHandler); }, 1, "", "Define signal handler failed.\n");
    expectEnd([&] { refused(SIG_DFL); }, 1, "", "Define default signal handling failed.\n");
    const std::regex log(
        "[^]*\ndetail\nZlErrorService::addSigna Setting new action failed. Terminate.\n"
        "[^]*\ndetail\nZlErrorService::addSignal Setting default action failed. Terminate.\n[^]*");
    EXPECT_TRUE(std::regex_match(contentOf(LOG), log)) << contentOf(LOG);
}
