#include "lab.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

namespace {

std::string labFolder()
{
    return "/tmp/zelfhome-test-lab." + std::to_string(getpid());
}

// What the lab leaves behind is a fault of its own.
void expectNothingLeft(const std::string& behind)
{
    EXPECT_NE(access(labFolder().c_str(), F_OK), 0) << behind;
    const std::string mark = "zelflab-$(printf %s " + labFolder() + " | cksum | cut -d ' ' -f 1)";
    EXPECT_EQ(runShell("grep -l \"" + mark + "\" /proc/[0-9]*/mountinfo 2>/dev/null").out, "") << behind;
}

class LabEnvironment : public testing::Environment {
public:
    void SetUp() override
    {
        setenv("ZELFLAB_DIR", labFolder().c_str(), 1);
        setenv("ZELFHOME", ZELFHOME_TOOL, 1);
        setenv("ZELFLAB_WAIT", "60", 1); // another lab on this machine, of another clone's tests perhaps
        for (const std::string early :
             {"timeout -s INT 0.3 $LAB up", "timeout -s KILL 0.3 $LAB up; $LAB down",
              "$LAB up & sleep 0.2; $LAB down; wait"}) {
            runShell("LAB=" + ZELFLAB + "; " + early);
            lab("down"); // where the machine is slow, the other came first
            expectNothingLeft(early);
        }
        const Outcome up = lab("up 3");
        ASSERT_EQ(up.status, 0) << up.err;
    }

    void TearDown() override
    {
        const Outcome down = lab("down");
        EXPECT_EQ(down.status, 0) << down.err;
        expectNothingLeft("the tests");
    }
};

[[maybe_unused]] const auto* const environment = testing::AddGlobalTestEnvironment(new LabEnvironment);

} // namespace

Outcome runShell(const std::string& command)
{
    const std::string errFile = "/tmp/zelfhome-test-err." + std::to_string(getpid());
    Outcome outcome;
    FILE* pipe = popen(("(" + command + ") </dev/null 2>" + errFile).c_str(), "r");
    if (pipe == nullptr) {
        return outcome;
    }
    for (int byte = 0; (byte = std::getc(pipe)) != EOF;) {
        outcome.out += static_cast<char>(byte);
    }
    outcome.status = WEXITSTATUS(pclose(pipe));
    std::ostringstream err;
    err << std::ifstream(errFile).rdbuf();
    outcome.err = err.str();
    unlink(errFile.c_str());
    return outcome;
}

Outcome lab(const std::string& arguments)
{
    return runShell(ZELFLAB + " " + arguments);
}

Outcome onNode(const std::string& node, const std::string& command)
{
    return lab("exec " + node + " bash -c " + quoted(command));
}

std::string quoted(const std::string& text)
{
    std::string word = "'";
    for (const char byte : text) {
        word += byte == '\'' ? "'\\''" : std::string(1, byte);
    }
    return word + "'";
}

std::string until(const std::string& command)
{
    return "for i in $(seq 1500); do { " + command + "; } && break; sleep 0.01; done; ";
}
