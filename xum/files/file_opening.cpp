#include <xum/files/file_opening.h>

#ifndef _WIN32
#    include <sys/stat.h>
#endif

namespace {

template <class Name>
bool isName(const Name& name)
{
    return name.find(typename Name::value_type(0)) == Name::npos;
}

// Asked only of what did open: most names that are tried do not.
void refuseDirectory([[maybe_unused]] std::ifstream& stream, [[maybe_unused]] const std::string& fileName)
{
#ifndef _WIN32
    if (!stream.is_open()) return;
    struct stat status = {};
    if (stat(fileName.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) return;
    stream.close();
    stream.setstate(std::ios::failbit);
#endif
}

template <class Stream>
void openNarrow(Stream& stream, const std::string& fileName, std::ios::openmode mode)
{
    if (isName(fileName))
        stream.open(fileName, mode);
    else
        stream.setstate(std::ios::failbit);
}

template <class Stream>
void openWide(Stream& stream, const std::wstring& fileName, std::ios::openmode mode)
{
#ifdef _WIN32
    if (isName(fileName))
        stream.open(fileName.c_str(), mode);
    else
        stream.setstate(std::ios::failbit);
#else
    std::string narrow;
    if (wideToUtf8(fileName, narrow))
        openFile(stream, narrow, mode);
    else
        stream.setstate(std::ios::failbit);
#endif
}

} // namespace

void openFile(std::ifstream& stream, const std::string& fileName, std::ios::openmode mode)
{
    openNarrow(stream, fileName, mode);
    refuseDirectory(stream, fileName);
}

void openFile(std::ifstream& stream, const std::wstring& fileName, std::ios::openmode mode)
{
    openWide(stream, fileName, mode);
}

void openFile(std::ofstream& stream, const std::string& fileName, std::ios::openmode mode)
{
    openNarrow(stream, fileName, mode);
}

void openFile(std::ofstream& stream, const std::wstring& fileName, std::ios::openmode mode)
{
    openWide(stream, fileName, mode);
}

bool mayBeReadable([[maybe_unused]] const std::string& fileName)
{
#ifdef _WIN32
    return true;
#else
    struct stat status = {};
    if (stat(fileName.c_str(), &status) != 0) return false;
    return !S_ISDIR(status.st_mode) && !S_ISFIFO(status.st_mode) && !S_ISSOCK(status.st_mode);
#endif
}

void openReadable(std::ifstream& stream, const std::string& fileName, std::ios::openmode mode)
{
    openNarrow(stream, fileName, mode);
}

bool wideToUtf8(const std::wstring& name, std::string& out)
{
    out.clear();
    for (std::size_t i = 0; i < name.size(); ++i) {
        char32_t code = static_cast<char32_t>(name[i]);
        if (sizeof(wchar_t) == 2) { // surrogate pairs
            code &= 0xFFFF;
            if (code >= 0xD800 && code < 0xDC00 && i + 1 < name.size()) {
                const char32_t low = static_cast<char32_t>(name[i + 1]) & 0xFFFF;
                if (low >= 0xDC00 && low < 0xE000) {
                    code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
                    ++i;
                }
            }
        }
        if (code == 0 || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000)) return false;
        if (code < 0x80) {
            out += static_cast<char>(code);
            continue;
        }
        const unsigned following = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
        out += static_cast<char>((0xF0U << (3 - following)) | (code >> (6 * following)));
        for (unsigned rest = following; rest-- > 0;) out += static_cast<char>(0x80 | ((code >> (6 * rest)) & 0x3F));
    }
    return true;
}
