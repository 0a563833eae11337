// What signals do to the tool: nothing of the trace is lost, and who asks gets an answer.
#include "fixture.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>
#include <unistd.h>

#include "services/executecmd.h"
#include "services/heldsignal.h"

namespace {

const std::string LOG = TMP + "test.log";
const std::string DEBUG_LOG = TMP + "debugtest.log";

} // namespace

using ZlSignalsTest = ZelfTest;

TEST_F(ZlSignalsTest, AnEndBySignalLeavesBothLogsAndOneLine)
{
    for (const int number : {SIGHUP, SIGINT, SIGQUIT, SIGILL, SIGTRAP, SIGABRT, SIGTERM, SIGSEGV}) {
        const std::string text = std::to_string(number);
        const std::string received =
            std::string("\nInterrupt signal SIG") + sigabbrev_np(number) + " (" + text + ") received.\n\n";
        const std::string next = number == SIGSEGV ? "Stack Trace\n" : "Terminate from ZlErrorService::";
        SetUp();
        // The tool itself, from within a command; it waits for output then.
        install("zelfctl", "sleep 0.2; trap '' " + text + "; kill -" + text + " 0; sleep 0.1");
        const auto run = [] {
            setpgid(0, 0);
            execl(ZELFHOME_TOOL, "child", "info", "list", nullptr);
        };
        expectEnd(run, 1, "An unexpected Error occured.\n", "");
        const std::string log = contentOf(TMP + "child.log");
        expectIn(log, received + next);
        expectIn(contentOf(TMP + "debugchild.log"), received);
        if (number == SIGSEGV) {
            const std::string stack = log.substr(log.find(next) + next.size());
            expectIn(stack, "(main+");
            // At most 20 frames, an empty line, and two lines behind them.
            EXPECT_LE(std::count(stack.begin(), stack.end(), '\n'), 20 + 1 + 2);
        }
    }
}

TEST_F(ZlSignalsTest, TheEndOfACommandSetsTheAlarmOfADaemonOnly)
{
    for (const unsigned seconds : {0U, 10U}) {
        _executeCMD("sleep 0.1", nullptr); // it ends while this process waits
        EXPECT_EQ(alarm(0), seconds);
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

TEST_F(ZlSignalsTest, WhoAsksGetsAnAnswerAndNoErrorNumberIsLost)
{
    const HeldSignal held(SIGUSR1);
    siginfo_t question{};
    question.si_signo = SIGUSR1;
    question.si_value.sival_int = 77;
    for (const pid_t asking : {getpid(), INT_MAX}) { // the second one is gone
        question.si_pid = asking;
        EXPECT_EQ(printed([&] {
                      errno = EIO;
                      ZlErrorService::signalHandlerUSR1(SIGUSR1, &question, nullptr);
                      EXPECT_EQ(errno, EIO);
                  }),
                  "ZlErrorService::signalHandlerUSR1: signal = SIGUSR1(10), si_signo = 10, si_pid = " +
                      std::to_string(asking) + " si_info = 77\n");
    }
    sigset_t answers;
    sigemptyset(&answers);
    sigaddset(&answers, SIGUSR1);
    siginfo_t answer{};
    const timespec limit = {1, 0};
    EXPECT_EQ(sigtimedwait(&answers, &answer, &limit), SIGUSR1);
    EXPECT_EQ(answer.si_value.sival_int, getpid());
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
    const std::string detail = "\ndetail\n\nInterrupt signal SIGUSR1 (10) received.\n\n";
    expectIn(contentOf(DEBUG_LOG), detail + "Debug Trace end at: ");
    expectIn(contentOf(TMP + "debugafter.log"), detail);
    expectEnd([] { ZlErrorService::addSignal(SIGKILL, ZlErrorService::signalHandler); }, 1, "",
              "Define signal handler failed.\n");
    expectEnd([] { ZlErrorService::addSignal(SIGKILL, SIG_DFL); }, 1, "",
              "Define default signal handling failed.\n");
}
