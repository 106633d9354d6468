if(XUM_SANITIZE)
    add_compile_options(-fsanitize=${XUM_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${XUM_SANITIZE})
endif()

# For programs that open a window with OpenGL: what a driver keeps looks lost once the driver was unloaded.
function(xum_leave_leaks_unchecked)
    if(XUM_SANITIZE MATCHES "address")
        foreach(program IN LISTS ARGN)
            target_sources(${program} PRIVATE ${PROJECT_SOURCE_DIR}/tests/support/unchecked_leaks.cpp)
        endforeach()
    endif()
endfunction()
