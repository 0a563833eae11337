// The verbs over the settings road: proxy, schedule and capability.
#include "support/installation.h"

// Every verb on both roads of the old-master gate.
struct RoadRow {
    std::string name;    // the command line
    std::string helper;  // what the helper program gets from a member of an old group
    std::string service; // what the monitoring service gets otherwise; empty for a list, which asks nobody
};
using Roads = InstallationWith<RoadRow>;

TEST_P(Roads, TheGateDividesThem)
{
    const auto& [line, helper, service] = GetParam();
    const std::string global = "proxy-location = p\nproxy-port = 1\nproxy-username = u\nproxy-password = x\n";
    const Strings direct = service.empty() ? Strings{} : Strings{"zelfmonc callhome changeConfig " + service};
    const std::pair<std::string, Strings> cases[] = {
        {group("g", "node2", "node1,node2", "4.2.3.6"), {"callhomeutils.pl " + helper}},
        {group("g", "node2", "node1,node2", "4.2.3.7"), direct},
        {group("g", "node2", "node1,node2", "4.2.3.8"), direct},
        {group("g", "node2", "node2,node3", "4.2.3.6"), direct},
        {"", direct},
    };
    size_t seen = 0;
    for (const auto& [groups, further] : cases) {
        configure(topology(groups, global));
        EXPECT_EQ(runTool(line).status, 0) << groups;
        const Strings all = calls();
        EXPECT_EQ(Strings(all.begin() + static_cast<std::ptrdiff_t>(seen), all.end()), startThen(further))
            << groups;
        seen = all.size();
    }
}

const RoadRow ROADS[] = {
    {"capability enable", "capability enable", "enabled true"},
    {"capability disable", "capability disable", "enabled false"},
    {"capability list", "capability list", ""},
    {"capability ls", "capability list", ""},
    {"proxy enable", "proxy enable", "proxy-auth-enabled false proxy-enabled true"},
    {"proxy enable --with-proxy-auth", "proxy enable --with-proxy-auth",
     "proxy-auth-enabled true proxy-enabled true"},
    {"proxy disable", "proxy disable", "proxy-auth-enabled false proxy-enabled false"},
    {"proxy list -Y", "proxy list", ""},
    {"proxy change --proxy-port 99 --proxy-location 'a b'",
     "proxy change --proxy-port 99 --proxy-location 'a b'", "proxy-location 'a b' proxy-port 99"},
    {"schedule list", "schedule list", ""},
    // The weekly task stays the weekly task on both roads.
    {"schedule add --task WEEKLY", "schedule add -F weekly", "weekly enabled"},
    {"schedule delete --task Daily", "schedule delete -F Daily", "Daily disabled"},
    {"schedule del --task DAILY", "schedule delete -F daily", "daily disabled"},
};
INSTANTIATE_TEST_SUITE_P(Verbs, Roads, testing::ValuesIn(ROADS));

TEST_F(Installation, AProxyIsEnabledWhenItIsComplete)
{
    struct Row {
        const char* global;
        const char* options;
        const char* missing; // empty: enabled
    };
    const std::string complete = "proxy-location = p\nproxy-port = 1\n";
    const Row rows[] = {
        {"", "", "proxy-location prior to enabling proxy"},
        {"proxy-port = 1\n", "", "proxy-location prior to enabling proxy"},
        {"proxy-location = unknown\nproxy-port = 1\n", "", "proxy-location prior to enabling proxy"},
        {"proxy-location = p\n", " --with-proxy-auth", "proxy-port prior to enabling proxy"},
        {"proxy-location = p\nproxy-port =\n", "", "proxy-port prior to enabling proxy"},
        {"proxy-location = p\nproxy-port = 1\n", "", ""},
        {"proxy-location = p\nproxy-port = 1\nproxy-password = x\n", " --with-proxy-auth",
         "proxy-username prior to enabling authenticated proxy"},
        {"proxy-location = p\nproxy-port = 1\nproxy-username = u\n", " --with-proxy-auth",
         "proxy-password prior to enabling authenticated proxy"},
        {"proxy-location = p\nproxy-port = 1\nproxy-username = u\nproxy-password = unknown\n",
         " --with-proxy-auth", "proxy-password prior to enabling authenticated proxy"},
        // An empty password is one.
        {"proxy-location = p\nproxy-port = 1\nproxy-username = u\nproxy-password =\n", " --with-proxy-auth",
         ""},
    };
    answer("zelfmonc", "[ $2 = ensureConfigInCCR ] || echo enabled");
    for (const auto& [global, options, missing] : rows) {
        configure(topology("", global));
        const Result expected = *missing == '\0'
                                    ? Result{0, "enabled\n", ""}
                                    : Result{1, "", "Please define " + std::string(missing) + "\n"};
        EXPECT_EQ(runTool("proxy enable" + std::string(options)), expected) << global;
    }
}

TEST_F(Installation, ListsShowTheGlobalRowAheadOfTheGroups)
{
    // "a" sorts ahead of "global".
    const std::string groups =
        "    <callhomeGroup>\n        name = a\n        callhomeNode = node2.zelf.test\n        enabled = "
        "TRUE\n"
        "        proxy-username =\n        daily = enabled\n        weekly = odd\n    </callhomeGroup>\n"
        "    <callhomeGroup>\n        name = z\n        proxy-location = unseen\n    </callhomeGroup>\n";
    configure(topology(groups,
                       "enabled = true\nproxy-username = u:1\nproxy-password = s3cret\nproxy-enabled = "
                       "true\nweekly = disabled\n"));
    EXPECT_EQ(runTool("capability list"), (Result{0,
                                                  "group    callHomeNode      status     \n"
                                                  "-------- ----------------- ---------- \n"
                                                  "global    ---              enabled    \n"
                                                  "a        node2.zelf.test   disabled   \n",
                                                  ""}));
    EXPECT_EQ(
        runTool("proxy list -Y"),
        (Result{0,
                "zelfhome:proxyList:HEADER:version:reserved:reserved:group:proxyAuthEnabled:proxyEnabled:"
                "proxyLocation:proxyPort:proxyUsername:\n"
                "zelfhome:proxyList:0:1:::global::true:::u%3A1:\n"
                "zelfhome:proxyList:0:1:::a::::::\n",
                ""}));
    EXPECT_EQ(runTool("schedule list"), (Result{0,
                                                "=== List of registered schedule tasks ===\n\n"
                                                "group    scheduleType   isEnabled   confFile      \n"
                                                "-------- -------------- ----------- ------------- \n"
                                                "global   weekly         disabled    weekly.conf   \n"
                                                "a        daily          enabled     daily.conf    \n"
                                                "a        weekly         odd         weekly.conf   \n",
                                                ""}));
    EXPECT_EQ(runTool("schedule list -Y").out.find("==="), std::string::npos);
}

TEST_F(Installation, ListsOfNothingAreNoError)
{
    configure(topology(""));
    EXPECT_EQ(runTool("capability list"), (Result{0, "group   callHomeNode   status   \n", ""}));
    EXPECT_EQ(
        runTool("proxy list -Y"),
        (Result{0,
                "zelfhome:proxyList:HEADER:version:reserved:reserved:group:proxyAuthEnabled:proxyEnabled:"
                "proxyLocation:proxyPort:proxyUsername:\n",
                ""}));
    EXPECT_EQ(runTool("schedule list"), (Result{0,
                                                "=== List of registered schedule tasks ===\n\n"
                                                "group   scheduleType   isEnabled   confFile   \n",
                                                ""}));
}

// Subject and verb in one word pass by the grammar, and meet the handler without arguments.
TEST_F(Installation, AVerbWithoutItsArgumentsIsAClearFailure)
{
    for (const char* line :
         {"'schedule add'", "'schedule del'", "'group add'", "'group delete'", "'zelfmon query'"}) {
        EXPECT_EQ(runTool(line), failed("Missing arguments.")) << line;
    }
}
