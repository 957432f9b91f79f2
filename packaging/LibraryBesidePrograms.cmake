# Run by cpack on the tree of the portable archive: the library that the programs use lies beside them from the start.
foreach(file RecipeFile.Dat RecipeFile.Notes.json)
  file(COPY ${CMAKE_CURRENT_LIST_DIR}/../examples/${file} DESTINATION ${CMAKE_INSTALL_PREFIX}/bin)
endforeach()
