#pragma once

#include "controls/Strip.h"
#include "files/RecipeFile.h"
#include "model/DataFormat.h"
#include "text/Reporter.h"
#include "views/StripSubject.h"

#include <QString>

#include <cstdint>
#include <memory>

/// What the panes know of the frame around them: the state that they share, and the operations that reach across. The
/// frame itself stands above this room and implements it.
class CRecipeFrame {
public:
    virtual ~CRecipeFrame() = default;

    /// Recomputes the row geometry from the format in use and has the data pane read the current file, as `type`.
    virtual void ShowRecipeData(FileType type) = 0;

    /// Has the data pane write its rows to the file `path`, as `type`. False when that failed; it was reported then.
    /// The current file and its type stay as they are.
    virtual bool RefreshRecipeData(FileType type, const QString& path) = 0;

    /// Has the data pane empty its grid.
    virtual void ClearRecipeData() = 0;

    /// Whether `text` may become the value of a cell in the data pane's grid column `gridColumn` (2 or more).
    virtual bool ValidateCellValue(int gridColumn, const QString& text) const = 0;

    /// Sets the window's title to exactly `title`.
    virtual void SetTitle(const QString& title) = 0;

    /// Enables and disables the commands for the state as it is now.
    virtual void UpdateCommands() = 0;

    /// Says `message` in the strip above the panes, in the place of an earlier one on the same subject. It stays until
    /// it is withdrawn or the user dismisses it.
    virtual void ShowStrip(StripSubject subject, const StripMessage& message) = 0;

    /// Takes back what the strip says on `subject`, if it says anything.
    virtual void WithdrawStrip(StripSubject subject) = 0;

    /// Keeps `trouble` with the format library in the status bar, until it is called with an empty text.
    virtual void TellLibraryTrouble(const QString& trouble) = 0;

    /// Where messages go; lives as long as the frame.
    virtual CReporter& Reporter() = 0;

    bool m_bFileOpen = false; ///< a recipe image is shown; set by New and Open, never cleared
    QString m_strFilePath;    ///< full path of the current file; empty for a new, unnamed one
    bool m_bNewFile = false;  ///< made by New and not saved since
    FileType m_nFileType = FileType::Rcp;
    std::int32_t m_nFormatWords = 0;  ///< words of one row of the format in use
    std::int32_t m_nGridRows = 0;     ///< rows to read, and the title row
    std::int32_t m_nGridCols = 0;     ///< values in a row, and the two fixed columns
    std::int32_t m_nStartAddress = 0; ///< word address of the first row
    std::int32_t m_nReadCount = 0;    ///< rows to read
    std::unique_ptr<DataFormat> m_pDataFormat = std::make_unique<DataFormat>(); ///< the format in use; a deep copy
    bool m_bModified = false; ///< a cell was changed since the last save
};
