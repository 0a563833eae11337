// The customer's details: the table of "info list", and the two roads of "info change".
#include "support/installation.h"

TEST_F(Installation, InfoListAlignsTheWidestCellOfEachColumn)
{
    configure(topology(
        group("g", "node1", "node1", "4.2.3.6"),
        "customer-name = Example and Sons Ltd\nemail = a@b\ncustomer-id = 12345678901\nother = x\n"));
    const Result expected = {0,
                             "group    customerName           customerID    email   countryCode   \n"
                             "-------- ---------------------- ------------- ------- ------------- \n"
                             "global   Example and Sons Ltd   12345678901   a@b                   \n",
                             ""};
    EXPECT_EQ(runTool("info list"), expected);
    EXPECT_EQ(runTool("info ls --dryrun -I"), expected);
    EXPECT_EQ(runTool("info ls -Y").out.rfind("zelfhome:infoLs:HEADER:", 0), 0u); // the verb as typed
}

// The options, the shell text behind "changeConfig", and what the client gets of it.
const std::tuple<std::string, std::string, std::string> CHANGES[] = {
    {"--email a@b --customer-name A --country-code DE --customer-id 1",
     "'country-code' 'DE' 'customer-id' '1' 'customer-name' 'A' 'email' 'a@b'",
     "country-code DE customer-id 1 customer-name A email a@b"},
    {"--customer-name \"''\" --customer-id '$(id) `id` \"x\" &'",
     R"('customer-id' '$(id) `id` "x" &' 'customer-name' ''\'''\''')",
     R"(customer-id '$(id) `id` "x" &' customer-name '\'\'')"},
    {"--customer-name ''", "'customer-name' ''", "customer-name ''"},
    {"--CUSTOMER-NAME --EMAIL", "'customer-name' '--email'", "customer-name --email"},
    {"--email a@b --Email c@", "'email' 'c@'", "email c@"},
    {"-I --customer-id -- -Y --dryrun", "'customer-id' '--'", "customer-id --"},
};

TEST_F(Installation, InfoChangeHandsThePairsToTheMonitoringServiceInKeyOrder)
{
    inEach(CHANGES, [](const std::string& options, const std::string& command, const std::string& words) {
        answer("zelfmonc", "[ $2 = ensureConfigInCCR ] || printf 'Changed.\\n\\n'");
        EXPECT_EQ(runTool("info change " + options), (Result{0, "Changed.\n", ""}));
        EXPECT_EQ(logged("ZlCli::executeCMD: cmd = /opt/zelf/bin/zelfmonc callhome changeConfig "),
                  Strings{command});
        EXPECT_EQ(calls(), startThen({"zelfmonc callhome changeConfig " + words}));
    });
}

TEST_F(Installation, InfoChangePassesTheAnswerOfTheMonitoringServiceOn)
{
    const std::pair<const char*, Result> answers[] = {
        {"echo one; echo two", {0, "one\ntwo\n", ""}},
        {"exit 0", {0, "", ""}},
        {"echo", {0, "", ""}},
        {"echo refused; exit 9", {9, "", "refused\n"}},
        {"echo answer; echo trouble >&2; exit 255", {255, "", "trouble\nanswer\n"}},
        {"printf '%9000s' x; exit 3", {3, "", std::string(8999, ' ') + "x\n"}},
    };
    for (const auto& [script, expected] : answers) {
        answer("zelfmonc", "[ $2 = changeConfig ] || exit 0; " + std::string(script));
        EXPECT_EQ(runTool("info change --email a@b"), expected) << script;
    }
    EXPECT_EQ(runTool("info change -Y"), (Result{2, "", "No parameters specified\n"}));
}

// The gate: below 4.2.3.7 and in a group, the helper program does it.
const std::tuple<const char*, std::string, bool> GATES[] = {
    {"no group", "", false},
    {"outside the group", group("g", "node2", "node2,node3", "4.2.3.6"), false},
    {"child, 4.2.3.6", group("g", "node2", "node1,node2", "4.2.3.6"), true},
    {"child, 4.2.3.7", group("g", "node2", "node1,node2", "4.2.3.7"), false},
    {"child, a part ends at its digits", group("g", "node2", "node1", "4.2.3-6.9"), false},
    {"child, numbers and not texts", group("g", "node2", "node1", "4.2.10"), false},
    {"child, no version", group("g", "node2", "node1,node2", ""), true},
    {"child, version unknown", group("g", "node2", "node1,node2", "unknown"), true},
    {"server, 4.2.3.6", group("g", "node1", "node1,node2", "4.2.3.6"), true},
    {"server that is no child: no version", group("g", "node1", "node2", "4.2.3.8"), true},
};

TEST_F(Installation, OldMasterGateChoosesTheRoad)
{
    inEach(GATES, [](const char*, const std::string& groups, bool goesToHelper) {
        configure(topology(groups));
        runTool("info change --email a@b");
        EXPECT_EQ(calls(), startThen({goesToHelper ? "callhomeutils.pl info change --email a@b"
                                                   : "zelfmonc callhome changeConfig email a@b"}));
    });
}

TEST_F(Installation, HelperProgramGetsQuotedArgumentsInTheOrderTyped)
{
    const std::pair<std::string, std::string> cases[] = {
        {"", " info change"},
        {"--email a@b --customer-name 'A $B' -Y", " info change '--email' 'a@b' '--customer-name' 'A $B'"},
        {"--customer-name ''", " info change '--customer-name' ''"},
        // Started with -I, it gets the text behind the verb, which a command line never has.
        {"--email a@b -I", "  "},
    };
    configure(topology(group("g", "node2", "node1,node2", "4.2.3.6")));
    answer("callhomeutils.pl", "echo done; echo trouble >&2; exit 6");
    for (const auto& [options, command] : cases) {
        writeFile(LOG, "");
        EXPECT_EQ(runTool("info change " + options), (Result{6, "done\n", "trouble\n"})) << options;
        EXPECT_EQ(logged("ZlCli::executeCMD: cmd = /opt/zelf/bin/callhomeutils.pl"), Strings{command});
    }
    // Nobody quotes a quote on this road: the shell refuses the line.
    const size_t before = calls().size();
    EXPECT_NE(runTool("info change --customer-name \"O'Neil\"").status, 0);
    EXPECT_EQ(calls().size(), before + startThen({}).size());
}
