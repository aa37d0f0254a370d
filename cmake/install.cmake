# What `make install` and `make package` put on a system: the program, the
# library (shared and static) with its headers, pkg-config and CMake package
# files, the man pages, the bash completion and the examples.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(QORVEL_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/qorvel)
set(QORVEL_DOC_DIR ${CMAKE_INSTALL_DATADIR}/doc/qorvel)

install(TARGETS qorvel_exe qorvel_props RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS qorvel qorvel_static EXPORT qorvelTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/qorvel DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")
install(FILES ${QORVEL_GENERATED_INCLUDE}/qorvel/version.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/qorvel)
install(EXPORT qorvelTargets NAMESPACE qorvel:: DESTINATION ${QORVEL_CMAKE_DIR})

configure_package_config_file(cmake/qorvelConfig.cmake.in
  ${PROJECT_BINARY_DIR}/qorvelConfig.cmake INSTALL_DESTINATION ${QORVEL_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/qorvelConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/qorvelConfig.cmake
  ${PROJECT_BINARY_DIR}/qorvelConfigVersion.cmake DESTINATION ${QORVEL_CMAKE_DIR})

# Written at install time, so it names the prefix actually installed to
# (`cmake --install --prefix`, or /usr in the package).
install(CODE "
  set(PC_PREFIX \"\${CMAKE_INSTALL_PREFIX}\")
  set(PC_LIBDIR \"${CMAKE_INSTALL_LIBDIR}\")
  set(PC_INCLUDEDIR \"${CMAKE_INSTALL_INCLUDEDIR}\")
  set(PC_VERSION \"${PROJECT_VERSION}\")
  configure_file(\"${PROJECT_SOURCE_DIR}/packaging/qorvel.pc.in\"
    \"${PROJECT_BINARY_DIR}/qorvel.pc\" @ONLY)")
install(FILES ${PROJECT_BINARY_DIR}/qorvel.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(FILES man/qorvel.1 man/qorvel-props.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES man/qorvel.properties.5 DESTINATION ${CMAKE_INSTALL_MANDIR}/man5)
install(FILES man/libqorvel.3 DESTINATION ${CMAKE_INSTALL_MANDIR}/man3)
install(FILES packaging/qorvel.bash-completion
  DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME qorvel)
install(FILES packaging/qorvel-props.bash-completion
  DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME qorvel-props)
install(FILES LICENSE README.md CHANGELOG.md DESTINATION ${QORVEL_DOC_DIR})
install(FILES examples/properties/JavaTools.properties packaging/qorvel-example.service
  DESTINATION ${QORVEL_DOC_DIR}/examples)

# make package: a Debian package of the same files under /usr.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME qorvel)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "qorvel developers <qorvel@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
  "prepares a working environment for a Java virtual machine, then becomes it")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)  # libc6 and libcrypt1, as the program needs them
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
include(CPack)
