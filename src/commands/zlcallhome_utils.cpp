#include "commands/zlcallhome_utils.h"

#include <fstream>
#include <string_view>

#include "cli/zlcli.h"
#include "services/executecmd.h"
#include "services/tempfile.h"
#include "services/zlerrorservice.h"
#include "services/zlutils.h"

namespace {

// What the dispatch tool puts between node and answer.
constexpr std::string_view MARKER = ":  ";

std::vector<std::string> readLines(const std::string& path)
{
    std::ifstream file(path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
        lines.push_back(line);
    }
    return lines;
}

// Takes the nodes off the set that answered `subject` = ... `proof` ... .
std::set<std::string> withoutProof(std::vector<std::string> nodes, const std::string& command,
                                   const std::string& subject, const std::string& proof)
{
    std::set<std::string> unproven(nodes.begin(), nodes.end());
    const NodeProbeResult result = executeOnNodes(std::move(nodes), command);
    for (const auto& [node, lines] : result.output) {
        for (const std::string& line : lines) {
            const std::vector<std::string> fields = split(line, " = ");
            if (fields.size() > 1 && fields[0] == subject && fields[1].find(proof) != std::string::npos) {
                unproven.erase(node);
            }
        }
    }
    return unproven;
}

} // namespace

NodeProbeResult executeOnNodes(std::vector<std::string> nodes, const std::string& command)
{
    ZL_TRACE();
    NodeProbeResult result;
    TempFile nodeFile;
    TempFile rejectFile;
    if (nodeFile.getName().empty() || rejectFile.getName().empty()) {
        // What was made stays behind.
        nodeFile.keep();
        rejectFile.keep();
        ZlErrorService::errorServiceP->pushNewMsg("Could not create temp file in /var/zelf/tmp");
        result.unreached = std::move(nodes);
        return result;
    }
    ZlErrorService::errorServiceP->pushNewMsg("Executing remote command on the following nodes: " +
                                              containerToString(nodes, "|"));
    std::ofstream list(nodeFile.getName(), std::ios::binary);
    list << containerToString(nodes, "\n");
    list.close();
    if (!list) {
        // A list that is cut short may end in the name of another node.
        ZlErrorService::errorServiceP->pushNewMsg("Could not write temp file in /var/zelf/tmp");
        result.unreached = std::move(nodes);
        return result;
    }

    std::vector<std::string> lines;
    result.exitCode = _executeCMD(
        ZlCli::REMOTE_ONALL + nodeFile.getName() + " " + rejectFile.getName() + " " + command, &lines);
    nodeFile.remove();
    result.unreached = readLines(rejectFile.getName());
    rejectFile.remove();

    for (const std::string& line : lines) {
        const size_t mark = line.find(MARKER);
        if (mark != std::string::npos) {
            result.output[line.substr(0, mark)].push_back(line.substr(mark + MARKER.size()));
        }
    }
    return result;
}

std::map<std::string, ZelfVersion> getNodesVersions(std::vector<std::string> nodes)
{
    ZL_TRACE();
    // Fields of an answer, and the place of the version among them.
    constexpr size_t FIELD_COUNT = 6;
    constexpr size_t VERSION_FIELD = 4;
    std::map<std::string, ZelfVersion> versions;
    for (const auto& [node, lines] : executeOnNodes(std::move(nodes), "zelfversion2").output) {
        const std::vector<std::string> fields = split(containerToString(lines, emptyStrg), ":");
        versions.emplace(node, ZelfVersion(fields.size() < FIELD_COUNT ? "0.0.0.0" : fields[VERSION_FIELD]));
    }
    return versions;
}

std::set<std::string> getNodesUnableToReachUplink(std::vector<std::string> nodes)
{
    ZL_TRACE();
    return withoutProof(std::move(nodes), "execchcommand verifybackend", "uplink available", "passed rc=0");
}

std::set<std::string> getNodesWithoutCallhomePackages(std::vector<std::string> nodes)
{
    ZL_TRACE();
    return withoutProof(std::move(nodes), "execchcommand verifyinstallation", "callhome installed", "yes");
}
