# What "cmake --install" puts where: the program, its manual page where scdoc is there to make it, the
# completions and the documents. TIVELO_PACKAGE does it as Debian wants it and describes the package.
include(GNUInstallDirs)

option(TIVELO_PACKAGE "Install as a Debian package does (needs scdoc, gzip and CPack)" OFF)

set(TIVELO_DOCUMENTS README.md)
foreach(document IN ITEMS docs/manual.md docs/cookbook)
  if(EXISTS ${CMAKE_SOURCE_DIR}/${document})
    list(APPEND TIVELO_DOCUMENTS ${document})
  endif()
endforeach()
set(zsh_folder site-functions)
set(page ${CMAKE_BINARY_DIR}/tivelo.1)

find_program(TIVELO_SCDOC scdoc)
find_program(TIVELO_AWK awk)
if(TIVELO_SCDOC AND TIVELO_AWK)
  add_custom_command(
    OUTPUT ${page}
    COMMAND ${TIVELO_SCDOC} < ${CMAKE_SOURCE_DIR}/docs/tivelo.1.scd > ${page}.raw
    COMMAND ${TIVELO_AWK} -f ${CMAKE_SOURCE_DIR}/cmake/man.awk ${page}.raw > ${page}
    DEPENDS docs/tivelo.1.scd cmake/man.awk)
  add_custom_target(page ALL DEPENDS ${page})
elseif(TIVELO_PACKAGE)
  message(FATAL_ERROR "The package needs scdoc and awk for its manual page")
endif()

if(TIVELO_PACKAGE)
  set(zsh_folder vendor-completions)
  include(${CMAKE_CURRENT_LIST_DIR}/package.cmake)
else()
  list(APPEND TIVELO_DOCUMENTS LICENSE)
endif()

install(TARGETS tivelo RUNTIME)
if(TARGET page)
  install(FILES ${page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endif()
install(FILES completions/tivelo.bash RENAME tivelo
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
install(FILES completions/_tivelo DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/${zsh_folder})
install(FILES completions/tivelo.fish
        DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
foreach(document IN LISTS TIVELO_DOCUMENTS)
  if(IS_DIRECTORY ${CMAKE_SOURCE_DIR}/${document})
    install(DIRECTORY ${document} DESTINATION ${CMAKE_INSTALL_DOCDIR})
  else()
    install(FILES ${document} DESTINATION ${CMAKE_INSTALL_DOCDIR})
  endif()
endforeach()
