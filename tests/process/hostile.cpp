// Many runs at once, and a machine that is short of things or full of traps: nothing is lost, nothing hangs.
#include "support/installation.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <linux/close_range.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr size_t LIMIT = 100000; // of the log, in bytes

// Gives the result of a piece of shell that runs the tool as $T. It may take 20 seconds.
Result runShell(const std::string& script)
{
    const std::string all = "T=" ZELFHOME_TOOL " timeout -k 1 20 bash -c '" + script +
                            "' </dev/null >/opt/zelf/out 2>/opt/zelf/err";
    close_range(3, ~0U, CLOSE_RANGE_CLOEXEC); // what CTest has left open
    const int status = std::system(all.c_str());
    return {WEXITSTATUS(status), contentOf("/opt/zelf/out"), contentOf("/opt/zelf/err")};
}

} // namespace

// A long run of this one is "./dev soak logs".
TEST_F(Installation, HostileRunsThatEndTogetherLeaveWholeSections)
{
    const char* const wanted = std::getenv("LOG_ROUNDS");
    const int rounds = wanted == nullptr ? 2 : std::stoi(wanted);
    constexpr size_t RUNS = 40;
    size_t kept = 0;
    size_t shortest = SIZE_MAX;
    for (int round = 0; round < rounds; ++round) {
        writeFile(LOG, std::string(LIMIT + 1, 'x'));
        bool isOver = false;
        std::thread watcher([&] {
            while (!isOver) {
                shortest = std::min<size_t>(shortest, std::filesystem::file_size(LOG));
            }
        });
        shell("for i in $(seq " + std::to_string(RUNS) +
              "); do " ZELFHOME_TOOL " info list >/dev/null & done; wait");
        isOver = true;
        watcher.join();
        kept += sections(LOG);
        const std::string debug = contentOf(DEBUG_LOG);
        EXPECT_EQ(debug.rfind("Debug Trace start at: "), 0U);
        EXPECT_EQ(debug.find('\n', debug.find("\nDebug Trace end at: ") + 1), debug.size() - 1);
    }
    EXPECT_GE(shortest, LIMIT);
    std::cout << rounds << " rounds of " << RUNS << " runs: " << kept << " whole sections, "
              << rounds * RUNS - kept << " lost in a cut, the log never below " << shortest << " bytes\n";
}

TEST_F(Installation, HostileParentsAndLimitsChangeNeitherWordsNorStatus)
{
    const std::tuple<const char*, const char*, Result> rows[] = {
        {"CHLD", "exec env --ignore-signal=CHLD $T info list", LISTED},
        {"all", "exec env --block-signal $T info list", LISTED},
        {"file size", "ulimit -f 1; $T info list >/dev/null; exec $T info list", LISTED},
#ifndef __SANITIZE_ADDRESS__ // whose own checks need a descriptor
        {"descriptors", "ulimit -n 4; exec $T info list", {1, "", "Failed\n"}},
#endif
        {"enough", "ulimit -n 16; exec $T info list", LISTED},
        {"no input", "exec $T info list <&-", LISTED},
        {"no output", "exec $T info list >&-", success("")},
        {"no place for errors", "exec $T info list x 2>&-", {1, "", ""}},
        {"no streams", "exec $T info list <&- >&- 2>&-", success("")},
        {"full output",
         "$T group auto --enable --debug &>/dev/full; grep -c \"config passed\" $TMP/zelfhome.log",
         success("1\n")},
        {"full disk", "mount -t tmpfs -o size=4k z $TMP; echo >$TMP/full.log; $T info list",
         failed("Could not read the call home configuration from the CCR")},
    };
    inEach(rows, [](const char*, const std::string& script, const Result& expected) {
        EXPECT_EQ(runShell("TMP=/var/zelf/tmp; " + script), expected);
        EXPECT_TRUE(script.find("&-") == std::string::npos || sections(LOG) == 1);
    });
}

TEST_F(Installation, HostileFilesAtTheToolsNamesNeitherHangNorLeadElsewhere)
{
    // What stands at a name that anybody can guess, and what is true of it afterwards.
    const std::string notes = "echo notes >../notes; ";
    const std::string isUntouched = "grep -qx notes ../notes";
    const std::string isRoots = "[ \"$(stat -c %a:%u:%F $F)\" = '600:0:regular file' ]";
    const std::tuple<const char*, std::string, std::string> rows[] = {
        {"FIFO", "mkfifo $F", "[ -p $F ]"},
        {"device", "mknod $F c 1 3", "[ -c $F ]"},
        {"another user's link", notes + "ln -s ../notes $F; chown -h 9 $F", isUntouched},
        {"root's link", "seq 9999 >../notes; ln -s ../notes $F",
         "[ -L $F ] && grep -q Trace ../notes && { [ $F = zelfhome.log ] || ! grep -qx 9999 ../notes; }"},
        {"another user's file", "touch $F; chown 9 $F", isRoots},
        {"another user's file of two names", "touch $F; chown 9 $F; ln $F ../notes",
         isRoots + " && [ ! -s ../notes ]"},
        {"root's file of two names", "seq 30000 >$F; ln $F ../notes",
         isRoots + " && cmp $F ../notes && [ $(stat -c %s $F) -lt 110000 ]"},
        {"everybody's file", "touch $F; chmod 666 $F", isRoots},
        {"nothing", "umask 0", isRoots},
    };
    for (const std::string file : {"zelfhome.log", "debugzelfhome.log"}) {
        inEach(rows, [&](const char*, const std::string& make, const std::string& check) {
            const std::string in = "set -e; cd $TMP; chmod 1777 .; F=" + file + "; ";
            shell(in + make);
            EXPECT_EQ(runShell("umask 0; exec $T info list"), LISTED) << file;
            shell(in + check);
        });
    }
    SetUp();
    // The copy of the configuration, and the list of nodes.
    shell("set -e; echo node1 >$GEN/nodeFiles/zelfall.rel; cd $TMP; chmod 1777 .; " + notes +
          "ln -s ../notes _callhomeconfig; ln -s ../notes zelfall.rel; chown -h 9 *");
    runShell("umask 0; exec $T group auto --enable");
    shell("set -e; cd $TMP; [ $(stat -c %a:%u:%h _callhomeconfig) = 600:0:1 ]; rm zelfall.rel; " +
          isUntouched);
    runShell("umask 777; exec $T group auto --enable");
    shell("[ $(stat -c %a:%u:%h $TMP/zelfall.rel) = 600:0:1 ]");
}
