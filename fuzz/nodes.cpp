// Any lines as a cluster file: however often a name is looked up, the first node in number order that has it
// is found.
#include <algorithm>

#include "cluster/zlclusterinfo.h"
#include "fuzz.h"
#include "services/zlutils.h"

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
    // The walk answers at first, then the index.
    for (int round = 0; round < 64; ++round) {
        for (const std::string& name : names) {
            const auto expected = std::find_if(nodes.begin(), nodes.end(),
                                               [&](const auto& node) { return node.isNamed(name); });
            DEMAND(ZlClusterInfo::nodesP->findNamed(name) == expected);
        }
    }
    dropTrace();
    return 0;
}
