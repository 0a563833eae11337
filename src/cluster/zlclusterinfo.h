// The tool's picture of the cluster: which nodes exist and under which names, which node this is, which one
// is the cluster manager and which the active collector; and how a node definition of the user resolves.
//
// All data is class-level and there is one instance. The cluster definition file is read when it is made,
// before main(), see boot.cpp; a file that cannot be read ends the process there.
//
// Every question here about a name passes through toNodeIterator(): the first node of that name, in number
// order, is the answer.
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "cluster/nodelevel.h"
#include "cluster/zlnodeset.h"

class ZlErrorService;

class ZlClusterInfo {
public:
    using NodeSet = ZlNodeSet;
    using NameSet = std::set<std::string>;
    using LineSet = std::set<std::string_view>;

    ZlClusterInfo();
    ~ZlClusterInfo();
    ZlClusterInfo(const ZlClusterInfo&) = delete;
    ZlClusterInfo& operator=(const ZlClusterInfo&) = delete;

    static ZlClusterInfo* getInstance();

    // --- nodes and files -------------------------------------------------------------------------------

    static NameSet* getGoodNodes();
    static NameSet* getBadNodesDefinition();

    // Adds a node for each member line; the first line of a number wins. 1: no lines. Throws
    // std::out_of_range for a member line that is too short.
    static int getNodesMap(const LineSet& lines);

    // Reads /var/zelf/gen/zelf.cfg; the first line of a key wins. 0 or 1.
    static int readZelfCfg();

    // Gives its keys and values, read at first use. Ends the process when it cannot be read.
    static const std::map<std::string, std::string>& getZelfCfg();

    // Gives the first node, in number order, that the name names; asks "zelfadm host" for a name that the
    // cluster file does not know. The end of the node set for none.
    static NodeSet::iterator toNodeIterator(const std::string& name);

    // Give what they say for any name of a node; emptyStrg for no node.
    static const std::string& toAdminLongName(const std::string& name);
    static const std::string& toAdminShortName(const std::string& name);

    // Gives this node's admin long name, as the very string of its node record; emptyStrg when unknown.
    static const std::string& getLocalNodeName();

    // --- node definitions (nodedefinitions.cpp) -----------------------------------------------------

    // Adds the words of a comma-separated list to the set. Blanks are part of a word. 1: null pointer.
    static int saveNodeDefinition(const char* text, NameSet* words);

    // Resolves the words of `pending`, which ends empty, into admin long names and words that are nothing.
    // 1: `pending` was empty.
    static int extractNodes(NameSet* pending, NameSet* resolved, NameSet* unresolved);

    // Add the words of a node file, or of a node class' file, to `pending`. 0, or 1 when the word is none.
    static int processNodeFile(const std::string& word, NameSet* pending);
    static int processNodeClass(const std::string& word, NameSet* pending);

    // Gives the shell command that creates, changes or deletes a node class; empty without a class name.
    static std::string getNodeClassCmd(const std::string& name, const std::vector<std::string>& nodes);

    // --- for other commands: no verb gets here, they stand ready ---------------------------------------

    static NodeSet* getClusterNodes();

    static bool hasNodeRole(const std::string& name, const std::string& role);

    // Divide `in` by the node's release level, or by a role; an empty role selects all. Unknown nodes go to
    // `rest`. Give the size of `selected`.
    static int filterNodes(nodeLevel_t level, const NameSet& in, NameSet* selected, NameSet* rest);
    static int filterNodes(const std::string& role, const NameSet& in, NameSet* selected, NameSet* rest);

    // Gives 0 for no node.
    static int toNodeNumber(const std::string& name);

    // Gives the admin long name of the cluster manager; emptyStrg when unknown.
    static const std::string& getManagerNode();

    // Gives the active collector, else the standby collector, else an empty text.
    static std::string getCollectorNode();

    // Gives the product's name of a release level; the level in decimal when it has none.
    static std::string releaseLevelToName(nodeLevel_t level);

    // Make the node, or the nodes, what "all" stands for, and forget valid and invalid nodes.
    static void defineAllNode(const std::string& name);
    static void defineAllNode(const NameSet& nodes);

    // --- data -------------------------------------------------------------------------------------------

    static const std::string NODES_FILE_PATH;
    static const std::string NODES_FILE_PREFIX;
    static const std::string NODES_FILE_USER_PREFIX;
    static const std::string NODES_FILE_IPA;
    static const std::string ZELFCRCLASS;
    static const std::string ZELFCHCLASS;
    static const std::string ZELFDELCLASS;

    static NodeSet* nodesP;
    static NameSet* nodeDefinitionP;
    static NameSet* validNodesP;
    static NameSet* allNodesP;
    static NameSet* invalidNodeDefinitionsP;
    static std::map<nodeLevel_t, std::string>* cluserLevelToNameP;
    static std::map<std::string, std::string>* zelfcfgMapP;
    static ZlErrorService* errorServiceP;
    // Bit 0: toNodeIterator() may ask "zelfadm host".
    static int32_t controlState;
    static ZlClusterInfo* instanceP;
};
