#pragma once

#include <fstream>
#include <string>

// How file names reach the platform, for all our file streams. A narrow name goes as it is, in the platform's narrow
// encoding; a wide one through the wide-character call where there is one, and as UTF-8 elsewhere. What cannot be
// opened leaves the stream failed: a missing file, a name with a NUL inside, a directory (which opens like a file on
// some systems, and then pretends to hold 2^63 bytes).

void openFile(std::ifstream& stream, const std::string& fileName, std::ios::openmode mode);
void openFile(std::ifstream& stream, const std::wstring& fileName, std::ios::openmode mode);
void openFile(std::ofstream& stream, const std::string& fileName, std::ios::openmode mode);
void openFile(std::ofstream& stream, const std::wstring& fileName, std::ios::openmode mode);

/// False when there is certainly no file of that name to read, which is found out faster than by opening one. Nor is a
/// named pipe a file here: to open it would wait for somebody to write.
bool mayBeReadable(const std::string& fileName);

/// Opens what mayBeReadable has said true of: whether it is a directory is not asked a second time.
void openReadable(std::ifstream& stream, const std::string& fileName, std::ios::openmode mode);

/// The UTF-8 form of a wide name. False for what is no name: a NUL, a code point that does not exist.
bool wideToUtf8(const std::wstring& name, std::string& out);
