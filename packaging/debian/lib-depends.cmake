# Run by cpack before it packs: the library package's Depends, from what
# dpkg-shlibdeps reads in the built library. The library package cannot let
# CPack do this, as CPack would then add maintainer scripts calling ldconfig
# where the package ships an ldconfig trigger instead.
set(work "${CPACK_TOPLEVEL_DIRECTORY}/lib-depends")
file(MAKE_DIRECTORY "${work}/debian")
file(WRITE "${work}/debian/control" "")
execute_process(COMMAND dpkg-shlibdeps -O "${CPACK_QORVEL_SHARED_LIBRARY}"
  WORKING_DIRECTORY "${work}" OUTPUT_VARIABLE out RESULT_VARIABLE failed
  OUTPUT_STRIP_TRAILING_WHITESPACE)
if(failed OR NOT out MATCHES "shlibs:Depends=(.+)")
  message(FATAL_ERROR "dpkg-shlibdeps failed on ${CPACK_QORVEL_SHARED_LIBRARY}")
endif()
set(CPACK_DEBIAN_LIB_PACKAGE_DEPENDS "${CMAKE_MATCH_1}")
