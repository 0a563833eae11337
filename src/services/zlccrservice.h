// Access to the cluster configuration repository (CCR) through /opt/zelf/bin/zelfccr.
//
// An object stands for one named file of the CCR with a local copy, which stays behind after use. The
// class-level operations handle single keys with versions: a write names the version that the entry must have
// now, and is lost when somebody else was faster. Nothing is escaped: keep single quotes and colons out of
// keys and values.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

class ZlErrorService;
class ZlFileIO;

// Gives version and value of an entry, out of "x:version:value" and a newline; nothing for another reply.
// Throws std::out_of_range when the value has a colon.
std::optional<std::pair<int, std::string>> parseVersionedEntry(const std::string& reply);

class ZlCcrService {
public:
    // The local copy is `directory`/`name`, or `directory`/`localName`.
    ZlCcrService(const std::string& name, const std::string& directory);
    ZlCcrService(const std::string& name, const std::string& directory, const std::string& localName);
    ~ZlCcrService();
    ZlCcrService(const ZlCcrService&) = delete;
    ZlCcrService& operator=(const ZlCcrService&) = delete;

    // Fetches the file and reads the local copy into the buffer.
    // 0: read, 1: the CCR has no such file, 2: zelfccr failed, 3: the local copy cannot be read.
    int readCcrFile();

    // Writes the buffer to the local copy and stores it in the CCR; the last writer wins. 0 or 1.
    int writeCcrFile();

    // Replaces the buffer; nothing is written yet. 0 for success.
    int setCcr(const std::string& text);

    // Adds the buffer's lines to the vector; result as ZlFileIO::getData.
    int getCcrData(std::vector<std::string>* lines);

    // --- keys: no verb uses them, they stand ready with the locks of tasks ------------------------------

    // Gives version and value of a key. Version 0 with a text: zelfccr failed; -1: its reply was malformed.
    static std::pair<int, std::string> getKeyValue(const std::string& key);

    // Stores a key that has `version` now (-1: that is new), as version + 1. Gives 0 or 1, and a text.
    // A smaller version stores nothing and gives 0 all the same.
    static std::pair<int, std::string> setKeyValue(const std::pair<std::string, std::string>& pair,
                                                   int version);

    // Deletes a key, if it has `version` now; -1 deletes any. 1 for success, 0 for failure.
    static int delKey(const std::string& key, int version);

    static ZlErrorService* errorServiceP;

private:
    std::string ccrFileName;
    std::unique_ptr<ZlFileIO> localFile;
};
