// The call-home configuration as it lies in the CCR: what is good enough, and what is broken.
#include "support/installation.h"

const std::tuple<const char*, std::string> BROKEN[] = {
    {"key in the topology", "<callhomeTopology>\nkey = value\n</callhomeTopology>\n"},
    {"group left open in the topology", topology("<callhomeGroup>\n")},
    {"topology opened twice", "<callhomeTopology>\n" + topology("")},
    {"crossed", "<callhomeGroup>\n<callhomeTopology>\n</callhomeGroup>\n</callhomeTopology>\n"},
    {"empty line", topology("", "\nemail = a@b\n")},
};

TEST_F(Installation, BrokenConfigurationEndsEveryCommandAndStaysAsItIs)
{
    inEach(BROKEN, [](const char*, const std::string& text) {
        configure(text);
        EXPECT_EQ(runTool("info change --email a@b"), failed("Call home CCR configuration parser is broken"));
        EXPECT_EQ(calls(), startThen({}));
    });
}

// What "info list -Y" shows behind "global:", and the server to which node1 sends "test connection".

const std::string ONE_GROUP = group("g", "node2", "node1", "4.2.3.7");

const std::tuple<const char*, std::string, std::string, const char*> GOOD[] = {
    {"empty", "", "::::", ""},
    {"all", topology("", "country-code=DE\ncustomer-id=12\ncustomer-name=A B\nemail=a@b\n"),
     "A B:12:a@b:DE:", ""},
    {"many blanks", topology("", " \t email \t=\t  a b  \t\ncustomer-id=\n"), "::a b::", ""},
    {"a value ends at the next sign", topology("", "email = a=b\n"), "::a::", ""},
    {"the last line counts", topology("", "email = a@b\nemail = c@d\n"), "::c@d::", ""},
    {"bytes of the colon format", topology("", "customer-name = 50%: yes\r\n"), "50%25%3A yes::::", ""},
    {"settings of a group", topology(ONE_GROUP + "<callhomeGroup>\nemail = a@b\n</callhomeGroup>\n"),
     "::::", "node2"},
    {"group of the name global", topology(group("global", "node2", "node1", "5"), "email = a@b\n"),
     "::a@b::", ""},
    {"marks within lines",
     "x<callhomeTopology>y\nsome "
     "<callhomeGroup>\ncallhomeChildNodes=node1.zelf.test\nmasterReleaseVersion=5\n"
     "callhomeNode=node2.zelf.test\n--- </callhomeGroup> ---\n  </callhomeTopology>\nemail=a@b\n",
     "::a@b::", "node2"},
    {"group without a name", topology(group("", "node2", "node3,node1", "4.2.3.8")), "::::", "node2"},
    {"groups with one node", topology(group("h", "node3", "node1", "4.2.3.7") + ONE_GROUP), "::::", "node3"},
};

TEST_F(Installation, GoodConfigurationIsReadAsItIsMeant)
{
    inEach(GOOD, [](const char*, const std::string& text, const std::string& values, const char* server) {
        configure(text);
        const std::string header =
            "zelfhome:infoList:HEADER:version:reserved:reserved:group:customerName:customerID:"
            "email:countryCode:\n";
        EXPECT_EQ(runTool("info list -Y"),
                  success(header + "zelfhome:infoList:0:1:::global:" + values + "\n"));
        runTool("test connection");
        const Strings commands = logged("ZlCallhome::main remote cmd: /opt/zelf/bin/zelfrun on1 ");
        const std::string command = commands.empty() ? "." : commands[0];
        EXPECT_EQ(command.substr(0, command.find('.')), server);
    });
}
