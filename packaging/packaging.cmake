# The Debian packages. The preset "package" makes them, in the folder packages of its build folder:
#     cmake --preset package && cmake --build --preset package

find_program(XUM_PARSE_CHANGELOG dpkg-parsechangelog REQUIRED)
mark_as_advanced(XUM_PARSE_CHANGELOG)

# A field of the newest entry of the packages' changelog.
function(xum_read_changelog field result)
    execute_process(COMMAND ${XUM_PARSE_CHANGELOG} -l ${PROJECT_SOURCE_DIR}/packaging/changelog.Debian -S ${field}
        OUTPUT_VARIABLE value OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    set(${result} ${value} PARENT_SCOPE)
endfunction()

set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS packaging/changelog.Debian CHANGELOG.md
    packaging/lintian)
xum_read_changelog(Version xum_package_version)
xum_read_changelog(Timestamp xum_package_time)
string(REGEX MATCH "^(.*)-([^-]*)$" matched ${xum_package_version})
if(NOT CMAKE_MATCH_1 STREQUAL PROJECT_VERSION)
    message(FATAL_ERROR
        "The newest entry of packaging/changelog.Debian is of ${CMAKE_MATCH_1}, not of ${PROJECT_VERSION}")
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME xum-engine)
set(CPACK_PACKAGE_VENDOR "the xum-engine team")
set(CPACK_PACKAGE_CONTACT "the xum-engine team <xum-engine@localhost.localdomain>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # cpack would put it in front of each package's own
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
    WORLD_READ WORLD_EXECUTE)

set(CPACK_COMPONENTS_ALL library development tools data game)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${CMAKE_MATCH_2})
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
# cpack's scripts call ldconfig, which is slow. With the trigger, dpkg calls it once for all libraries.
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/triggers)

# Read by cpack when it runs. All files in the packages get the time of the changelog's newest entry: the same sources
# make the same packages.
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/packaging/times.cmake
    CONTENT "set(ENV{SOURCE_DATE_EPOCH} @xum_package_time@)\n" @ONLY)
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_BINARY_DIR}/packaging/times.cmake)

# Without the time and the name inside: the same bytes each time.
function(xum_compress from to)
    execute_process(COMMAND gzip -9 -n -c ${from} OUTPUT_FILE ${to} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# What every package holds besides its program, library or data.
function(xum_install_package_documents component name)
    set(documents ${PROJECT_BINARY_DIR}/packaging/${name})
    configure_file(packaging/copyright ${documents}/copyright COPYONLY)
    xum_compress(${PROJECT_SOURCE_DIR}/packaging/changelog.Debian ${documents}/changelog.Debian.gz)
    xum_compress(${PROJECT_SOURCE_DIR}/CHANGELOG.md ${documents}/changelog.gz)
    install(FILES ${documents}/copyright ${documents}/changelog.Debian.gz ${documents}/changelog.gz
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${name} COMPONENT ${component})
    file(READ packaging/lintian/all.overrides overrides)
    set(own_overrides ${PROJECT_SOURCE_DIR}/packaging/lintian/${component}.overrides)
    if(EXISTS ${own_overrides})
        file(READ ${own_overrides} more)
        string(APPEND overrides ${more})
    endif()
    file(CONFIGURE OUTPUT ${documents}/overrides CONTENT "${overrides}" @ONLY)
    install(FILES ${documents}/overrides DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides RENAME ${name}
        COMPONENT ${component})
endfunction()

# One package: its component, its name and section, what it is in one line and in several of at most 79 characters, and
# what it needs that no program file tells.
function(xum_debian_package component name section summary)
    cmake_parse_arguments(package "ALL" "" "DESCRIPTION;DEPENDS;RECOMMENDS" ${ARGN})
    string(TOUPPER ${component} COMPONENT)
    string(REPLACE ";" ", " depends "${package_DEPENDS}")
    string(REPLACE ";" ", " recommends "${package_RECOMMENDS}")
    list(JOIN package_DESCRIPTION "\n" description)
    set(CPACK_DEBIAN_${COMPONENT}_PACKAGE_NAME ${name} PARENT_SCOPE)
    set(CPACK_DEBIAN_${COMPONENT}_PACKAGE_SECTION ${section} PARENT_SCOPE)
    set(CPACK_DEBIAN_${COMPONENT}_PACKAGE_DEPENDS "${depends}" PARENT_SCOPE)
    set(CPACK_DEBIAN_${COMPONENT}_PACKAGE_RECOMMENDS "${recommends}" PARENT_SCOPE)
    set(CPACK_DEBIAN_${COMPONENT}_DESCRIPTION "${summary}\n${description}" PARENT_SCOPE)
    if(package_ALL)
        set(CPACK_DEBIAN_${COMPONENT}_PACKAGE_ARCHITECTURE all PARENT_SCOPE)
        set(CPACK_DEBIAN_${COMPONENT}_PACKAGE_SHLIBDEPS OFF PARENT_SCOPE)
    endif()
    xum_install_package_documents(${component} ${name})
endfunction()

get_target_property(soversion xum-engine SOVERSION)
set(library libxum-engine${soversion})
set(same "= ${xum_package_version}")

xum_debian_package(library ${library} libs "small 3D game engine - shared library"
    DESCRIPTION
        "xum-engine opens windows, reads input, plays sound, and draws with OpenGL 3.2."
        "It has archives, configuration files, BSP maps, terrain, meshes and fonts, and"
        "an embedded Lisp with typed signatures."
        "."
        "This package holds the library that programs need at run time."
    RECOMMENDS "xum-data (>= ${PROJECT_VERSION})")
# No public header and no link line names another library.
xum_debian_package(development libxum-engine-dev libdevel "small 3D game engine - development files"
    DESCRIPTION
        "xum-engine opens windows, reads input, plays sound, and draws with OpenGL 3.2."
        "."
        "This package holds the public headers, and the files with which CMake and"
        "pkg-config find the library. Programs are compiled as C++17 or later."
    DEPENDS "${library} (${same})")
xum_debian_package(tools xum-tools devel "small 3D game engine - tools for authors"
    DESCRIPTION
        "The program xum makes and checks archives, configuration files, maps, meshes"
        "and fonts, and it runs and checks scripts. The editor xum-editor draws maps,"
        "compiles them and plays them."
    DEPENDS "${library} (${same})" "xum-data (${same})"
    RECOMMENDS "xum-game (${same})")
xum_debian_package(data xum-data games "small 3D game engine - base scripts and game data" ALL
    DESCRIPTION
        "The scripts that xum-engine starts from, and the shaders, textures, sounds,"
        "fonts and maps of its game Twelve Embers.")
xum_debian_package(game xum-game games "gather twelve embers before night falls"
    DESCRIPTION
        "Twelve Embers is a small 3D game: gather the embers in and around a courtyard"
        "within five minutes, and stay out of the light of the watchers. Its rules are"
        "a script that can be changed while one plays."
    DEPENDS "${library} (${same})" "xum-data (${same})")

include(CPack)

# cpack takes what is built, so all of it comes first. What that is, is known when the whole project was read.
function(xum_add_packages_target)
    if(NOT TARGET xum-editor)
        message(FATAL_ERROR "The packages need Dear ImGui, for the editor")
    endif()
    # cpack writes the rights that its own files happen to have into the packages.
    add_custom_target(packages COMMAND ${CMAKE_COMMAND} -E rm -rf ${CPACK_PACKAGE_DIRECTORY}
        COMMAND sh -c "umask 022 && exec \"$0\"" ${CMAKE_CPACK_COMMAND}
        DEPENDS xum-engine xum xum-game xum-editor VERBATIM)
    if(TARGET manual-pages)
        add_dependencies(packages manual-pages)
    endif()
endfunction()
cmake_language(DEFER CALL xum_add_packages_target)
