#include "services/logfile.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "services/ownfile.h"
#include "services/tempfile.h"

namespace {

// An ordinary file, open; or nothing, and then a write fails.
class OrdinaryFile {
public:
    OrdinaryFile(const std::string& path, int flags) : file(openOwnFile(path, flags))
    {
        if (file != -1 && (fstat(file, &status) != 0 || !S_ISREG(status.st_mode))) {
            close(file);
            file = -1;
        }
    }
    ~OrdinaryFile()
    {
        if (file != -1) {
            close(file);
        }
    }
    OrdinaryFile(const OrdinaryFile&) = delete;
    OrdinaryFile& operator=(const OrdinaryFile&) = delete;

    std::string readAll() const
    {
        std::string text;
        std::array<char, 64 * 1024> piece{};
        for (ssize_t got = 1; got > 0;) {
            got = read(file, piece.data(), piece.size());
            text.append(piece.data(), static_cast<size_t>(std::max<ssize_t>(got, 0)));
        }
        return text;
    }

    // With one call.
    bool writeAll(const std::string& text) const
    {
        return write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    }

    void truncate() const { (void)!ftruncate(file, 0); }

    bool isOpen() const { return file != -1; }
    bool isOthers() const { return isForeign(status); }

private:
    int file;
    struct stat status {};
};

// False when the log stays as it was. One with several names is not to lose them, unless another user has
// made it.
bool renameIntoPlace(const std::string& path, const std::string& text)
{
    struct stat status {};
    lstat(path.c_str(), &status);
    const bool isThere = status.st_nlink > 0;
    if (isThere && (!S_ISREG(status.st_mode) || (status.st_nlink > 1 && !isForeign(status)))) {
        return false;
    }
    TempFile beside;
    if (!OrdinaryFile(beside.getName(), O_WRONLY).writeAll(text) ||
        std::rename(beside.getName().c_str(), path.c_str()) != 0) {
        return false;
    }
    beside.keep();
    return true;
}

void cutLog(const std::string& path, size_t limit)
{
    const OrdinaryFile log(path, O_RDWR | O_APPEND);
    if (!log.isOpen()) {
        return;
    }
    // What was read is measured: another run may cut the log meanwhile.
    std::string text = log.readAll();
    const bool isLong = text.size() > limit;
    if (isLong) {
        text.erase(0, text.size() - limit);
    }
    // Another user's log becomes this user's own: he may read along what he has planted.
    if ((isLong || log.isOthers()) && renameIntoPlace(path, text)) {
        return;
    }
    if (isLong) {
        log.truncate();
        log.writeAll(text);
    }
}

} // namespace

void appendToLog(const std::string& path, const std::string& section, size_t limit)
{
    cutLog(path, limit);
    OrdinaryFile(path, O_WRONLY | O_APPEND | O_CREAT).writeAll(section);
}

void replaceLog(const std::string& path, const std::string& text)
{
    if (!renameIntoPlace(path, text)) {
        const OrdinaryFile log(path, O_WRONLY | O_CREAT);
        log.truncate();
        log.writeAll(text);
    }
}
