// Commands on other nodes: where a command runs, what it looks like on the way, and what comes back.
#include "fixture.h"

#include <filesystem>
#include <stdexcept>
#include <sys/mount.h>

#include "cluster/zlclusterinfo.h"
#include "services/zlutils.h"

using Info = ZlClusterInfo;

namespace {

const std::string ADDITIONAL = "\n\nAdditional messages:\n";

class ZlCliRemoteTest : public ZelfTest {
protected:
    void SetUp() override
    {
        ZelfTest::SetUp();
        cli = &makeCli();
        cli->subject = "status";
        cli->verb = "list";
    }

    // Decides for a command of this kind, with -N for `nodes` when there are any. Gives whether the command
    // is remote, its arguments and the valid nodes.
    std::string decide(ZlCmd::remoteNodes handling, const std::string& nodes, nodeLevel_t level = 1600)
    {
        cli->setRemoteExecution(!nodes.empty());
        if (!nodes.empty()) {
            cli->resolveNodeDefinition(nodes.c_str());
            cli->remoteOption = "-N";
        }
        ZlCmd cmd(cli, "status", "list", "", nullptr, nullptr, level);
        cmd.setRemoteNodeHandling(handling);
        cmd.processRemoteNodeHandling();
        return std::string(cli->doRemoteExecution() ? "remote" : "local") + " [" + cli->getCmdOptions() +
               "] " + toString(*Info::validNodesP, ",");
    }

    TestCli* cli = nullptr;
};

} // namespace

TEST_F(ZlCliRemoteTest, DecisionWithNodes)
{
    const std::string nodes = "node2.zelf.test,node3.zelf.test";
    cli->cmdOptions = {"x"};
    EXPECT_EQ(decide(ZlCmd::REMOTE_NORMAL, "3,2"), "remote [x] " + nodes);
    EXPECT_EQ(decide(ZlCmd::REMOTE_LOCAL_ONLY, "3,2"), "local [x] " + nodes);
    EXPECT_EQ(decide(ZlCmd::REMOTE_PASSTHROUGH, "3,2", 1900), "local [x -N " + nodes + "] " + nodes);
    decide(ZlCmd::REMOTE_NORMAL, "2", 1500);
    EXPECT_EQ(cli->getMinRemoteNodeLevel(), 1900U); // never lowered
    EXPECT_EQ(decide(ZlCmd::REMOTE_FORBIDDEN, "").substr(0, 5), "local");
    for (const auto& [handling, refusal] :
         {std::pair{ZlCmd::REMOTE_FORBIDDEN,
                    " list: Incorrect option: -N Remote execution by -a, -N is not allowed.\n"},
          {ZlCmd::REMOTE_CLUSTER_MANAGER, ": Incorrect option: -N\n"},
          {ZlCmd::REMOTE_COLLECTOR, ": Incorrect option: -N\n"}}) {
        expectEnd([this, how = handling] { decide(how, "3"); }, 1, "",
                  std::string("zelfhome status") + refusal);
    }
}

TEST_F(ZlCliRemoteTest, ClusterManagerRunsItsCommands)
{
    const auto ask = [this](nodeLevel_t level) { return decide(ZlCmd::REMOTE_CLUSTER_MANAGER, "", level); };
    install("zelfmgr", "echo Cluster manager node: node1 x");
    EXPECT_EQ(ask(1600), "local [] ");
    install("zelfmgr", "echo Cluster manager node: node2 x");
    EXPECT_EQ(ask(1900), "remote [] node2.zelf.test");
    EXPECT_EQ(ask(1901), "remote [] ");
    EXPECT_EQ(*Info::invalidNodeDefinitionsP, Names{"node2.zelf.test"});
    install("zelfmgr", "echo Cluster manager node: node4 x");
    install("zelfprod", "1500)  result=\"4.1.1\"");
    expectEnd([&] { ask(1600); }, 1, "",
              "Cannot access cluster manager node." + ADDITIONAL +
                  "The cluster manager node node4.zelf.test is 4.1.1 Required: 1600\n");
    install("zelfmgr", "exit 1");
    const std::string nobody = "Cannot detect cluster manager node.";
    expectEnd([&] { ask(1600); }, 1, "",
              nobody + ADDITIONAL +
                  "The ZELF daemon process zelfd is not running. Run zelfstart or execute the command from "
                  "an other node where zelfd is running.\n");
    install("zelfctl", "");
    cli = &makeCli();
    expectEnd([&] { ask(1600); }, 1, "", nobody + "\n");
}

TEST_F(ZlCliRemoteTest, ActiveCollectorRunsItsCommands)
{
    const auto ask = [this] { return decide(ZlCmd::REMOTE_COLLECTOR, "", 1900); };
    install("zelfccr", "echo 'node1:active;node2:standby' >$3");
    EXPECT_EQ(ask(), "local [] ");
    install("zelfccr", "echo '4:active' >$3");
    EXPECT_EQ(ask(), "remote [] node4.zelf.test"); // no test of its level
    install("zelfccr", "exit 149");
    expectEnd(ask, 1, "",
              "Could not find any active collector node." + ADDITIONAL +
                  "Include collector nodes to the colCandidates with zelfperf config update --collectors and "
                  "activate at least one of them with systemctl start zelfcollector. Ccr has to run for this "
                  "command.\n");
}

TEST_F(ZlCliRemoteTest, TheEncodedLine)
{
    cli->cmdOptions = {"a b\t", "", "O'Neil\"$", "\xe9\x01"};
    const std::string encoded = "'\"status list a%20b%09  O%27Neil%22%24 \xe9\x01";
    for (const uint64_t bit : {PARSER_DISPLAY_LIST, PARSER_DISPLAY_TABLE, PARSER_MACHINE_READABLE}) {
        cli->unsetParserResultBit(~uint64_t{0});
        cli->setParserResultBit(bit);
        const bool crosses = bit != PARSER_DISPLAY_LIST;
        EXPECT_EQ(cli->getEncodedCmdLine(), encoded + (crosses ? " %2DY\"'" : "\"'"));
        EXPECT_EQ(cli->getShellCmdOptions(), " " + cli->getCmdOptions() + (crosses ? " -Y" : ""));
    }
    std::string all;
    std::string coded;
    for (int byte = 1; byte < 256; ++byte) {
        all += static_cast<char>(byte);
    }
    cli->fullEncode(coded, all);
    EXPECT_EQ(coded.size(), 255U + 2 * (3 + 32)); // tab, newline, blank and 32 punctuation marks
    cli->cmdOptions = {"a", "b c"};
    Words quoted = {"old"};
    cli->quoteOptions(&quoted);
    EXPECT_EQ(quoted, (Words{"'a'", "'b c'"}));
    EXPECT_EQ(cli->getCmdOptions(), "a b c");
    cli->quoteOptions(nullptr);
    EXPECT_EQ(cli->cmdOptions, quoted);
}

TEST_F(ZlCliRemoteTest, TheCommandForOneNode)
{
    EXPECT_EQ(cli->constructCmd("WORD", "node2"), "/opt/zelf/bin/zelfrun on1 node2 execzelfhome_2 WORD ");
    for (const std::string local : {"", "1", "node1", "10.0.0.1"}) {
        EXPECT_EQ(cli->constructCmd("WORD", local), "/opt/zelf/bin/callhomeutils.pl WORD");
    }
    EXPECT_EQ(cli->areNodesEqual("2", "node2") + cli->areNodesEqual("2", "3"), 1);
    expectEnd([this] { cli->areNodesEqual("2", "nobody"); }, 1, "",
              "Failed" + ADDITIONAL + "ZlCli::areNodesEqual a null pointer was provided.\n");
    expectEnd([this] { cli->constructCmd("WORD", "nobody"); }, 1, "",
              "Failed" + ADDITIONAL + "nobody is not a valid node. Terminate!\n");
    setZelfCfg("myNodeConfigNumber 9\n");
    expectEnd([this] { cli->constructCmd("WORD", "node2"); }, 1, "",
              "Failed" + ADDITIONAL + "Cannot detect local node name. Terminate!\n");
    // A dry run stops at the command when both bits are set.
    cli->setParserResultBit(PARSER_DRY_RUN);
    EXPECT_EQ(cli->executeCMD("exit 5", nullptr) + cli->execCmdRc, 10);
    cli->setParserResultBit(PARSER_DRY_RUN_STOP);
    expectEnd([this] { cli->executeCMD("exit 5", nullptr); }, 0, "exit 5\n", "");
}

TEST_F(ZlCliRemoteTest, AllNodesByBothRoads)
{
    install("zelfadm", "printf 'coded<%s>' \"$2\"");
    install("zelfrun", "cat $2 >/var/zelf/tmp/nodes; echo reject >>$3; shift 3\n"
                       "echo \"nodeB:  $*\"; echo 'nodeA:  one'; echo 'nodeB:  two'; exit 3");
    const std::tuple<nodeLevel_t, const char*, std::string, std::string> cases[] = {
        // level, options, what is sent, the nodes
        {1799, "", "run coded<status list a b>", "node1.zelf.test\nnode3.zelf.test\n"},
        {1800, "given", "run \"status list a b\"", "node1.zelf.test\nnode3.zelf.test\n"},
        {1500, "given", "run coded<given>", "node1.zelf.test\nnode3.zelf.test\nnode4.zelf.test\n"}};
    cli->cmdOptions = {"a", "b"};
    for (const auto& [level, options, sent, nodes] : cases) {
        *Info::validNodesP = {"node1.zelf.test", "node3.zelf.test", "node4.zelf.test"};
        cli->setMinRemoteNodeLevel(level);
        std::map<std::string, std::string> results = {{"old", "x"}};
        EXPECT_EQ(printed([&, text = options] { EXPECT_EQ(cli->executeCMDonAll("run", text, &results), 3); }),
                  "");
        EXPECT_EQ(results,
                  (std::map<std::string, std::string>{{"nodeA", "one\n"}, {"nodeB", sent + "\ntwo\n"}}));
        EXPECT_EQ(contentOf(TMP + "nodes"), nodes);
        std::filesystem::remove(TMP + "nodes");
        EXPECT_TRUE(std::filesystem::is_empty(TMP)); // the temporary files are gone
    }
    install("zelfprod", "");
    *Info::validNodesP = {"node4.zelf.test"};
    cli->setMinRemoteNodeLevel(1600);
    EXPECT_EQ(cli->executeCMDonAll("run", "", nullptr), 1);
    EXPECT_EQ(cli->userResponse,
              "There is at least one node with node level below 1600.\nReview zelfchconfig "
              "release=LATEST for how to update release levels.");
    *Info::validNodesP = {"node1"};
    ASSERT_EQ(mount("tmpfs", TMP.c_str(), "tmpfs", MS_RDONLY, ""), 0);
    expectEnd([this] { cli->executeCMDonAll("run", "", nullptr); }, 1, "", "Cannot create temp file\n");
    umount(TMP.c_str());
}

TEST_F(ZlCliRemoteTest, HeadersOfAllNodesFormOne)
{
    install("zelfadm", "");
    install("zelfrun",
            "printf 'b:  p:sV:HEADER:x:\\na p p:sV:HEADER:x:\\nb:  1\\nc:  p:HEADER:o:\\na:  2\\na:  \\n'");
    *Info::validNodesP = {"node1"};
    std::map<std::string, std::string> results;
    cli->executeCMDonAll("run", "", &results);
    EXPECT_EQ(results["b"], "p:sV:HEADER:x:\n1\n");
    cli->setMachineReadableOutput(true);
    cli->executeCMDonAll("run", "", &results);
    const std::map<std::string, std::string> expected = {
        {" 0", "p:HEADER:o:\n"}, {" 1", "p:sV:HEADER:x:\n"}, {"a", "2\n\n"}, {"b", "1\n"}};
    EXPECT_EQ(results, expected);
    EXPECT_EQ(printed([this] { cli->executeCMDonAll("run", "", nullptr); }),
              "p:HEADER:o:\np:sV:HEADER:x:\n2\n1\n");
    // A line too short for a node and its marker has no place.
    install("zelfrun", "printf 'a:  1\\n\\n'");
    EXPECT_THROW(cli->executeCMDonAll("run", "", &results), std::out_of_range);
}

TEST_F(ZlCliRemoteTest, ANodeSpecificationThatCameToNothing)
{
    cli->usageText = "usage";
    const auto check = [this](const char* nodes) {
        parse(*cli, {"s", "v", "-N", nodes});
        cli->checkResolvedNodes("text");
    };
    expectEnd([&] { check("1,nobody"); }, 1, "",
              "At least one non valid node was specified.\n\nusage" + ADDITIONAL +
                  "nobody is not a valid node definition\ntext\n");
    expectEnd([&] { check("/dev/null"); }, 1, "",
              "No valid cluster node(s) specified.\nusage" + ADDITIONAL + "text\n");
    cli->checkResolvedNodes("no nodes, no check");
    check("1");
}
