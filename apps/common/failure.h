#pragma once

#include <stdexcept>
#include <string>

/// What the program returns to whoever started it; --help lists them.
enum class ExitStatus : int {
    Success = 0,
    WrongArguments = 2,
    BrokenData = 3,
    NoGraphics = 4,
    PictureNotWritten = 5,
};

/// Why the game cannot go on: one sentence for the user that names the file or the device.
class Failure : public std::runtime_error {
public:
    Failure(ExitStatus status, const std::string& message) : std::runtime_error(message), status(status) {}

    ExitStatus getStatus() const { return status; }

private:
    ExitStatus status;
};
