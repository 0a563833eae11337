// One resolved node definition as an object; nodedefinitions.cpp does the resolving.
//
// A definition is a comma-separated list of node numbers, names, addresses, node classes and paths of node
// files. The node sets of the process (ZlClusterInfo) are left alone.
#pragma once

#include <set>
#include <string>

class ZlClusterInfo;

class ZlNodesDefinition {
public:
    explicit ZlNodesDefinition(const std::string& text);

    // Admin long names.
    const std::set<std::string>& getResolved() const;

    // Words that are no node, no file and no class.
    const std::set<std::string>& getUnresolved() const;

private:
    ZlClusterInfo* clusterInfoP;
    std::set<std::string> definition;
    std::set<std::string> resolved;
    std::set<std::string> unresolved;
};
