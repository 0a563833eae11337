// Files at names that anybody can guess, in a folder that others may write to: /var/zelf/tmp.
#pragma once

#include <string>
#include <sys/stat.h>

// Opens a file as open(2) does, but through no symbolic link that another user has planted, and without a
// wait for the other end of a FIFO. With O_CREAT the file is for no other user from then on, whatever the
// umask says. On failure it gives -1, with errno.
int openOwnFile(const std::string& path, int flags);

// Tells whether this is another user's, other than root's.
bool isForeign(const struct stat& status);

// Deletes what another user has left at this place. Keeps errno.
void removeForeignFile(const std::string& path);

// Takes from all other users what they may do with this file. Keeps errno.
void narrowFile(const std::string& path);
