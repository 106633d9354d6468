#include "own_directory.h"
#include "pack_manual.h"
#include "program.h"

#include <gtest/gtest.h>

// The font part of docs/file_formats.md against xum.

TEST(FontManual, exampleIsWhatTheProgramPrints)
{
    enterOwnDirectory();
    const std::vector<std::string> examples = fileFormatBlocks("font");
    ASSERT_EQ(examples.size(), 1u);
    const std::string prompt = "$ xum ";
    const std::size_t end = examples[0].find('\n');
    ASSERT_EQ(examples[0].substr(0, prompt.size()), prompt);
    writeFileContents("hud.ttf", fileContents(XUM_DEMO_FONTS "/hud.ttf"));
    const ProgramRun run = runXum(examples[0].substr(prompt.size(), end - prompt.size()));
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.output, examples[0].substr(end + 1));
}
