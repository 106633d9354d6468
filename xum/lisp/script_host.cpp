#include <xum/lisp/script_host.h>

#include <xum/lisp/lisp_scripting_device.h>
#include <xum/lisp/script_host_values.h>

namespace {

/// Null for a device that is not ours.
LispScriptingDevice* lispDevice(ScriptingDevice* device)
{
    return dynamic_cast<LispScriptingDevice*>(device);
}

} // namespace

void callHostFunction(lisp_interpreter* interpreter, lisp_environment* /*environment*/, const lisp_closure* self,
                      lisp_object* arguments, std::uint32_t count, lisp_object* result)
{
    const auto& host = *static_cast<const LispScriptingDevice::HostFunction*>(self->user);
    ScriptCall::State state = {interpreter, arguments, count, result};
    ScriptCall call(state);
    host.device->callHost(host, call);
}

bool registerScriptFunction(ScriptingDevice* device, const std::string& name, const std::string& typeVariables,
                            const std::string& signature, ScriptFunction function, void* user)
{
    LispScriptingDevice* lisp = lispDevice(device);
    return lisp != nullptr && lisp->registerFunction(name, typeVariables, signature, function, user);
}

bool evaluateScript(ScriptingDevice* device, const std::string& text, ScriptValue& outValue)
{
    LispScriptingDevice* lisp = lispDevice(device);
    return lisp != nullptr && lisp->evaluate(text, &outValue);
}

void setScriptPrint(ScriptingDevice* device, ScriptPrintFunction function, void* user)
{
    if (LispScriptingDevice* lisp = lispDevice(device)) lisp->setPrint(function, user);
}
