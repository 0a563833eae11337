// What signals do to the tool: nothing of the trace is lost, and who asks gets an answer.
#include "fixture.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <regex>
#include <sys/wait.h>
#include <unistd.h>

#include "services/executecmd.h"
#include "services/heldsignal.h"

namespace {

const std::string LOG = TMP + "test.log";
const std::string DEBUG_LOG = TMP + "debugtest.log";
const std::string LAST = "Terminate from ZlErrorService::signalHandler\nTrace messager end at: ";
const std::string UNEXPECTED = "An unexpected Error occured.\n";

} // namespace

using ZlSignalsTest = ZelfTest;

TEST_F(ZlSignalsTest, AnEndBySignalLeavesBothLogsAndOneLine)
{
    const std::pair<int, const char*> signals[] = {
        {SIGHUP, "SIGHUP (1)"},    {SIGINT, "SIGINT (2)"},    {SIGQUIT, "SIGQUIT (3)"},
        {SIGILL, "SIGILL (4)"},    {SIGTRAP, "SIGTRAP (5)"},  {SIGABRT, "SIGABRT (6)"},
        {SIGTERM, "SIGTERM (15)"}, {SIGSEGV, "SIGSEGV (11)"},
    };
    for (const auto& [number, name] : signals) {
        SCOPED_TRACE(name);
        SetUp();
        const std::string received = std::string("\nInterrupt signal ") + name + " received.\n\n";
        const std::string next = number == SIGSEGV ? "Stack Trace\n" : LAST;
        // The tool itself, from within a command; it waits for output then.
        const std::string kill = std::to_string(number) + "; kill -" + std::to_string(number) + " 0";
        install("zelfctl", "sleep 0.2; trap '' " + kill + "; sleep 0.1");
        const auto run = [] {
            setpgid(0, 0);
            execl(ZELFHOME_TOOL, "child", "info", "list", nullptr);
        };
        expectEnd(run, 1, UNEXPECTED, "");
        const std::string log = contentOf(TMP + "child.log");
        expectIn(log, "_executeCMD cmd = /opt/zelf/bin/zelfctl nqStatus");
        expectIn(log, received + next);
        expectIn(log, LAST);
        expectIn(contentOf(TMP + "debugchild.log"), received);
        if (number == SIGSEGV) {
            const std::string stack = log.substr(log.find(next) + next.size());
            expectIn(stack, "(_Z11_executeCMD");
            expectIn(stack, "(main+");
            // At most 20 frames, an empty line, and two lines behind them.
            EXPECT_LE(std::count(stack.begin(), stack.end(), '\n'), 20 + 1 + 2);
        }
    }
}

TEST_F(ZlSignalsTest, EachCommandLeavesOneLineOfItsEnd)
{
    for (const char* words : {"child is not daemon. Ignore signal.", "set alarm(10)."}) {
        const std::string line = std::string("\nZlErrorService::signalHandlerChild: ") + words + "\n";
        // They end while this process waits, and not in the midst of a line of its own.
        _executeCMD("sleep 0.1", nullptr);
        _executeCMD("true | sleep 0.1", nullptr);
        EXPECT_EQ(alarm(0) >= 9, ZlErrorService::controlFlags != 0);
        service.writeTrace();
        std::string debug = contentOf(DEBUG_LOG);
        debug.erase(debug.find("\n#### function trace"));
        for (const bool isThere : {true, true, false}) {
            EXPECT_EQ(debug.find(line) != std::string::npos, isThere) << debug;
            debug.erase(0, debug.find(line) + 1);
        }
        ZlErrorService::controlFlags |= ZlErrorService::CHILD_IS_DAEMON;
    }
}

TEST_F(ZlSignalsTest, TheAlarmAndAQuestionToADaemonEndTheRunWithAShortLog)
{
    const std::string alarm = "Terminate because alarm signal was received.\n";
    const std::string daemon = "Process (77) runs as deamon. Terminate without response.\n";
    const std::string asked = daemon + "Interrupt signal SIGUSR1 (10) received.\n Terminate from "
                                       "ZlErrorService::signalHandlerChild\n";
    for (const auto& [number, status, words, logged, detailed] :
         {std::tuple{SIGALRM, 1, alarm, std::string(), "ZlErrorService::signalHandlerAlarm: " + alarm},
          {SIGUSR1, 0, daemon, asked, asked}}) {
        const auto run = [this, number = number] {
            ZlErrorService::controlFlags = number == SIGUSR1 ? 2 : 0; // a daemon or not
            service.pushNewMsg("message");
            service.pushDebugMsg("detail");
            sigqueue(getpid(), number, {77});
        };
        expectEnd(run, status, words, "");
        expectIn(contentOf(LOG), "\nmessage\n" + logged + "Trace messager end at: ");
        expectIn(contentOf(DEBUG_LOG), "\nmessage\ndetail\n" + detailed + "\n");
    }
}

TEST_F(ZlSignalsTest, WhoAsksGetsAnAnswerAndDisturbsNothing)
{
    for (const int value : {0, 77}) { // 0: sent by kill(2)
        int input[2];
        ASSERT_EQ(pipe(input), 0);
        int status = 0;
        const std::string said = printed([&] {
            const pid_t pid = fork();
            if (pid == 0) {
                char byte = 0;
                _exit(read(input[0], &byte, 1) == 1 ? 7 : 8);
            }
            usleep(20000); // it waits for input
            const HeldSignal answers(SIGUSR1);
            sigset_t answerSet;
            sigemptyset(&answerSet);
            sigaddset(&answerSet, SIGUSR1);
            EXPECT_EQ(value == 0 ? kill(pid, SIGUSR1) : sigqueue(pid, SIGUSR1, {value}), 0);
            siginfo_t answer{};
            const timespec limit = {10, 0};
            EXPECT_EQ(sigtimedwait(&answerSet, &answer, &limit), SIGUSR1);
            EXPECT_EQ(answer.si_value.sival_int, pid);
            EXPECT_EQ(write(input[1], "", 1), 1);
            EXPECT_EQ(waitpid(pid, &status, 0), pid);
        });
        EXPECT_EQ(WEXITSTATUS(status), 7);
        EXPECT_EQ(said, "ZlErrorService::signalHandlerUSR1: signal = SIGUSR1(10), si_signo = 10, si_pid = " +
                            std::to_string(getpid()) + " si_info = " + std::to_string(value) + "\n");
    }
}

TEST_F(ZlSignalsTest, WhoAsksAndIsGoneFailsNoWrite)
{
    printed([] {
        const HeldSignal question(SIGUSR1);
        const pid_t pid = fork();
        if (pid == 0) {
            kill(getppid(), SIGUSR1);
            _exit(0);
        }
        waitpid(pid, nullptr, 0);
        errno = 0;
    });
    EXPECT_EQ(errno, 0);
}

TEST_F(ZlSignalsTest, HandlersCanBeBoundAnew)
{
    const auto run = [this] {
        ZlErrorService::addSignal(SIGUSR1, ZlErrorService::signalHandler);
        service.pushDebugMsg("detail");
        raise(SIGUSR1); // dumps the debug log and keeps it
        service.setLogFileName("after");
        service.writeTrace();
        ZlErrorService::addSignal(SIGUSR1, SIG_DFL);
        raise(SIGUSR1);
    };
    EXPECT_EXIT(run(), testing::KilledBySignal(SIGUSR1), "");
    const std::regex dump("Debug Trace start at: .*\ndetail\n\nInterrupt signal SIGUSR1 .10. received.\n\n"
                          "Debug Trace end at: \\d{4}-\\d\\d-\\d\\d\\.\\d\\d:\\d\\d\n");
    EXPECT_TRUE(std::regex_match(contentOf(DEBUG_LOG), dump)) << contentOf(DEBUG_LOG);
    expectIn(contentOf(TMP + "debugafter.log"), "\ndetail\n\nInterrupt signal SIGUSR1 (10) received.\n\n");

    expectEnd([] { ZlErrorService::addSignal(SIGKILL, ZlErrorService::signalHandler); }, 1, "",
              "Define signal handler failed.\n");
    expectIn(contentOf(LOG), "ZlErrorService::addSigna Setting new action failed. Terminate.\n");
    expectEnd([] { ZlErrorService::addSignal(SIGKILL, SIG_DFL); }, 1, "",
              "Define default signal handling failed.\n");
}
