#pragma once

#include <xum/files/resource_manager.h>

#include <string>

/// A text in memory as the only file that there is: configuration files come from files.
class TextAsFile final : public ResourceManager {
public:
    /// The text must outlive this.
    explicit TextAsFile(const std::string& text) : text(text) {}

    ResourceFileImplementation* addResourceFile(const std::string&) override { return nullptr; }

    bool load(std::vector<unsigned char>& data, const std::string&) override
    {
        data.assign(text.begin(), text.end());
        return true;
    }

private:
    const std::string& text;
};
