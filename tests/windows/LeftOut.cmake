# The tests that need what Windows, or wine, does not have; each list is of GoogleTest's patterns.

# Symbolic links, a full disk made by a limit on file lengths, POSIX rights and devices. The system's own code pages: they
# give a "?" for each half of a surrogate pair, and characters of their own for bytes that stand for nothing.
set(vantor_model_tests_left_out
  FormatLibraryLoad.ReadsThroughASymbolicLink
  FormatLibraryLoad.TakesAFileThatTheDiskFailsToReadForOneThatCannotBeOpened
  FormatLibrarySave.WritesThroughASymbolicLink
  FormatLibrarySave.FailsWithACircleOfLinks
  FormatLibrarySave.KeepsThePermissions
  FormatLibrarySave.RefusesADevice
  LibraryOriginal.AFolderOrALinkThatLeadsNowhereTakesTheName
  LibraryOriginal.AFullDiskLeavesNoHalfCopy
  LibraryOriginal.WhatCannotBeCopiedIsAFailureAndLeavesNothing
  CodePage.ACharacterThatItDoesNotHoldIsAQuestionMark
  CodePage.ALoneSurrogateIsAQuestionMark
  CodePage.AByteThatStandsForNothingIsTheReplacementCharacter
  CodePage.AnErrorDoesNotSpoilTheNextText)

# The same, pipes in the file system, and names that are no valid text.
set(vantor_files_tests_left_out
  *.PipeIsRe*AndDoesNotHang*
  *.SaveToAPipeIsReportedAndDoesNotHang
  *.*FullDisk*
  Table/PagedFullDisk.*
  BinaryRecipeFailure.DanglingLinkIsReported
  CsvFailure.SaveOverAReadOnlyFileIsReported
  CsvFailure.UnreadableFileIsReported
  File.DanglingLinkCannotBeRead
  PagedFile.ThatCannotBeOpenedIsLeftAlone
  PagedFile.ThatCannotBeWrittenCannotBeReadEither
  PagedRecipe.FileThatCannotBeWrittenIsNeitherReadNorSaved
  PagedRecipe.SaveToWhatIsNoFileShowsNothing
  PathText.ShowsInvalidBytesAsReplacementCharacters
  RecipeFile.SaveAsReportsAFlatFileThatDoesNotFit
  Replacement.KeepsPermissions
  Replacement.GoesWhereALinkLeads
  Replacement.MakesTheFileThatADanglingLinkNames
  Replacement.RefusesWhatIsNoFile
  Replacement.WritesInPlaceWhereTheFolderTakesNoFile)

set(vantor_merge_tests_left_out
  MergeFailure.FullDiskIsReportedAndLeavesWhatWasWritten
  Table/MergedPathThatIsASource.*/ByASymbolicLink)
