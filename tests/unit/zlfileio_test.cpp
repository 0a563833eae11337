// Whole files in memory: line forms, null and empty forms, and what errno does to the results.
#include "fixture.h"

#include <cerrno>
#include <filesystem>

#include "services/zlfileio.h"
#include "services/zlutils.h"

namespace {

const std::string PATH = TMP + "file";

// Runs an operation. Gives its result, a blank, and what it has logged.
std::string resultAndLog(const std::function<int()>& operation)
{
    int result = -1;
    const std::string log = logged([&] { result = operation(); });
    return toString(result) + " " + log;
}

} // namespace

using ZlFileIOTest = ZelfTest;

TEST_F(ZlFileIOTest, LineForms)
{
    const std::pair<std::string, Words> cases[] = {
        {"a", {"a"}},
        {"a\n", {"a"}},
        {"\n\n", {"", ""}},
        {"b\n\na\r\nb\n", {"b", "", "a\r", "b"}},
        {std::string("x\0y\nz", 5), {std::string("x\0y", 3), "z"}}};
    for (const auto& [text, lines] : cases) {
        writeFile(PATH, text);
        ZlFileIO file(PATH);
        EXPECT_EQ(file.readFile(), 0);
        Words list;
        Names set = {"old"};
        EXPECT_EQ(file.getData(&list) + file.getData(&set), 0);
        EXPECT_EQ(list, lines);
        EXPECT_EQ(set.erase("old"), 1U); // lines go beside what is there
        EXPECT_EQ(set, Names(lines.begin(), lines.end()));
    }
}

TEST_F(ZlFileIOTest, EmptyAndNullForms)
{
    ZlFileIO file(PATH);
    std::string text = "old";
    Words lines;
    Names* const noSet = nullptr;
    const char* bytes = nullptr;
    int length = -1;
    EXPECT_EQ(resultAndLog([&] { return file.getData(&text); }), "0 ");
    EXPECT_EQ(resultAndLog([&] { return file.getData(&lines); }),
              "2 ZlFileIO::getData: No data available.\n");
    EXPECT_EQ(resultAndLog([&] { return file.getData(&bytes, &length); }),
              "1 ZlFileIO::getData: getData failed. No data available.\n");
    EXPECT_EQ(file.getData(noSet) + file.setData(noSet) + file.setData(nullptr, 5) + file.append(nullptr, 5),
              4);
    EXPECT_EQ(resultAndLog([&] { return file.prepend(nullptr, 5) + file.prepend("middle "); }),
              "1 ZlFileIO::prepend: const char* is null pointer.\n"
              "ZlFileIO::prepend: try to append 7 bytes\nZlFileIO::prepend: done\n");
    file.append("right");
    file.prepend("left long", 5);
    file.getData(&text);
    EXPECT_EQ(text, "left middle right");
    const Names set = {"b", "", "a"};
    EXPECT_EQ(file.setData(&set) + file.getData(&bytes, &length), 0);
    EXPECT_EQ(std::string(bytes, static_cast<size_t>(length)), "\na\nb\n");
}

TEST_F(ZlFileIOTest, AWriteReplacesTheFileAndGivesWhatErrnoHolds)
{
    const std::string bytes("a\0\r\n\xff", 5);
    writeFile(PATH, "much longer than the new content");
    ZlFileIO file(PATH);
    file.setData(bytes);
    EXPECT_EQ(resultAndLog([&] { return file.writeFile(); }), "0 ZlFileIO::writeFile: try to write: <" +
                                                                  PATH + ">\nZlFileIO::writeFile: " + PATH +
                                                                  " passed.\n");
    EXPECT_EQ(contentOf(PATH), bytes);
    errno = EAGAIN; // of some call before
    EXPECT_EQ(file.writeFile(), EAGAIN);
    errno = 0;
    file.setData("");
    EXPECT_EQ(file.writeFile(), 0);
    EXPECT_EQ(std::filesystem::file_size(PATH), 0U);
    file.setData("x");
    for (const auto& [path, result] :
         {std::pair{"/dev/full", ENOSPC}, {"/var/zelf/no/file", ENOENT}, {"", 1}}) {
        file.setFileName(path);
        EXPECT_EQ(file.writeFile(), result) << path;
    }
}

TEST_F(ZlFileIOTest, ReadsStatusAndRemoval)
{
    ZlFileIO file(PATH);
    file.setData("old");
    EXPECT_EQ(resultAndLog([&] { return file.readFile(); }),
              "2 error while open file for read: <" + PATH + "> failed. Reason: No such file or directory\n");
    EXPECT_EQ(file.getSize(), 3); // a failed read keeps the buffer
    std::string text;
    for (const std::string& content : {std::string(), std::string(300001, 'x')}) {
        writeFile(PATH, content);
        EXPECT_EQ(file.readFile() + file.getData(&text), 0);
        EXPECT_TRUE(text == content) << text.size();
    }
    EXPECT_EQ(file.statFile() + file.removeFile(), 0);
    EXPECT_EQ(file.statFile(), ENOENT);
    EXPECT_EQ(resultAndLog([&] { return file.removeFile(); }),
              "2 Error while deleting file failed. Reason: No such file or directory\n");
    errno = 0;
    EXPECT_EQ(resultAndLog([] { return ZlFileIO().statFile(); }),
              "0 ZlFileIO::statFile: failed to get stats for file '' passed.\n");
}
