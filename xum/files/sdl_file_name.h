#pragma once

#include <string>

/// A narrow file name as SDL wants it, which is UTF-8 on every system: narrow names are in the code page of the process
/// on Windows. No memory is allocated. A name that cannot be put so is empty, which opens nothing.
class SdlFileName {
public:
    /// The name must outlive the object.
    explicit SdlFileName(const std::string& name);

    SdlFileName(const SdlFileName&) = delete;
    SdlFileName& operator=(const SdlFileName&) = delete;

    const char* get() const { return text; }

private:
#ifdef _WIN32
    static constexpr int longest = 1024; // four times what the system's calls take
    char converted[longest * 3 + 1];
#endif
    const char* text;
};
