// What signals do to the tool: nothing of the trace is lost, and who asks gets an answer.
#include "fixture.h"

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

#include "services/executecmd.h"
#include "services/heldsignal.h"

using ZlSignalsTest = ZelfTest;

TEST_F(ZlSignalsTest, AnEndBySignalLeavesBothLogsAndOneLine)
{
    for (const int number : {SIGHUP, SIGINT, SIGQUIT, SIGILL, SIGTRAP, SIGABRT, SIGTERM, SIGSEGV}) {
        const std::string text = std::to_string(number);
        const std::string received =
            std::string("\nInterrupt signal SIG") + sigabbrev_np(number) + " (" + text + ") received.\n\n";
        SetUp();
        install("zelfctl", "sleep 0.2; trap '' " + text + "; kill -" + text + " 0; sleep 0.1");
        const auto run = [] {
            setpgid(0, 0);
            execl(ZELFHOME_TOOL, "child", "info", "list", nullptr);
        };
        expectEnd(run, 1, "An unexpected Error occured.\n", "");
        const std::string log = contentOf(TMP + "child.log");
        expectIn(log, received + (number == SIGSEGV ? "Stack Trace\n" : "Terminate from "));
        EXPECT_EQ(log.find("(main+") != std::string::npos, number == SIGSEGV);
        expectIn(contentOf(TMP + "debugchild.log"), received);
    }
}

TEST_F(ZlSignalsTest, AnAbortWithinAnAbortEndsAtOnce)
{
    const auto run = [] {
        std::atexit(std::abort);
        std::abort();
    };
    expectEnd(run, 1, "An unexpected Error occured.\n", "");
}

TEST_F(ZlSignalsTest, TheEndOfACommandSetsTheAlarmOfADaemonOnly)
{
    for (const bool isDaemon : {false, true}) {
        _executeCMD("sleep 0.1", nullptr); // it ends while this process waits
        EXPECT_EQ(alarm(0) >= 9, isDaemon);
        ZlErrorService::controlFlags |= ZlErrorService::CHILD_IS_DAEMON;
    }
}

TEST_F(ZlSignalsTest, TheAlarmAndAQuestionToADaemonEndTheRunWithAShortLog)
{
    const std::string alarm = "Terminate because alarm signal was received.\n";
    const std::string daemon = "Process (77) runs as deamon. Terminate without response.\n";
    const std::string asked = daemon + "Interrupt signal SIGUSR1 (10) received.\n Terminate from "
                                       "ZlErrorService::signalHandlerChild\n";
    for (const auto& [number, status, words, logged] :
         {std::tuple{SIGALRM, 1, alarm, std::string()}, {SIGUSR1, 0, daemon, asked}}) {
        const auto run = [this, number = number] {
            ZlErrorService::controlFlags = number == SIGUSR1 ? 2 : 0; // a daemon or not
            service.pushNewMsg("message");
            service.pushDebugMsg("detail");
            sigqueue(getpid(), number, {77});
        };
        expectEnd(run, status, words, "");
        expectIn(contentOf(TMP + "test.log"), "\nmessage\n" + logged + "Trace messager end at: ");
    }
}

TEST_F(ZlSignalsTest, WhoAsksGetsAnAnswerAndNoErrorNumberIsLost)
{
    const HeldSignal held(SIGUSR1);
    testing::internal::CaptureStdout();
    siginfo_t question{};
    question.si_signo = SIGUSR1;
    question.si_value.sival_int = 77;
    for (const pid_t asking : {getpid(), INT_MAX}) { // the second one is gone
        question.si_pid = asking;
        errno = EIO;
        ZlErrorService::signalHandlerUSR1(SIGUSR1, &question, nullptr);
        EXPECT_EQ(errno, EIO);
    }
    expectIn(testing::internal::GetCapturedStdout(),
             "SIGUSR1(10), si_signo = 10, si_pid = " + std::to_string(getpid()) + " si_info = 77\n");
    sigset_t answers;
    sigemptyset(&answers);
    sigaddset(&answers, SIGUSR1);
    siginfo_t answer{};
    const timespec limit = {1, 0};
    EXPECT_EQ(sigtimedwait(&answers, &answer, &limit), SIGUSR1);
    EXPECT_EQ(answer.si_value.sival_int, getpid());
}

TEST_F(ZlSignalsTest, HandlersOfBothFormsAndRefusedOnes)
{
    static int seen = 0;
    service.addSignal(SIGUSR2, [](int number) { seen = number; });
    std::raise(SIGUSR2);
    EXPECT_EQ(seen, SIGUSR2);
    expectFailure([this] { service.addSignal(SIGKILL, [](int /*signal*/) {}); },
                  "Define default signal handling failed.");
    expectIn(contentOf(TMP + "test.log"), "\nZlErrorService::addSignal Setting default action failed. T");
    expectFailure([this] { service.addSignal(SIGKILL, ZlErrorService::signalHandler); },
                  "Define signal handler failed.");
    std::string text = "said: ";
    EXPECT_EQ(service.getLastError(nullptr) + service.getLastError(&text), 1);
    EXPECT_EQ(text, "said: getLastError failed. Parameter is NULL.");
}

TEST_F(ZlSignalsTest, ADumpOfTheDebugLogKeepsIt)
{
    siginfo_t info{};
    service.pushDebugMsg("detail");
    ZlErrorService::signalHandler(SIGUSR1, &info, nullptr);
    service.setLogFileName("after");
    service.writeTrace();
    for (const char* log : {"debugtest.log", "debugafter.log"}) {
        expectIn(contentOf(TMP + log), "\ndetail\n\nInterrupt signal SIGUSR1 (10) received.\n\n");
    }
    service.pushDebugMsg("new");
    service.writeTrace(); // which emptied it
    EXPECT_EQ(contentOf(TMP + "debugafter.log").find("detail"), std::string::npos);
}
