// Tables for people and for scripts, and the merging of colon records.
#include "fixture.h"

#include <algorithm>
#include <memory>
#include <random>
#include <stdexcept>
#include <utility>

#include "commands/colonformat.h"
#include "services/zlcomparatorfactory.h"
#include "services/zltable.h"

namespace {

class ZlTableTest : public ZelfTest {
protected:
    void SetUp() override
    {
        ZelfTest::SetUp();
        table.setDisplayAsTable(true);
    }

    std::string shown()
    {
        return printed([&] { table.show(); });
    }

    TestCli& cli = makeCli({"s"});
    ZlTable table{&cli, '\0', true};
};

} // namespace

TEST_F(ZlTableTest, BothReadersReadBackWhatIsWritten)
{
    cli.setMachineReadableOutput(true);
    cli.fullDecode = true; // newlines are kept
    std::mt19937 random(1);
    for (int round = 0; round < 200; ++round) {
        PlainTable rows = {{"one", "t:%o"}, {"<", "<"}, {"<", "<"}};
        std::vector<ColonRecord> records(2, {{"datatype", "s"}});
        for (size_t i : {1, 2, 1, 2, 1, 2}) {
            for (std::string& cell : rows[i]) {
                cell +=
                    std::string(random() % 3, "%:\n 4aZ"[random() % 7]) + ">"; // ZlTable trims a record's end
            }
            records[i - 1]["one"] = rows[i][0];
            records[i - 1]["t%3A%25o"] = rows[i][1]; // names are not decoded there
        }
        const std::string text =
            printed([&] { extendedMachineReadableOutput("zelfhome", "s", "", rows, true); });
        EXPECT_EQ(parseColonFormat(linesOf(text), COLON_HEADER), records) << text;
        table = ZlTable(&cli, '\0', true);
        table.append(text);
        EXPECT_EQ(shown(), text);
    }
}

TEST_F(ZlTableTest, MergesRecordsByColumnName)
{
    Words lines = {"p:sV:HEADER:version:reserved:reserved:name:size:\n",
                   "p:sV:0:1:::n1:10:\n",
                   "p:sV:0:1\n",
                   "\n",
                   " p:sV:0:1:::n2::\n",
                   "p:sV:HEADER:version:reserved:reserved:size:new:\n",
                   "p:sV:0:1:::30:a%3Ab:surplus:\n"};
    table.append(&lines);
    EXPECT_EQ(lines[1], "p:sV:0:1:::n1:10"); // trimmed in place
    EXPECT_EQ(table.getColumn("none"), Words{});
    table.replaceHeader("new", "n:w"); // a later "new" still is this column
    std::map<std::string, std::string> ofNodes = {
        {"b", "p:sV:0:1:::30:x"}, {"c", lines[0] + "\n" + lines[1]}, {"a", lines[5] + "\n"}};
    table.append(&ofNodes);
    table.replaceValue("name", "30", "31"); // in the list of that name, but in any column of the table
    EXPECT_EQ(table.getColumn("size"), (Words{"10", "30", "10", "30"}));
    table.replaceAllSubstrings("1", "*");
    cli.setMachineReadableOutput(true);
    EXPECT_EQ(shown(),
              "zelfhome:s:HEADER:version:reserved:reserved:name:size:n%3Aw:\nzelfhome:s:0:1:::n*:*0::\n"
              "zelfhome:s:0:1:::n2:::\nzelfhome:s:0:1::::3*:a%3Ab:\nzelfhome:s:0:1:::n*:*0::\n"
              "zelfhome:s:0:1::::3*:x:\n");
}

TEST_F(ZlTableTest, InsertGoesByThePlaceInTheRecord)
{
    table.setListSeparator("; ");
    table.insert({"a", "b"}, {"1", "2"});
    table.insert({"b", "c%3A"}, {"3"}); // a name without a value is still a column
    table.insert({}, {"lost"});
    table.insert({"lost"}, {});
    EXPECT_EQ(shown(), "a   b   c:   \n1   2        \n    3        \n");
    // All values are decoded behind the first name.
    EXPECT_THROW(table.insert({"d", "e"}, {"1", "%"}), std::out_of_range);
    EXPECT_EQ(table.getSize(), std::make_pair(3UL, 4UL));
    cli.setParserResultBit(PARSER_DISPLAY_LIST);
    EXPECT_EQ(shown(), "a    1     \nb    ; 2   3   \nc:   \nd    \n");
    table.filterByHeader({"a", "d"}); // off the list goes the one behind, or else the last itself
    EXPECT_EQ(shown(), "a    1   \nc:   \n");
}

TEST_F(ZlTableTest, FiltersRowsAndColumns)
{
    const std::tuple<bool, const char*, Words, bool, const char*> cases[] = {
        // case sensitive, column, values, keep, what is left
        {true, "N", {"a", "b"}, false, "B   2   2   \nc   3   3   \n"}, // values go by case always
        {true, "n", {"a"}, true, "a   1   1   \nB   2   2   \nc   3   3   \n"},
        {false, "n", {"a"}, true, "a   1   1   \n"}};
    for (const auto& [caseSensitive, column, values, keep, rest] : cases) {
        table = ZlTable(&cli, '\0', !caseSensitive);
        table.setCaseSensitive(caseSensitive);
        for (const Words& row : {Words{"a", "1", "1"}, Words{"B", "2", "2"}, Words{"c", "3", "3"}}) {
            table.insert({"N", "s", "t"}, row);
        }
        table.filterByRow(column, values, keep);
        EXPECT_EQ(shown(), std::string("N   s   t   \n") + rest) << column;
    }
    table.replaceHeader("t", "s");
    table.filterByHeader({"s", "lost"});
    EXPECT_EQ(shown(), "s   s   \n1   1   \n");
}

TEST_F(ZlTableTest, ShowWithoutDataLeavesAMessageForRecordsAndLists)
{
    cli.execCmdRc = 0;
    EXPECT_EQ(shown() + cli.userResponse, "");
    cli.setParserResultBit(PARSER_DISPLAY_LIST);
    EXPECT_EQ(shown() + cli.userResponse, "No data available.");
    EXPECT_EQ(std::exchange(cli.execCmdRc, 0), 1);
    cli.setMachineReadableOutput(true);
    EXPECT_EQ(shown(), "");
    EXPECT_EQ(cli.execCmdRc, 1);
    table.insert({"n"}, {"v"});
    table.setDisplayAsTable(false);
    EXPECT_EQ(shown(), "");
}

TEST_F(ZlTableTest, SortKeepsTheRowsOnAComparatorThatIsNoOrder)
{
    EXPECT_EQ(table.sortTable("Key", 0), 1);
    for (int i = 0; i < 30; ++i) {
        table.insert({"Key"}, {toString(i % 7)});
    }
    EXPECT_EQ(table.sortTable("key", ZlComparatorFactory::EXACT), 1);
    for (const unsigned long flags : {0, 1, 2, 3}) {
        EXPECT_EQ(table.sortTable(flags % 2 == 0 ? "kEY" : "Key", flags), 0);
        Words lines = split(shown(), "\n");
        std::sort(lines.begin() + 1, lines.end()); // the empty piece behind the last line first
        EXPECT_EQ(lines.size() == 32 && lines[1].empty() && lines[6] == "0     " && lines[7] == "1     ",
                  true);
    }
}

TEST_F(ZlTableTest, ComparatorsTellEqualTexts)
{
    using Factory = ZlComparatorFactory;
    for (const unsigned long flags : {0, 1, 2, 3}) {
        const bool inverted = (flags & Factory::INVERTED) != 0;
        const std::unique_ptr<Factory> isA(Factory::getUnaryStrComp("a", flags));
        EXPECT_TRUE((*isA)("a") != inverted && (*isA)("b") == inverted);
        EXPECT_EQ((*isA)("A"), ((flags & Factory::EXACT) != 0) == inverted);
    }
    const std::unique_ptr<Factory> row(Factory::getVectorComparator(1, 0));
    EXPECT_TRUE((*row)({"x", "a"}, {"y", "A"}));
    const Words whole = {"", "a"};
    expectEnd([&] { (*row)(whole, {""}); }, 1, "", "");
    expectEnd([&] { (*row)({""}, whole); }, 1, "", "");
    expectEnd([&] { (*row)("a"); }, 1, "", "");
    expectIn(contentOf(TMP + "test.log"), "vector comparator failed. Illeagal object.\n");
    expectIn(contentOf(TMP + "test.log"), "unary comparator failed. Illeagal object.\n");
}
