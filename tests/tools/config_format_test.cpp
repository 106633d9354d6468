#include "file_contents.h"
#include "own_directory.h"

#include <config_format.h>

#include <xum/files/config_reader.h>

#include <gtest/gtest.h>

#include <list>
#include <random>

namespace {

/// A tree as a text that differs whenever the trees do.
std::string describe(const ConfigSection& section)
{
    std::string text = "[" + std::to_string(section.getName().size()) + ":" + section.getName();
    for (const ConfigSection* child : section.getAllSections()) text += describe(*child);
    std::list<const ConfigEntry*> entries;
    section.getEntries(entries);
    for (const ConfigEntry* entry : entries)
        text += "(" + std::to_string(entry->getName().size()) + ":" + entry->getName() + "=" +
                std::to_string(entry->getValue().size()) + ":" + entry->getValue() + ")";
    return text + "]";
}

/// Empty when the text is no configuration.
std::string treeOf(const std::string& text)
{
    try {
        return describe(*ConfigReader(text).read());
    } catch (const ConfigSyntaxError&) {
        return {};
    }
}

bool formatQuietly(const std::string& fileName)
{
    ::testing::internal::CaptureStderr();
    const bool isFormatted = formatConfig(fileName, true);
    ::testing::internal::GetCapturedStderr();
    return isFormatted;
}

} // namespace

TEST(ConfigFormat, whateverIsFormattedReadsBackAsItWas)
{
    enterOwnDirectory();
    const char* const parts[] = {"a", "b", "/", " ", "\"", "/", " ", "\"", "<", ">", "\n", "x y"};
    std::mt19937 random(11);
    int formatted = 0;
    int refused = 0;
    for (int round = 0; round < 4000; ++round) {
        // Mostly tags of an arbitrary inside, in a root section that may begin oddly, too.
        std::string text;
        const unsigned tags = static_cast<unsigned>(random() % 4);
        for (unsigned i = 0; i <= tags; ++i) {
            text += "<";
            for (auto left = random() % 7; left > 0; --left) text += parts[random() % 12];
            text += random() % 2 == 0 ? ">" : "/>";
        }
        for (auto left = random() % 3; left > 0; --left) text += "</z>";
        const std::string tree = treeOf(text);
        if (tree.empty()) continue;
        writeFileContents("a.cfg", text);
        if (formatQuietly("a.cfg")) {
            ++formatted;
            ASSERT_EQ(treeOf(fileContents("a.cfg")), tree) << text;
        } else {
            ++refused;
            ASSERT_EQ(fileContents("a.cfg"), text);
        }
    }
    EXPECT_GT(formatted, 100);
    EXPECT_GT(refused, 100);
}
