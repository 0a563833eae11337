#include "commands/chunkfile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/sendfile.h>
#include <unistd.h>

#include "services/zlerrorservice.h"

namespace {

void trace(const std::string& what)
{
    ZlErrorService::errorServiceP->pushNewMsg(what + ": " + std::strerror(errno));
}

// Copies what the source has from `begin` to `end`. False, with errno, when the system refuses a step.
bool copyBytes(int source, off_t begin, off_t end, int target)
{
    // The system copies; the bytes never come to this process (sendfile(2)).
    ssize_t copied = 1;
    while (begin < end && copied > 0) {
        copied = sendfile(target, source, &begin, static_cast<size_t>(end - begin));
    }
    if (copied >= 0 || (errno != EINVAL && errno != ENOSYS)) {
        return copied >= 0;
    }
    // A file system that knows no such copy. What a short write leaves is read again.
    std::array<char, 64 * 1024> piece{};
    for (copied = 1; begin < end && copied > 0; begin += copied) {
        copied = pread(source, piece.data(), std::min<size_t>(piece.size(), end - begin), begin);
        if (copied > 0) {
            copied = write(target, piece.data(), static_cast<size_t>(copied));
        }
    }
    return copied >= 0;
}

} // namespace

void copyChunk(int source, int64_t offset, int64_t length, const std::string& chunkPath)
{
    ZL_TRACE();
    // A new file, whatever lies at its predictable name: this process may be root's.
    unlink(chunkPath.c_str());
    const int chunk = open(chunkPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (chunk == -1) {
        trace("Could not create " + chunkPath);
        return;
    }
    if (!copyBytes(source, offset, offset + length, chunk)) {
        trace("Could not fill " + chunkPath);
    }
    close(chunk);
}
