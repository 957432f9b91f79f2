#pragma once

#include "document/RecipeDocument.h"

#include <QString>

#include <functional>
#include <utility>

class CRecipeDataShowView;
class CRecipeFormatEditView;
class CRecipeFrame;
class QWidget;

/// New, Open, Save, Save As and the question at closing: which file and which type are current, and when the work
/// counts as unsaved. The state itself lies in the document.
///
/// Each command first ends a cell's edit that is open; a text that is refused then stops the command. A write that
/// fails leaves the work unsaved, the current file the current one, and stops the command that wanted it saved.
class CFileCommands {
public:
    /// All four outlive the object; `window` stands under the dialogs.
    CFileCommands(CRecipeFrame& frame, CRecipeFormatEditView& formatPane, CRecipeDataShowView& dataPane,
                  QWidget& window);

    /// Has `opened` called after a file was opened: by OnFileOpen or OpenPath.
    void SetOpened(std::function<void()> opened) { m_opened = std::move(opened); }

    void OnFileNew();
    void OnFileOpen();
    void OnFileSave();
    void OnFileSaveAs();

    /// Writes the edited values alone; it counts as a save. Nothing without a file.
    void OnFileSaveEdited();

    /// Asks for a name and writes a copy under it.
    void OnFileSaveCopy();

    /// Opens the file at `path` as OnFileOpen opens a chosen one, without the dialog.
    void OpenPath(const QString& path);

    /// Opens the file that `work` is about, or a new document, in the layout that it had: what the format pane says
    /// stays. False when its rows cannot be shown (then reported), or the current work is not saved (then told).
    bool OpenAsLeft(const WorkHeader& work);

    /// Reads the current file again in place of the changes; the work counts as saved then.
    void OnDiscardChanges();

    /// What closing does before the frame goes: the closing title, and the question about unsaved work. Nothing cancels
    /// it.
    void OnClose();

private:
    enum class Saving { Done, Cancelled, Failed, HeldBack };

    bool LeaveCurrentWork();
    Saving Save(ForeignRule rule);
    Saving SaveEdited(ForeignRule rule);
    void AskAndSave();
    Saving SaveAs();
    Saving SaveTo(const QString& path);
    void MarkSaved();
    Saving Marked(const SaveResult& result);
    void OpenChosen(const QString& path);
    QString DialogFolder() const;

    CRecipeFrame& m_frame;
    CRecipeDocument& m_document;
    CRecipeFormatEditView& m_formatPane;
    CRecipeDataShowView& m_dataPane;
    QWidget& m_window;
    std::function<void()> m_opened = [] {};
};
