#pragma once

/// What the script interpreter is given as its output and its failure callback: it knows no log of its own.

/// Writes the text and a newline to standard output, not to the log.
void printHook(const char* text);

/// Hands the text to error(): never returns.
[[noreturn]] void failureHook(const char* text);
