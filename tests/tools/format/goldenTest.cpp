// Each pair of files in goldens/, x.input and x.golden, is a test: the input formatted is the
// golden, and the golden formatted is itself.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "tools/format/format.hpp"

namespace krel {

namespace {

namespace fs = std::filesystem;

std::string contentOf(const fs::path& path) {
    std::ifstream file{path, std::ios::binary};
    EXPECT_TRUE(file) << path;
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

/// The names of the pairs, without extension.
std::vector<std::string> goldens() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator{KREL_GOLDENS}) {
        if (entry.path().extension() == ".input") {
            names.push_back(entry.path().stem().string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

class GoldenTest : public testing::TestWithParam<std::string> {
protected:
    static fs::path fileOf(const std::string& extension) {
        return fs::path{KREL_GOLDENS} / (GetParam() + extension);
    }
};

TEST_P(GoldenTest, IsFormatted) {
    const Format::Result result = Format::format(contentOf(fileOf(".input")), "input");
    EXPECT_TRUE(result.parses) << testing::PrintToString(result.faults);
    EXPECT_EQ(result.text, contentOf(fileOf(".golden")));
}

TEST_P(GoldenTest, StaysAsItIs) {
    const std::string golden = contentOf(fileOf(".golden"));
    EXPECT_EQ(Format::format(golden, "golden").text, golden);
}

std::string nameOf(const testing::TestParamInfo<std::string>& info) {
    std::string name = info.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Format, GoldenTest, testing::ValuesIn(goldens()), nameOf);

}  // namespace

}  // namespace krel
