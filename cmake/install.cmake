# What `make install` and `make package` put on a system: the programs, the
# library (shared and static) with its headers, pkg-config and CMake package
# files, the man pages, the bash completions and the examples. Each file
# belongs to one component, which `make package` turns into one Debian package:
# tool (qorvel), lib (libqorvel0) and dev (libqorvel-dev).
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(QORVEL_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/qorvel)
set(QORVEL_DOC_DIR ${CMAKE_INSTALL_DATADIR}/doc/qorvel)
set(QORVEL_MAINTAINER "qorvel maintainers <maintainers@users.noreply.c-seed-b1a34164.example>")
set(QORVEL_DEB_VERSION ${PROJECT_VERSION}-1)
set(QORVEL_PACKAGES_DIR ${PROJECT_BINARY_DIR}/packaging)

install(TARGETS qorvel_exe qorvel_props RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)
install(TARGETS qorvel qorvel_static EXPORT qorvelTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT lib NAMELINK_COMPONENT dev
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT dev
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/qorvel DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT dev
  FILES_MATCHING PATTERN "*.h")
install(FILES ${QORVEL_GENERATED_INCLUDE}/qorvel/version.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/qorvel COMPONENT dev)
install(EXPORT qorvelTargets NAMESPACE qorvel:: DESTINATION ${QORVEL_CMAKE_DIR} COMPONENT dev)

configure_package_config_file(cmake/qorvelConfig.cmake.in
  ${PROJECT_BINARY_DIR}/qorvelConfig.cmake INSTALL_DESTINATION ${QORVEL_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/qorvelConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/qorvelConfig.cmake
  ${PROJECT_BINARY_DIR}/qorvelConfigVersion.cmake DESTINATION ${QORVEL_CMAKE_DIR} COMPONENT dev)

# Written at install time, so it names the prefix actually installed to
# (`cmake --install --prefix`, or /usr in the package).
install(CODE "
  set(PC_PREFIX \"\${CMAKE_INSTALL_PREFIX}\")
  set(PC_LIBDIR \"${CMAKE_INSTALL_LIBDIR}\")
  set(PC_INCLUDEDIR \"${CMAKE_INSTALL_INCLUDEDIR}\")
  set(PC_VERSION \"${PROJECT_VERSION}\")
  configure_file(\"${PROJECT_SOURCE_DIR}/packaging/qorvel.pc.in\"
    \"${PROJECT_BINARY_DIR}/qorvel.pc\" @ONLY)" COMPONENT dev)
install(FILES ${PROJECT_BINARY_DIR}/qorvel.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
  COMPONENT dev)

# Pages and Debian changelogs are installed compressed, as man and Debian's
# tools expect; gzip -n keeps the packages reproducible.
set(QORVEL_GZIPPED)
function(qorvel_gzip source output)
  add_custom_command(OUTPUT ${output} COMMAND sh -c "gzip -9nc \"$1\" > \"$2\"" gzip ${source} ${output}
    DEPENDS ${source} VERBATIM)
  set(QORVEL_GZIPPED ${QORVEL_GZIPPED} ${output} PARENT_SCOPE)
endfunction()
foreach(page qorvel.1 qorvel-props.1 qorvel.properties.5 libqorvel.3)
  qorvel_gzip(${PROJECT_SOURCE_DIR}/man/${page} ${PROJECT_BINARY_DIR}/man/${page}.gz)
endforeach()
file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/man)
install(FILES ${PROJECT_BINARY_DIR}/man/qorvel.1.gz ${PROJECT_BINARY_DIR}/man/qorvel-props.1.gz
  DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tool)
install(FILES ${PROJECT_BINARY_DIR}/man/qorvel.properties.5.gz
  DESTINATION ${CMAKE_INSTALL_MANDIR}/man5 COMPONENT tool)
install(FILES ${PROJECT_BINARY_DIR}/man/libqorvel.3.gz
  DESTINATION ${CMAKE_INSTALL_MANDIR}/man3 COMPONENT dev)
install(FILES packaging/qorvel.bash-completion
  DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME qorvel COMPONENT tool)
install(FILES packaging/qorvel-props.bash-completion
  DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME qorvel-props
  COMPONENT tool)
qorvel_gzip(${PROJECT_SOURCE_DIR}/CHANGELOG.md ${PROJECT_BINARY_DIR}/changelog.gz)
install(FILES LICENSE README.md ${PROJECT_BINARY_DIR}/changelog.gz DESTINATION ${QORVEL_DOC_DIR}
  COMPONENT tool)
install(FILES examples/properties/JavaTools.properties packaging/qorvel-example.service
  DESTINATION ${QORVEL_DOC_DIR}/examples COMPONENT tool)

# Each Debian package carries its copyright and changelog. They exist only in
# the packages: a component install (cpack) takes EXCLUDE_FROM_ALL files, a
# plain `make install` leaves them out.
file(READ LICENSE license)
string(REGEX REPLACE "^.*Copyright[^\n]*\n\n" "" license "${license}")
string(REGEX REPLACE "\n$" "" license "${license}")
string(REGEX REPLACE "\n\n" "\n.\n" license "${license}")
string(REPLACE "\n" "\n " license "${license}")
set(QORVEL_LICENSE_TEXT " ${license}")
configure_file(packaging/debian/copyright.in ${QORVEL_PACKAGES_DIR}/copyright @ONLY)
configure_file(packaging/debian/changelog.in ${QORVEL_PACKAGES_DIR}/changelog.Debian @ONLY)
qorvel_gzip(${QORVEL_PACKAGES_DIR}/changelog.Debian ${QORVEL_PACKAGES_DIR}/changelog.Debian.gz)
set(components tool lib dev)
set(packages qorvel libqorvel0 libqorvel-dev)
foreach(component QORVEL_PACKAGE IN ZIP_LISTS components packages)
  install(FILES ${QORVEL_PACKAGES_DIR}/copyright ${QORVEL_PACKAGES_DIR}/changelog.Debian.gz
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${QORVEL_PACKAGE} COMPONENT ${component}
    EXCLUDE_FROM_ALL)
  configure_file(packaging/debian/lintian-overrides.in
    ${QORVEL_PACKAGES_DIR}/${QORVEL_PACKAGE}.lintian-overrides @ONLY)
  install(FILES ${QORVEL_PACKAGES_DIR}/${QORVEL_PACKAGE}.lintian-overrides
    DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides RENAME ${QORVEL_PACKAGE}
    COMPONENT ${component} EXCLUDE_FROM_ALL)
endforeach()
configure_file(packaging/debian/shlibs.in ${QORVEL_PACKAGES_DIR}/shlibs @ONLY)
configure_file(packaging/debian/symbols.in ${QORVEL_PACKAGES_DIR}/symbols @ONLY)

# Everything the rules above install, for `make install` to build and no more.
add_custom_target(installed_files ALL DEPENDS ${QORVEL_GZIPPED})
add_dependencies(installed_files qorvel_exe qorvel_props qorvel qorvel_static)

# make package: the three Debian packages of the same files under /usr.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME qorvel)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT ${QORVEL_MAINTAINER})
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL tool lib dev)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_SOURCE_DIR}/packaging/debian/lib-depends.cmake)
set(CPACK_QORVEL_SHARED_LIBRARY ${PROJECT_BINARY_DIR}/libqorvel.so.${PROJECT_VERSION})

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME qorvel)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION utils)
# libc6 and libcrypt1 as the programs need them; libqorvel.so.0 is found in
# the build tree and depended on by name.
set(CPACK_DEBIAN_TOOL_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "libqorvel0 (= ${QORVEL_DEB_VERSION})")
set(CPACK_DEBIAN_TOOL_DESCRIPTION
  "launcher that prepares a Java virtual machine's environment
qorvel sets the class path, JVM options, environment, working directory and
standard streams of a Java program, from its options or from a section of a
properties file, optionally starts it as a daemon under another user, then
replaces itself with the JVM. qorvel-props inspects and checks properties
files.")

set(CPACK_DEBIAN_LIB_PACKAGE_NAME libqorvel0)
set(CPACK_DEBIAN_LIB_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIB_PACKAGE_CONTROL_EXTRA ${QORVEL_PACKAGES_DIR}/shlibs
  ${QORVEL_PACKAGES_DIR}/symbols ${PROJECT_SOURCE_DIR}/packaging/debian/triggers)
set(CPACK_DEBIAN_LIB_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_LIB_DESCRIPTION
  "properties-file and service-configuration library of qorvel
libqorvel reads sectioned properties files with inheritance and
substitution, fills service descriptions from them, and provides a
connection-ID cipher and a debug log. This package holds the shared
library.")

set(CPACK_DEBIAN_DEV_PACKAGE_NAME libqorvel-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "libqorvel0 (= ${QORVEL_DEB_VERSION})")
set(CPACK_DEBIAN_DEV_DESCRIPTION
  "properties-file and service-configuration library of qorvel (development)
libqorvel reads sectioned properties files with inheritance and
substitution, fills service descriptions from them, and provides a
connection-ID cipher and a debug log. This package holds the C headers,
the static library, the pkg-config and CMake package files and the
libqorvel(3) page.")
include(CPack)
