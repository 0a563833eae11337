// The lab's cluster for a test program: raised ahead of the first test, taken down behind the last.
#pragma once

#include <string>

inline const std::string ZELFLAB = ZELFHOME_SOURCE_DIR "/lab/zelflab";

struct Outcome {
    int status = -1;
    std::string out;
    std::string err;
};

// A shell command on this machine; "zelflab" with arguments; a shell command on a node.
Outcome runShell(const std::string& command);
Outcome lab(const std::string& arguments);
Outcome onNode(const std::string& node, const std::string& command);

// Gives the text as one word of the shell.
std::string quoted(const std::string& text);

// Gives a piece of shell that waits, some fifteen seconds at most, for a command to succeed.
std::string until(const std::string& command);
