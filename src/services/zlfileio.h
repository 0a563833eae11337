// A file held in memory: a byte buffer bound to one path.
//
// The whole file is read in one go, taken out as text, lines or a set, and written back whole. Nothing stays
// open between two calls, and nothing is locked. The files of this tool are small; the largest, the cluster
// definition of 10,000 nodes, has less than two megabytes.
//
// Integer results are 0 for success. A failure of the system gives errno.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <vector>

class ZlErrorService;

class ZlFileIO {
public:
    ZlFileIO();
    explicit ZlFileIO(const std::string& name);
    ZlFileIO(const ZlFileIO&) = delete;
    ZlFileIO& operator=(const ZlFileIO&) = delete;

    int setFileName(const std::string& name);
    const std::string& getFileName();

    // Gives the number of bytes in the buffer.
    int getSize();

    // Replaces the buffer by the file's content. A file that cannot be opened or read leaves the buffer
    // alone: check the result before you use it.
    int readFile();

    // Replaces the file by the buffer. The result is errno as it stands behind the write, and errno is not
    // cleared ahead of it: an earlier failure of any call shows here, and callers count on it. 1: no path.
    int writeFile();

    // Fetches the file's status; this is how callers ask whether a file exists.
    int statFile();

    int removeFile();

    // Logs `text` with the meaning of errno, and gives errno.
    int ioError(const std::string& text);

    // Replace the buffer. A set gives one line for each element, in the set's order. 1: null pointer.
    int setData(const std::string& text);
    int setData(const char* bytes, int length);
    int setData(const std::set<std::string>* lines);

    void append(const std::string& text);
    int append(const char* bytes, int length);
    int prepend(const std::string& text);
    int prepend(const char* bytes, int length);

    // Hands out the buffer itself, without a copy. 1: the buffer is empty.
    int getData(const char** bytes, int* length);

    // Replaces *text by the buffer, which may be empty. 1: null pointer.
    int getData(std::string* text);

    // Adds the buffer's lines, without their newline, to the container. 1: null pointer, 2: empty buffer.
    int getData(std::vector<std::string>* lines);
    int getData(std::set<std::string>* lines);
    // Without a copy of each line: what is added points into the buffer.
    int getData(std::set<std::string_view>* lines);

    static ZlErrorService* errorServiceP;

private:
    std::vector<char> buffer;
    struct stat fileStat {};
    std::string fileName;
    struct stat* fileStatP = &fileStat;
};
