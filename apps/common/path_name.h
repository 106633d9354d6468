#pragma once

#include <filesystem>
#include <string>

/// Narrow file names, those of the command line, the environment and the engine, are in the code page of the process on
/// Windows and just bytes elsewhere. The standard library reads them as the C library is set up to, and writes UTF-8.

/// To be called before the first path is made of a narrow name: from now on they are read as the system reads them.
void readNarrowNamesAsTheSystemDoes();

/// The narrow name of a path, with '/', as the engine takes it.
std::string nameOf(const std::filesystem::path& path);

/// A path of a text in UTF-8, as SDL gives it out.
std::filesystem::path pathOfUtf8(const std::string& text);
