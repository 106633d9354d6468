#pragma once

#include "editor.h"

#include <xum/lisp/script_host.h>

#include <vector>

/// A function that scripts of the editor may call.
struct EditorFunction {
    const char* name;
    const char* signature; ///< of the script language
    void (*function)(Editor& editor, ScriptCall& call);
};

/// All of them, apart from those of the picture: ScriptConsole adds these.
const std::vector<EditorFunction>& getEditorFunctions();
