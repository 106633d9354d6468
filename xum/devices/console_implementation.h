#pragma once

#include <xum/devices/console.h>

class ConsoleImplementation final : public Console {
public:
    bool toggle() override;
    void print(const std::string& text) override;
    void execute(const std::string& command) override;
    void addCommand(const std::string& name) override;
    void removeCommand(const std::string& name) override;
    void setVariable(const std::string& name, const std::string& value) override;

private:
    bool open = false;
};
