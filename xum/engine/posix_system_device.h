#pragma once

#include <xum/engine/system_device.h>

class PosixSystemDevice final : public SystemDevice {
public:
    bool createDirectory(const std::string& path) override;
    void listFiles(const std::string& directory, const std::string& filter, bool recursive,
                   FileListingCallback callback) override;
    bool hasClipboardText() override;
    std::string getClipboardText() override;
    void setClipboardText(const std::string& text) override;
};
