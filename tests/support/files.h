// Files and texts, as the tests of all rings look at them.
#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

inline std::string contentOf(const std::string& path) // empty for a missing file
{
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

// Makes the folders that the file needs, too.
inline void writeFile(const std::string& path, const std::string& text)
{
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ignored);
    EXPECT_TRUE((std::ofstream(path, std::ios::binary) << text << std::flush).good()) << path;
}

inline void expectIn(const std::string& text, const std::string& part)
{
    EXPECT_NE(text.find(part), std::string::npos) << "'" << part << "' is not in\n" << text;
}
