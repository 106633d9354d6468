#include "transcript.h"

#include <xum/lisp/lisp.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <sstream>

// Every script of the scripts folder is a test of its own: its whole output is compared, byte for byte. Then, area by
// area, the same with a collection behind every expression, and in regions that are too small.

namespace {

std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream source(text);
    for (std::string line; std::getline(source, line);) lines.push_back(line);
    return lines;
}

/* What an interpreter says when a region or its stacks, whose sizes follow the region's, are exhausted. */
bool isMemoryMessage(const std::string& line)
{
    return line == "error: out of memory!" || line == "error: not enough memory!" ||
           line == "error: setting closure parameters!" || line == "error: recursion too deep!";
}

/* The output is the expected one up to the line that says why it is not, or that ends a failed read behind it. */
void expectBeginningEndedByMemoryMessage(const std::string& output, const std::string& expected)
{
    const std::vector<std::string> lines = linesOf(output);
    const std::vector<std::string> wanted = linesOf(expected);
    const auto difference = std::mismatch(lines.begin(), lines.end(), wanted.begin(), wanted.end()).first;
    const bool isExplained =
        difference != lines.end() &&
        (isMemoryMessage(*difference) || (difference != lines.begin() && isMemoryMessage(*(difference - 1)) &&
                                          *difference == "error: could not create root list!"));
    EXPECT_TRUE(isExplained) << "output:\n" << output << "expected:\n" << expected;
}

void passesPlainly(const Transcript& transcript)
{
    const TranscriptResult result = runTranscript(transcript, TranscriptMode::Plain, lisp_region_size);
    EXPECT_EQ(result.output, transcript.expected);
    EXPECT_EQ(result.heapProblem, "");
}

void passesWithCollections(const Transcript& transcript)
{
    const TranscriptResult result = runTranscript(transcript, TranscriptMode::WithCollections, lisp_region_size);
    EXPECT_EQ(result.output, transcript.expected);
    EXPECT_EQ(result.heapProblem, "");
}

/* Larger and larger regions: first too small to start, then too small for the script, at last large enough. */
void passesInSmallRegions(const Transcript& transcript)
{
    if (transcript.needsFullRegion) return;
    for (std::uint64_t size = 4096; !::testing::Test::HasFailure(); size += size / 32 + 8) {
        SCOPED_TRACE("region of " + std::to_string(size) + " bytes");
        const std::uint64_t regionSize = std::min(size, lisp_region_size);
        const TranscriptResult result = runTranscript(transcript, TranscriptMode::Plain, regionSize);
        EXPECT_EQ(result.heapProblem, "");
        if (!result.isStarted) continue;
        if (result.output == transcript.expected || regionSize == lisp_region_size) {
            EXPECT_EQ(result.output, transcript.expected);
            return;
        }
        expectBeginningEndedByMemoryMessage(result.output, transcript.expected);
    }
}

class FunctionTest : public ::testing::Test {
public:
    explicit FunctionTest(std::function<void()> body) : body(std::move(body)) {}
    void TestBody() override { body(); }

private:
    std::function<void()> body;
};

void registerTest(const char* suite, const std::string& name, const std::function<void()>& body)
{
    ::testing::RegisterTest(suite, name.c_str(), nullptr, nullptr, __FILE__, __LINE__,
                            [body]() -> ::testing::Test* { return new FunctionTest(body); });
}

std::string testName(std::string name)
{
    std::replace(name.begin(), name.end(), '/', '_');
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

void registerArea(const char* suite, const std::string& area, const std::vector<Transcript>& transcripts,
                  void (*run)(const Transcript&))
{
    registerTest(suite, testName(area), [=] {
        for (const Transcript& transcript : transcripts) {
            SCOPED_TRACE(transcript.name);
            run(transcript);
        }
    });
}

const bool areRegistered = [] {
    std::map<std::string, std::vector<Transcript>> areas;
    for (const Transcript& transcript : allTranscripts()) {
        registerTest("Transcript", testName(transcript.name), [transcript] { passesPlainly(transcript); });
        areas[transcript.name.substr(0, transcript.name.find('/'))].push_back(transcript);
    }
    for (const auto& [area, transcripts] : areas) {
        registerArea("TranscriptsWithCollections", area, transcripts, passesWithCollections);
        registerArea("TranscriptsInSmallRegions", area, transcripts, passesInSmallRegions);
    }
    return true;
}();

} // namespace

TEST(Transcripts, areFound)
{
    EXPECT_TRUE(areRegistered);
    EXPECT_GT(allTranscripts().size(), 100u);
}
