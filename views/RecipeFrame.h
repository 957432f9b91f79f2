#pragma once

#include "controls/Strip.h"
#include "document/RecipeDocument.h"
#include "text/Reporter.h"
#include "views/StripSubject.h"

#include <QString>

/// What the panes know of the frame around them: the open recipe, and the operations that reach across panes. The frame
/// itself stands above this room and implements it.
class CRecipeFrame {
public:
    virtual ~CRecipeFrame() = default;

    /// The open recipe; lives as long as the frame.
    virtual CRecipeDocument& Document() = 0;
    virtual const CRecipeDocument& Document() const = 0;

    /// Has the document read its file, as `type`, and the data pane show the rows.
    virtual void ShowRecipeData(FileType type) = 0;

    /// Has the rows written to the file `path`, as `type`. Not saved when that failed, which was reported then, or when
    /// the save was held back by `rule`. The current file and its type stay as they are.
    virtual SaveResult RefreshRecipeData(FileType type, const QString& path, ForeignRule rule) = 0;

    /// As RefreshRecipeData, under the new name `path`, which is the current file's then.
    virtual bool SaveRecipeDataAs(FileType type, const QString& path) = 0;

    /// Has the edited cells written into the current file, and no other byte. Not saved as by RefreshRecipeData.
    virtual SaveResult SaveEditedRecipeData(ForeignRule rule) = 0;

    /// Has the file written as a save would leave it, to `path` as `type`; what is open stays as it is. False as for
    /// RefreshRecipeData.
    virtual bool SaveRecipeDataCopy(FileType type, const QString& path) = 0;

    /// Has the document drop its rows, and the data pane empty its grid.
    virtual void ClearRecipeData() = 0;

    /// Whether `text` may become the value of a cell in the data pane's grid column `gridColumn` (2 or more).
    virtual bool ValidateCellValue(int gridColumn, const QString& text) const = 0;

    /// Sets the window's title to exactly `title`.
    virtual void SetTitle(const QString& title) = 0;

    /// Enables, disables and names the commands for the state as it is now.
    virtual void UpdateCommands() = 0;

    /// Says `text` in the status bar until another cell is chosen or WithdrawEdit, and to screen readers.
    virtual void TellEdit(const QString& text) = 0;

    /// An edit was made: takes back what TellEdit said.
    virtual void WithdrawEdit() = 0;

    /// Says `message` in the strip above the panes, in the place of an earlier one on the same subject. It stays until
    /// it is withdrawn or the user dismisses it.
    virtual void ShowStrip(StripSubject subject, const StripMessage& message) = 0;

    /// As ShowStrip, for what the user has just asked for: while the strip speaks of something weightier, the status
    /// bar says it, too.
    virtual void AnswerInStrip(StripSubject subject, const StripMessage& message) = 0;

    /// Takes back what the strip says on `subject`, if it says anything.
    virtual void WithdrawStrip(StripSubject subject) = 0;

    /// Keeps `trouble` with the format library in the status bar, until it is called with an empty text.
    virtual void TellLibraryTrouble(const QString& trouble) = 0;

    /// Where messages go; lives as long as the frame.
    virtual CReporter& Reporter() = 0;
};
