#include "base_scripts.h"

#include "environment.h"

OwnedScripts startScripts(Engine& engine, GameData& data)
{
    for (const char* script : {"base/base.lisp", "engine.lisp", "editor.lisp", "game.lisp"})
        data.provideFile(data.getFileName(scriptDirectory, script));
    setEnvironmentVariable("XUM_DATA_ROOT", data.getLocalRoot().c_str()); // there the engine looks for its scripts
    return {engine.createScriptingDevice(), {&engine}};
}
