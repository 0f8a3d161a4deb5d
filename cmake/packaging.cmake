# How others find the installed library: find_package(AcctKit), which gives the target AcctKit::acctkit, and pkg-config.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/AcctKit)
install(EXPORT AcctKitTargets NAMESPACE AcctKit:: DESTINATION ${package_dir})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/AcctKitConfig.cmake.in
                              ${PROJECT_BINARY_DIR}/AcctKitConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/AcctKitConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/AcctKitConfig.cmake ${PROJECT_BINARY_DIR}/AcctKitConfigVersion.cmake
        DESTINATION ${package_dir})

get_target_property(ACCTKIT_LIBRARY_NAME acctkit OUTPUT_NAME)
if(NOT ACCTKIT_LIBRARY_NAME)
  set(ACCTKIT_LIBRARY_NAME acctkit)
endif()
# From the .pc file's own folder, so that an installed tree can be moved.
file(RELATIVE_PATH PREFIX_FROM_PKGCONFIG /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(${PROJECT_SOURCE_DIR}/cmake/acctkit.pc.in ${PROJECT_BINARY_DIR}/acctkit.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/acctkit.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
