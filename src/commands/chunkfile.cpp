#include "commands/chunkfile.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/sendfile.h>
#include <unistd.h>

#include "services/zlerrorservice.h"

namespace {

void traceError(const std::string& what)
{
    ZlErrorService::errorServiceP->pushNewMsg(what + ": " + std::strerror(errno));
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
    // The system copies; the bytes never come to this process (sendfile(2)).
    off_t from = offset;
    while (from < offset + length) {
        const ssize_t copied =
            sendfile(chunk, descriptor, &from, static_cast<size_t>(offset + length - from));
        if (copied < 0) {
            traceError("Could not fill " + chunkPath);
        }
        if (copied <= 0) {
            break;
        }
    }
    close(chunk);
}
