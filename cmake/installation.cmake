include(CMakePackageConfigHelpers)

# A program in the build folder finds the library by the same relative path that an installed one takes: no path of this
# machine gets into it.
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

set(xum_package_directory ${CMAKE_INSTALL_LIBDIR}/cmake/xum-engine)

# A package holds all licences in one place of its own.
set(xum_not_packaged)
if(XUM_BUILD_PACKAGES)
    set(xum_not_packaged PATTERN LICENSE EXCLUDE)
endif()

# The components are those of the packages: see packaging/packaging.cmake.
install(TARGETS xum-engine EXPORT xum-engine-targets
    RUNTIME COMPONENT library
    LIBRARY COMPONENT library NAMELINK_COMPONENT development
    ARCHIVE COMPONENT development
    FILE_SET HEADERS COMPONENT development)
install(EXPORT xum-engine-targets NAMESPACE xum:: DESTINATION ${xum_package_directory} COMPONENT development)
install(DIRECTORY data/ DESTINATION ${CMAKE_INSTALL_DATADIR}/xum-engine COMPONENT data ${xum_not_packaged})
install(FILES LICENSE README.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documents)

configure_package_config_file(cmake/xum-engine-config.cmake.in ${PROJECT_BINARY_DIR}/xum-engine-config.cmake
    INSTALL_DESTINATION ${xum_package_directory})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/xum-engine-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/xum-engine-config.cmake ${PROJECT_BINARY_DIR}/xum-engine-config-version.cmake
    DESTINATION ${xum_package_directory} COMPONENT development)

# Paths relative to the file itself, so that an installation can be moved.
file(RELATIVE_PATH xum_pc_prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/xum-engine.pc.in ${PROJECT_BINARY_DIR}/xum-engine.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/xum-engine.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

# How a desktop's menu shows a program.
function(xum_install_menu_entry program component)
    if(UNIX AND NOT APPLE)
        install(FILES ${PROJECT_SOURCE_DIR}/packaging/desktop/${program}.desktop
            DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT ${component})
        install(FILES ${PROJECT_SOURCE_DIR}/packaging/desktop/${program}.svg
            DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps COMPONENT ${component})
    endif()
endfunction()

if(XUM_BUILD_PACKAGES)
    include(packaging/packaging.cmake)
endif()
