// An empty folder of the host that stands for the unit's file system during one test.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "platform/host_path.h"

namespace test {

class UnitFolder : public ::testing::Test {
protected:
    void SetUp() override {
        std::string name = (std::filesystem::temp_directory_path() / "unit-XXXXXX").string();
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        root_ = name;
        platform::setUnitRoot(root_.string());
    }

    void TearDown() override {
        platform::setUnitRoot("");
        std::filesystem::remove_all(root_);
    }

    // `path` is relative and uses slashes; parent folders are made.
    void put(std::string_view path, std::string_view contents = "") {
        const std::filesystem::path file = root_ / path;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << contents;
    }

    void makeFolder(std::string_view path) { std::filesystem::create_directories(root_ / path); }

    [[nodiscard]] std::string contents(std::string_view path) const {
        std::ifstream file(root_ / path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    [[nodiscard]] bool exists(std::string_view path) const {
        return std::filesystem::exists(root_ / path);
    }

    std::filesystem::path root_;
};

}  // namespace test
