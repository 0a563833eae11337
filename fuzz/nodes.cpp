// Any lines as a cluster file: whatever way a name is looked up, the first node in number order that has it
// is found.
#include <algorithm>
#include <stdexcept>

#include "cluster/zlclusterinfo.h"
#include "fuzz.h"
#include "services/zlutils.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    FuzzedDataProvider input(bytes, size);
    // Few different fields, so that names of one node are often numbers or other names of another.
    std::set<std::string> lines;
    while (input.remaining_bytes() > 0 && lines.size() < 40) {
        std::string line = "c:20_MEMBER_NODE::";
        for (int field = 3; field < 18; ++field) {
            line += ":" + input.ConsumeRandomLengthString(3);
        }
        lines.insert(line);
    }
    ZlClusterInfo::nodesP->clear();
    ZlClusterInfo::getNodesMap(lines);

    const auto& nodes = *ZlClusterInfo::getClusterNodes();
    std::vector<std::string> names = {"", "0", "1"};
    for (const ZlClusterNode& node : nodes) {
        names.insert(names.end(), {toString(node.getNumber()), node.getDaemonShortName(),
                                   node.getAdminLongName(), node.getDaemonIP()});
    }
    for (const std::string& name : names) {
        const auto expected =
            std::find_if(nodes.begin(), nodes.end(), [&](const auto& node) { return node.equal(name); });
        DEMAND(ZlClusterInfo::findNode(name) == expected);
    }
    dropTrace();
    return 0;
}
