#pragma once

#include <cstddef>
#include <string>

class LispSession;

/// What the shell says about the names of the library.

struct HelpText {
    const char* name;
    const char* text; // one line
};

/// A text for each built-in and each variable of the library.
const HelpText* helpTexts(std::size_t& count);

/// All names with their texts, and the shell's own commands.
void printHelp();

/// The signature and the text of one name, which is in lower case.
void printHelp(LispSession& session, const std::string& name);
