#include <dlfcn.h>
#include <stdbool.h>
#include <stdio.h>
#include <string.h>

/* A host in plain C that opens the library at run time, which finds the entry points by name. Closing the library
   unloads it, so that opening it again starts afresh; "--stays-loaded" leaves that out. */

typedef void* (*Start)(bool editor);
typedef void (*Stop)(void* started);

static void* find(void* library, const char* name)
{
    void* symbol = dlsym(library, name);
    if (symbol == NULL) fprintf(stderr, "%s is missing\n", name);
    return symbol;
}

static int start_and_stop(void* library, const char* start_name, const char* stop_name)
{
    void* start_symbol = find(library, start_name);
    void* stop_symbol = find(library, stop_name);
    if (start_symbol == NULL || stop_symbol == NULL) return 1;

    Start start;
    Stop stop;
    memcpy(&start, &start_symbol, sizeof start); /* ISO C knows no cast from an object to a function pointer */
    memcpy(&stop, &stop_symbol, sizeof stop);
    void* started = start(false);
    if (started == NULL) {
        fprintf(stderr, "%s did not start\n", start_name);
        return 1;
    }
    stop(started);
    return 0;
}

int main(int argc, char** argv)
{
    if (argc < 2) return 1;
    void* library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    if (library == NULL) {
        fprintf(stderr, "%s\n", dlerror());
        return 1;
    }
    if (start_and_stop(library, "initEngine", "shutdownEngine") != 0) return 1;
    if (start_and_stop(library, "initGameEngine", "shutdownGameEngine") != 0) return 1;
    if (argc > 2 && strcmp(argv[2], "--stays-loaded") == 0) return 0;

    dlclose(library);
    if (dlopen(argv[1], RTLD_NOW | RTLD_NOLOAD) != NULL) {
        fprintf(stderr, "the library stays loaded\n");
        return 1;
    }
    return 0;
}
