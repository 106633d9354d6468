#pragma once

struct lisp_interpreter;

/// While one lives, Ctrl-C gives up the evaluation that is running, or the line that is being typed, instead of ending
/// the program. One at a time.
class Interruption {
public:
    explicit Interruption(lisp_interpreter& interpreter);
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;
};

/// Whether there was a Ctrl-C since it was last taken notice of.
bool isInterrupted();

/// The same, and takes notice.
bool takeInterruption();
