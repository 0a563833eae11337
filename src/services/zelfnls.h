// Texts that pass through the message catalogue. Every one has a built-in English default, and the tool does
// not open a catalogue at its start, so the defaults are what the user reads.
#pragma once

// The tool's message set, and the messages in it.
constexpr int ZELFHOME_SET = 66;
enum ZELFHOME_MESSAGES : int {
    MSG_SUBJECT_USAGE = 0,
    MSG_INVALID_COMMAND = 6,
    MSG_USAGE = 71,
    MSG_SEE_TRACE = 92,
    MSG_CCR_NOT_ENABLED = 93,
    MSG_MISSING_COMPONENT = 96,
};

// Gives the catalogue's text for a message, or the default `text`.
const char* CatGets(int set, int number, const char* text);

// Writes a message of the tool's set to standard error. The text is a printf format for the values that
// follow.
void printCatMessage(int number, const char* text, ...);
