#pragma once

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <string>

/// A file that is written under a name of its own beside its place, and takes that place when it is whole. Until then,
/// and after any failure, an older file is as it was. Ctrl-C and a request to end count as failures.
class ReplacementFile {
public:
    /// A symbolic link at the place is replaced itself: see behindLinks.
    explicit ReplacementFile(std::filesystem::path place);

    /// Removes what has not taken its place.
    ~ReplacementFile();
    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;

    /// False when anything failed so far; getProblem says what.
    bool write(const void* data, std::size_t size);

    /// Puts the file in its place. The last thing to do.
    bool finish();

    /// "cannot be written: REASON".
    const std::string& getProblem() const { return problem; }

    /// Whether somebody wants the program to end; nothing can be written from then on.
    static bool isEndRequested();

private:
    void open();
    bool fail(const std::string& reason);

    std::filesystem::path place;
    std::filesystem::path ownName; // empty when there is no such file
    std::FILE* file = nullptr;
    std::string problem;
    void (*oldHandlers[2])(int);
};

/// What a symbolic link leads to; any other path as it is.
std::filesystem::path behindLinks(const std::filesystem::path& path);
