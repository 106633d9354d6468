#include "config_text.h"

#include "printable_text.h"
#include "report.h"

#include <xum/files/config_place.h>
#include <xum/files/config_reader.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace {

/// The largest text that is read, so that a device without an end is no danger.
constexpr std::uint64_t largestText = 1u << 30;

struct FileCloser {
    void operator()(std::FILE* file) const
    {
        if (file != stdin) std::fclose(file);
    }
};

bool readAll(std::FILE* file, std::string& out)
{
    char block[65536];
    while (out.size() <= largestText) {
        const std::size_t size = std::fread(block, 1, sizeof block, file);
        out.append(block, size);
        if (size < sizeof block) return std::ferror(file) == 0;
    }
    return true;
}

/// Empty, or why the text could not be read.
std::string readText(const std::string& fileName, std::string& out)
{
    const bool isStandardInput = fileName == "-";
    std::error_code unknown;
    if (!isStandardInput && std::filesystem::is_directory(fileName, unknown)) return "is a directory";
    const std::unique_ptr<std::FILE, FileCloser> file(isStandardInput ? stdin : std::fopen(fileName.c_str(), "rb"));
    if (file == nullptr) return std::string("cannot be opened: ") + std::strerror(errno);
    if (!readAll(file.get(), out)) return std::string("cannot be read: ") + std::strerror(errno);
    return out.size() > largestText ? "is too large for a configuration (more than 1 GiB)" : "";
}

} // namespace

std::optional<ConfigText> readConfig(const std::string& fileName)
{
    std::optional<ConfigText> config(std::in_place);
    config->name = fileName == "-" ? "<stdin>" : printable(fileName);
    if (const std::string problem = readText(fileName, config->text); !problem.empty()) {
        report(config->name + ": " + problem);
        return {};
    }
    if (config->text.empty()) {
        report("WARNING: empty config file (" + config->name + ")!");
        return config;
    }
    try {
        config->root = ConfigReader(config->text).read();
    } catch (const ConfigSyntaxError& problem) {
        report(config->name + ":" + describePlace(config->text, problem.position) + ": " + printable(problem.message));
        return {};
    }
    return config;
}
