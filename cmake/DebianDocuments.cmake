# Run by CPack on the staged tree: what Debian asks of a package's documents and an installation
# from source does not need.
set(root "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share")
set(debian "${CMAKE_CURRENT_LIST_DIR}/../packaging/debian")

file(STRINGS "${debian}/changelog" newest LIMIT_COUNT 1)
if(NOT newest MATCHES "^korvane \\(${CPACK_PACKAGE_VERSION}\\) ")
  message(FATAL_ERROR "packaging/debian/changelog begins with \"${newest}\", "
    "and this is version ${CPACK_PACKAGE_VERSION}")
endif()
file(REMOVE "${root}/doc/korvane/LICENSE")
file(COPY "${debian}/changelog" "${debian}/copyright" DESTINATION "${root}/doc/korvane"
  FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
execute_process(COMMAND gzip -9n "${root}/doc/korvane/changelog" "${root}/man/man1/korvane.1"
  COMMAND_ERROR_IS_FATAL ANY)
