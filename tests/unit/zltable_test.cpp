// Tables for people and for scripts, byte for byte, and the merging of colon records.
#include "fixture.h"

#include <memory>
#include <stdexcept>

#include "services/zlcomparatorfactory.h"
#include "services/zlerrorservice.h"
#include "services/zltable.h"
#include "services/zlutils.h"

TEST(PlainTables, AlignedText)
{
    const std::tuple<PlainTable, char, std::string> cases[] = {
        {{}, '-', ""},
        {{{"ab"}}, '-', "ab   \n"},
        {{{"ab"}, {"abcd"}}, '-', "ab     \n------ \nabcd   \n"},
        {{{"ab"}, {"abcd"}}, '\0', "ab     \nabcd   \n"},
        {{{"a", "b"}, {"long"}, {"", "y", "z"}},
         '=',
         "a      b   \n====== === === \nlong   \n       y   z   \n"}};
    for (const auto& [table, separator, text] : cases) {
        EXPECT_EQ(printed([&, &rows = table, rule = separator] { formatedOutput(rows, rule); }), text);
    }
}

TEST(PlainTables, ColonRecords)
{
    const PlainTable table = {{"na:me", "b"}, {"50%", "two\nlines\n"}, {""}};
    EXPECT_EQ(printed([&] { machineReadableOutput("zelfhome", "group", "list", table); }),
              "zelfhome:groupList:HEADER:version:reserved:reserved:na%3Ame:b:\n"
              "zelfhome:groupList:0:1:::50%25:twolines:\n"
              "zelfhome:groupList:0:1::::\n");
    EXPECT_EQ(printed([&] {
                  extendedMachineReadableOutput("p", "s", "", {{"n"}, {"two\nlines"}}, true);
              }),
              "p:s:HEADER:version:reserved:reserved:n:\np:s:0:1:::two%0Alines:\n");
}

namespace {

const std::string HEADER = "p:sV:HEADER:version:reserved:reserved:name:size:\n";

class ZlTableTest : public ZelfTest {
protected:
    void SetUp() override
    {
        ZelfTest::SetUp();
        cli = &makeCli();
        table = std::make_unique<ZlTable>(cli, '\0', true);
        table->setDisplayAsTable(true);
    }

    // Give the rows and the list, each cell behind the first with a comma.
    std::string rows() { return shown(0); }
    std::string list() { return shown(PARSER_DISPLAY_LIST); }
    std::string shown(uint64_t bit)
    {
        cli->unsetParserResultBit(PARSER_DISPLAY_LIST);
        cli->setParserResultBit(bit);
        std::string text = printed([&] { table->show(); });
        for (size_t hit = text.find("   "); hit != std::string::npos; hit = text.find("   ", hit)) {
            const size_t end = text.find_first_not_of(' ', hit);
            text.replace(hit, end - hit, text[end] == '\n' ? "" : ",");
        }
        return text;
    }

    TestCli* cli = nullptr;
    std::unique_ptr<ZlTable> table;
};

} // namespace

TEST_F(ZlTableTest, MergesRecordsByColumnName)
{
    Words lines = {HEADER,
                   "p:sV:0:1:::n1:10:\n",
                   "p:sV:0:1\n",
                   "\n",
                   " p:sV:0:1:::n2::\n",
                   "p:sV:HEADER:version:reserved:reserved:size:new:\n",
                   "p:sV:0:1:::30:a%3Ab:surplus:\n"};
    table->append(&lines);
    EXPECT_EQ(lines[1], "p:sV:0:1:::n1:10"); // trimmed in place
    EXPECT_EQ(table->getSize(), std::make_pair(4UL, 3UL));
    EXPECT_EQ(table->getColumn("size"), (Words{"10", "30"}));
    EXPECT_EQ(table->getColumn("none"), Words{});
    cli->subject = "s";
    cli->setMachineReadableOutput(true);
    EXPECT_EQ(printed([&] { table->show(); }),
              "zelfhome:s:HEADER:version:reserved:reserved:name:size:new:\nzelfhome:s:0:1:::n1:10::\n"
              "zelfhome:s:0:1:::n2:::\nzelfhome:s:0:1::::30:a%3Ab:\n");
}

TEST_F(ZlTableTest, TakesRecordsFromTextsAndNodes)
{
    table->append(HEADER + "p:sV:0:1:::n1:10:\n");
    // A text of several lines is a list of its own, and comes first; the single lines of all nodes form one
    // list.
    std::map<std::string, std::string> ofNode = {
        {" 0", HEADER}, {"nodeA", "p:sV:0:1:::a:1:\n"}, {"nodeB", HEADER + "p:sV:0:1:::b:2:\n"}};
    table->append(&ofNode);
    Words alone = {"p:sV:0:1:::n1:10:\n"}; // one line can only be a header
    table->append(&alone);
    table->append(static_cast<Words*>(nullptr));
    table->append(static_cast<std::map<std::string, std::string>*>(nullptr));
    EXPECT_EQ(rows(), "name,size\nn1,10\nb,2\na,1\n");
    table->append("HEADER:name\nx:y\n"); // without "reserved" nothing is dropped
    EXPECT_EQ(list(), "name,n1,b,a,y\nsize,10,2,1\nHEADER,x\n");
}

TEST_F(ZlTableTest, InsertGoesByThePlaceInTheRecord)
{
    table->setListSeparator("; ");
    table->insert({"a", "b"}, {"1", "2"});
    table->insert({"b", "c%3A"}, {"3"}); // a name without a value is still a column
    table->insert({}, {"lost"});
    table->insert({"lost"}, {});
    EXPECT_EQ(list(), "a,1\nb,; 2,3\nc:\n");
    EXPECT_EQ(table->getSize(), std::make_pair(3UL, 3UL));
}

TEST_F(ZlTableTest, ReplacesCellsAndNames)
{
    table->insert({"a", "b"}, {"x", "x"});
    table->replaceValue("a", "x", "new"); // the name restricts the list alone
    EXPECT_EQ(rows() + list(), "a,b\nnew,new\na,new\nb,x\n");
    table->replaceHeader("a", "c");
    table->insert({"c"}, {"1"}); // the new name is not known as one, the old one still is
    table->insert({"a"}, {"2"});
    table->replaceAllSubstrings("e", "EE");
    EXPECT_EQ(list(), "c,nEEw,2\nb,x\nc,1\n");
}

TEST_F(ZlTableTest, FiltersRows)
{
    const std::tuple<bool, const char*, Words, bool, const char*> cases[] = {
        // case sensitive, column, values, keep, what is left
        {true, "Name", {"a", "c"}, true, "a,1\nc,3\n"},
        {true, "Name", {"a", "b"}, false, "B,2\nc,3\n"}, // values are compared with case always
        {true, "name", {"a"}, true, "a,1\nB,2\nc,3\n"},
        {false, "NAME", {"a"}, true, "a,1\n"}};
    for (const auto& [caseSensitive, column, values, keep, rest] : cases) {
        table = std::make_unique<ZlTable>(cli, '\0', !caseSensitive);
        table->setCaseSensitive(caseSensitive);
        for (const Words& row : {Words{"a", "1"}, Words{"B", "2"}, Words{"c", "3"}}) {
            table->insert({"Name", "size"}, row);
        }
        table->filterByRow(column, values, keep);
        EXPECT_EQ(rows(), std::string("Name,size\n") + rest) << column;
        EXPECT_EQ(list(), "Name,a,B,c\nsize,1,2,3\n");
    }
    table = std::make_unique<ZlTable>(cli, '\0', true);
    table->insert({"a", "b"}, {"only one"});
    EXPECT_THROW(table->filterByRow("b", {"x"}, true), std::out_of_range);
}

TEST_F(ZlTableTest, FiltersColumns)
{
    const std::tuple<Words, const char*, const char*> cases[] = {
        {{"c", "a"}, "a,c\n1,3\n", "a,1\n"}, // the list loses the entry behind each found one
        {{"b"}, "b\n2\n", "a,1\nb,2\n"},
        {{"B", "none"}, "\n\n", "a,1\nb,2\nc,3\n"}};
    for (const auto& [names, restRows, restList] : cases) {
        table = std::make_unique<ZlTable>(cli, '\0', true);
        table->filterByHeader({"a"});
        table->insert({"a", "b", "c"}, {"1", "2", "3"});
        table->filterByHeader(names);
        EXPECT_EQ(rows(), restRows);
        EXPECT_EQ(list(), restList);
    }
}

TEST_F(ZlTableTest, SortRunsToItsEndOnAComparatorThatIsNoOrder)
{
    EXPECT_EQ(table->sortTable("a", 0), 1);
    for (int i = 0; i < 100; ++i) {
        table->insert({"Key", "n"}, {toString(i % 7), toString(i)});
    }
    EXPECT_EQ(table->sortTable("key", ZlComparatorFactory::EXACT) + table->sortTable("none", 0), 2);
    for (const unsigned long flags : {0, 1, 2, 3}) {
        EXPECT_EQ(table->sortTable("Key", flags), 0);
        const Words lines = split(rows(), "\n");
        EXPECT_EQ(lines.front(), "Key,n");
        EXPECT_EQ(Names(lines.begin(), lines.end()).size(), 102U); // with the empty last piece
    }
}

TEST_F(ZlTableTest, NoDataIsAFailureForScriptsAndListsAlone)
{
    for (const auto& [bits, code] :
         {std::pair{0, 0}, {+PARSER_MACHINE_READABLE, 1}, {+PARSER_DISPLAY_LIST, 1}}) {
        TestCli& owner = makeCli();
        ZlTable empty(&owner, '-', true);
        owner.execCmdRc = 0;
        owner.setParserResultBit(static_cast<uint64_t>(bits));
        EXPECT_EQ(printed([&] { empty.show(); }) + owner.userResponse, ""); // display is off
        empty.setDisplayAsTable(true);
        EXPECT_EQ(printed([&] { empty.show(); }), "");
        EXPECT_EQ(owner.userResponse, code == 0 ? "" : "No data available.");
        EXPECT_EQ(owner.execCmdRc, code);
    }
}

using ZlComparatorFactoryTest = ZelfTest;

TEST_F(ZlComparatorFactoryTest, AnswersEqualityByItsFlagsAndEndsTheRunWhenMisused)
{
    const Words row = {"x", "Abc"};
    const bool answers[][3] = {
        {true, true, false}, {true, false, false}, {false, false, true}, {false, true, true}};
    for (unsigned long flags = 0; flags < 4; ++flags) {
        const std::unique_ptr<ZlComparatorFactory> text(ZlComparatorFactory::getUnaryStrComp("Abc", flags));
        const std::unique_ptr<ZlComparatorFactory> rows(ZlComparatorFactory::getVectorComparator(1, flags));
        for (const auto& [other, i] : {std::pair{"Abc", 0}, {"aBC", 1}, {"Abcd", 2}}) {
            EXPECT_EQ((*text)(other), answers[flags][i]) << flags << other;
            EXPECT_EQ((*rows)(row, {"y", other}), answers[flags][i]) << flags << other;
        }
    }
    const std::pair<std::function<void()>, const char*> cases[] = {
        {[&] { (*ZlComparatorFactory::getVectorComparator(0, 0))("a"); }, "\nunary comparator"},
        {[&] { (*ZlComparatorFactory::getUnaryStrComp("a", 0))(row, row); }, "\nvector comparator"},
        {[&] { (*ZlComparatorFactory::getVectorComparator(2, 0))(row, row); }, "\nvector comparator"},
        {[&] { (*ZlComparatorFactory::getVectorComparator(1, 0))(row, {"a"}); }, "\nvector comparator"}};
    ZlErrorService::errorServiceP->setLogFileName("misuse");
    for (const auto& [misuse, which] : cases) {
        expectEnd(misuse, 1, "", "");
        EXPECT_NE(contentOf(TMP + "misuse.log").find(std::string(which) + " failed. Illeagal object.\n"),
                  std::string::npos);
    }
}
