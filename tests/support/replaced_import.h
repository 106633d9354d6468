#pragma once

/// On Windows each library keeps a table of the functions that it takes from others. This puts a function of the test
/// program into the tables of the engine and of the program itself, as on other systems the linker does with a function
/// of the same name. Must be called before another thread may call the function; false when neither imports it.
bool replaceImport(const char* name, void* replacement);
