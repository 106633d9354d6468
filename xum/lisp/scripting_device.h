#pragma once

#include <xum/engine/export.h>

#include <string>

/// The script interpreter. Made by Engine::createScriptingDevice, given back to Engine::destroyScriptingDevice. All
/// scripts of a device share one environment. Scripts report to standard output; a failed evaluation is no failure of a
/// script, an expression that cannot be read is. See script_host.h for what a host adds. Slot order is ABI.
class XUM_API ScriptingDevice {
public:
    /// Loads base/base.lisp, engine.lisp, editor.lisp and game.lisp from the data root's "lisp/" directory, in this
    /// order, up to the first that fails; that is warned of: "Could not load base scripts!". Done once on creation.
    virtual void loadBaseScripts() = 0;

    /// Loads a script by its name without directory and extension. False when it is not found or an expression cannot
    /// be read; what stands before it stays evaluated.
    virtual bool loadScript(const std::string& name) = 0;

    /// Evaluates a text, in which comments are not allowed. False when an expression cannot be read, and for an empty
    /// text.
    virtual bool evaluateScript(const std::string& text) = 0;

protected:
    ~ScriptingDevice() = default;
};
