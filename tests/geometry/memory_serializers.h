#pragma once

#include <xum/files/serializer.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <string>
#include <utility>

/// A host's own place to write to.
class MemorySerializer final : public Serializer {
public:
    bool failed() override { return isBroken; }
    void write(const char* data, int size) override
    {
        if (data == nullptr || size <= 0) throw std::invalid_argument("nothing is written");
        bytes.append(data, static_cast<std::size_t>(size));
    }

    std::string bytes;
    bool isBroken = false;
};

/// A host's own place to read from. The library cannot ask it how much there is.
class MemoryDeserializer final : public Deserializer {
public:
    /// What a read does that wants more than there is.
    enum class AtEnd { givesTheRest, givesNothing };

    explicit MemoryDeserializer(std::string bytes, AtEnd atEnd = AtEnd::givesTheRest)
        : bytes(std::move(bytes)), atEnd(atEnd)
    {}

    bool failed() override { return isBroken; }

    void read(char* data, int size) override
    {
        if (data == nullptr || size <= 0) throw std::invalid_argument("nothing is read");
        const auto wanted = static_cast<std::size_t>(size);
        const std::size_t left = bytes.size() - position;
        asked += wanted;
        if (wanted > left && atEnd == AtEnd::givesNothing) return;
        const std::size_t given = std::min(wanted, left);
        std::memcpy(data, bytes.data() + position, given);
        position += given;
    }

    void rewind() { position = 0; }

    /// How many bytes were asked for, there or not.
    std::size_t getAsked() const { return asked; }
    std::size_t getPosition() const { return position; }

    bool isBroken = false;

private:
    std::string bytes;
    AtEnd atEnd;
    std::size_t position = 0;
    std::size_t asked = 0;
};
