#include "services/zlfileio.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>
#include <unistd.h>

#include "services/ownfile.h"
#include "services/zlerrorservice.h"
#include "services/zltime.h"
#include "services/zlutils.h"

ZlFileIO::ZlFileIO()
{
    ZL_TRACE();
}

ZlFileIO::ZlFileIO(const std::string& name) : fileName(name)
{
    ZL_TRACE();
}

int ZlFileIO::setFileName(const std::string& name)
{
    ZL_TRACE();
    fileName = name;
    return 0;
}

const std::string& ZlFileIO::getFileName()
{
    ZL_TRACE();
    return fileName;
}

int ZlFileIO::getSize()
{
    ZL_TRACE();
    return static_cast<int>(buffer.size());
}

int ZlFileIO::readFile()
{
    ZL_TRACE();
    ZlTime duration;
    duration.start();
    std::ifstream file(fileName, std::ios::binary);
    std::vector<char> bytes;
    std::error_code unknown;
    const auto size = std::filesystem::file_size(fileName, unknown);
    bytes.reserve(unknown ? 0 : size);
    std::array<char, 64 * 1024> piece{};
    while (file) {
        file.read(piece.data(), piece.size());
        bytes.insert(bytes.end(), piece.data(), piece.data() + file.gcount());
    }
    if (!file.is_open() || file.bad()) { // a folder can be opened, and not read
        return ioError("error while open file for read: <" + fileName + ">");
    }
    buffer.swap(bytes);
    duration.stop();
    errorServiceP->pushDebugMsg("ZlFileIO::readFile: file: " + fileName +
                                " duration: " + duration.getTimeStr());
    return 0;
}

int ZlFileIO::writeFile()
{
    ZL_TRACE();
    ZlTime duration;
    duration.start();
    // The line says "readFile" in a write too: trace readers match it for both.
    const auto trace = [&] {
        duration.stop();
        errorServiceP->pushDebugMsg("ZlFileIO::readFile: file: " + fileName +
                                    " duration: " + duration.getTimeStr());
    };
    if (fileName.empty()) {
        trace();
        errorServiceP->pushNewMsg("ZlFileIO::writeFile: no file name defined.");
        return 1;
    }
    const int file = openOwnFile(fileName, O_WRONLY | O_CREAT | O_TRUNC);
    if (file == -1) {
        trace();
        return ioError("error while open file for write: <" + fileName + ">");
    }
    errorServiceP->pushNewMsg("ZlFileIO::writeFile: try to write: <" + fileName + ">");
    std::string_view rest(buffer.data(), buffer.size());
    for (ssize_t written = 1; !rest.empty() && written > 0;) {
        written = write(file, rest.data(), rest.size());
        rest.remove_prefix(static_cast<size_t>(std::max<ssize_t>(written, 0)));
    }
    close(file);
    trace();
    return ioError("ZlFileIO::writeFile: " + fileName);
}

int ZlFileIO::statFile()
{
    ZL_TRACE();
    if (!fileName.empty() && stat(fileName.c_str(), fileStatP) == 0) {
        return 0;
    }
    return ioError("ZlFileIO::statFile: failed to get stats for file '" + fileName + "'");
}

int ZlFileIO::removeFile()
{
    ZL_TRACE();
    if (unlink(fileName.c_str()) != 0) {
        return ioError("Error while deleting file");
    }
    return 0;
}

int ZlFileIO::ioError(const std::string& text)
{
    ZL_TRACE();
    const int number = errno;
    errorServiceP->pushNewMsg(number != 0 ? text + " failed. Reason: " + std::strerror(number)
                                          : text + " passed.");
    errno = number;
    return number;
}

int ZlFileIO::setData(const std::string& text)
{
    ZL_TRACE();
    return setData(text.data(), static_cast<int>(text.size()));
}

int ZlFileIO::setData(const char* bytes, int length)
{
    ZL_TRACE();
    if (bytes == nullptr) {
        errorServiceP->pushNewMsg("ZlFileIO::setData: const char* is null pointer.");
        return 1;
    }
    buffer.assign(bytes, bytes + length);
    return 0;
}

int ZlFileIO::setData(const std::set<std::string>* lines)
{
    ZL_TRACE();
    if (lines == nullptr) {
        errorServiceP->pushNewMsg("ZlFileIO::setData: Parameter is NULL.");
        return 1;
    }
    buffer.clear();
    for (const std::string& line : *lines) {
        buffer.insert(buffer.end(), line.begin(), line.end());
        buffer.push_back('\n');
    }
    return 0;
}

void ZlFileIO::append(const std::string& text)
{
    ZL_TRACE();
    buffer.insert(buffer.end(), text.begin(), text.end());
}

int ZlFileIO::append(const char* bytes, int length)
{
    ZL_TRACE();
    if (bytes == nullptr) {
        errorServiceP->pushNewMsg("ZlFileIO::append: const char* is null pointer.");
        return 1;
    }
    buffer.insert(buffer.end(), bytes, bytes + length);
    return 0;
}

int ZlFileIO::prepend(const std::string& text)
{
    ZL_TRACE();
    return prepend(text.data(), static_cast<int>(text.size()));
}

int ZlFileIO::prepend(const char* bytes, int length)
{
    ZL_TRACE();
    if (bytes == nullptr) {
        errorServiceP->pushNewMsg("ZlFileIO::prepend: const char* is null pointer.");
        return 1;
    }
    // Trace readers match "append" here.
    errorServiceP->pushNewMsg("ZlFileIO::prepend: try to append " + toString(length) + " bytes");
    buffer.insert(buffer.begin(), bytes, bytes + length);
    errorServiceP->pushNewMsg("ZlFileIO::prepend: done");
    return 0;
}

int ZlFileIO::getData(const char** bytes, int* length)
{
    ZL_TRACE();
    if (buffer.empty()) {
        errorServiceP->pushNewMsg("ZlFileIO::getData: getData failed. No data available.");
        return 1;
    }
    *bytes = buffer.data();
    *length = static_cast<int>(buffer.size());
    return 0;
}

int ZlFileIO::getData(std::string* text)
{
    ZL_TRACE();
    if (text == nullptr) {
        return 1;
    }
    text->assign(buffer.begin(), buffer.end());
    return 0;
}

namespace {

template <typename Container>
int addLines(const std::vector<char>& buffer, Container* lines)
{
    if (lines == nullptr) {
        ZlFileIO::errorServiceP->pushNewMsg("ZlFileIO::getData: Parameter is NULL.");
        return 1;
    }
    if (buffer.empty()) {
        ZlFileIO::errorServiceP->pushNewMsg("ZlFileIO::getData: No data available.");
        return 2;
    }
    std::string_view rest(buffer.data(), buffer.size());
    // Where a set begins to look: in sorted and in numbered files a line mostly follows the one before it.
    auto place = lines->end();
    while (!rest.empty()) {
        const size_t end = std::min(rest.find('\n'), rest.size());
        place = std::next(lines->insert(place, typename Container::value_type(rest.substr(0, end))));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return 0;
}

} // namespace

int ZlFileIO::getData(std::vector<std::string>* lines)
{
    ZL_TRACE();
    return addLines(buffer, lines);
}

int ZlFileIO::getData(std::set<std::string>* lines)
{
    ZL_TRACE();
    return addLines(buffer, lines);
}

int ZlFileIO::getData(std::set<std::string_view>* lines)
{
    ZL_TRACE();
    return addLines(buffer, lines);
}
