// One member node of the cluster. Its number is its identity.
//
// The setters, the assignment and the comparisons stand ready: no verb needs them.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "cluster/nodelevel.h"

class ZlErrorService;

class ZlClusterNode {
public:
    ZlClusterNode();

    // Makes the node of a member line in the cluster definition file, cut at each ":". Throws
    // std::out_of_range for fewer than 18 fields. Setting the fields one by one would push a trace line for
    // each.
    explicit ZlClusterNode(const std::vector<std::string_view>& memberFields);

    ZlClusterNode(ZlClusterNode&&) = default;
    ZlClusterNode(const ZlClusterNode&) = default;

    // Takes every field but otherNodeRoles, and gives a copy of the result.
    ZlClusterNode operator=(const ZlClusterNode& source);

    nodeLevel_t getLevel() const;
    void setLevel(nodeLevel_t value);
    void setLevel(const std::string& text);
    int32_t getNumber() const;
    void setNumber(int32_t value);
    void setNumber(const std::string& text);
    const std::string& getRelease() const;
    void setRelease(const std::string& text);
    const std::string& getDaemonShortName() const;
    void setDaemonShortName(const std::string& text);
    const std::string& getDaemonLongName() const;
    void setDaemonLongName(const std::string& text);
    const std::string& getAdminShortName() const;
    void setAdminShortName(const std::string& text);
    const std::string& getAdminLongName() const;
    void setAdminLongName(const std::string& text);
    const std::string& getDaemonIP() const;
    void setDaemonIP(const std::string& text);
    const std::string& getOtherNodeRoles() const;
    void setOtherNodeRoles(const std::string& text);

    bool operator<(const ZlClusterNode& other) const;
    // Under this name, but an equality.
    bool operator<(int otherNumber) const;
    // Under this name, but true for a daemon long name that differs.
    bool operator<(const std::string& longName) const;

    bool equal(const ZlClusterNode& other) const;
    bool equal(int otherNumber) const;
    // True when the text is one of the node's names, its daemon address or its number.
    bool equal(const std::string& name) const;

    // The same without its trace line, for the walk over all nodes.
    bool isNamed(const std::string& name) const;

    // Gives all texts that name this node.
    std::array<std::string, 6> names() const;

    // The order of the node set: by number, without a trace line for each of its many comparisons.
    struct ByNumber {
        bool operator()(const ZlClusterNode& a, const ZlClusterNode& b) const { return a.number < b.number; }
    };

private:
    [[maybe_unused]] ZlErrorService* errorServiceP;
    nodeLevel_t level = ~nodeLevel_t{0};
    std::string release;
    std::string daemonShortName;
    std::string daemonLongName;
    std::string adminShortName;
    std::string adminLongName;
    std::string daemonIP;
    std::string otherNodeRoles; // letters and words as in the file; "X" marks a CES node
    int32_t number = 0;
};
