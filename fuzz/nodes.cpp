// Any lines as a cluster file: whatever way a name is looked up, the first node in number order that has it
// is found.
#include <algorithm>
#include <fstream>
#include <stdexcept>

#include "cluster/zlclusterinfo.h"
#include "fuzz.h"
#include "services/zlutils.h"

namespace {

std::string describe(ZlClusterInfo::NodeSet::iterator node)
{
    return node == ZlClusterInfo::noNode() ? "none"
                                           : toString(node->getNumber()) + ":" + node->getAdminLongName();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    FuzzedDataProvider input(bytes, size);
    // Few different fields, so that names of one node are often numbers or other names of another.
    std::vector<std::string> lines;
    while (input.remaining_bytes() > 0 && lines.size() < 40) {
        std::string& line = lines.emplace_back("c:20_MEMBER_NODE::");
        for (int field = 3; field < 18; ++field) {
            line += ":" + input.ConsumeRandomLengthString(3);
        }
        std::replace(line.begin(), line.end(), '\n', ' ');
    }
    ZlClusterInfo::getClusterNodes()->clear();
    ZlClusterInfo::getNodesMap({lines.begin(), lines.end()});

    const auto& nodes = *ZlClusterInfo::getClusterNodes();
    std::vector<std::string> names = {"", "0", "1"};
    for (const ZlClusterNode& node : nodes) {
        names.insert(names.end(), {toString(node.getNumber()), node.getDaemonShortName(),
                                   node.getAdminLongName(), node.getDaemonIP()});
    }
    std::vector<std::string> answers;
    for (const std::string& name : names) {
        const auto expected =
            std::find_if(nodes.begin(), nodes.end(), [&](const auto& node) { return node.equal(name); });
        DEMAND(ZlClusterInfo::findNode(name) == expected);
        answers.push_back(describe(expected));
    }
    std::ofstream("/var/zelf/gen/zelfsdr", std::ios::binary) << containerToString(lines, "\n");
    DEMAND(ZlClusterInfo::readNodes() == 0);
    for (size_t i = 0; i < names.size(); ++i) {
        DEMAND(describe(ZlClusterInfo::findNode(names[i])) == answers[i]);
    }
    dropTrace();
    return 0;
}
