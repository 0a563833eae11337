// The log files on disk: what stands in them stays whole, and with their owner.
//
// Many runs end at once, and any may be killed. So a section reaches a log with one write, and what a log is
// replaced by is written beside it and renamed into its place; there is no lock. The commands in a log may
// hold passwords, so it is made for its owner alone, and narrowed to that when it is written. What is no
// ordinary file is left alone, since a FIFO would hang the run; so is another user's symbolic link, which may
// lead where he wants it. All failures are silent.
#pragma once

#include <string>

// Appends a section to the log. One of more than `limit` bytes is cut back to its last `limit` bytes first,
// wherever that falls in a line.
void appendToLog(const std::string& path, const std::string& section, size_t limit);

// Makes `text` all that the log holds.
void replaceLog(const std::string& path, const std::string& text);
