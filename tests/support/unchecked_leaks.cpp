// For programs that open windows with OpenGL or unload libraries: what a driver keeps looks lost once the driver was
// unloaded, and cannot be told apart by name. The address sanitizer asks the program for its settings here.

extern "C" __attribute__((visibility("default"))) const char* __asan_default_options();
extern "C" const char* __asan_default_options()
{
    return "detect_leaks=0";
}
