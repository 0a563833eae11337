// What the fuzzers share.
#pragma once

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fuzzer/FuzzedDataProvider.h>

#include "cli/zlcli.h"
#include "services/zlerrorservice.h"

#define DEMAND(condition)                                                                                    \
    do {                                                                                                     \
        if (!(condition)) {                                                                                  \
            std::fprintf(stderr, "%s:%d: not true: %s\n", __FILE__, __LINE__, #condition);                   \
            std::abort();                                                                                    \
        }                                                                                                    \
    } while (false)

// The tool has its own signal handlers by now, and they would take the fuzzer's alarms for theirs.
extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    for (int number = 1; number < NSIG; ++number) {
        std::signal(number, SIG_DFL);
    }
    return 0;
}

// Forgets the trace now and then: it is made for one run, not for a million.
inline void dropTrace()
{
    static unsigned runs = 0;
    if (++runs % 256 == 0) {
        ZlErrorService::errorServiceP->pushDebugMsg("without a message the functions would stay");
        ZlErrorService::errorServiceP->writeTrace();
    }
}

// A command line without a command. It is left to the end of the process: its destructor is the end of a run.
class FuzzCli final : public ZlCli {
public:
    FuzzCli() : ZlCli(0, nullptr, "", "", "") {}
    int checkEnvironment() override { return 0; }
    static FuzzCli& instance()
    {
        static auto* cli = new FuzzCli;
        return *cli;
    }
};
