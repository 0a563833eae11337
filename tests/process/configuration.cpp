// The call-home configuration as it lies in the CCR: what is good enough, and what is broken.
#include "support/installation.h"

const std::string BROKEN[] = {
    "<callhomeTopology>\nkey = value\n</callhomeTopology>\n",
    topology("<callhomeGroup>\n"),
    "<callhomeTopology>\n" + topology(""),
    "<callhomeGroup>\n<callhomeTopology>\n</callhomeGroup>\n</callhomeTopology>\n",
    topology("", "\nemail = a@b\n"),
};

TEST_F(Installation, BrokenConfigurationEndsEveryCommandAndStaysAsItIs)
{
    for (const std::string& text : BROKEN) {
        configure(text);
        EXPECT_EQ(runTool("info change --email a@b"), failed("Call home CCR configuration parser is broken"));
        EXPECT_EQ(calls(), startThen({})) << text;
    }
}

// What "info list -Y" shows behind "global:", and whether node1 sends "test connection" to node2.
const std::tuple<const char*, std::string, std::string, bool> GOOD[] = {
    {"all", topology("", "country-code=DE\ncustomer-id=12\ncustomer-name=A B\nemail=a@b\n"),
     "A B:12:a@b:DE:", false},
    {"many blanks", topology("", " \t email \t=\t  a b  \t\ncustomer-id=\n"), "::a b::", false},
    {"a value ends at the next sign", topology("", "email = a=b\n"), "::a::", false},
    {"the last line counts", topology("", "email = a@b\nemail = c@d\n"), "::c@d::", false},
    {"bytes of the colon format", topology("", "customer-name = 50%: yes\r\n"), "50%25%3A yes::::", false},
    {"settings of a group", topology("<callhomeGroup>\nemail = a@b\n</callhomeGroup>\n"), "::::", false},
    {"group of the name global", topology(group("global", "node2", "node1", "5"), "email = a@b\n"),
     "::a@b::", false},
    {"marks within lines",
     "x<callhomeTopology>y\nsome "
     "<callhomeGroup>\ncallhomeChildNodes=node1.zelf.test\nmasterReleaseVersion=5\n"
     "callhomeNode=node2.zelf.test\n--- </callhomeGroup> ---\n  </callhomeTopology>\nemail=a@b\n",
     "::a@b::", true},
};

TEST_F(Installation, GoodConfigurationIsReadAsItIsMeant)
{
    inEach(GOOD, [](const char*, const std::string& text, const std::string& values, bool crosses) {
        configure(text);
        EXPECT_EQ(split(runTool("info list -Y").out, '\n').back(),
                  "zelfhome:infoList:0:1:::global:" + values);
        runTool("test connection");
        EXPECT_EQ(calls().back().starts_with("zelfrun on1 node2.zelf.test "), crosses);
    });
}
