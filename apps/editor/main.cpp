#include "failure.h"
#include "options.h"
#include "path_name.h"
#include "workspace.h"

#include <cstdio>

int main(int argc, char** argv)
{
    readNarrowNamesAsTheSystemDoes();
    int status = static_cast<int>(ExitStatus::Success);
    const std::optional<EditorOptions> options = readOptions(argc, argv, status);
    if (!options) return status;
    try {
        runEditor(*options);
    } catch (const Failure& failure) {
        std::fprintf(stderr, "xum-editor: %s\n", failure.what());
        status = static_cast<int>(failure.getStatus());
    }
    return status;
}
