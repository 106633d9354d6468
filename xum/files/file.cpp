#include <xum/files/file.h>

#include <xum/engine/log.h>
#include <xum/files/file_opening.h>

#include <type_traits>

namespace {

template <class Stream>
constexpr std::ios::openmode direction = std::is_same_v<Stream, std::ifstream> ? std::ios::in : std::ios::out;

} // namespace

template <class Stream>
File<Stream>::File(const std::string& fileName, std::ios::openmode mode)
{
    openFile(stream, fileName, mode | direction<Stream>);
}

template <class Stream>
File<Stream>::File(const std::wstring& fileName, std::ios::openmode mode)
{
    openFile(stream, fileName, mode | direction<Stream>);
}

template <class Stream>
File<Stream>::File(const std::string& fileName, std::ios::openmode mode, Unbuffered)
{
    stream.rdbuf()->pubsetbuf(nullptr, 0); // counts only before the file is open
    openFile(stream, fileName, mode | direction<Stream>);
}

template <class Stream>
File<Stream>::~File() = default;

// Not inline: a host on Windows takes no inline function from an exported template.
template <class Stream>
Stream& File<Stream>::getStream()
{
    return stream;
}

template <class Stream>
bool File<Stream>::isOpen() const
{
    return stream.is_open();
}

template <class Stream>
std::uint64_t File<Stream>::getSize()
{
    const std::streamoff position = tell(stream);
    if (position < 0) return 0;
    seek(stream, 0, std::ios::end);
    const std::streamoff size = tell(stream);
    seek(stream, position, std::ios::beg);
    return size < 0 ? 0 : static_cast<std::uint64_t>(size);
}

template <class Stream>
void File<Stream>::setPosition(std::int64_t offset, FileSeekMode::Type mode)
{
    switch (mode) {
    case FileSeekMode::Begin: seek(stream, offset, std::ios::beg); return;
    case FileSeekMode::End: seek(stream, offset, std::ios::end); return;
    }
    error("File::setPosition() -> invalid seek mode!");
}

template <class Stream>
std::streamoff File<Stream>::tell(std::ifstream& stream)
{
    return stream.tellg();
}

template <class Stream>
std::streamoff File<Stream>::tell(std::ofstream& stream)
{
    return stream.tellp();
}

template <class Stream>
void File<Stream>::seek(std::ifstream& stream, std::streamoff offset, std::ios::seekdir direction)
{
    stream.seekg(offset, direction);
}

template <class Stream>
void File<Stream>::seek(std::ofstream& stream, std::streamoff offset, std::ios::seekdir direction)
{
    stream.seekp(offset, direction);
}

template class File<std::ifstream>;
template class File<std::ofstream>;

InputFile::InputFile(const std::string& fileName) : File(fileName, std::ios::binary) {}

InputFile::InputFile(const std::wstring& fileName) : File(fileName, std::ios::binary) {}

InputFile::InputFile(const std::string& fileName, Unbuffered unbuffered) : File(fileName, std::ios::binary, unbuffered)
{}

bool InputFile::read(void* buffer, unsigned size)
{
    getStream().read(static_cast<char*>(buffer), static_cast<std::streamsize>(size));
    return !getStream().fail();
}

bool InputFile::read(std::vector<unsigned char>& buffer, unsigned size)
{
    return size <= buffer.size() && read(buffer.data(), size);
}

OutputFile::OutputFile(const std::string& fileName) : File(fileName, std::ios::binary | std::ios::trunc) {}

OutputFile::OutputFile(const std::wstring& fileName) : File(fileName, std::ios::binary | std::ios::trunc) {}

bool OutputFile::write(const void* buffer, unsigned size)
{
    getStream().write(static_cast<const char*>(buffer), static_cast<std::streamsize>(size));
    return !getStream().fail();
}

bool OutputFile::write(const std::vector<unsigned char>& buffer, unsigned size)
{
    return size <= buffer.size() && write(buffer.data(), size);
}

bool OutputFile::flush()
{
    getStream().flush();
    return !getStream().fail();
}
