#include "transcript.h"

#include "captured_output.h"
#include "heap_check.h"

#include <file_contents.h>

#include <xum/lisp/lisp_collector.h>
#include <xum/lisp/lisp_evaluator.h>
#include <xum/lisp/lisp_loader.h>
#include <xum/lisp/lisp_memory.h>
#include <xum/lisp/lisp_object.h>
#include <xum/lisp/lisp_reader.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <regex>
#include <sstream>

namespace fs = std::filesystem;

// ---- reading ------------------------------------------------------------------------------------------------------

namespace {

constexpr const char* forcedCollectionMark = "[forced collection]";

bool takePrefix(std::string& text, const std::string& prefix)
{
    if (!text.starts_with(prefix)) return false;
    text.erase(0, prefix.size());
    return true;
}

/* Where the lines behind the directive go. */
std::string* obey(Transcript& transcript, std::string directive, std::string* target)
{
    if (directive == "text path") {
        transcript.isText = true;
    } else if (directive == "full region only") {
        transcript.needsFullRegion = true;
    } else if (directive == "next script") {
        return &transcript.scripts.emplace_back();
    } else if (takePrefix(directive, "file ")) {
        return &transcript.files.emplace_back(directive, "").second;
    } else if (takePrefix(directive, "directory ")) {
        transcript.directories.push_back(directive);
    } else {
        transcript.expected = "unknown directive: " + directive;
    }
    return target;
}

} // namespace

Transcript readTranscript(const fs::path& script)
{
    Transcript transcript;
    transcript.name = script.parent_path().filename().string() + "/" + script.stem().string();
    fs::path expected = fs::path(script).replace_extension(".expected");
#ifdef _WIN32
    const fs::path expectedHere = fs::path(script).replace_extension(".windows-expected");
    if (fs::exists(expectedHere)) expected = expectedHere;
#endif
    transcript.expected = fileContents(expected.string());
    std::istringstream source(fileContents(script.string()));
    std::string* target = &transcript.scripts.emplace_back();
    for (std::string line; std::getline(source, line);) {
        if (takePrefix(line, ";;; "))
            target = obey(transcript, line, target);
        else
            *target += line + (source.eof() ? "" : "\n");
    }
    return transcript;
}

std::vector<Transcript> allTranscripts()
{
    std::vector<fs::path> scripts;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(XUM_TEST_SCRIPTS))
        if (entry.path().extension() == ".lisp") scripts.push_back(entry.path());
    std::sort(scripts.begin(), scripts.end());
    std::vector<Transcript> transcripts;
    for (const fs::path& script : scripts) transcripts.push_back(readTranscript(script));
    return transcripts;
}

// ---- running ------------------------------------------------------------------------------------------------------

namespace {

void printLine(void*, const char* text)
{
    std::printf("%s\n", text);
}

void printError(const char* text)
{
    std::printf("[error] %s\n", text);
}

void printFatal(const char* text)
{
    std::printf("[fatal] %s\n", text);
}

void forceCollection(lisp_interpreter* interpreter)
{
    std::printf("%s\n", forcedCollectionMark);
    interpreter->memory->unlock_all(&interpreter->heap);
    interpreter->memory->garbage_collection(&interpreter->heap, &interpreter->root);
}

bool readAllWithCollections(lisp_interpreter* interpreter, const char* text, std::string* heapProblem)
{
    std::int64_t next = 0;
    do {
        lisp_object* frame = lisp_push_frame(interpreter, 2);
        if (frame == nullptr) return false;
        next = lisp_read(interpreter, &frame[0], &interpreter->root, text, next);
        if (next != 0) lisp_eval(interpreter, &frame[1], &interpreter->root, &frame[0]);
        lisp_pop_frame(interpreter, frame);
        forceCollection(interpreter);
        if (heapProblem->empty()) *heapProblem = lisp_check_heap(interpreter);
    } while (next != 0 && next != -1);
    return next == -1;
}

void makeFiles(const Transcript& transcript)
{
    fs::remove_all("base");
    for (const std::string& directory : transcript.directories) fs::create_directories(directory);
    for (const auto& [name, contents] : transcript.files) {
        fs::create_directories(fs::path(name).parent_path());
        writeFileContents(name, contents);
    }
}

std::string withoutForcedCollections(const std::string& output)
{
    std::istringstream source(output);
    std::string kept;
    for (std::string line; std::getline(source, line);) {
        if (line == forcedCollectionMark)
            std::getline(source, line);
        else
            kept += line + "\n";
    }
    return kept;
}

std::string withoutNumbers(const std::string& output)
{
    static const std::regex collector("full gc: \\d+ objects of \\d+ marked");
    static const std::regex information("garbage collector: \\d+ objects, \\d+ bytes");
    const std::string text = std::regex_replace(output, collector, "full gc: N objects of N marked");
    return std::regex_replace(text, information, "garbage collector: N objects, N bytes");
}

std::string withoutAddresses(const std::string& output)
{
    static const std::regex address("(:list|:array|:hash-table|:closure|:macro) \\([0-9a-f]+\\)");
    return std::regex_replace(output, address, "$1 (ADDRESS)");
}

} // namespace

TranscriptResult runTranscript(const Transcript& transcript, TranscriptMode mode, std::uint64_t regionSize)
{
    static const lisp_output output = {printLine, printError, nullptr};
    lisp_set_fatal_handler(printFatal); // the first one stays: not the one that the interpreter sets
    makeFiles(transcript);
    TranscriptResult result;
    CapturedOutput captured;
    const auto interpreter = std::make_unique<lisp_interpreter>();
    result.isStarted = lisp_start(interpreter.get(), &output, regionSize);
    if (!result.isStarted) return result;
    for (std::string script : transcript.scripts) {
        if (!transcript.isText) lisp_strip_comments(script.data());
        interpreter->memory->unlock_all(&interpreter->heap);
        const bool isRead = mode == TranscriptMode::Plain
                                ? lisp_read_all(interpreter.get(), script.c_str(), &interpreter->root, 0, nullptr)
                                : readAllWithCollections(interpreter.get(), script.c_str(), &result.heapProblem);
        std::printf("=> %s\n", isRead ? "true" : "false");
        if (result.heapProblem.empty()) result.heapProblem = lisp_check_heap(interpreter.get());
    }
    // What nothing reaches any more goes, and what stays must be whole.
    forceCollection(interpreter.get());
    if (result.heapProblem.empty()) result.heapProblem = lisp_check_heap(interpreter.get());
    result.output = withoutNumbers(withoutAddresses(withoutForcedCollections(captured.getText())));
    lisp_stop(interpreter.get());
    return result;
}
