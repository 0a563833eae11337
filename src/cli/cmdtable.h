// The name tables that lead from a subject and a verb to a handler, the dispatcher that walks them, and the
// usage texts.
#pragma once

#include <cstddef>

// A handler gets the prompt, the writable text behind its name, and whether it runs in the prompt loop. Its
// result is the exit status.
using CmdHandler = int (*)(char* prompt, char* args, bool interactive);

// A table ends with a row whose name is null.
struct cmdTableRow {
    const char* name;
    const char* shortName;
    CmdHandler handler;
    long reserved; // always 0
};

extern const cmdTableRow cmdTable[];
extern const cmdTableRow groupCmdTable[];
extern const cmdTableRow capabilityCmdTable[];
extern const cmdTableRow infoCmdTable[];
extern const cmdTableRow proxyCmdTable[];
extern const cmdTableRow scheduleCmdTable[];
extern const cmdTableRow runCmdTable[];
extern const cmdTableRow statusCmdTable[];
extern const cmdTableRow testCmdTable[];
extern const cmdTableRow zelfmonCmdTable[];

// The usage text of the subject at hand, set by its handler. No usage text may hold a percent sign: they are
// printed as formats.
extern const char* helpMsg;

extern const char* const groupHelpMsg;
extern const char* const capabilityHelpMsg;
extern const char* const infoHelpMsg;
extern const char* const proxyHelpMsg;
extern const char* const scheduleHelpMsg;
extern const char* const runHelpMsg;
extern const char* const statusHelpMsg;
extern const char* const testHelpMsg;
extern const char* const zelfmonHelpMsg;

// The program name for this layer.
extern const char* progname;

// Length of a command line of the prompt loop, in bytes, with its final zero.
constexpr size_t CMD_LINE_SIZE = 8196;

// Runs one command line, or, with an empty line and `interactive`, a prompt loop on standard input. The loop
// ends when a handler gives a negative value, and gives 0.
int executeCommand(char* prompt, char* cmdLine, const cmdTableRow* table, bool interactive);

// Finds the row of the line's first word, in any case, and gives its handler's result. No word finds the help
// row. An unknown word gives 38, or 0 in the prompt loop.
int processCmd(char* prompt, char* cmdLine, const cmdTableRow* table, bool interactive);

// Replaces the first `from` in `text` by `to`, filled up with blanks to the same length; a closing double
// quote directly behind moves along. Gives 1, or 0 when there is none. A longer `to` ends the process with 1.
int mapOption(char* text, const char* from, const char* to);

// Print the general usage, and the usage that helpMsg points at, on standard error. Give 1.
int helpCmd(char* prompt, char* args, bool interactive);
int usage(char* prompt, char* args, bool interactive);

// The subject handlers: each sets helpMsg and walks its own table. statusCmd also guards its subject, see
// commands/status.cpp.
int groupCmd(char* prompt, char* args, bool interactive);
int capabilityCmd(char* prompt, char* args, bool interactive);
int infoCmd(char* prompt, char* args, bool interactive);
int proxyCmd(char* prompt, char* args, bool interactive);
int scheduleCmd(char* prompt, char* args, bool interactive);
int runCmd(char* prompt, char* args, bool interactive);
int statusCmd(char* prompt, char* args, bool interactive);
int testCmd(char* prompt, char* args, bool interactive);
int zelfmonCmd(char* prompt, char* args, bool interactive);
