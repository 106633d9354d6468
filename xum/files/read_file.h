#pragma once

#include <cstdint>
#include <string>
#include <vector>

class InputFile;

/// Reads a whole file. False, with `out` untouched, for what cannot be opened or read: a directory, a missing file, a
/// name that holds a NUL, more bytes than an int counts.
bool readFile(const std::string& fileName, std::vector<char>& out);

/// Reads the next `size` bytes, also more than one read can ask for. False when there are not as many; what there is
/// was read. False also for no bytes of a file that has failed before: one whose size could not be found out.
bool readBytes(InputFile& file, void* out, std::uint64_t size);

/// False when there is no memory for so many bytes; then `data` stays as it was.
bool resizeIfPossible(std::vector<unsigned char>& data, std::uint64_t size);
