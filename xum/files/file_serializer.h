#pragma once

#include <xum/engine/export.h>
#include <xum/files/serializer.h>

#include <cstdint>
#include <fstream>
#include <string>

/// Writes to a file of its own, which is emptied first. A file that cannot be opened shows as a failure once something
/// has been written. A disk that is full may show only when the buffered rest is handed on: see flush.
class XUM_API FileSerializer final : public Serializer {
public:
    /// Names are as for File.
    /// @{
    explicit FileSerializer(const std::string& fileName);
    explicit FileSerializer(const std::wstring& fileName);
    /// @}

    bool failed() override;
    void write(const char* data, int size) override;

    /// Hands what is buffered to the system: what fails there, a full disk for example, counts from then on.
    void flush();

private:
    std::ofstream stream;
};

/// Reads from a file of its own. Of one that cannot be opened nothing is read, and this does not count as a failure.
class XUM_API FileDeserializer final : public Deserializer {
public:
    /// Names are as for File.
    /// @{
    explicit FileDeserializer(const std::string& fileName);
    explicit FileDeserializer(const std::wstring& fileName);
    /// @}

    bool failed() override;
    void read(char* data, int size) override;

    /// What getRemaining gives where there is no size: the largest number.
    static constexpr std::uint64_t unknownRemaining = ~std::uint64_t{0};

    /// How many bytes of the file are not read yet; unknownRemaining for what has no size, a pipe for example.
    std::uint64_t getRemaining() const { return remaining; }

private:
    void measure();

    std::ifstream stream;
    std::uint64_t remaining = 0;
};
