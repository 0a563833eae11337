// Commands on other nodes: where a command runs, what it looks like on the way, and what comes back.
#include "fixture.h"

#include "commands/zlcallhome_utils.h"

class ZlCliRemoteTest : public ZelfTest {
protected:
    TestCli& cli = makeCli({"status", "list"});
};

TEST_F(ZlCliRemoteTest, WhatNodesMeanForACommand)
{
    const std::tuple<ZlCmd::remoteNodes, bool, const char*> cases[] = {
        // what it does with them, whether it is remote then, its arguments
        {ZlCmd::REMOTE_NORMAL, true, "x"},
        {ZlCmd::REMOTE_LOCAL_ONLY, false, "x"},
        {ZlCmd::REMOTE_PASSTHROUGH, false, "x -N node2.zelf.test,node3.zelf.test"}};
    cli.cmdOptions = {"x"};
    cli.resolveNodeDefinition("3,2");
    for (const auto& [handling, isRemote, arguments] : cases) {
        cli.setRemoteExecution(true);
        ZlCmd cmd(&cli, "status", "list", "", nullptr, nullptr, isRemote ? 1900 : 1500);
        cmd.setRemoteNodeHandling(handling);
        cmd.processRemoteNodeHandling();
        EXPECT_EQ(cli.doRemoteExecution(), isRemote) << arguments;
        EXPECT_EQ(cli.getCmdOptions(), arguments);
        EXPECT_EQ(cli.getMinRemoteNodeLevel(), 1900U); // never lowered
    }
}

TEST_F(ZlCliRemoteTest, CommandsOfManagerAndCollector)
{
    const std::tuple<const char*, std::string, std::string> cases[] = {
        // the program that names the node, how, and the node that takes the command or the refusal
        {"zelfmgr", "echo - - - node2", "node2.zelf.test"},
        {"zelfmgr", "echo - - - node1", ""}, // this node
        {"zelfmgr", "exit 1",
         "^Cannot detect cluster manager node.\n\nAdditional messages:\nThe ZELF daemon"},
        {"zelfmgr", "echo - - - node4",
         "^Cannot access cluster manager node.\n\nAdditional messages:\n"
         "The cluster manager node node4.zelf.test is 1599 Required: 1600\n"},
        {"zelfccr", "echo node3:active >$3", "node3.zelf.test"},
        {"zelfccr", "echo node1:active >$3", ""},
        {"zelfccr", "exit 7", "^Could not find any active collector node.\nUsage\n"}};
    install("zelfprod", "");
    setCluster({member(1, "node1 - node1.zelf.test"), member(2, "node2 - node2.zelf.test", 1600),
                member(3, "node3 - node3.zelf.test"), member(4, "node4 - node4.zelf.test", 1599)});
    for (const auto& [program, script, result] : cases) {
        install(program, script);
        ZlCmd cmd(&cli, "status", "list", "", usage, nullptr, 1600);
        cmd.setRemoteNodeHandling(program == std::string("zelfmgr") ? ZlCmd::REMOTE_CLUSTER_MANAGER
                                                                    : ZlCmd::REMOTE_COLLECTOR);
        cli.setRemoteExecution(false);
        Info::validNodesP->clear();
        if (result.starts_with("^")) {
            EXPECT_EXIT(cmd.processRemoteNodeHandling(), testing::ExitedWithCode(1), result);
            continue;
        }
        cmd.processRemoteNodeHandling();
        EXPECT_EQ(toString(*Info::validNodesP, ","), result);
        EXPECT_EQ(cli.doRemoteExecution(), !result.empty());
        cli.setRemoteExecution(true);
        EXPECT_EXIT(cmd.processRemoteNodeHandling(), testing::ExitedWithCode(1),
                    "^zelfhome status: Incorrect option: \nUsage\n");
    }
}

TEST_F(ZlCliRemoteTest, TheEncodedLine)
{
    cli.cmdOptions = {"a b", ""};
    cli.setParserResultBit(PARSER_DISPLAY_TABLE); // a table goes as -Y
    EXPECT_EQ(cli.getEncodedCmdLine(), "'\"status list a%20b  %2DY\"'");
    Words quoted = {"old"};
    cli.quoteOptions(&quoted);
    EXPECT_EQ(containerToString(quoted, " ") + cli.getCmdOptions(), "'a b' ''a b ");
    cli.quoteOptions(nullptr);
    EXPECT_EQ(cli.getShellCmdOptions(), " 'a b' '' -Y");
}

TEST_F(ZlCliRemoteTest, TheCommandForOneNode)
{
    EXPECT_EQ(cli.constructCmd("WORD", "node2"), "/opt/zelf/bin/zelfrun on1 node2 execzelfhome_2 WORD ");
    EXPECT_EQ(cli.constructCmd("WORD", "1"), "/opt/zelf/bin/callhomeutils.pl WORD");
    EXPECT_EXIT(cli.areNodesEqual("nosuch", "1"), testing::ExitedWithCode(1), "areNodesEqual a null pointer");
    setZelfCfg("myNodeConfigNumber 9\n");
    expectFailure([this] { cli.constructCmd("WORD", "node2"); }, "Failed",
                  "Cannot detect local node name. Terminate!");
    // A dry run stops at the command when both bits are set.
    cli.setParserResultBit(PARSER_DRY_RUN);
    EXPECT_EQ(cli.executeCMD("exit 5", nullptr) + cli.execCmdRc, 10);
    cli.setParserResultBit(PARSER_DRY_RUN_STOP);
    expectEnd([this] { cli.executeCMD("exit 5", nullptr); }, 0, "exit 5\n", "");
}

TEST_F(ZlCliRemoteTest, NodesThatDoNotResolveEndTheRun)
{
    const auto check = [this] { cli.checkResolvedNodes("why"); };
    check(); // no nodes are named
    cli.setParserResultBit(PARSER_ALL_NODES);
    cli.usageText = "Usage";
    expectFailure(check, "No valid cluster node(s) specified.\nUsage", "why");
    *Info::validNodesP = {"n"};
    check();
    *Info::invalidNodeDefinitionsP = {"x"};
    expectFailure(check, "At least one non valid node was specified.\n\nUsage", "why");
}

TEST_F(ZlCliRemoteTest, RecordsOfAllNodesShowEachHeaderOnce)
{
    *Info::validNodesP = {"node1"};
    cli.setMachineReadableOutput(true);
    install("zelfrun", "echo 'n2:  a:HEADER:x'; echo 'n2:  b'; echo 'n2:  '; echo 'n1:  a:HEADER:x'; exit 7");
    EXPECT_EQ(printed([this] { EXPECT_EQ(cli.executeCMDonAll("run", "", nullptr), 7); }), "a:HEADER:x\nb\n");
    *Info::validNodesP = {"node4"};
    cli.setMinRemoteNodeLevel(1900);
    EXPECT_EQ(cli.executeCMDonAll("run", "", nullptr), 1);
    EXPECT_EQ(cli.userResponse.substr(0, 55), "There is at least one node with node level below 1900.\n");
}

TEST_F(ZlCliRemoteTest, AProbeGivesCodeAnswersAndTheUnreached)
{
    install("zelfrun", "cat $2; printf '\nno mark\nn1:  a\nn1:  b:  c\n'; echo n2 >$3; exit 5");
    const NodeProbeResult result = executeOnNodes({"n1:  x", "n2"}, "command");
    EXPECT_EQ(result.exitCode, 5);
    EXPECT_EQ(result.unreached, Words{"n2"});
    EXPECT_EQ(result.output, (std::map<std::string, Words>{{"n1", {"x\n", "a\n", "b:  c\n"}}}));
    std::filesystem::remove(TMP); // no place for the list of nodes
    EXPECT_EQ(executeOnNodes({"n1"}, "command").unreached, Words{"n1"});
    expectFailure([this] { cli.executeCMDonAll("run", "", nullptr); }, "Cannot create temp file");
    std::filesystem::create_directory(TMP);
}

TEST_F(ZlCliRemoteTest, AllNodesByBothRoads)
{
    install("zelfadm", "printf 'coded<%s>' \"$2\"");
    install("zelfrun", "cat $2 >/var/zelf/gen/nodes; echo reject >>$3; shift 3\n"
                       "echo \"nodeB:  $*\"; echo 'nodeA:  one'; echo 'nodeB:  two'; exit 3");
    cli.cmdOptions = {"a", "b"};
    for (const auto& [level, sent] :
         {std::pair{1799U, "run coded<status list a b>"}, {1800U, "run \"status list a b\""}}) {
        *Info::validNodesP = {"node1.zelf.test", "node4.zelf.test"}; // the last one is too old
        cli.setMinRemoteNodeLevel(level);
        std::map<std::string, std::string> results = {{"old", "x"}};
        EXPECT_EQ(cli.executeCMDonAll("run", "", &results), 3);
        EXPECT_EQ(results, (std::map<std::string, std::string>{{"nodeA", "one\n"},
                                                               {"nodeB", std::string(sent) + "\ntwo\n"}}));
        EXPECT_EQ(contentOf("/var/zelf/gen/nodes"), "node1.zelf.test\n");
        EXPECT_TRUE(std::filesystem::is_empty(TMP)); // the temporary files are gone
    }
}
