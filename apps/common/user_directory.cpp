#include "user_directory.h"

#include "path_name.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace {

std::filesystem::path findParent()
{
    const auto read = [](const char* name) -> std::filesystem::path {
        const char* const value = std::getenv(name);
        return value == nullptr ? "" : value;
    };
#ifdef _WIN32
    return read("APPDATA");
#else
    std::filesystem::path configured = read("XDG_CONFIG_HOME");
    if (configured.is_absolute()) return configured;
    const std::filesystem::path home = read("HOME");
    return home.empty() ? home : home / ".config";
#endif
}

} // namespace

std::string findUserDirectory()
{
    const std::filesystem::path parent = findParent();
    if (parent.empty()) return {};
    std::error_code failure;
    std::filesystem::create_directories(parent / "xum-engine", failure);
    return failure ? "" : nameOf(parent / "xum-engine") + "/";
}
