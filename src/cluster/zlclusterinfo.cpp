#include "cluster/zlclusterinfo.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

#include "services/executecmd.h"
#include "services/zelfnls.h"
#include "services/zlccrservice.h"
#include "services/zlerrorservice.h"
#include "services/zlfileio.h"
#include "services/zlutils.h"

namespace {

const char* const CLUSTER_FILE = "/var/zelf/gen/zelfsdr";
const char* const CONFIG_FILE = "/var/zelf/gen/zelf.cfg";

// Gives the words of a line that a command printed.
std::vector<std::string> wordsOf(std::string line)
{
    if (!line.empty() && line.back() == '\n') {
        line.pop_back();
    }
    return split(line, " ");
}

} // namespace

ZlClusterInfo::ZlClusterInfo()
{
    ZL_TRACE();
    zelfcfgMapP->clear();
    errorServiceP = ZlErrorService::getInstance();
    ZlFileIO file(CLUSTER_FILE);
    if (file.readFile() != 0) {
        errorServiceP->pushNewMsg("Cannot read /var/zelf/gen/zelfsdr. Terminate!");
        errorServiceP->pushNewMsg("terminateProgram");
        errorServiceP->writeTrace();
        std::exit(1);
    }
    LineSet lines;
    file.getData(&lines);
    getNodesMap(lines);
}

ZlClusterInfo::~ZlClusterInfo()
{
    ZL_TRACE();
    const auto free = [](auto*& container) {
        delete container;
        container = nullptr;
    };
    free(nodesP);
    free(nodeDefinitionP);
    free(validNodesP);
    free(allNodesP);
    free(invalidNodeDefinitionsP);
    free(cluserLevelToNameP);
    free(zelfcfgMapP);
    instanceP = nullptr;
}

ZlClusterInfo* ZlClusterInfo::getInstance()
{
    ZL_TRACE();
    return instanceP;
}

ZlClusterInfo::NodeSet* ZlClusterInfo::getClusterNodes()
{
    ZL_TRACE();
    return nodesP;
}

ZlClusterInfo::NameSet* ZlClusterInfo::getGoodNodes()
{
    ZL_TRACE();
    return validNodesP;
}

ZlClusterInfo::NameSet* ZlClusterInfo::getBadNodesDefinition()
{
    ZL_TRACE();
    return invalidNodeDefinitionsP;
}

int ZlClusterInfo::getNodesMap(const LineSet& lines)
{
    ZL_TRACE();
    if (lines.empty()) {
        return 1;
    }
    auto place = nodesP->end();
    std::vector<std::string_view> fields;
    for (const std::string_view line : lines) {
        if (line.find("20_MEMBER_NODE") != std::string::npos) {
            splitViews(&fields, line, ':');
            place = std::next(nodesP->insert(place, ZlClusterNode(fields)));
        }
    }
    return 0;
}

int ZlClusterInfo::readZelfCfg()
{
    ZL_TRACE();
    ZlFileIO file(CONFIG_FILE);
    if (file.statFile() != 0) {
        errorServiceP->pushNewMsg("ZlClusterInfo::readZelfCfg: File " + file.getFileName() +
                                  " does not exist. Terminate!");
        return 1;
    }
    if (file.readFile() != 0) {
        errorServiceP->pushNewMsg("ZlClusterInfo::readZelfCfg: Cannot read " + file.getFileName() +
                                  "Terminate!");
        return 1;
    }
    std::vector<std::string> lines;
    file.getData(&lines);
    // A line without a blank leaves key and value as they are, and so counts as the line before it.
    std::string key;
    std::string value;
    for (const std::string& line : lines) {
        stringToKeyValue(key, value, line, " ");
        zelfcfgMapP->try_emplace(key, value);
    }
    errorServiceP->pushNewMsg("ZlClusterInfo::readZelfCfg: success reading  " + file.getFileName() + ".");
    return 0;
}

const std::map<std::string, std::string>& ZlClusterInfo::getZelfCfg()
{
    ZL_TRACE();
    if (zelfcfgMapP->empty() && readZelfCfg() != 0) {
        printCatMessage(MSG_SEE_TRACE, "Error: See trace file form more information.\n");
        errorServiceP->pushNewMsg("ZlClusterInfo::getZelfCfg: execution of readZelfCfg failed");
        errorServiceP->pushNewMsg("ZlClusterInfo::getZelfCfg: Terminate");
        std::exit(1);
    }
    return *zelfcfgMapP;
}

ZlClusterInfo::NodeSet::iterator ZlClusterInfo::toNodeIterator(const std::string& name)
{
    ZL_TRACE();
    if (name.empty()) {
        return nodesP->end();
    }
    const auto known = nodesP->findNamed(name);
    if (known != nodesP->end() || (controlState & 1) == 0) {
        return known;
    }
    std::vector<std::string> reply;
    if (_executeCMD("/opt/zelf/bin/zelfadm host " + name + " 2>&1", &reply) != 0 || reply.empty()) {
        errorServiceP->pushNewMsg("ZlClusterInfo::getNodesMap: Cannot detect admin IP. zelfadm host failed");
        return nodesP->end();
    }
    const std::vector<std::string> pieces = wordsOf(reply[0]);
    if (pieces.size() < 3) {
        errorServiceP->pushNewMsg(
            "ZlClusterInfo::getNodesMap: Cannot detect admin IP. Bad response from zelfadm host");
        return nodesP->end();
    }
    return std::find_if(nodesP->begin(), nodesP->end(), [&](const ZlClusterNode& node) {
        return node.isNamed(pieces[0]) || node.isNamed(pieces[2]);
    });
}

int ZlClusterInfo::toNodeNumber(const std::string& name)
{
    ZL_TRACE();
    const auto node = toNodeIterator(name);
    if (node == nodesP->end()) {
        errorServiceP->pushNewMsg("ZlClusterInfo::toNodeNumber: illegal node: " + name);
        return 0;
    }
    return node->getNumber();
}

const std::string& ZlClusterInfo::toAdminLongName(const std::string& name)
{
    ZL_TRACE();
    const auto node = toNodeIterator(name);
    if (node == nodesP->end()) {
        errorServiceP->pushNewMsg("ZlClusterInfo::toAdminLongName: illegal node: " + name);
        return emptyStrg;
    }
    return node->getAdminLongName();
}

const std::string& ZlClusterInfo::toAdminShortName(const std::string& name)
{
    ZL_TRACE();
    const auto node = toNodeIterator(name);
    if (node == nodesP->end()) {
        errorServiceP->pushNewMsg("ZlClusterInfo::toAdminShortName: illegal node: " + name);
        return emptyStrg;
    }
    return node->getAdminShortName();
}

bool ZlClusterInfo::hasNodeRole(const std::string& name, const std::string& role)
{
    ZL_TRACE();
    const auto node = toNodeIterator(name);
    return node != nodesP->end() && node->getOtherNodeRoles().find(role) != std::string::npos;
}

const std::string& ZlClusterInfo::getLocalNodeName()
{
    ZL_TRACE();
    const std::string* number = getValue(getZelfCfg(), "myNodeConfigNumber");
    return number == nullptr ? emptyStrg : toAdminLongName(*number);
}

const std::string& ZlClusterInfo::getManagerNode()
{
    ZL_TRACE();
    std::vector<std::string> reply;
    const int code = _executeCMD("/opt/zelf/bin/zelfmgr -c 2>&1", &reply);
    if (code != 0) {
        errorServiceP->pushNewMsg("ZlClusterInfo::getManagerNode: list nodes manager rc = " + toString(code));
        errorServiceP->pushNewMsg("    response: " + containerToString(reply, emptyStrg));
        return emptyStrg;
    }
    if (reply.empty()) {
        errorServiceP->pushNewMsg("ZlClusterInfo::getManagerNode: list nodes manager empty response.");
        return emptyStrg;
    }
    const std::vector<std::string> pieces = wordsOf(reply.back());
    if (pieces.size() <= 3) {
        errorServiceP->pushNewMsg("ZlClusterInfo::getManagerNode zelflsmgr unexpected output format");
        return emptyStrg;
    }
    errorServiceP->pushNewMsg("ZlClusterInfo::getManagerNode node: " + pieces[3]);
    return toAdminLongName(pieces[3]);
}

std::string ZlClusterInfo::getCollectorNode()
{
    ZL_TRACE();
    ZlCcrService collectors("collectors", "/var/zelf/tmp");
    switch (collectors.readCcrFile()) {
    case 0:
        break;
    case 1:
        errorServiceP->pushNewMsg("ZlHealth::getCollectorNode no file named 'collectors' in ccr.");
        return emptyStrg;
    case 2:
        errorServiceP->pushNewMsg(
            "ZlHealth::getCollectorNode unknown error while getting file 'collectors' from ccr.");
        return emptyStrg;
    default:
        errorServiceP->pushNewMsg(
            "ZlHealth::getCollectorNode error while reading file 'collectors' from ccr.");
        return emptyStrg;
    }
    std::vector<std::string> lines;
    collectors.getCcrData(&lines);
    NameSet records;
    stringToSet(&records, containerToString(lines, emptyStrg), ";");

    std::string name;
    std::string state;
    std::string active;
    std::string standby;
    for (const std::string& record : records) {
        if (stringToKeyValue(name, state, record, ":") != 0) {
            continue;
        }
        if (state == "active") {
            active = name;
        } else if (state == "standby") {
            standby = name;
        }
    }
    return active.empty() ? standby : active;
}

std::string ZlClusterInfo::releaseLevelToName(nodeLevel_t level)
{
    ZL_TRACE();
    const std::string number = toString(level);
    const auto known = cluserLevelToNameP->find(level);
    if (known != cluserLevelToNameP->end()) {
        errorServiceP->pushDebugMsg("ZlClusterInfo::releaseLevelToName: release " + number +
                                    " from map: " + known->second);
        return known->second;
    }
    std::vector<std::string> reply;
    _executeCMD("grep '" + number + ")  result=' /opt/zelf/bin/zelfprod", &reply);
    if (reply.empty()) {
        errorServiceP->pushDebugMsg("ZlClusterInfo::releaseLevelToName: release " + number +
                                    " was not resolved.");
        return number;
    }
    // A line without quotes has no name between them; what is left then is all of it.
    const std::string text = containerToString(reply, emptyStrg);
    const size_t begin = text.find('"') + 1;
    const std::string name = text.substr(begin, text.find('"', begin) - begin);
    cluserLevelToNameP->emplace(level, name);
    errorServiceP->pushDebugMsg("ZlClusterInfo::releaseLevelToName: release " + number +
                                " from file: " + name);
    return name;
}
