// The nodes that nobody has asked for yet: the member lines of the cluster definition file, as they stand in
// it.
//
// A run asks for one or two nodes of a cluster that may have 10,000. Making all of them costs more than all
// else that a run does, so the start only checks the lines and orders them by number. A node is made when its
// line is asked for. Who asks for many is better served with all nodes and an index, see isWorthAll().
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "cluster/zlclusternode.h"
#include "services/zlfileio.h"

class ZlMemberLines {
public:
    explicit ZlMemberLines(const std::string& path);

    // Reads the file. The smallest line of a number wins. Gives 0 or errno. Throws std::out_of_range for a
    // member line that is too short.
    int read();

    // Gives the first node, in number order, that the name names, out of `nodes`, where it makes it; the end
    // for none. Remembers its answers, so `nodes` must stay the same and lose nothing.
    ZlNodeSet::iterator find(const std::string& name, ZlNodeSet* nodes);

    // True when the searches of find() have cost about what all nodes and an index of their names cost.
    bool isWorthAll() const;

    // Makes the nodes that are missing in `nodes`.
    void makeAll(ZlNodeSet* nodes) const;

    static bool isMember(std::string_view line);

    // Makes the node of a member line, unless there is one of its number. Gives the node of that number.
    static ZlNodeSet::iterator makeNode(std::string_view line, ZlNodeSet* nodes, ZlNodeSet::iterator hint);

private:
    struct Line {
        int32_t number;
        std::string_view text;
    };

    void sortAndUnify();

    ZlFileIO file;           // the views point into it
    std::vector<Line> lines; // by number, without duplicates
    std::unordered_map<std::string, ZlNodeSet::iterator> answers;
    size_t searched = 0; // lines, by find()
};
