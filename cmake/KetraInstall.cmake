# What `cmake --install` puts where: the library with its headers, the CMake package and the pkg-config
# file that find it, the resource files, and the command-line host.

include(CMakePackageConfigHelpers)

set(KETRA_RESOURCES_INSTALL_DIR ${CMAKE_INSTALL_DATADIR}/ketra/resources)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ketra)

install(TARGETS ketra EXPORT ketraTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT ketraTargets NAMESPACE ketra:: DESTINATION ${package_dir})

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/ketraConfig.cmake.in
    ${PROJECT_BINARY_DIR}/ketraConfig.cmake
    INSTALL_DESTINATION ${package_dir} PATH_VARS KETRA_RESOURCES_INSTALL_DIR)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ketraConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ketraConfig.cmake ${PROJECT_BINARY_DIR}/ketraConfigVersion.cmake
        DESTINATION ${package_dir})

# The prefix of the pkg-config file follows from its own place, so that an installed tree can be moved.
file(RELATIVE_PATH pc_to_prefix /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(${CMAKE_CURRENT_LIST_DIR}/ketra.pc.in ${PROJECT_BINARY_DIR}/ketra.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/ketra.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(DIRECTORY ${PROJECT_SOURCE_DIR}/resources/ DESTINATION ${KETRA_RESOURCES_INSTALL_DIR}
        FILES_MATCHING PATTERN "*.inp" PATTERN "*.md")
