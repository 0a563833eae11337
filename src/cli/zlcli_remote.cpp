// Commands on other nodes: the encoded command line, and the commands of the dispatch tool. This tool sends
// whole lines to one node; executeCMDonAll(), checkResolvedNodes() and quoteOptions() stand ready for others.
#include "cli/zlcli.h"

#include <iostream>
#include <string_view>

#include "cluster/zlclusterinfo.h"
#include "services/executecmd.h"
#include "services/tempfile.h"
#include "services/zlfileio.h"

namespace {

constexpr std::string_view FULL_ENCODE_SET = "\t\n !\"#$%&'()*+,-./:;<=>?@[\\]^_`{|}~";

// Nodes from this level on take the encoded line as it is; for older ones the shell encodes it at run time.
constexpr nodeLevel_t ENCODED_LINE_LEVEL = 1800;

} // namespace

// --- the encoded command line ----------------------------------------------------------------------------

void ZlCli::fullEncode(std::string& out, const std::string& in) const
{
    ZL_TRACE();
    percentEncode(out, in, FULL_ENCODE_SET);
}

void ZlCli::decode(std::string& out, const std::string& in)
{
    ZL_TRACE();
    percentDecode(out, in);
}

void ZlCli::decode(std::vector<std::string>& out, const std::vector<std::string>& in)
{
    ZL_TRACE();
    out.clear();
    for (const std::string& text : in) {
        percentDecode(out.emplace_back(), text);
    }
}

std::string ZlCli::getEncodedCmdLine()
{
    ZL_TRACE();
    std::vector<std::string> words = {subject, verb};
    words.insert(words.end(), cmdOptions.begin(), cmdOptions.end());
    // -Y never was an argument: this is how it crosses to the other node.
    if (hasAnyParserResultBits(PARSER_MACHINE_READABLE | PARSER_DISPLAY_TABLE)) {
        words.emplace_back("-Y");
    }
    std::vector<std::string> encodedWords(words.size());
    for (size_t i = 0; i < words.size(); ++i) {
        fullEncode(encodedWords[i], words[i]);
    }
    const std::string encoded = quoteForBothSides(containerToString(encodedWords, " "));
    errorServiceP->pushNewMsg("ZlCli::getEncodedCmdLine: raw cmd:" + containerToString(words, " "));
    errorServiceP->pushNewMsg("ZlCli::getEncodedCmdLine: encoded:" + encoded);
    return encoded;
}

const std::string ZlCli::constructCmd(const std::string& encoded, const std::string& node)
{
    ZL_TRACE();
    const std::string& target = node.empty() ? getLocalNodeName() : ZlClusterInfo::toAdminLongName(node);
    if (target.empty()) {
        pushMessage(node + " is not a valid node. Terminate!");
        errorServiceP->pushNewMsg("ZlCli::constructCmd terminats because " + node +
                                  " is not a valid node name");
        terminateProgram(1);
    }
    const std::string& local = getLocalNodeName();
    if (local.empty()) {
        pushMessage("Cannot detect local node name. Terminate!");
        errorServiceP->pushNewMsg("ZlCli::constructCmd terminats because local node name is not resolved.");
        terminateProgram(1);
    }
    const std::string cmd = areNodesEqual(local, target) != 0
                                ? helperCmd + " " + encoded
                                : REMOTE_ONE1 + node + remotePreCmd + encoded + remotePostCmd;
    errorServiceP->pushNewMsg("ZlCli::constructCmd cmd = " + cmd);
    return cmd;
}

void ZlCli::quoteOptions(std::vector<std::string>* out)
{
    ZL_TRACE();
    if (out != nullptr) {
        *out = cmdOptions;
    }
    for (std::string& option : out != nullptr ? *out : cmdOptions) {
        option = "'" + option + "'";
    }
}

std::string ZlCli::getShellCmdOptions() const
{
    ZL_TRACE();
    return shellCmd + " " + getCmdOptions() +
           (hasAnyParserResultBits(PARSER_MACHINE_READABLE | PARSER_DISPLAY_TABLE) ? " -Y" : "");
}

// --- execution -------------------------------------------------------------------------------------------

int ZlCli::executeCMD(const std::string& cmd, std::vector<std::string>* lines)
{
    ZL_TRACE();
    errorServiceP->pushNewMsg("ZlCli::executeCMD: cmd = " + cmd);
    if (getParserResultBit(PARSER_DRY_RUN) != 0 && getParserResultBit(PARSER_DRY_RUN_STOP) != 0) {
        errorServiceP->pushNewMsg("ZlCli::executeCMD: terminate: dry run specified.");
        userResponse = cmd;
        terminateProgram(0);
    }
    execCmdRc = _executeCMD(cmd, lines);
    return execCmdRc;
}

namespace {

// Sorts the lines of "onall", each a node, a colon, two blanks and a text, into one text a node. The headers
// of colon records go ahead of all nodes, each once: their keys begin with a blank.
std::map<std::string, std::string> collectByNode(const std::vector<std::string>& lines, bool machineReadable)
{
    constexpr size_t MARKER_LENGTH = 3;
    std::map<std::string, std::string> results;
    std::set<std::string> headers;
    for (const std::string& line : lines) {
        const size_t end = line.find_first_of(": ");
        // A line without the marker, or too short for it, raises a range error here.
        const std::string payload = line.substr(end == std::string::npos ? end : end + MARKER_LENGTH);
        if (machineReadable && payload.find(":HEADER:") != std::string::npos) {
            headers.insert(payload);
        } else {
            results[line.substr(0, end)] += payload;
        }
    }
    size_t number = 0;
    for (const std::string& header : headers) {
        results[" " + toString(number++)] = header;
    }
    return results;
}

} // namespace

int ZlCli::executeCMDonAll(const std::string& remoteCmd, const std::string& options,
                           std::map<std::string, std::string>* results)
{
    ZL_TRACE();
    const nodeLevel_t level = getMinRemoteNodeLevel();
    std::set<std::string> nodes;
    ZlClusterInfo::filterNodes(level, *ZlClusterInfo::getGoodNodes(), &nodes,
                               ZlClusterInfo::getBadNodesDefinition());
    errorServiceP->pushNewMsg("ZlCli::executeCMDonAll: filter to : " + toString(level));
    errorServiceP->pushNewMsg("ZlCli::executeCMDonAll: counts: " + toString(nodes.size()));
    if (nodes.empty() && !ZlClusterInfo::getBadNodesDefinition()->empty()) {
        userResponse = "There is at least one node with node level below " +
                       ZlClusterInfo::releaseLevelToName(level) +
                       ".\nReview zelfchconfig release=LATEST for how to update release levels.";
        return 1;
    }
    errorServiceP->pushNewMsg("ZlCli::executeCMDonAll: remote nodes: " + toString(nodes, ","));

    TempFile nodeFile;
    TempFile rejectFile; // made here too: a name alone could be taken by somebody else
    if (nodeFile.getName().empty() || rejectFile.getName().empty()) {
        errorServiceP->pushDebugMsg("ZlCli::executeCMDonAll: cannot create temp file");
        errorServiceP->pushNewMsg("Please check access and disk space for /var/zelf/tmp");
        nodeFile.remove();
        rejectFile.remove();
        giveUp("Cannot create temp file");
    }
    ZlFileIO file(nodeFile.getName());
    file.setData(&nodes);
    file.writeFile();

    std::string command = REMOTE_ONALL + nodeFile.getName() + " " + rejectFile.getName() + " " + remoteCmd;
    getClusterMinReleaseLevel();
    if (level < ENCODED_LINE_LEVEL) {
        errorServiceP->pushNewMsg("ZlCli::executeCMDonAll: depricated code used.");
        const std::string text = options.empty() ? subject + " " + verb + " " + getCmdOptions() : options;
        if (!text.empty()) {
            command += " $(/opt/zelf/bin/zelfadm fullEncode '" + text + "' ) 2>&1";
        }
    } else {
        errorServiceP->pushNewMsg("ZlCli::executeCMDonAll: new code used.");
        command += " " + getEncodedCmdLine();
    }
    std::vector<std::string> lines;
    const int code = executeCMD(command, &lines);
    nodeFile.remove();
    rejectFile.remove();

    const bool machineReadable = getMachineReadableOutput();
    std::map<std::string, std::string> texts = collectByNode(lines, machineReadable);
    if (results != nullptr) {
        *results = std::move(texts);
        return code;
    }
    for (auto& [node, text] : texts) {
        if (machineReadable) {
            replaceAllSubstrg(text, "\n\n", "\n");
        }
        std::cout << text;
    }
    return code;
}

// --- nodes -----------------------------------------------------------------------------------------------

void ZlCli::checkResolvedNodes(const std::string& text)
{
    ZL_TRACE();
    if (!doRemoteExecution() && !hasAnyParserResultBits(PARSER_ALL_NODES | PARSER_NODE_LIST)) {
        errorServiceP->pushDebugMsg("ZlCli::checkResolvedNodes: no node definition.");
        return;
    }
    const std::set<std::string>* valid = ZlClusterInfo::getGoodNodes();
    const bool noneValid = valid == nullptr || valid->empty();
    const bool someInvalid = !ZlClusterInfo::getBadNodesDefinition()->empty();
    if (!noneValid && !someInvalid) {
        return;
    }
    if (noneValid) {
        errorServiceP->pushDebugMsg("ZlCli::checkResolvedNodes: No valid node specified.");
        userResponse = "No valid cluster node(s) specified.";
    }
    if (someInvalid) {
        errorServiceP->pushDebugMsg("ZlCli::checkResolvedNodes: at least one none valid node was specified.");
        userResponse = "At least one non valid node was specified.\n";
    }
    showAdditionalMessages = true;
    giveUp(userResponse + "\n" + usageText, text);
}

int ZlCli::processBadNodes(const std::set<std::string>* nodes)
{
    ZL_TRACE();
    if (nodes == nullptr) {
        return 0;
    }
    for (const std::string& node : *nodes) {
        msgs.push_back(node + " is not a valid node definition");
    }
    return static_cast<int>(nodes->size());
}

int ZlCli::areNodesEqual(const std::string& a, const std::string& b)
{
    ZL_TRACE();
    const std::string& nodeA = ZlClusterInfo::toAdminLongName(a);
    const std::string& nodeB = ZlClusterInfo::toAdminLongName(b);
    if (nodeA.empty() || nodeB.empty()) {
        const std::string text = "ZlCli::areNodesEqual a null pointer was provided.";
        errorServiceP->pushNewMsg(text);
        giveUp(userResponse, text);
    }
    return nodeA == nodeB ? 1 : 0;
}

const std::string& ZlCli::getLocalNodeName() const
{
    ZL_TRACE();
    return ZlClusterInfo::getLocalNodeName();
}
