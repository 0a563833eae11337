// A temporary file below /var/zelf/tmp: new, empty, for its owner's eyes alone, and gone with its object.
#pragma once

#include <string>

class TempFile {
public:
    // Makes the file with mkstemp(3). On failure the name is empty, and errno tells why.
    TempFile();
    ~TempFile();
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;

    const std::string& getName() const { return name; }

    // Deletes the file now: ahead of an end of the process, which runs no destructor.
    void remove();

    // Leaves the file behind.
    void keep() { name.clear(); }

private:
    std::string name;
};
