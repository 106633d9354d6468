# The Debian packages: `cpack` in a build folder that was configured with the preset "package" makes them.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME xum-engine)
set(CPACK_PACKAGE_VENDOR "the xum-engine team")
set(CPACK_PACKAGE_CONTACT "the xum-engine team <xum-engine@localhost.localdomain>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
    WORLD_READ WORLD_EXECUTE)

set(CPACK_COMPONENTS_ALL library development tools data game)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)

# One package: its component, its name and section, what it is, and what it needs that no program file tells.
function(xum_debian_package component name section summary description)
    cmake_parse_arguments(package "ALL" "" "DEPENDS;RECOMMENDS" ${ARGN})
    string(TOUPPER ${component} COMPONENT)
    string(REPLACE ";" ", " depends "${package_DEPENDS}")
    string(REPLACE ";" ", " recommends "${package_RECOMMENDS}")
    set(CPACK_DEBIAN_${COMPONENT}_PACKAGE_NAME ${name} PARENT_SCOPE)
    set(CPACK_DEBIAN_${COMPONENT}_PACKAGE_SECTION ${section} PARENT_SCOPE)
    set(CPACK_DEBIAN_${COMPONENT}_PACKAGE_DEPENDS "${depends}" PARENT_SCOPE)
    set(CPACK_DEBIAN_${COMPONENT}_PACKAGE_RECOMMENDS "${recommends}" PARENT_SCOPE)
    # The first line is the synopsis.
    set(CPACK_COMPONENT_${COMPONENT}_DESCRIPTION "${summary}\n${description}" PARENT_SCOPE)
    if(package_ALL)
        set(CPACK_DEBIAN_${COMPONENT}_PACKAGE_ARCHITECTURE all PARENT_SCOPE)
        set(CPACK_DEBIAN_${COMPONENT}_PACKAGE_SHLIBDEPS OFF PARENT_SCOPE)
    endif()

    set(documents ${PROJECT_BINARY_DIR}/packaging/${name})
    configure_file(packaging/copyright ${documents}/copyright COPYONLY)
    xum_compress(${PROJECT_SOURCE_DIR}/packaging/changelog.Debian ${documents}/changelog.Debian.gz)
    install(FILES ${documents}/copyright ${documents}/changelog.Debian.gz DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${name}
        COMPONENT ${component})
endfunction()

# Without the time and the name inside: the same bytes each time.
function(xum_compress from to)
    execute_process(COMMAND gzip -9 -n -c ${from} OUTPUT_FILE ${to} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

set(version "= ${PROJECT_VERSION}-1")
xum_debian_package(library libxum-engine0.1 libs "small 3D game engine - shared library"
    "Window, input, sound, OpenGL 3.2 rendering, archives, configuration files, BSP maps, terrain and meshes, fonts, and an embedded Lisp with typed signatures."
    RECOMMENDS "xum-data (>= ${PROJECT_VERSION})")
xum_debian_package(development libxum-engine-dev libdevel "small 3D game engine - development files"
    "The public headers, and the files with which CMake and pkg-config find the library."
    DEPENDS "libxum-engine0.1 (${version})")
xum_debian_package(tools xum-tools devel "small 3D game engine - tools for authors"
    "The program xum makes and checks archives, configuration files, maps, meshes and fonts, and runs scripts; xum-editor makes maps."
    DEPENDS "libxum-engine0.1 (${version})" "xum-data (${version})")
xum_debian_package(data xum-data games "small 3D game engine - base scripts and data of the game"
    "The scripts that the engine loads, and the shaders, textures, sounds, fonts and maps of its sample game." ALL)
xum_debian_package(game xum-game games "small 3D game engine - sample game"
    "Gather twelve embers in a courtyard before night falls, and stay out of the light."
    DEPENDS "libxum-engine0.1 (${version})" "xum-data (${version})")

include(CPack)
