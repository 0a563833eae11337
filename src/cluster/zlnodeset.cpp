#include "cluster/zlnodeset.h"

#include <algorithm>
#include <utility>

ZlNodeSet::iterator ZlNodeSet::insert(iterator hint, ZlClusterNode&& node)
{
    dropIndex();
    return nodes.insert(hint, std::move(node));
}

void ZlNodeSet::erase(iterator node)
{
    dropIndex();
    nodes.erase(node);
}

void ZlNodeSet::clear()
{
    dropIndex();
    nodes.clear();
}

ZlNodeSet::iterator ZlNodeSet::findNamed(const std::string& name)
{
    // Together they cost about what the index does.
    constexpr size_t MAX_WALKS = 16;
    if (walks < MAX_WALKS) {
        ++walks;
        return std::find_if(begin(), end(), [&](const auto& node) { return node.isNamed(name); });
    }
    if (index.empty()) {
        for (auto node = begin(); node != end(); ++node) {
            for (const std::string& text : node->names()) {
                index.try_emplace(text, node); // the first node of a name has it
            }
        }
    }
    const auto found = index.find(name);
    return found == index.end() ? end() : found->second;
}

void ZlNodeSet::dropIndex()
{
    index.clear();
    walks = 0;
}
