// Tables for people and for scripts, byte for byte, and the merging of colon records.
#include "fixture.h"

#include <memory>

#include "services/zlcomparatorfactory.h"
#include "services/zltable.h"
#include "services/zlutils.h"

TEST(PlainTables, ColonRecords)
{
    const PlainTable table = {{"na:me", "b"}, {"50%", "two\nlines\n"}, {""}};
    EXPECT_EQ(printed([&] { machineReadableOutput("zelfhome", "group", "list", table); }),
              "zelfhome:groupList:HEADER:version:reserved:reserved:na%3Ame:b:\n"
              "zelfhome:groupList:0:1:::50%25:twolines:\n"
              "zelfhome:groupList:0:1::::\n");
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

TEST_F(ZlTableTest, InsertGoesByThePlaceInTheRecord)
{
    table->setListSeparator("; ");
    table->insert({"a", "b"}, {"1", "2"});
    table->insert({"b", "c%3A"}, {"3"}); // a name without a value is still a column
    table->insert({}, {"lost"});
    table->insert({"lost"}, {});
    EXPECT_EQ(list(), "a,1\nb,; 2,3\nc:\n");
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
        EXPECT_EQ(split(rows(), "\n").size(), 102U); // with the header and the empty last piece
    }
}
