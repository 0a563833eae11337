#include "cluster/zlmemberlines.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <optional>
#include <tuple>

#include "services/zlutils.h"

namespace {

constexpr std::string_view MEMBER_MARK = "20_MEMBER_NODE";

ZlClusterNode toNode(std::string_view line)
{
    std::vector<std::string_view> fields;
    cut(&fields, line, ':');
    return ZlClusterNode(fields);
}

} // namespace

bool ZlMemberLines::isMember(std::string_view line)
{
    return line.find(MEMBER_MARK) != std::string_view::npos;
}

ZlMemberLines::ZlMemberLines(const std::string& path) : file(path) {}

int ZlMemberLines::read()
{
    const int result = file.readFile();
    if (result != 0) {
        return result;
    }
    // Real lines are longer, and what is not used of the memory is not there.
    constexpr size_t SHORT_LINE = 64;
    lines.reserve(static_cast<size_t>(file.getSize()) / SHORT_LINE);
    std::optional<std::string_view> tooShort;
    const char* bytes = nullptr;
    int size = 0;
    file.getData(&bytes, &size);
    for (std::string_view rest(bytes, static_cast<size_t>(size)); !rest.empty();) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        if (!isMember(line)) {
            continue;
        }
        if (const auto number = ZlClusterNode::numberIn(line)) {
            lines.push_back({*number, line});
        } else {
            tooShort = std::min(tooShort.value_or(line), line);
        }
    }
    if (tooShort) {
        toNode(*tooShort); // throws
    }
    sortAndUnify();
    return 0;
}

// Does nothing for the lines as the file system writes them.
void ZlMemberLines::sortAndUnify()
{
    const auto isBehind = [](const Line& a, const Line& b) { return a.number >= b.number; };
    if (std::adjacent_find(lines.begin(), lines.end(), isBehind) == lines.end()) {
        return;
    }
    std::sort(lines.begin(), lines.end(), [](const Line& a, const Line& b) {
        return std::tie(a.number, a.text) < std::tie(b.number, b.text);
    });
    const auto isSame = [](const Line& a, const Line& b) { return a.number == b.number; };
    lines.erase(std::unique(lines.begin(), lines.end(), isSame), lines.end());
}

ZlNodeSet::iterator ZlMemberLines::find(const std::string& name, ZlNodeSet* nodes)
{
    const auto [answer, isNew] = answers.try_emplace(name, nodes->end());
    if (!isNew) {
        return answer->second;
    }
    // The name may be a number; then a node of a smaller one that has it for a name still goes before.
    auto end = lines.end();
    if (const std::optional<int32_t> number = ZlClusterNode::asNumber(name)) {
        const auto place =
            std::lower_bound(lines.begin(), lines.end(), *number,
                             [](const Line& line, int32_t value) { return line.number < value; });
        end = place != lines.end() && place->number == *number ? place : end;
    }
    // No name is the first field or the last.
    const std::string field = ":" + name + ":";
    const std::boyer_moore_horspool_searcher searcher(field.begin(), field.end());
    const auto found = std::find_if(lines.begin(), end, [&](const Line& line) {
        const auto& text = line.text;
        return std::search(text.begin(), text.end(), searcher) != text.end() && toNode(text).isNamed(name);
    });
    searched += static_cast<size_t>(found - lines.begin()) + 1;
    if (found != lines.end()) {
        answer->second = makeNode(found->text, nodes, nodes->end());
    }
    return answer->second;
}

bool ZlMemberLines::isWorthAll() const
{
    constexpr size_t SEARCHES_WORTH_ALL = 16;
    return searched > SEARCHES_WORTH_ALL * lines.size();
}

void ZlMemberLines::makeAll(ZlNodeSet* nodes) const
{
    auto next = nodes->begin();
    for (const Line& line : lines) {
        next = std::next(makeNode(line.text, nodes, next));
    }
}

ZlNodeSet::iterator ZlMemberLines::makeNode(std::string_view line, ZlNodeSet* nodes, ZlNodeSet::iterator hint)
{
    static std::vector<std::string_view> fields; // kept for its memory
    cut(&fields, line, ':');
    return nodes->emplace_hint(hint, fields);
}
