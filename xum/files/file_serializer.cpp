#include <xum/files/file_serializer.h>

#include <xum/files/file_opening.h>

#include <algorithm>
#include <bit>

// Values are copied as they lie in memory.
static_assert(std::endian::native == std::endian::little, "the file formats are little-endian");

FileSerializer::FileSerializer(const std::string& fileName)
{
    openFile(stream, fileName, std::ios::out | std::ios::binary);
}

FileSerializer::FileSerializer(const std::wstring& fileName)
{
    openFile(stream, fileName, std::ios::out | std::ios::binary);
}

bool FileSerializer::failed()
{
    return stream.bad();
}

void FileSerializer::write(const char* data, int size)
{
    // The library's own write leaves a stream that did not open at "failed", which is not asked for.
    if (!stream.good()) stream.setstate(std::ios::badbit);
    if (size > 0) stream.write(data, size);
}

void FileSerializer::flush()
{
    stream.flush();
}

FileDeserializer::FileDeserializer(const std::string& fileName)
{
    openFile(stream, fileName, std::ios::in | std::ios::binary);
    measure();
}

FileDeserializer::FileDeserializer(const std::wstring& fileName)
{
    openFile(stream, fileName, std::ios::in | std::ios::binary);
    measure();
}

bool FileDeserializer::failed()
{
    return stream.bad();
}

void FileDeserializer::read(char* data, int size)
{
    if (size <= 0) return;
    stream.read(data, size);
    if (remaining != unknownRemaining) remaining -= std::min(remaining, static_cast<std::uint64_t>(size));
}

void FileDeserializer::measure()
{
    if (!stream.is_open()) return;
    stream.seekg(0, std::ios::end);
    const std::streamoff end = stream.tellg();
    stream.seekg(0);
    remaining = end < 0 ? unknownRemaining : static_cast<std::uint64_t>(end);
    stream.clear(); // of the failure to seek in a pipe
}
