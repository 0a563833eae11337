// A list of the trace: lines pushed since the last write.
//
// A run traces some hundred lines, and a run on 10,000 nodes some hundred thousand, so a push is an append to
// one text and makes no object of its own. A file send of some hours has no upper limit, as lines must not be
// lost: whenever the text has grown to 256 KiB, it is packed. The trace repeats itself so much that a packed
// text is a tenth of the plain one or less.
#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

class ZlTraceLines {
public:
    void push(std::string_view line)
    {
        text.append(line);
        text.push_back('\n');
        if (text.size() >= PACK_AT) {
            packText();
        }
    }
    void pushIndented(std::string_view line)
    {
        text.push_back('\t');
        push(line);
    }
    bool empty() const { return text.empty() && packed.empty(); }

    // Writes all lines, each with its newline.
    friend std::ostream& operator<<(std::ostream& out, const ZlTraceLines& lines);

private:
    void packText();

    static constexpr size_t PACK_AT = 256 * 1024; // bytes

    std::vector<std::string> packed; // older lines
    std::string text;                // newer lines
};
