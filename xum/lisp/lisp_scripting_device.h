#pragma once

#include <xum/lisp/lisp.h>
#include <xum/lisp/script_host.h>
#include <xum/lisp/scripting_device.h>

#include <cstdint>
#include <exception>
#include <list>

class LispScriptingDevice final : public ScriptingDevice {
public:
    /// Starts an interpreter that searches the data root's "lisp/" directory, and loads the base scripts. Without
    /// memory for the heap it is a fatal error: "Could not init Lisp!".
    LispScriptingDevice();
    ~LispScriptingDevice();

    // The interpreter hands its address out.
    LispScriptingDevice(const LispScriptingDevice&) = delete;
    LispScriptingDevice& operator=(const LispScriptingDevice&) = delete;

    void loadBaseScripts() override;
    bool loadScript(const std::string& name) override;
    bool evaluateScript(const std::string& text) override;

    bool evaluate(const std::string& text, ScriptValue* outValue);
    bool registerFunction(const std::string& name, const std::string& typeVariables, const std::string& signature,
                          ScriptFunction function, void* user);
    void setPrint(ScriptPrintFunction function, void* user);

    /// The base scripts up to the first that fails; false then.
    bool runBaseScripts();

    /// Runs a host's function in a call of its closure.
    struct HostFunction {
        LispScriptingDevice* device;
        ScriptFunction function;
        void* user;
    };
    void callHost(const HostFunction& host, ScriptCall& call);

private:
    /// Starts the interpreter alone: if the other constructor throws after that, the destructor runs.
    explicit LispScriptingDevice(std::uint64_t regionSize);

    bool load(const char* name);
    bool setLoadPath();
    void keepException();
    void rethrow();

    lisp_interpreter interpreter;
    lisp_output output;
    ScriptPrintFunction hostPrint = nullptr;
    void* hostPrintUser = nullptr;
    std::list<HostFunction> hostFunctions;
    std::exception_ptr thrown; // by a host's function, passed on when the evaluation has ended

    static void print(void* user, const char* text);
};
