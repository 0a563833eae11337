// Node probes: one command on many nodes at once, through "zelfrun onall", and what the answers say.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "cluster/zelfversion.h"

struct NodeProbeResult {
    std::vector<std::string> unreached;                     // lines of the dispatch tool's reject file
    std::map<std::string, std::vector<std::string>> output; // answer lines by node, each with its line end
    int32_t exitCode = 1;                                   // the dispatch command's; 1: no list
};

// Runs a subcommand of the far side on the nodes and sorts the answers. When the list of nodes cannot be
// written, all nodes are unreached.
NodeProbeResult executeOnNodes(std::vector<std::string> nodes, const std::string& command);

// Gives the release of each node that answers; "0.0.0.0" for an answer that is too short.
std::map<std::string, ZelfVersion> getNodesVersions(std::vector<std::string> nodes);

// Give the nodes that did not prove the contrary; one that cannot be reached is among them.
std::set<std::string> getNodesUnableToReachUplink(std::vector<std::string> nodes);
std::set<std::string> getNodesWithoutCallhomePackages(std::vector<std::string> nodes);
