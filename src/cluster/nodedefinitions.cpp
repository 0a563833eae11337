// What node definitions mean: the operations of ZlClusterInfo that resolve them. Their result
// as an object is ZlNodesDefinition. Filters, and the command that changes a node class, are here too.
#include "cluster/zlclusterinfo.h"

#include <filesystem>

#include "services/zlerrorservice.h"
#include "services/zlfileio.h"
#include "services/zlutils.h"

const std::string ZlClusterInfo::NODES_FILE_PATH = "/var/zelf/gen/nodeFiles/";
const std::string ZlClusterInfo::NODES_FILE_PREFIX = "zelf";
const std::string ZlClusterInfo::NODES_FILE_USER_PREFIX = "user";
const std::string ZlClusterInfo::NODES_FILE_IPA = ".ipa";
const std::string ZlClusterInfo::ZELFCRCLASS = "/opt/zelf/bin/zelfcrclass";
const std::string ZlClusterInfo::ZELFCHCLASS = "/opt/zelf/bin/zelfchclass";
const std::string ZlClusterInfo::ZELFDELCLASS = "/opt/zelf/bin/zelfdelclass";

int ZlClusterInfo::saveNodeDefinition(const char* text, NameSet* words)
{
    ZL_TRACE();
    if (text == nullptr || words == nullptr) {
        return 1;
    }
    std::vector<std::string> pieces;
    stringListToContainer(text, ",", &pieces);
    words->insert(pieces.begin(), pieces.end());
    return 0;
}

int ZlClusterInfo::extractNodes(NameSet* pending, NameSet* resolved, NameSet* unresolved)
{
    ZL_TRACE();
    if (pending->empty()) {
        return 1;
    }
    while (!pending->empty()) {
        // The order of the tests decides: a node goes before a file of that name, a file before a class.
        const auto word = pending->begin();
        const std::string& node = toAdminLongName(*word);
        if (!node.empty()) {
            resolved->insert(node);
        } else if (processNodeFile(*word, pending) != 0 && processNodeClass(*word, pending) != 0) {
            unresolved->insert(*word);
        }
        pending->erase(word);
    }
    if (resolved == validNodesP) {
        *allNodesP = *resolved;
    }
    errorServiceP->pushDebugMsg("ZlClusterInfo::extractNodes: resolved: " + toString(resolved->size()) +
                                " unresolved: " + toString(unresolved->size()));
    return 0;
}

int ZlClusterInfo::processNodeFile(const std::string& word, NameSet* pending)
{
    ZL_TRACE();
    ZlFileIO file(word);
    // A pipe or a device might never end.
    std::error_code ignored;
    if (pending == nullptr || file.statFile() != 0 || std::filesystem::is_other(word, ignored) ||
        file.readFile() != 0) {
        return 1;
    }
    file.getData(pending);
    return 0;
}

int ZlClusterInfo::processNodeClass(const std::string& word, NameSet* pending)
{
    ZL_TRACE();
    if (pending == nullptr) {
        return 1;
    }
    std::string className = word;
    toLower(className);
    ZlFileIO file;
    for (const std::string& prefix : {NODES_FILE_PREFIX, NODES_FILE_USER_PREFIX}) {
        file.setFileName(NODES_FILE_PATH + prefix + className + NODES_FILE_IPA);
        if (file.statFile() == 0) {
            file.readFile();
            return file.getData(pending) == 0 ? 0 : 1;
        }
    }
    return 1;
}

namespace {

bool isNull(const ZlClusterInfo::NameSet* selected, const ZlClusterInfo::NameSet* rest)
{
    if (selected != nullptr && rest != nullptr) {
        return false;
    }
    ZlClusterInfo::errorServiceP->pushDebugMsg("ZlClusterInfo::filterNodes: a null pointer was specified.");
    return true;
}

} // namespace

int ZlClusterInfo::filterNodes(nodeLevel_t level, const NameSet& in, NameSet* selected, NameSet* rest)
{
    ZL_TRACE();
    if (isNull(selected, rest)) {
        return 0;
    }
    if (in.empty()) {
        errorServiceP->pushDebugMsg("ZlClusterInfo::filterNodes: empty input");
    }
    selected->clear();
    rest->clear();
    for (const std::string& word : in) {
        const auto node = toNodeIterator(word);
        if (node == nodesP->end()) {
            errorServiceP->pushDebugMsg("ZlClusterInfo::filterNodes: invalid " + word);
            rest->insert(word);
        } else {
            (level <= node->getLevel() ? selected : rest)->insert(word);
        }
    }
    // The trace shows the selected nodes in both places: support scripts read the first and skip the second.
    const std::string nodes = toString(*selected, " ");
    errorServiceP->pushDebugMsg("ZlClusterInfo::filterNodes: result for min release " + toString(level) +
                                " = " + nodes + "\n    skipped nodes: " + nodes);
    return static_cast<int>(selected->size());
}

int ZlClusterInfo::filterNodes(const std::string& role, const NameSet& in, NameSet* selected, NameSet* rest)
{
    ZL_TRACE();
    if (isNull(selected, rest)) {
        return 0;
    }
    selected->clear();
    rest->clear();
    if (role.empty()) {
        *selected = in;
        return static_cast<int>(selected->size());
    }
    for (const std::string& word : in) {
        (hasNodeRole(word, role) ? selected : rest)->insert(word);
    }
    errorServiceP->pushDebugMsg("ZlClusterInfo::filterNodes: result for role " + role + " " +
                                toString(*selected, " "));
    return static_cast<int>(selected->size());
}

void ZlClusterInfo::defineAllNode(const std::string& name)
{
    ZL_TRACE();
    // `name` may be an element of one of the sets that are emptied.
    NameSet all = {name};
    validNodesP->clear();
    invalidNodeDefinitionsP->clear();
    allNodesP->swap(all);
}

void ZlClusterInfo::defineAllNode(const NameSet& nodes)
{
    ZL_TRACE();
    if (&nodes == allNodesP) {
        return;
    }
    *allNodesP = nodes;
    validNodesP->clear();
    invalidNodeDefinitionsP->clear();
}

std::string ZlClusterInfo::getNodeClassCmd(const std::string& name, const std::vector<std::string>& nodes)
{
    ZL_TRACE();
    if (name.empty()) {
        errorServiceP->pushNewMsg("ZlCli::getNodeClassCmd: No nodeclass specified.");
        return emptyStrg;
    }
    const std::string list = containerToString(nodes, ",");
    errorServiceP->pushDebugMsg("ZlCli::getNodeClassCmd: <" + name + "> <" + list + ">");
    std::string fileName = name;
    toLower(fileName);
    ZlFileIO file(NODES_FILE_PATH + NODES_FILE_USER_PREFIX + fileName + ".rel");
    std::string command;
    if (file.statFile() != 0) {
        command = ZELFCRCLASS + " " + name + " -N " + list;
    } else if (!list.empty()) {
        command = ZELFCHCLASS + " " + name + " replace -N " + list;
    } else {
        command = ZELFDELCLASS + " " + name;
    }
    return command + " 2>/dev/null";
}
