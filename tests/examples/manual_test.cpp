#include "file_contents.h"

#include <gtest/gtest.h>

#include <filesystem>

// docs/examples.md leaves no example out.

namespace {

namespace fs = std::filesystem;

const fs::path root = XUM_SOURCE_DIRECTORY;

bool contains(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

} // namespace

TEST(ExamplesManual, namesEveryExampleWithItsSourceAndItsPicture)
{
    const std::string manual = fileContents((root / "docs/examples.md").string());
    int count = 0;
    for (const fs::directory_entry& file : fs::directory_iterator(root / "examples")) {
        if (file.path().extension() != ".cpp") continue;
        ++count;
        const std::string name = file.path().stem().string();
        EXPECT_TRUE(contains(manual, "[`" + name + "`](../examples/" + name + ".cpp)")) << name;
        EXPECT_TRUE(contains(manual, "(examples/" + name + ".png)")) << name;
        EXPECT_TRUE(fs::exists(root / "docs/examples" / (name + ".png"))) << name;
    }
    EXPECT_EQ(count, 22);
}

TEST(ExamplesManual, isLinkedFromTheReadMe)
{
    EXPECT_TRUE(contains(fileContents((root / "README.md").string()), "(docs/examples.md)"));
}
