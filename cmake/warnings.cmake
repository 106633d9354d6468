# What every target of ours is compiled with. Third-party headers come in as system headers and are not judged.
function(xum_compile_strictly target)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual
        # Fused multiply-add would make files and pictures depend on the processor.
        -ffp-contract=off
        # What is shipped is the same wherever it was built. A debugger and coverage want the real paths.
        $<$<NOT:$<CONFIG:Debug>>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=>
        $<$<NOT:$<CONFIG:Debug>>:-ffile-prefix-map=${PROJECT_BINARY_DIR}/=build/>
        # Optimising, GCC 12 sees copies that overlap in "text" + std::string: there are none.
        $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict>
        $<$<BOOL:${XUM_WERROR}>:-Werror>)
endfunction()
