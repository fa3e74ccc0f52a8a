# The Debian package. All that depends on time takes it from SOURCE_DATE_EPOCH, and nothing depends on
# the folder, so that two builds of one commit give the same bytes; scripts/package.sh looks.
string(TIMESTAMP day "%Y%m%d" UTC)
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
set(version ${PROJECT_VERSION}-${day})
set(maintainer "TIVELO Algebra authors <tivelo@tivelo.example>")

function(compress to from)
  add_custom_command(OUTPUT ${to} COMMAND gzip -n -9 -c ${from} > ${to} DEPENDS ${from})
endfunction()
configure_file(packaging/changelog.in ${CMAKE_BINARY_DIR}/changelog @ONLY)
compress(${page}.gz ${page})
compress(${CMAKE_BINARY_DIR}/changelog.Debian.gz ${CMAKE_BINARY_DIR}/changelog)
add_custom_target(compressed ALL
                  DEPENDS ${page}.gz ${CMAKE_BINARY_DIR}/changelog.Debian.gz)
set(page ${page}.gz)

install(FILES packaging/copyright ${CMAKE_BINARY_DIR}/changelog.Debian.gz
        DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES packaging/lintian-overrides RENAME tivelo
        DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tivelo)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_VERSION ${version})
set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${maintainer})
set(CPACK_DEBIAN_PACKAGE_SECTION math)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "exact calculator for fractions and long integers
A calculator for the console whose values are fractions of decimal integers
of up to 56 million digits, kept in lowest terms.
.
It has 26 variables with tables of small values, powers, factorials and
binomials, greatest common divisors, factorisation, stored blocks, repeats
and script files, and needs no other package.")
include(CPack)
