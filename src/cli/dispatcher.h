// From a line of words to a handler, by tables of names.
#pragma once

#include <cstddef>

// A handler gets the prompt, the writable text behind its name, and whether it runs in the prompt loop. Its
// result is the exit status.
using CmdHandler = int (*)(char* prompt, char* args, bool interactive);

// A table ends with a row whose name is null.
struct cmdTableRow {
    const char* name = nullptr;
    const char* shortName = nullptr;
    CmdHandler handler = nullptr;
    long reserved = 0; // always 0
};

// The program name for this layer.
extern const char* progname;

// Length of a command line of the prompt loop, in bytes, with its final zero.
constexpr size_t CMD_LINE_SIZE = 8196;

// Runs one command line, or, with an empty line and `interactive`, a prompt loop on standard input. The loop
// ends when a handler gives a negative value, and gives 0. No verb of this tool starts it; it stands ready.
int executeCommand(char* prompt, char* cmdLine, const cmdTableRow* table, bool interactive);

// Finds the row of the line's first word, in any case, and gives its handler's result. No word finds the help
// row. An unknown word gives 38, or 0 in the prompt loop.
int processCmd(char* prompt, char* cmdLine, const cmdTableRow* table, bool interactive);

// Replaces the first `from` in `text` by `to`, filled up with blanks to the same length. Of a `from` between
// two double quotes, the closing one moves up to the end of `to`. Gives 1, or 0 when there is none. A longer
// `to` ends the process with 1.
int mapOption(char* text, const char* from, const char* to);
