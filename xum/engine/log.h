#pragma once

/// @file
/// Reporting: a log file and two message boxes. There is no level, no timestamp and no configuration; everything runs
/// on the host's thread and nothing is locked. None of these functions reports a failure of its own.
///
/// A message box that cannot be shown is written to standard error as "TITLE: TEXT"; with XUM_MESSAGE_BOXES=0 in the
/// environment none is attempted.

#include <xum/engine/export.h>

#include <fstream>
#include <string>

/// The log: "log.txt" in the working directory, created and truncated by the first report of the process and closed
/// when the process exits. If it cannot be opened the stream stays failed and what is written is lost. End each line
/// with std::endl: a flushed line survives a crash right after it.
XUM_API std::ofstream& getLog();

/// Writes the log line "WARNING: MESSAGE", then shows a modal box titled "Warning" and returns when it was closed.
XUM_API void warning(const std::string& message);

/// Writes the log line "ERROR: MESSAGE", shows a modal box titled "Error", then ends the process through std::exit with
/// status -1. Never returns.
[[noreturn]] XUM_API void error(const std::string& message);
