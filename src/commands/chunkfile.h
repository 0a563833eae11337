// Cutting a file into chunk files, one at a time.
#pragma once

#include <cstdint>
#include <string>

// Copies `length` bytes of an open file, from `offset` on, into a new file at `chunkPath`, which has all
// permission bits that the process allows; or as many bytes as there are. Why an error cut a chunk short is
// in the log.
void copyChunk(int source, int64_t offset, int64_t length, const std::string& chunkPath);
