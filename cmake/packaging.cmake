# What others need to get and find the library: the files that `cmake --install` adds to the programs, and the packages of
# everything, a .deb of the native build and a .zip of a Windows build (target `package`).
include(CMakePackageConfigHelpers)

# find_package(AcctKit), which gives the target AcctKit::acctkit, and pkg-config.
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
# Relative to the .pc file's own folder, so that an installed tree can be moved.
file(RELATIVE_PATH PREFIX_FROM_PKGCONFIG /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(${PROJECT_SOURCE_DIR}/cmake/acctkit.pc.in ${PROJECT_BINARY_DIR}/acctkit.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/acctkit.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# The documentation, with the links between the pages intact.
if(WIN32)
  set(documentation_dir .)
else()
  set(documentation_dir ${CMAKE_INSTALL_DATAROOTDIR}/doc/acctkit)
  find_program(GZIP gzip REQUIRED)
  foreach(page acctkit.1 changelog)
    set(source ${PROJECT_SOURCE_DIR}/docs/${page})
    add_custom_command(OUTPUT ${page}.gz COMMAND ${GZIP} -9nc ${source} > ${page}.gz DEPENDS ${source} VERBATIM)
  endforeach()
  add_custom_target(documentation ALL DEPENDS acctkit.1.gz changelog.gz)
  install(FILES ${PROJECT_BINARY_DIR}/acctkit.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES ${PROJECT_BINARY_DIR}/changelog.gz DESTINATION ${documentation_dir})
endif()
install(FILES README.md docs/copyright DESTINATION ${documentation_dir})
install(DIRECTORY docs DESTINATION ${documentation_dir} FILES_MATCHING PATTERN *.md PATTERN *.png)
install(FILES host/samples/signup.txt DESTINATION ${documentation_dir}/examples)

set(CPACK_PACKAGE_NAME acctkit)
set(CPACK_PACKAGE_CONTACT "AcctKit developers <acctkit@zuvio.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "puts mail and news settings into client programs")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
                                                WORLD_READ WORLD_EXECUTE)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
else()
  set(CPACK_GENERATOR DEB)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_SECTION mail)
  set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
      "It configures Outlook Express, Netscape Communicator 4.x, Netscape 6 and an
external mailer on a machine folder, which has the layout of a Wine prefix
or is one. There is a library for host programs, with its header, and the
host program acctkit.")
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  # The dependency of a package that is linked with the libraries, and when the linker's cache is rebuilt.
  foreach(library libacctkit libacctkit-machine)
    list(APPEND dependencies "${library} 0 acctkit (>= ${PROJECT_VERSION})\n")
  endforeach()
  file(WRITE ${PROJECT_BINARY_DIR}/debian/shlibs ${dependencies})
  file(WRITE ${PROJECT_BINARY_DIR}/debian/triggers "activate-noawait ldconfig\n")
  set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/debian/shlibs ${PROJECT_BINARY_DIR}/debian/triggers)
  set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
endif()
include(CPack)
