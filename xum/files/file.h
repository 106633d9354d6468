#pragma once

#include <xum/engine/export.h>

#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

/// Where File::setPosition counts from.
namespace FileSeekMode {
/// Other values are a fatal error.
enum Type : int {
    Begin = 0, ///< the start of the file
    End = 1,   ///< its end: a negative offset reaches back
};
}

/// A binary file: bytes go through untranslated. Narrow names are in the platform's narrow encoding (UTF-8 everywhere
/// but on Windows), wide ones may hold any character. A file that cannot be opened is no error here: isOpen() tells,
/// and every read and write of it is false. A failure lasts: after it every operation fails. Files of any size work.
template <class Stream>
class XUM_API File {
public:
    /// The flag of the stream's own direction is always added to the mode. With std::ios::ate the position is at the
    /// end.
    File(const std::string& fileName, std::ios::openmode mode);

    /// The same for a wide name.
    File(const std::wstring& fileName, std::ios::openmode mode);
    virtual ~File();

    File(const File&) = delete;
    File& operator=(const File&) = delete;

    /// Whether it was opened; a failure later on does not change that.
    bool isOpen() const;

    /// In bytes; 0 when the file is not open or has failed. The position stays.
    std::uint64_t getSize();

    /// Moves to a position in bytes. Another mode than FileSeekMode's two is a fatal error:
    /// "File::setPosition() -> invalid seek mode!".
    void setPosition(std::int64_t offset, FileSeekMode::Type mode);

protected:
    /// Asks the system for each read and write at once: for large parts at scattered places.
    struct Unbuffered {};

    /// As the public constructor, but without a buffer.
    File(const std::string& fileName, std::ios::openmode mode, Unbuffered);

    /// For derived files. Position and failures are shared with the public operations.
    Stream& getStream();

private:
    static std::streamoff tell(std::ifstream& stream);
    static std::streamoff tell(std::ofstream& stream);
    static void seek(std::ifstream& stream, std::streamoff offset, std::ios::seekdir direction);
    static void seek(std::ofstream& stream, std::streamoff offset, std::ios::seekdir direction);

    Stream stream;
};

extern template class XUM_API File<std::ifstream>;
extern template class XUM_API File<std::ofstream>;

/// A file to read from. A directory counts as a file that cannot be opened.
class XUM_API InputFile : public File<std::ifstream> {
public:
    /// With the position at the start.
    /// @{
    explicit InputFile(const std::string& fileName);
    explicit InputFile(const std::wstring& fileName);
    /// @}

    /// Reads `size` bytes. False when the file has not as many left; what it has was read.
    bool read(void* buffer, unsigned size);

    /// Reads into the start of the vector, whose size stays. False, with nothing read, when that is below `size`.
    bool read(std::vector<unsigned char>& buffer, unsigned size);

protected:
    /// Without a buffer.
    InputFile(const std::string& fileName, Unbuffered);
};

/// A file to write to; an existing one is emptied.
class XUM_API OutputFile : public File<std::ofstream> {
public:
    /// Makes the file if it is not there, but no directories.
    /// @{
    explicit OutputFile(const std::string& fileName);
    explicit OutputFile(const std::wstring& fileName);
    /// @}

    /// Writes `size` bytes into the stream's buffer. True as long as nothing has failed: a full disk may show only when
    /// the buffer is handed on, see flush.
    bool write(const void* buffer, unsigned size);

    /// Writes from the start of the vector. False, with nothing written, when that holds fewer bytes.
    bool write(const std::vector<unsigned char>& buffer, unsigned size);

    /// Hands what is buffered to the system; true when all that was written so far has arrived there.
    bool flush();
};
