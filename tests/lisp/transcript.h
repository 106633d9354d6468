#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

/// A script and everything that it writes, which stands in a file of the same name with the extension ".expected", or
/// ".windows-expected" where it is something else on Windows. In the script's file, lines that begin with ";;;" are for
/// the test:
///
///     ;;; text path          evaluate as a text: comments are not stripped
///     ;;; full region only   too slow or too large for small regions
///     ;;; next script        another script for the same interpreter, loaded behind the one before
///     ;;; file NAME          what follows, up to the next such line, is a file in the working directory
///     ;;; directory NAME     make a directory there
struct Transcript {
    std::string name; // "area/behaviour"
    std::vector<std::string> scripts;
    std::vector<std::pair<std::string, std::string>> files;
    std::vector<std::string> directories;
    bool isText = false;
    bool needsFullRegion = false;
    std::string expected;
};

/// All transcripts of the source tree, in the order of their names.
std::vector<Transcript> allTranscripts();
Transcript readTranscript(const std::filesystem::path& script);

enum class TranscriptMode {
    Plain,
    WithCollections, ///< unlocks and collects behind every expression
};

struct TranscriptResult {
    bool isStarted = false;  ///< there was memory for an interpreter
    std::string output;      ///< everything that was written to standard output, with addresses and numbers replaced
    std::string heapProblem; ///< the first one, or empty
};

TranscriptResult runTranscript(const Transcript& transcript, TranscriptMode mode, std::uint64_t regionSize);
