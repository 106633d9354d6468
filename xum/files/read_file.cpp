#include <xum/files/read_file.h>

#include <filesystem>
#include <fstream>
#include <limits>
#include <system_error>

bool readFile(const std::string& fileName, std::vector<char>& out)
{
    if (fileName.find('\0') != std::string::npos) return false;
    std::error_code failure;
    if (std::filesystem::is_directory(fileName, failure)) return false; // opens like a file on some systems
    std::ifstream file(fileName, std::ios::binary);
    file.seekg(0, std::ios::end);
    const std::streamoff size = file.tellg();
    if (!file || size < 0 || size > std::numeric_limits<int>::max()) return false;
    file.seekg(0);
    std::vector<char> bytes(static_cast<std::size_t>(size));
    if (!file.read(bytes.data(), size)) return false;
    out.swap(bytes);
    return true;
}
