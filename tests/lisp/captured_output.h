#pragma once

#include <cstdio>
#include <string>

#ifdef _WIN32
#    include <io.h>
#else
#    include <unistd.h>
#endif

/// Sends C standard output into a file until the object goes away.
class CapturedOutput {
public:
    CapturedOutput() : file(std::tmpfile())
    {
        std::fflush(stdout);
#ifdef _WIN32
        original = _dup(1);
        _dup2(_fileno(file), 1);
#else
        original = dup(1);
        dup2(fileno(file), 1);
#endif
    }

    ~CapturedOutput()
    {
        std::fflush(stdout);
#ifdef _WIN32
        _dup2(original, 1);
        _close(original);
#else
        dup2(original, 1);
        close(original);
#endif
        std::fclose(file);
    }

    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;

    /// Everything so far.
    std::string getText()
    {
        std::fflush(stdout);
        std::fseek(file, 0, SEEK_END);
        const long size = std::ftell(file);
        std::string text(size > 0 ? static_cast<std::size_t>(size) : 0, '\0');
        std::rewind(file);
        text.resize(std::fread(text.data(), 1, text.size(), file));
        std::fseek(file, 0, SEEK_END); // where the next output goes
        return text;
    }

private:
    std::FILE* file;
    int original = -1;
};
