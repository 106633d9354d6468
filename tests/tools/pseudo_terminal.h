#pragma once

#include <string>
#include <vector>

/// A program that runs in a terminal of its own, driven by keys.
class PseudoTerminal {
public:
    PseudoTerminal(const std::string& program, const std::vector<std::string>& arguments);
    ~PseudoTerminal();
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    void type(const std::string& keys);

    /// Waits until the text has been shown behind what was waited for before. False when the program ends first, or
    /// when nothing is shown for that time.
    bool waitFor(const std::string& text, int milliseconds = 30000);

    /// Waits for the program's end. What its main returned; -1 when it did not end by itself.
    int waitForEnd();

    /// Everything that was shown so far.
    const std::string& getShown() const { return shown; }

private:
    bool readMore(int milliseconds);

    int process = -1;
    int terminal = -1;
    std::string shown;
    std::size_t searched = 0;
};
