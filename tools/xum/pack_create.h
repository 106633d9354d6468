#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

/// A file that goes into an archive.
struct FileToPack {
    std::string name; ///< in the archive
    std::filesystem::path path;
    std::uint32_t size;
};

/// All regular files below the directory by their names, bytewise. Reports what cannot be packed, and is false then:
/// the archive itself, more files than `largestCount`. What is no file is reported and left out.
bool findFilesToPack(const std::filesystem::path& directory, const std::filesystem::path& archive,
                     std::vector<FileToPack>& out, std::uint64_t largestCount = 0xFFFFFFFF);

/// Packs the directory. False when that failed, which has been reported; an older archive stays then.
bool createArchive(const std::string& archive, const std::string& directory);
