#pragma once

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

inline std::string BytesOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}
