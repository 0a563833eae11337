// A signal that waits as long as this object lives.
#pragma once

#include <csignal>

class HeldSignal {
public:
    explicit HeldSignal(int signal)
    {
        sigset_t held;
        sigemptyset(&held);
        sigaddset(&held, signal);
        isHeld = sigprocmask(SIG_BLOCK, &held, &formerMask) == 0;
    }
    ~HeldSignal()
    {
        if (isHeld) {
            sigprocmask(SIG_SETMASK, &formerMask, nullptr);
        }
    }
    HeldSignal(const HeldSignal&) = delete;
    HeldSignal& operator=(const HeldSignal&) = delete;

private:
    sigset_t formerMask{};
    bool isHeld;
};
