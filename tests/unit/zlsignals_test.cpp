// What signals do to the tool: nothing of the trace is lost, and who asks gets an answer.
#include "fixture.h"

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <regex>
#include <sys/wait.h>
#include <unistd.h>

#include "services/executecmd.h"
#include "services/zlerrorservice.h"

namespace {

const std::string OUT = "/var/zelf/gen/out";
const std::string SLOW = TMP + "slow";
const std::string LOG = TMP + "child.log";
const std::string DEBUG_LOG = TMP + "debugchild.log";

class ZlSignalsTest : public ZelfTest {
protected:
    ZlErrorService& service = *ZlErrorService::errorServiceP;

    // Starts a process with its standard output in OUT and a log of its own, and waits until it has begun.
    pid_t start(const std::function<void()>& action)
    {
        logged([] {}); // it shall not inherit what this process has traced
        int ready[2];
        EXPECT_EQ(pipe2(ready, O_CLOEXEC), 0);
        const pid_t pid = fork();
        if (pid == 0) {
            service.setLogFileName("child");
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
};

void waitForever()
{
    for (;;) {
        pause();
    }
}

// Waits for the end of a process; gives its exit status, or the signal that it died of, negative.
int statusOf(pid_t pid)
{
    int status = 0;
    EXPECT_EQ(waitpid(pid, &status, 0), pid);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

void expectIn(const std::string& path, const std::string& part)
{
    const std::string text = contentOf(path);
    EXPECT_NE(text.find(part), std::string::npos) << "'" << part << "' is not in\n" << text;
}

} // namespace

TEST_F(ZlSignalsTest, AnEndBySignalLeavesBothLogsAndOneLine)
{
    const std::pair<int, const char*> signals[] = {
        {SIGHUP, "SIGHUP (1)"},    {SIGINT, "SIGINT (2)"},    {SIGQUIT, "SIGQUIT (3)"},
        {SIGILL, "SIGILL (4)"},    {SIGTRAP, "SIGTRAP (5)"},  {SIGABRT, "SIGABRT (6)"},
        {SIGTERM, "SIGTERM (15)"}, {SIGSEGV, "SIGSEGV (11)"},
    };
    const std::string last = "Terminate from ZlErrorService::signalHandler\n";
    for (const auto& [number, name] : signals) {
        for (const bool inCommand : {false, true}) {
            SCOPED_TRACE(std::string(name) + (inCommand ? " in a command of the tool" : " at rest"));
            ZelfTest::SetUp(); // no logs
            install("zelfctl", "echo $$ >" + SLOW + "; exec sleep 60");
            const auto runTool = [] { execl(ZELFHOME_TOOL, "child", "info", "list", nullptr); };
            const pid_t pid = inCommand ? start(runTool) : start(waitForever);
            for (int i = 0; inCommand && i < 2000 && contentOf(SLOW).empty(); ++i) {
                usleep(5000);
            }
            kill(pid, number);
            EXPECT_EQ(statusOf(pid), 1);
            EXPECT_EQ(contentOf(OUT), "An unexpected Error occured.\n");
            const std::string received = std::string("\nInterrupt signal ") + name + " received.\n\n";
            expectIn(LOG, received + (number == SIGSEGV ? "Stack Trace\n" : last));
            expectIn(LOG, last + "Trace messager end at: ");
            expectIn(DEBUG_LOG, received);
            if (inCommand) {
                expectIn(LOG, "_executeCMD cmd = /opt/zelf/bin/zelfctl nqStatus");
                kill(std::stoi(contentOf(SLOW)), SIGKILL);
            }
        }
    }
    // The last one was a crash of the tool.
    const std::string log = contentOf(LOG);
    const size_t stack = log.find("Stack Trace\n") + 12;
    expectIn(LOG, "(_Z11_executeCMD");
    expectIn(LOG, "(main+");
    EXPECT_LE(std::count(log.begin() + stack, log.begin() + log.find(last), '\n'), 20 + 1);
}

TEST_F(ZlSignalsTest, EachCommandLeavesOneLineOfItsEnd)
{
    for (const char* words : {"child is not daemon. Ignore signal.", "set alarm(10)."}) {
        const std::string line = std::string("\nZlErrorService::signalHandlerChild: ") + words + "\n";
        std::string debug =
            logged([] { _executeCMD("true", nullptr), _executeCMD("true | true", nullptr); }, true);
        EXPECT_EQ(alarm(0) >= 9, ZlErrorService::controlFlags != 0);
        for (const bool isThere : {true, true, false}) {
            EXPECT_EQ(debug.find(line) != std::string::npos, isThere) << debug;
            debug.erase(0, debug.find(line) + 1);
        }
        ZlErrorService::controlFlags |= ZlErrorService::CHILD_IS_DAEMON;
    }
}

TEST_F(ZlSignalsTest, TheAlarmEndsTheRunWithAShortLog)
{
    const pid_t pid = start([this] {
        service.pushNewMsg("message");
        service.pushDebugMsg("detail");
        raise(SIGALRM);
    });
    EXPECT_EQ(statusOf(pid), 1);
    EXPECT_EQ(contentOf(OUT), "Terminate because alarm signal was received.\n");
    EXPECT_TRUE(std::regex_match(contentOf(LOG), std::regex("\n.*\nmessage\n.*\n"))) << contentOf(LOG);
    expectIn(DEBUG_LOG,
             "\nmessage\ndetail\nZlErrorService::signalHandlerAlarm: " + contentOf(OUT) + "\n####");
}

TEST_F(ZlSignalsTest, WhoAsksGetsAnAnswerButFromADaemon)
{
    sigset_t answers;
    sigemptyset(&answers);
    sigaddset(&answers, SIGUSR1);
    const std::string here = std::to_string(getpid());
    const struct {
        bool isDaemon;
        int value; // 0: sent by kill(2)
        std::string words;
    } cases[] = {
        {false, 0,
         "ZlErrorService::signalHandlerUSR1: signal = SIGUSR1(10), si_signo = 10, si_pid = " + here +
             " si_info = 0\n"},
        {false, 77,
         "ZlErrorService::signalHandlerUSR1: signal = SIGUSR1(10), si_signo = 10, si_pid = " + here +
             " si_info = 77\n"},
        {true, 0, "Process (" + here + ") runs as deamon. Terminate without response.\n"},
        {true, 77, "Process (77) runs as deamon. Terminate without response.\n"},
    };
    for (const auto& [isDaemon, value, words] : cases) {
        int input[2];
        ASSERT_EQ(pipe(input), 0);
        ZlErrorService::controlFlags = isDaemon ? 2 : 0;
        const pid_t pid = start([&] {
            char byte = 0;
            const bool isUndisturbed = read(input[0], &byte, 1) == 1;
            service.writeTrace();
            _exit(isUndisturbed ? 7 : 8);
        });
        ZlErrorService::controlFlags = 0;
        sigprocmask(SIG_BLOCK, &answers, nullptr);
        sigval sent{};
        sent.sival_int = value;
        EXPECT_EQ(value == 0 ? kill(pid, SIGUSR1) : sigqueue(pid, SIGUSR1, sent), 0);
        siginfo_t answer{};
        const timespec limit = {isDaemon ? 0 : 10, 0};
        int status = isDaemon ? statusOf(pid) : -1;
        EXPECT_EQ(sigtimedwait(&answers, &answer, &limit), isDaemon ? -1 : SIGUSR1);
        sigprocmask(SIG_UNBLOCK, &answers, nullptr);
        if (!isDaemon) {
            EXPECT_EQ(answer.si_code, SI_QUEUE);
            EXPECT_EQ(answer.si_value.sival_int, pid);
            EXPECT_EQ(write(input[1], "", 1), 1);
            status = statusOf(pid);
        }
        EXPECT_EQ(status, isDaemon ? 0 : 7);
        EXPECT_EQ(contentOf(OUT), words);
        expectIn(DEBUG_LOG, "\n" + words);
        EXPECT_EQ(contentOf(LOG).empty(), !isDaemon);
    }
    expectIn(LOG,
             "Interrupt signal SIGUSR1 (10) received.\n Terminate from ZlErrorService::signalHandlerChild\n");
}

TEST_F(ZlSignalsTest, HandlersCanBeBoundAnew)
{
    const pid_t pid = start([this] {
        ZlErrorService::addSignal(SIGUSR1, ZlErrorService::signalHandler);
        service.pushDebugMsg("detail");
        raise(SIGUSR1); // dumps the debug log and keeps it
        service.setLogFileName("after");
        service.writeTrace();
        ZlErrorService::addSignal(SIGUSR1, SIG_DFL);
        raise(SIGUSR1);
    });
    EXPECT_EQ(statusOf(pid), -SIGUSR1);
    const std::regex dump("Debug Trace start at: .*\ndetail\n\nInterrupt signal SIGUSR1 .10. received.\n\n"
                          "Debug Trace end at: \\d{4}-\\d\\d-\\d\\d\\.\\d\\d:\\d\\d\n");
    EXPECT_TRUE(std::regex_match(contentOf(DEBUG_LOG), dump)) << contentOf(DEBUG_LOG);
    expectIn(TMP + "debugafter.log", "\ndetail\n\nInterrupt signal SIGUSR1 (10) received.\n\n");

    for (const int signal : {SIGPIPE, SIGBUS, SIGFPE}) { // not ours
        struct sigaction action {};
        sigaction(signal, nullptr, &action);
        EXPECT_NE(action.sa_sigaction, &ZlErrorService::signalHandler) << signal;
    }
    const auto refused = [this](auto handler) {
        service.setLogFileName("child");
        service.pushDebugMsg("detail");
        ZlErrorService::addSignal(SIGKILL, handler);
    };
    expectEnd([&] { refused(ZlErrorService::signalHandler); }, 1, "", "Define signal handler failed.\n");
    expectIn(LOG, "detail\nZlErrorService::addSigna Setting new action failed. Terminate.\nTrace messager");
    expectEnd([&] { refused(SIG_DFL); }, 1, "", "Define default signal handling failed.\n");
    expectIn(LOG,
             "detail\nZlErrorService::addSignal Setting default action failed. Terminate.\nTrace messager");
}
