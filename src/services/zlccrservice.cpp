#include "services/zlccrservice.h"

#include <cstdlib>

#include "services/executecmd.h"
#include "services/ownfile.h"
#include "services/zlerrorservice.h"
#include "services/zlfileio.h"
#include "services/zlutils.h"

namespace {

// Exit codes of "zelfccr fget".
constexpr int CCR_NO_SUCH_FILE = 149;
constexpr int CCR_LOCAL_COPY_IS_GOOD = 155;

constexpr const char* SILENTLY = " 1>/dev/null 2>/dev/null";

// Runs a subcommand with its arguments. Without `lines` its output goes to standard output.
int zelfccr(const std::string& command, std::vector<std::string>* lines = nullptr)
{
    return _executeCMD("/opt/zelf/bin/zelfccr " + command, lines);
}

} // namespace

std::optional<std::pair<int, std::string>> parseVersionedEntry(const std::string& reply)
{
    const std::vector<std::string> fields = split(reply, ":");
    if (fields.size() <= 2 || !reply.ends_with('\n')) {
        return std::nullopt;
    }
    // A value with a colon leaves no newline in this field, and the range error of erase() ends the run:
    // better than a lock value cut in two.
    std::string value = fields[2];
    value.erase(value.rfind('\n'));
    return std::pair{static_cast<int>(std::strtol(fields[1].c_str(), nullptr, 10)), value};
}

ZlCcrService::ZlCcrService(const std::string& name, const std::string& directory) : ccrFileName(name)
{
    ZL_TRACE();
    localFile = std::make_unique<ZlFileIO>(directory + "/" + name);
}

ZlCcrService::ZlCcrService(const std::string& name, const std::string& directory,
                           const std::string& localName)
    : ccrFileName(name)
{
    ZL_TRACE();
    localFile = std::make_unique<ZlFileIO>(directory + "/" + localName);
}

ZlCcrService::~ZlCcrService()
{
    ZL_TRACE();
}

int ZlCcrService::readCcrFile()
{
    ZL_TRACE();
    removeForeignFile(localFile->getFileName());
    const int code = zelfccr("fget " + ccrFileName + " " + localFile->getFileName() + SILENTLY);
    if (code == CCR_NO_SUCH_FILE) {
        return 1;
    }
    if (code != 0 && code != CCR_LOCAL_COPY_IS_GOOD) {
        return 2;
    }
    // The configuration holds a password.
    narrowFile(localFile->getFileName());
    return localFile->readFile() == 0 ? 0 : 3;
}

int ZlCcrService::writeCcrFile()
{
    ZL_TRACE();
    removeForeignFile(localFile->getFileName());
    if (localFile->writeFile() != 0) {
        errorServiceP->pushNewMsg("ZlCcrService::writeCcrFile: cannot write ccr file to disk");
        return 1;
    }
    return zelfccr("fput " + ccrFileName + " " + localFile->getFileName() + SILENTLY) == 0 ? 0 : 1;
}

int ZlCcrService::setCcr(const std::string& text)
{
    ZL_TRACE();
    return localFile->setData(text);
}

int ZlCcrService::getCcrData(std::vector<std::string>* lines)
{
    ZL_TRACE();
    return localFile->getData(lines);
}

std::pair<int, std::string> ZlCcrService::getKeyValue(const std::string& key)
{
    ZL_TRACE();
    std::vector<std::string> lines;
    if (zelfccr("vget " + key, &lines) != 0) {
        return {0, "invalid key " + key};
    }
    const std::string reply = containerToString(lines, emptyStrg);
    const auto entry = parseVersionedEntry(reply);
    if (!entry) {
        errorServiceP->pushNewMsg("ZlCcrService::getKeyValue invalid response " + reply);
        return {-1, emptyStrg};
    }
    return *entry;
}

std::pair<int, std::string> ZlCcrService::setKeyValue(const std::pair<std::string, std::string>& pair,
                                                      int version)
{
    ZL_TRACE();
    errorServiceP->pushDebugMsg("ZlCcrService::setKeyValue start ");
    if (version == -1) {
        version = 0;
    } else if (version < 0) {
        return {0, "Invalid version specified: " + toString(version)};
    }
    const auto& [key, value] = pair;
    const int code =
        zelfccr("vput -c " + toString(version) + " -v " + toString(static_cast<long>(version) + 1) + " '" +
                key + "' '" + value + "' 2>&1");
    const std::string tail = "for (" + key + ", " + value + ") rc = " + toString(code);
    if (code == 0) {
        errorServiceP->pushNewMsg("ZlCcrService::setKeyValue success " + tail);
        return {0, "ccr vput success " + tail};
    }
    errorServiceP->pushNewMsg("ZlCcrService::setKeyValue failed wit rc = " + toString(code) + tail);
    return {1, "ccr vput failed " + tail};
}

int ZlCcrService::delKey(const std::string& key, int version)
{
    ZL_TRACE();
    const std::string condition = version == -1 ? emptyStrg : "-c " + toString(version) + " ";
    const int code = zelfccr("vdel " + condition + key);
    if (code == 0) {
        errorServiceP->pushNewMsg("ZlCcrService::delKey for " + key);
        return 1;
    }
    errorServiceP->pushNewMsg("ZlCcrService::delKey: Value with rc = " + toString(code) + "for " + key);
    return 0;
}
