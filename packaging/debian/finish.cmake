# What Debian wants different from a plain installation, done to the tree that becomes the package.
if(NOT CPACK_GENERATOR STREQUAL "DEB")
  return()
endif()
set(usr ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr)
set(doc ${usr}/share/doc/sorvanta)

file(REMOVE ${doc}/LICENSE)
file(RENAME ${doc}/CHANGELOG.md ${doc}/changelog)
file(COPY ${CMAKE_CURRENT_LIST_DIR}/changelog.Debian ${CMAKE_CURRENT_LIST_DIR}/copyright
     DESTINATION ${doc} FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
file(GLOB pages ${usr}/share/man/man1/*)
file(GLOB programs ${usr}/bin/*)
execute_process(COMMAND gzip --best --no-name ${doc}/changelog ${doc}/changelog.Debian ${pages}
                COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND strip --remove-section=.comment --remove-section=.note ${programs}
                COMMAND_ERROR_IS_FATAL ANY)
