#include "services/ownfile.h"

#include <fcntl.h>
#include <unistd.h>

#include "services/kepterrno.h"

namespace {

// All zero when there is nothing.
struct stat statusOf(const std::string& path)
{
    const KeptErrno kept;
    struct stat status {};
    lstat(path.c_str(), &status);
    return status;
}

void narrow(int file)
{
    const KeptErrno kept;
    struct stat status {};
    if (fstat(file, &status) == 0 && S_ISREG(status.st_mode)) {
        fchmod(file, 0600);
    }
}

} // namespace

bool isForeign(const struct stat& status)
{
    return status.st_uid != geteuid() && status.st_uid != 0;
}

int openOwnFile(const std::string& path, int flags)
{
    const struct stat status = statusOf(path);
    const int follow = S_ISLNK(status.st_mode) && !isForeign(status) ? 0 : O_NOFOLLOW;
    const int file = open(path.c_str(), flags | follow | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0600);
    if ((flags & O_CREAT) != 0) {
        narrow(file);
    }
    return file;
}

void removeForeignFile(const std::string& path)
{
    const KeptErrno kept;
    if (isForeign(statusOf(path))) {
        unlink(path.c_str());
    }
}

void narrowFile(const std::string& path)
{
    const KeptErrno kept;
    const int file = openOwnFile(path, O_RDONLY);
    narrow(file);
    if (file != -1) {
        close(file);
    }
}
