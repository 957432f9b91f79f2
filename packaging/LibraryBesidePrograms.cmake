# Run by cpack on the tree of the portable archive: the library that the programs use lies beside them from the start.
file(COPY ${CMAKE_CURRENT_LIST_DIR}/../examples/RecipeFile.Dat DESTINATION ${CMAKE_INSTALL_PREFIX}/bin)
