#include "program.h"

#include <xum/lisp/lisp_builtins.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <regex>
#include <vector>

// docs/lisp.md: each block marked "lisp" is typed into the shell, and the block marked "output" behind it is what the
// shell prints. A block marked "lisp file NAME" is a file that the examples may load.

namespace {

const std::string functionsHeading = "## Functions of the library";

struct Example {
    std::string fileName; // empty for what is typed
    std::string input;
    std::string output;
    bool hasOutput = false;
};

std::vector<std::string> manualLines()
{
    std::ifstream manual(XUM_LISP_MANUAL);
    std::vector<std::string> lines;
    for (std::string line; std::getline(manual, line);) lines.push_back(line);
    return lines;
}

std::string takeBlock(const std::vector<std::string>& lines, std::size_t& at)
{
    std::string block;
    for (++at; at < lines.size() && lines[at] != "```"; ++at) block += lines[at] + "\n";
    return block;
}

std::vector<Example> findExamples(const std::vector<std::string>& lines)
{
    const std::string fileMark = "```lisp file ";
    std::vector<Example> examples;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        Example example;
        if (lines[i].compare(0, fileMark.size(), fileMark) == 0)
            example.fileName = lines[i].substr(fileMark.size());
        else if (lines[i] != "```lisp")
            continue;
        example.input = takeBlock(lines, i);
        example.hasOutput = i + 1 < lines.size() && lines[i + 1] == "```output";
        if (example.hasOutput) example.output = takeBlock(lines, ++i);
        examples.push_back(example);
    }
    return examples;
}

/// With a mark in place of what differs from run to run.
std::string withoutChangingParts(std::string text)
{
    static const std::regex address("(^|\n)(:list|:array|:hash-table|:closure|:macro) \\([0-9a-fx]+\\)");
    static const std::regex counts("objects, [0-9]+ bytes|full gc: [0-9]+ objects of [0-9]+ marked");
    static const std::regex objects("garbage collector: [0-9]+ objects");
    text = std::regex_replace(text, address, "$1$2 (...)");
    text = std::regex_replace(text, objects, "garbage collector: N objects");
    for (std::smatch match; std::regex_search(text, match, counts);)
        text.replace(static_cast<std::size_t>(match.position()), static_cast<std::size_t>(match.length()),
                     match.str()[0] == 'o' ? "objects, N bytes" : "full gc: N objects of N marked");
    return text;
}

bool holdsExample(const std::vector<std::string>& lines, std::size_t heading)
{
    for (std::size_t i = heading + 1; i < lines.size() && lines[i].compare(0, 2, "##") != 0; ++i)
        if (lines[i] == "```lisp") return true;
    return false;
}

/// How many there were.
std::size_t runExamples(const std::vector<Example>& examples)
{
    for (const Example& example : examples) {
        if (!example.fileName.empty()) {
            writeFileContents(example.fileName, example.input);
            continue;
        }
        EXPECT_TRUE(example.hasOutput) << "an example shows no output:\n" << example.input;
        const ProgramRun run = runXumWithInput("lisp", example.input);
        EXPECT_EQ(withoutChangingParts(run.output), example.output) << example.input << run.errors;
    }
    return examples.size();
}

} // namespace

// In two tests, because a process for each example takes its time.
TEST(LispManual, everyExampleOfTheLanguagePrintsItsOutput)
{
    std::vector<std::string> lines = manualLines();
    lines.erase(std::find(lines.begin(), lines.end(), functionsHeading), lines.end());
    EXPECT_GT(runExamples(findExamples(lines)), 20u);
}

TEST(LispManual, everyExampleOfAFunctionPrintsItsOutput)
{
    std::vector<std::string> lines = manualLines();
    lines.erase(lines.begin(), std::find(lines.begin(), lines.end(), functionsHeading));
    EXPECT_GE(runExamples(findExamples(lines)), 66u);
}

TEST(LispManual, everyBuiltInHasItsSignatureAndAnExample)
{
    const std::vector<std::string> lines = manualLines();
    std::size_t count = 0;
    const lisp_native_descriptor* builtIns = lisp_builtins(&count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::string heading = "#### `" + std::string(builtIns[i].name) + "`";
        const auto found = std::find(lines.begin(), lines.end(), heading);
        ASSERT_NE(found, lines.end()) << builtIns[i].name << " is not described";
        const std::size_t at = static_cast<std::size_t>(found - lines.begin());
        ASSERT_LT(at + 2, lines.size());
        EXPECT_EQ(lines[at + 2], "`" + std::string(builtIns[i].signature) + "`") << builtIns[i].name;
        EXPECT_TRUE(holdsExample(lines, at)) << builtIns[i].name;
    }
}

TEST(LispManual, everyHeadingOfAFunctionNamesABuiltIn)
{
    std::size_t count = 0;
    const lisp_native_descriptor* builtIns = lisp_builtins(&count);
    std::size_t headings = 0;
    for (const std::string& line : manualLines()) headings += line.compare(0, 6, "#### `") == 0;
    EXPECT_EQ(headings, count) << "the first is " << builtIns[0].name;
}
