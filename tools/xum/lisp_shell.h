#pragma once

class LispSession;

/// Reads expressions, over as many lines as they take, evaluates them and prints their values, until the input ends or
/// ":quit" stands on a line. With a terminal there are prompts, line editing and a history. Without one false is
/// returned when an expression could not be read.
bool runShell(LispSession& session);
