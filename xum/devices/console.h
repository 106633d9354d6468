#pragma once

#include <xum/engine/export.h>

#include <string>

/// The place for a drop-down console: it remembers whether it is open, and the rest does nothing yet. Made by
/// Engine::createConsole, given back to Engine::destroyConsole. Slot order is ABI.
class XUM_API Console {
public:
    /// Opens the console, or closes it, and returns whether it is open now. A new console is closed.
    virtual bool toggle() = 0;

    /// Does nothing yet: no text is kept, no command and no variable.
    /// @{
    virtual void print(const std::string& text) = 0;
    virtual void execute(const std::string& command) = 0;
    virtual void addCommand(const std::string& name) = 0;
    virtual void removeCommand(const std::string& name) = 0;
    virtual void setVariable(const std::string& name, const std::string& value) = 0;
    /// @}

protected:
    ~Console() = default;
};
