#pragma once

#include "options.h"

/// Runs the editor until the user ends it. Throws Failure when it cannot go on.
void runEditor(const EditorOptions& options);
