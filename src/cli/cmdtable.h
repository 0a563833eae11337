// The tables of names that lead from a subject and a verb to a handler, and the usage texts.
#pragma once

#include "cli/dispatcher.h"

// The subjects.
extern const cmdTableRow cmdTable[];

// The usage text of the subject at hand, set by its handler. No usage text may hold a percent sign: they are
// printed as formats.
extern const char* helpMsg;

// Print the general usage, and the usage that helpMsg points at, on standard error. Give 1.
int helpCmd(char* prompt, char* args, bool interactive);
int usage(char* prompt, char* args, bool interactive);

// A subject's handler sets helpMsg and walks its own table. This one also guards its subject, and stands in
// commands/status.cpp.
extern const cmdTableRow statusCmdTable[];
extern const char* const statusHelpMsg;
int statusCmd(char* prompt, char* args, bool interactive);
