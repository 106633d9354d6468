# Windows looks for the libraries of a program beside it. They are copied there, in the build folder and in an
# installation: those that the toolchain's prefix holds, and the compiler's own.
file(GLOB xum_runtime_libraries ${XUM_WINDOWS_PREFIX}/bin/*.dll)
foreach(name IN ITEMS libgcc_s_seh-1.dll libstdc++-6.dll libwinpthread-1.dll)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${name} OUTPUT_VARIABLE file
        OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    if(NOT IS_ABSOLUTE "${file}") # the compiler echoes the name of what it does not find
        message(FATAL_ERROR "The compiler has no ${name}")
    endif()
    # The copy of an installation is stripped, and that one may not be the compiler's own file.
    configure_file(${file} ${PROJECT_BINARY_DIR}/runtime/${name} COPYONLY)
    execute_process(COMMAND ${CMAKE_STRIP} --strip-unneeded ${PROJECT_BINARY_DIR}/runtime/${name}
        COMMAND_ERROR_IS_FATAL ANY)
    list(APPEND xum_runtime_libraries ${PROJECT_BINARY_DIR}/runtime/${name})
endforeach()

file(COPY ${xum_runtime_libraries} DESTINATION ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
install(FILES ${xum_runtime_libraries} DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT library)

# What goes with a library in binary form: its notice.
install(DIRECTORY ${XUM_WINDOWS_PREFIX}/share/licenses/ DESTINATION share/licenses COMPONENT library)
install(FILES /usr/share/doc/mingw-w64-x86-64-dev/copyright DESTINATION share/licenses/mingw-w64 COMPONENT library)
install(FILES /usr/share/doc/g++-mingw-w64-x86-64-posix/copyright /usr/share/common-licenses/GPL-3
    DESTINATION share/licenses/gcc COMPONENT library)
