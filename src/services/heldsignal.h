// A signal that waits as long as this object lives.
//
// The signal handlers of this tool trace, and so allocate. One that comes in the midst of an allocation finds
// the heap half changed. Where a signal is sure to come, at the end of a command or of a child, it is held
// over the long stretch in which it is likely, until a point at which it can do no harm.
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
    ~HeldSignal() { release(); }
    HeldSignal(const HeldSignal&) = delete;
    HeldSignal& operator=(const HeldSignal&) = delete;

    // Lets the signal come, now if it waits. A forked child calls it first: what it starts would inherit the
    // mask.
    void release()
    {
        if (isHeld) {
            sigprocmask(SIG_SETMASK, &formerMask, nullptr);
            isHeld = false;
        }
    }

    // Leaves the signal held beyond this object.
    void keep() { isHeld = false; }

private:
    sigset_t formerMask{};
    bool isHeld;
};
