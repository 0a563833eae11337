// Texts that pass through the message catalogue. Every one has a built-in English default, and the tool does
// not open a catalogue at its start, so the defaults are what the user reads.
#pragma once

#include <nl_types.h>

// The tool's message set, and the messages in it.
constexpr int ZELFHOME_SET = 66;
enum ZELFHOME_MESSAGES : int {
    MSG_SUBJECT_USAGE = 0,
    MSG_INVALID_COMMAND = 6,
    MSG_USAGE = 71,
    MSG_OPEN_FAILED = 78,
    MSG_READ_FAILED = 79,
    MSG_PROGRAM_ERROR = 80,
    MSG_SEE_TRACE = 92,
    MSG_CCR_NOT_ENABLED = 93,
    MSG_MISSING_COMPONENT = 96,
};

// The open catalogue; null while it is closed.
extern nl_catd CatHandle;

// Takes the locale from the environment, opens the catalogue "zelf.cat" (where catopen(3) looks for it) and
// has standard output and standard error buffered by lines. It stands ready: no verb calls it.
void InitZelfNLS();

// Closes the catalogue.
void CleanupZelfNLS();

// Gives the catalogue's text for a message, or the default `text`. errno comes back as it was. SIGUSR1 waits
// meanwhile.
const char* CatGets(int set, int number, const char* text);

// Writes a message of the tool's set to standard error. The text is a printf format for the values that
// follow.
[[gnu::format(printf, 2, 3)]] void printCatMessage(int number, const char* text, ...);

// Give the texts for a failure of a file or of the program itself. No code prints them: they stand ready.
const char* openFailedText();
const char* readFailedText();
const char* programErrorText();

// Gives nl_langinfo(3), with "yes" and "no" for answers that the locale does not have.
const char* new_nl_langinfo(int item);

// Map the numbers of the two answer items; others stay.
int SystemToZelfNlsVal(int item);
int ZelfToSystemNlsVal(int item);
