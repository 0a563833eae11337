#include "services/tempfile.h"

#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

TempFile::TempFile() : name("/var/zelf/tmp/zlTemp.XXXXXXX")
{
    const int file = mkostemp(name.data(), O_CLOEXEC);
    if (file == -1) {
        name.clear();
        return;
    }
    close(file);
}

TempFile::~TempFile()
{
    remove();
}

void TempFile::remove()
{
    if (!name.empty()) {
        unlink(name.c_str());
        name.clear();
    }
}
