// Cutting a file into chunk files, one at a time.
#pragma once

#include <cstdint>
#include <string>

class ChunkSource {
public:
    // Opens the file, or says in the log why it cannot.
    explicit ChunkSource(const std::string& path);
    ~ChunkSource();
    ChunkSource(const ChunkSource&) = delete;
    ChunkSource& operator=(const ChunkSource&) = delete;

    // Copies `length` bytes from `offset` on into a new file at `chunkPath`, with all permission bits that
    // the process allows; or as many bytes as there are. Why a chunk was cut short by an error is in the log.
    void cut(int64_t offset, int64_t length, const std::string& chunkPath);

private:
    int descriptor;
};
