# Cross-compiles for Windows x86-64 with Debian's MinGW-w64. The environment variable XUM_WINDOWS_PREFIX names the
# folder with the dependencies, which tools/windows/dependencies makes.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)

# With "-posix", as the other flavour has no std::thread, and may own the plain names.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

if(DEFINED ENV{XUM_WINDOWS_PREFIX})
    set(XUM_WINDOWS_PREFIX "$ENV{XUM_WINDOWS_PREFIX}" CACHE PATH "The dependencies, built for Windows")
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES XUM_WINDOWS_PREFIX)
set(CMAKE_FIND_ROOT_PATH ${XUM_WINDOWS_PREFIX})
set(CMAKE_PREFIX_PATH ${XUM_WINDOWS_PREFIX})
# Programs are this machine's, everything else comes from the prefix: else the libraries of this machine are found.
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(PKG_CONFIG_EXECUTABLE /bin/false CACHE FILEPATH "" FORCE)

# Programs run through this one, those of ctest among them.
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/wine-run)
