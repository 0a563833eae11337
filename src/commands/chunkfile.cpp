#include "commands/chunkfile.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/sendfile.h>
#include <unistd.h>
#include <vector>

#include "services/zlerrorservice.h"

namespace {

void traceError(const std::string& what)
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
    // A file system that knows no such copy.
    std::vector<char> piece(64 * 1024);
    for (;;) {
        const size_t wanted = std::min(piece.size(), static_cast<size_t>(end - begin));
        const ssize_t got = pread(source, piece.data(), wanted, begin);
        if (got <= 0) {
            return got == 0;
        }
        for (ssize_t written = 0; written < got;) {
            copied = write(target, piece.data() + written, static_cast<size_t>(got - written));
            if (copied < 0) {
                return false;
            }
            written += copied;
        }
        begin += got;
    }
}

} // namespace

ChunkSource::ChunkSource(const std::string& path) : descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC))
{
    ZL_TRACE();
    if (descriptor < 0) {
        traceError("Could not open " + path);
    }
}

ChunkSource::~ChunkSource()
{
    ZL_TRACE();
    if (descriptor >= 0) {
        close(descriptor);
    }
}

void ChunkSource::cut(int64_t offset, int64_t length, const std::string& chunkPath)
{
    ZL_TRACE();
    // A new file, whatever lies at its predictable name: this process may be root's.
    unlink(chunkPath.c_str());
    const int chunk = open(chunkPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (chunk < 0) {
        traceError("Could not create " + chunkPath);
        return;
    }
    if (!copyBytes(descriptor, offset, offset + length, chunk)) {
        traceError("Could not fill " + chunkPath);
    }
    close(chunk);
}
