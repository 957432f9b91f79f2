# Run by cpack on the tree of the Debian package: makes the changelog, and compresses what Debian wants compressed.
set(tree ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share)
set(source ${CMAKE_CURRENT_LIST_DIR}/../..)

find_package(Python3 3.9 REQUIRED COMPONENTS Interpreter)
execute_process(
  COMMAND ${Python3_EXECUTABLE} -B ${CMAKE_CURRENT_LIST_DIR}/changelog.py ${source}/CHANGELOG.md "${CPACK_PACKAGE_CONTACT}"
  OUTPUT_FILE ${tree}/doc/vantor/changelog COMMAND_ERROR_IS_FATAL ANY)

file(GLOB pages ${tree}/man/man1/*.1)
execute_process(COMMAND gzip -9n ${tree}/doc/vantor/changelog ${pages} COMMAND_ERROR_IS_FATAL ANY)
