#pragma once

#include <xum/files/resource_file_implementation.h>
#include <xum/files/resource_manager.h>

/// The archives in the order in which they were added.
class ResourceManagerImplementation final : public BaseList<ResourceFileImplementation>, public ResourceManager {
public:
    ResourceManagerImplementation() : BaseList(true) {}

    ResourceFileImplementation* addResourceFile(const std::string& fileName) override;
    bool load(std::vector<unsigned char>& data, const std::string& name) override;
};
