#include <xum/lisp/lisp_scripting_device.h>

#include <xum/engine/log.h>
#include <xum/engine/log_hooks.h>
#include <xum/files/data_root.h>
#include <xum/lisp/lisp_builtins.h>
#include <xum/lisp/lisp_environment.h>
#include <xum/lisp/lisp_loader.h>
#include <xum/lisp/lisp_object.h>
#include <xum/lisp/lisp_reader.h>
#include <xum/lisp/lisp_stack.h>
#include <xum/lisp/lisp_token.h>
#include <xum/lisp/script_host_values.h>

#include <utility>

LispScriptingDevice::LispScriptingDevice(std::uint64_t regionSize) : interpreter(), output{print, failureHook, this}
{
    if (!lisp_start(&interpreter, &output, regionSize)) error("Could not init Lisp!");
}

LispScriptingDevice::LispScriptingDevice() : LispScriptingDevice(lisp_region_size)
{
    if (!setLoadPath()) error("Could not init Lisp!");
    loadBaseScripts();
    // Only now: the base scripts cannot call it while they are loaded for the first time.
    const lisp_native_descriptor reload = {"reload-scripts", "", "(:nil)",
                                           [](auto*, auto*, auto* self, auto*, auto, auto*) {
                                               static_cast<LispScriptingDevice*>(self->user)->runBaseScripts();
                                           }};
    lisp_define_native(&interpreter, &reload, this);
}

LispScriptingDevice::~LispScriptingDevice()
{
    lisp_stop(&interpreter);
}

void LispScriptingDevice::print(void* user, const char* text)
{
    LispScriptingDevice* device = static_cast<LispScriptingDevice*>(user);
    if (device->hostPrint == nullptr) {
        printHook(text);
        return;
    }
    try {
        device->hostPrint(text, device->hostPrintUser);
    } catch (...) {
        device->keepException();
    }
}

// An exception must not unwind the interpreter, whose stacks it would leave as they are. Nothing is printed about it:
// printing may be what has failed.
void LispScriptingDevice::keepException()
{
    if (!thrown) thrown = std::current_exception();
    if (interpreter.stack_origin != nullptr) interpreter.is_abandoned = true;
}

bool LispScriptingDevice::setLoadPath()
{
    const std::string directory = defaultDataRoot() + "lisp/";
    lisp_object text = {};
    lisp_object value = {};
    lisp_list* list = lisp_make_list(&interpreter, 1);
    if (list == nullptr || !lisp_set_text(&interpreter, &text, directory.data(), directory.size())) return false;
    list->first->element = lisp_copy_to_slot(&interpreter, &text);
    lisp_name* name = lisp_intern(&interpreter, "*load-path*");
    if (list->first->element == nullptr || name == nullptr) return false;
    lisp_set_list(&interpreter, &value, list, text.type);
    return lisp_set_symbol(&interpreter, &interpreter.root, name, &value, false, true) != nullptr;
}

bool LispScriptingDevice::load(const char* name)
{
    interpreter.memory->unlock_all(&interpreter.heap);
    return lisp_load(&interpreter, &interpreter.root, name);
}

bool LispScriptingDevice::runBaseScripts()
{
    for (const char* name : {"base/base", "engine", "editor", "game"})
        if (!load(name)) return false;
    return true;
}

void LispScriptingDevice::loadBaseScripts()
{
    const bool isLoaded = runBaseScripts();
    rethrow();
    if (!isLoaded) warning("Could not load base scripts!");
}

bool LispScriptingDevice::loadScript(const std::string& name)
{
    const bool isLoaded = load(name.c_str());
    rethrow();
    return isLoaded;
}

bool LispScriptingDevice::evaluateScript(const std::string& text)
{
    return evaluate(text, nullptr);
}

bool LispScriptingDevice::evaluate(const std::string& text, ScriptValue* outValue)
{
    interpreter.memory->unlock_all(&interpreter.heap);
    lisp_object last = {};
    lisp_set_nil(&interpreter, &last);
    const bool isRead = lisp_read_all(&interpreter, text.c_str(), &interpreter.root, 0, &last);
    rethrow();
    if (outValue != nullptr) *outValue = scriptValueOf(last);
    return isRead;
}

namespace {

std::string folded(std::string name)
{
    for (char& c : name)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return name;
}

} // namespace

bool LispScriptingDevice::registerFunction(const std::string& name, const std::string& typeVariables,
                                           const std::string& signature, ScriptFunction function, void* user)
{
    const std::string symbolName = folded(name);
    const bool isSymbol = lisp_classify(symbolName.c_str(), symbolName.size()) == lisp_kind_symbol;
    if (!isSymbol || function == nullptr) return false;
    const lisp_object* known = lisp_find_symbol(&interpreter, &interpreter.root, symbolName.c_str());
    if (known != nullptr && known->payload.symbol->is_constant) return false;

    hostFunctions.push_back({this, function, user});
    const lisp_native_descriptor descriptor = {symbolName.c_str(), typeVariables.c_str(), signature.c_str(),
                                               callHostFunction};
    if (lisp_define_native(&interpreter, &descriptor, &hostFunctions.back()) != nullptr) return true;
    hostFunctions.pop_back();
    return false;
}

void LispScriptingDevice::setPrint(ScriptPrintFunction function, void* user)
{
    hostPrint = function;
    hostPrintUser = user;
}

// An exception must not unwind the interpreter, whose stacks it would leave as they are.
void LispScriptingDevice::callHost(const HostFunction& host, ScriptCall& call)
{
    try {
        host.function(call, host.user);
    } catch (...) {
        if (!thrown) thrown = std::current_exception();
        interpreter.is_stopped = true;
        lisp_abandon(&interpreter, "error: exception in a function of the host!");
    }
}

void LispScriptingDevice::rethrow()
{
    interpreter.is_stopped = false;
    if (thrown) std::rethrow_exception(std::exchange(thrown, nullptr));
}
