// Tables for people and for scripts, and the merging of colon records.
#include "fixture.h"

#include <memory>

#include "services/zlcomparatorfactory.h"
#include "services/zltable.h"

namespace {

class ZlTableTest : public ZelfTest {
protected:
    void SetUp() override
    {
        ZelfTest::SetUp();
        table->setDisplayAsTable(true);
    }

    std::string shown()
    {
        return printed([&] { table->show(); });
    }

    TestCli& cli = makeCli({"s"});
    std::unique_ptr<ZlTable> table = std::make_unique<ZlTable>(&cli, '\0', true);
};

} // namespace

TEST_F(ZlTableTest, MergesRecordsByColumnName)
{
    Words lines = {"p:sV:HEADER:version:reserved:reserved:name:size:\n",
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
    cli.setMachineReadableOutput(true);
    EXPECT_EQ(shown(),
              "zelfhome:s:HEADER:version:reserved:reserved:name:size:new:\nzelfhome:s:0:1:::n1:10::\n"
              "zelfhome:s:0:1:::n2:::\nzelfhome:s:0:1::::30:a%3Ab:\n");
}

TEST_F(ZlTableTest, InsertGoesByThePlaceInTheRecord)
{
    table->setListSeparator("; ");
    table->insert({"a", "b"}, {"1", "2"});
    table->insert({"b", "c%3A"}, {"3"}); // a name without a value is still a column
    table->insert({}, {"lost"});
    table->insert({"lost"}, {});
    cli.setParserResultBit(PARSER_DISPLAY_LIST);
    EXPECT_EQ(shown(), "a    1     \nb    ; 2   3   \nc:   \n");
}

TEST_F(ZlTableTest, FiltersRows)
{
    const std::tuple<bool, const char*, Words, bool, const char*> cases[] = {
        // case sensitive, column, values, keep, what is left
        {true, "N", {"a", "c"}, true, "a   1   \nc   3   \n"},
        {true, "N", {"a", "b"}, false, "B   2   \nc   3   \n"}, // values are compared with case always
        {true, "n", {"a"}, true, "a   1   \nB   2   \nc   3   \n"},
        {false, "n", {"a"}, true, "a   1   \n"}};
    for (const auto& [caseSensitive, column, values, keep, rest] : cases) {
        table = std::make_unique<ZlTable>(&cli, '\0', !caseSensitive);
        table->setCaseSensitive(caseSensitive);
        for (const Words& row : {Words{"a", "1"}, Words{"B", "2"}, Words{"c", "3"}}) {
            table->insert({"N", "s"}, row);
        }
        table->filterByRow(column, values, keep);
        EXPECT_EQ(shown(), std::string("N   s   \n") + rest) << column;
    }
}

TEST_F(ZlTableTest, SortRunsToItsEndOnAComparatorThatIsNoOrder)
{
    for (int i = 0; i < 100; ++i) {
        table->insert({"Key", "n"}, {toString(i % 7), toString(i)});
    }
    EXPECT_EQ(table->sortTable("key", ZlComparatorFactory::EXACT) + table->sortTable("none", 0), 2);
    for (const unsigned long flags : {0, 1, 2, 3}) {
        EXPECT_EQ(table->sortTable("Key", flags), 0);
        EXPECT_EQ(split(shown(), "\n").size(), 102U); // with the header and the empty last piece
    }
}
