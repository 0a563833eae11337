// The one gate to the shell: every CCR access, remote dispatch and cluster query passes here.
#pragma once

#include <string>
#include <vector>

// Runs `command` with /bin/sh and waits for its end; there is no time-out. The caller builds the complete
// command line, quoting and redirections included.
//
// With `lines`, the vector is replaced by the output, one element a line with its newline (a line of more
// than 8195 bytes comes in several elements). Without, the output is printed on standard output as it
// arrives. The command's standard error is not captured.
//
// Gives the command's exit code: 0 to 255. 1 also means that it could not be started, 255 that its status was
// lost. A command that died of a signal gives 0, see pclose(3) and wait(2): the code is bits 8 to 15.
int _executeCMD(const std::string& command, std::vector<std::string>* lines);
