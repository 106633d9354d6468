#pragma once

#include <xum/engine/export.h>
#include <xum/files/serializer.h>

#include <fstream>
#include <string>

/// Writes to a file of its own, which is emptied first. A file that cannot be opened shows as a failure once something
/// has been written. A disk that is full may show only when the buffered rest is handed on, in the destructor.
class XUM_API FileSerializer final : public Serializer {
public:
    explicit FileSerializer(const std::string& fileName);
    explicit FileSerializer(const std::wstring& fileName);

    bool failed() override;
    void write(const char* data, int size) override;

private:
    std::ofstream stream;
};

/// Reads from a file of its own. Of one that cannot be opened nothing is read, and this does not count as a failure.
class XUM_API FileDeserializer final : public Deserializer {
public:
    explicit FileDeserializer(const std::string& fileName);
    explicit FileDeserializer(const std::wstring& fileName);

    bool failed() override;
    void read(char* data, int size) override;

private:
    std::ifstream stream;
};
