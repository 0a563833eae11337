// Whole files in memory: line forms, null and empty forms, and what errno does to the results.
#include "fixture.h"

#include <cerrno>

#include "services/zlfileio.h"

using ZlFileIOTest = ZelfTest;

const std::string PATH = TMP + "file";

TEST_F(ZlFileIOTest, LineForms)
{
    const std::pair<std::string, Words> cases[] = {
        {"\n\n", {"", ""}},
        {"b\n\na\r\nb\n" + std::string(300000, 'x'), {"b", "", "a\r", "b", std::string(300000, 'x')}},
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

TEST_F(ZlFileIOTest, BytesInMemory)
{
    ZlFileIO file(PATH);
    std::string text = "old";
    Words lines;
    const char* bytes = nullptr;
    int length = 0;
    EXPECT_EQ(file.getData(&lines) + file.getData(&bytes, &length), 3);
    const Names set = {"b", "", "a"};
    EXPECT_EQ(file.setData(&set) + file.setData(&set), 0);
    file.append("right");
    file.prepend("t long", 2);
    file.prepend("lef");
    EXPECT_EQ(file.getData(&text) + file.getData(&bytes, &length), 0);
    EXPECT_EQ(text, "left \na\nb\nright");
    EXPECT_EQ(std::string(bytes, length), text);
    const char* const none = nullptr;
    const Names* const noLines = nullptr;
    EXPECT_EQ(file.append(none, 1) + file.prepend(none, 1) + file.setData(none, 1) + file.setData(noLines),
              4);
    EXPECT_EQ(file.getData(static_cast<Words*>(nullptr)) + file.getData(static_cast<std::string*>(nullptr)),
              2);
    EXPECT_EQ(file.append("!", 1) + file.getSize(), 16);
}

TEST_F(ZlFileIOTest, AWriteReplacesTheFileAndGivesWhatErrnoHolds)
{
    const std::string bytes("a\0\r\n\xff", 5);
    writeFile(PATH, "much longer than the new content");
    ZlFileIO file(PATH);
    file.setData(bytes);
    EXPECT_EQ(file.writeFile(), 0);
    EXPECT_EQ(contentOf(PATH), bytes);
    errno = EAGAIN; // of some call before
    EXPECT_EQ(file.writeFile(), EAGAIN);
    for (const auto& [path, result] :
         {std::pair{"/dev/full", ENOSPC}, {"/var/zelf/no/file", ENOENT}, {"", 1}}) {
        file.setFileName(path);
        EXPECT_EQ(file.writeFile(), result) << path;
    }
}

TEST_F(ZlFileIOTest, MissingFilesAndRemoval)
{
    ZlFileIO file(PATH);
    file.setData("old");
    EXPECT_EQ(file.readFile(), ENOENT);
    EXPECT_EQ(file.getSize(), 3); // a failed read keeps the buffer
    writeFile(PATH, "");
    EXPECT_EQ(file.readFile() + file.getSize() + file.statFile() + file.removeFile(), 0);
    EXPECT_EQ(file.statFile(), ENOENT);
    EXPECT_EQ(file.removeFile(), ENOENT);
}
