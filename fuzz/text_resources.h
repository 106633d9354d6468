#pragma once

#include <xum/files/resource_manager.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// Has one file, of any name.
class TextResources final : public ResourceManager {
public:
    TextResources(const std::uint8_t* data, std::size_t size) : bytes(data, data + size) {}

    ResourceFileImplementation* addResourceFile(const std::string&) override { return nullptr; }

    bool load(std::vector<unsigned char>& data, const std::string&) override
    {
        data = bytes;
        return true;
    }

private:
    std::vector<unsigned char> bytes;
};
