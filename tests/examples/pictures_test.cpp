#include "example.h"
#include "own_directory.h"
#include "shrunk_picture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <vector>

// The pictures of the examples that take none themselves: of the first program, and of those that print, whose
// transcripts are drawn.

namespace {

namespace fs = std::filesystem;

const fs::path transcriptDirectory = fs::path(XUM_SOURCE_DIRECTORY) / "examples" / "pictures" / "transcripts";

/// A command of a transcript: "$ PROGRAM ARGUMENTS", then what was typed, behind "> ", and what was printed.
struct Command {
    std::string program;
    std::string arguments;
    std::string typed;
    std::string printed; ///< with the prompts, but without what was typed
};

std::vector<Command> readTranscript(const std::string& name)
{
    std::istringstream transcript(fileContents((transcriptDirectory / (name + ".txt")).string()));
    std::vector<Command> commands;
    for (std::string line; std::getline(transcript, line);) {
        if (line.rfind("$ ", 0) == 0) {
            const std::size_t end = line.find(' ', 2);
            const std::string arguments = end == std::string::npos ? "" : line.substr(end + 1);
            commands.push_back({line.substr(2, end - 2), arguments, "", ""});
        } else if (commands.empty()) {
            ADD_FAILURE() << name << " begins without a command";
            break;
        } else if (line.rfind("> ", 0) == 0) {
            commands.back().typed += line.substr(2) + "\n";
            commands.back().printed += "> ";
        } else {
            commands.back().printed += line + "\n";
        }
    }
    return commands;
}

class Transcripts : public ::testing::TestWithParam<const char*> {
protected:
    void SetUp() override
    {
        directory = testDirectory() / (std::string("transcript_") + GetParam());
        fs::remove_all(directory);
        fs::create_directory(directory);
        fs::current_path(directory);
    }

    void TearDown() override { fs::current_path(testDirectory()); }

    fs::path directory;
};

} // namespace

TEST_P(Transcripts, showWhatTheProgramPrints)
{
    const std::vector<Command> commands = readTranscript(GetParam());
    ASSERT_FALSE(commands.empty());
    for (const Command& command : commands) {
        EXPECT_EQ(command.program, GetParam());
        writeFileContents("typed.txt", command.typed);
        const ProgramRun result = runExample(command.program, command.arguments + " <typed.txt");
        std::string printed = result.output + result.errors;
        printed.erase(std::remove(printed.begin(), printed.end(), '\r'), printed.end());
        EXPECT_EQ(printed, command.printed) << command.program << " " << command.arguments;
    }
}

TEST_P(Transcripts, drawsTheGoldenPicture)
{
    const std::string transcript = (transcriptDirectory / (std::string(GetParam()) + ".txt")).string();
    const ProgramRun run =
        runExample("terminal_picture", "\"" + transcript + "\" --frames 10 --screenshot picture.bmp");
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(problemsOfLog(), "");
    expectGoldenExample(GetParam(), 960, 540);
}

INSTANTIATE_TEST_SUITE_P(All, Transcripts,
                         ::testing::Values("clipboard_and_files", "config_file", "lisp_console", "network",
                                           "saved_game", "script_host"),
                         [](const auto& name) { return std::string(name.param); });

TEST(ExamplePictures, thereIsATranscriptOfEachExampleThatPrints)
{
    for (const fs::directory_entry& file : fs::directory_iterator(fs::path(XUM_SOURCE_DIRECTORY) / "examples")) {
        const std::string name = file.path().stem().string();
        if (file.path().extension() != ".cpp" || name == "hello_engine") continue;
        const bool draws = fileContents(file.path().string()).find("#include \"example_run.h\"") != std::string::npos;
        EXPECT_EQ(fs::exists(transcriptDirectory / (name + ".txt")), !draws) << name;
    }
}

TEST(ExamplePictures, drawsTheGoldenPictureOfTheFirstProgram)
{
    fs::remove("picture.bmp");
    const ProgramRun run = runExample("hello_engine_picture", "--frames 10 --screenshot picture.bmp");
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(problemsOfLog(), "");
    expectGoldenExample("hello_engine", 640, 480);
}

TEST(ExamplePictures, aTerminalWithoutATextIsAFailure)
{
    const ProgramRun run = runExample("terminal_picture", "nosuch.txt --frames 1");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors, "There is no text in nosuch.txt\n");
}
