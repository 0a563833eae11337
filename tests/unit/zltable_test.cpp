// Tables for people and for scripts, and the merging of colon records.
#include "fixture.h"

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
    ZlTableTest() { table.setDisplayAsTable(true); }

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
    const auto cell = [&random] { // ZlTable trims a record's end
        return std::string(random() % 3, "%:\n 4aZ"[random() % 7]) + std::string(random() % 3, '%') + ">";
    };
    for (int round = 0; round < 200; ++round) {
        const PlainTable rows = {{"one", "t:%o"}, {cell(), cell()}, {cell(), cell()}};
        const std::vector<ColonRecord> records = {
            {{"datatype", "s"}, {"one", rows[1][0]}, {"t%3A%25o", rows[1][1]}},
            {{"datatype", "s"}, {"one", rows[2][0]}, {"t%3A%25o", rows[2][1]}}};
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
    table.replaceValue("size", "*0", "");
    EXPECT_EQ(table.getColumn("size"), (Words{"", "30", "", "30"}));
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
    table.setSeparator('=');
    EXPECT_EQ(shown(), "a   b   c:   d   \n=== === ==== === \n1   2        \n    3        \n");
    table.setSeparator('\0');
    cli.setParserResultBit(PARSER_DISPLAY_LIST);
    EXPECT_EQ(shown(), "a    1     \nb    ; 2   3   \nc:   \nd    \n");
    table.filterByHeader({"a", "d"}); // off the list goes the one behind, or else the last itself
    EXPECT_EQ(shown(), "a    1   \nc:   \n");
}

TEST_F(ZlTableTest, FiltersRowsAndColumns)
{
    for (const std::string name : {"a", "B", "c"}) {
        table.insert({"N", "s", "u", "t"}, {name, "1", "9", name + name});
    }
    table.filterByRow("n", {"a"}, true);       // no column of the table
    table.filterByRow("N", {"a", "b"}, false); // values go by case always
    EXPECT_EQ(shown(), "N   s   u   t    \nB   1   9   BB   \nc   1   9   cc   \n");
    table.setCaseSensitive(false);
    table.filterByRow("n", {"c"}, true);
    EXPECT_EQ(shown(), "N   s   u   t    \nc   1   9   cc   \n");
    table.replaceHeader("t", "s");
    table.filterByHeader({"s", "lost"});
    EXPECT_EQ(shown(), "s   s    \n1   cc   \n");
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

TEST_F(ZlTableTest, SortTakesTheRowsThatAreLikeTheFirst)
{
    EXPECT_EQ(table.sortTable("Key", 0), 1);
    table.append(static_cast<Words*>(nullptr));
    table.append(static_cast<std::map<std::string, std::string>*>(nullptr));
    table.filterByRow("Key", {}, true);
    for (const std::string row : {"b1", "a2", "B3", "b4", "c5"}) {
        table.insert({"Key", "N"}, {row.substr(0, 1), row.substr(1)});
    }
    EXPECT_EQ(table.sortTable("key", ZlComparatorFactory::EXACT), 1);
    EXPECT_EQ(table.sortTable("key", ZlComparatorFactory::IGNORE_CASE), 0);
    EXPECT_EQ(shown(), "Key   N   \nb     1   \nB     3   \nb     4   \na     2   \nc     5   \n");
    EXPECT_EQ(table.sortTable("Key", ZlComparatorFactory::EXACT | ZlComparatorFactory::INVERTED), 0);
    EXPECT_EQ(shown(), "Key   N   \nb     1   \nB     3   \na     2   \nc     5   \nb     4   \n");
}

TEST_F(ZlTableTest, AComparatorEndsTheRunOnWhatIsNotItsKind)
{
    using Factory = ZlComparatorFactory;
    const std::unique_ptr<Factory> second(Factory::getVectorComparator(1, Factory::EXACT));
    const std::unique_ptr<Factory> word(Factory::getUnaryStrComp("a", Factory::EXACT));
    EXPECT_TRUE((*second)({"x", "a"}, {"y", "a"}) && (*word)("a") && !(*word)("A"));
    expectEnd([&] { (*second)({"x", "a"}, {"y"}); }, 1, "", "");
    expectEnd([&] { (*second)({"x"}, {"y", "a"}); }, 1, "", "");
    expectEnd([&] { (*word)({"a"}, {"a"}); }, 1, "", "");
    expectEnd([&] { (*second)("a"); }, 1, "", "");
    expectIn(contentOf(TMP + "test.log"), "unary comparator failed. Illeagal object.\n");
}
