include(CMakePackageConfigHelpers)

set(xum_package_directory ${CMAKE_INSTALL_LIBDIR}/cmake/xum-engine)

# The components are those of the packages: see packaging/packaging.cmake.
install(TARGETS xum-engine EXPORT xum-engine-targets
    RUNTIME COMPONENT library
    LIBRARY COMPONENT library NAMELINK_COMPONENT development
    ARCHIVE COMPONENT development
    FILE_SET HEADERS COMPONENT development)
install(EXPORT xum-engine-targets NAMESPACE xum:: DESTINATION ${xum_package_directory} COMPONENT development)
install(DIRECTORY data/ DESTINATION ${CMAKE_INSTALL_DATADIR}/xum-engine COMPONENT data)
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

if(XUM_BUILD_PACKAGES)
    include(packaging/packaging.cmake)
endif()
