#include "app/FileCommands.h"

#include "app/CloseQuestion.h"
#include "app/FileDialogs.h"
#include "app/SaveQuestion.h"
#include "files/RecipeMessages.h"
#include "text/MessageText.h"
#include "views/RecipeDataShowView.h"
#include "views/RecipeFormatEditView.h"
#include "views/RecipeFrame.h"
#include "views/TextCrossing.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace {

const QString kBaseTitle = QStringLiteral("Vantor");
const QString kNewTitle = kBaseTitle + QStringLiteral("[NoName]");

QString TitleWith(const QString& path)
{
    return kBaseTitle + QLatin1Char('[') + path + QLatin1Char(']');
}

/// Reported when not.
bool Exists(const QString& path, CReporter& reporter)
{
    const bool exists = QFileInfo::exists(path);
    if (!exists)
        reporter.ShowError(FillMessage(u"Open error! %s doesn't exit!", {ViewOf(path)}));
    return exists;
}

} // namespace

CFileCommands::CFileCommands(CRecipeFrame& frame, CRecipeFormatEditView& formatPane, CRecipeDataShowView& dataPane,
                             QWidget& window)
    : m_frame(frame),
      m_document(frame.Document()),
      m_formatPane(formatPane),
      m_dataPane(dataPane),
      m_window(window)
{
}

/// Saves unsaved work without a question. False when another file must not take its place: a cell's text was refused,
/// the write failed, or the file was left as it is. A cancelled save dialog does not stop the command.
bool CFileCommands::LeaveCurrentWork()
{
    if (!m_dataPane.EndCellEdit())
        return false;
    return !m_document.IsUnsaved() || Save(ForeignRule::Overwrite) != Saving::Failed;
}

void CFileCommands::OnFileNew()
{
    if (!LeaveCurrentWork())
        return;
    m_frame.ClearRecipeData();
    m_formatPane.ApplyReadSettings();
    m_document.StartNew();
    m_frame.SetTitle(kNewTitle);
    m_frame.ShowRecipeData(FileType::Rcp); // the document's own type keeps its value
    m_frame.UpdateCommands();
}

void CFileCommands::OnFileOpen()
{
    if (!LeaveCurrentWork())
        return;
    QString pattern = m_formatPane.FilePattern().trimmed();
    if (pattern.isEmpty())
        pattern = QStringLiteral("*.rcp");
    m_frame.SetTitle(kBaseTitle);
    const QString path = AskOpenPath(m_window, pattern, DialogFolder());
    if (!path.isEmpty())
        OpenChosen(path);
}

void CFileCommands::OpenPath(const QString& path)
{
    if (!LeaveCurrentWork())
        return;
    m_frame.SetTitle(kBaseTitle);
    OpenChosen(QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath()));
}

void CFileCommands::OpenChosen(const QString& path)
{
    if (QFileInfo(path).isDir()) {
        ShowFileError(m_frame.Reporter(), OpenErrorOf(FileTypeOf(NativePath(path))), NativePath(path));
        return;
    }
    m_formatPane.SetFilePattern(QStringLiteral("*.") + QFileInfo(path).suffix().toLower());
    m_formatPane.ApplyReadSettings();
    if (!m_formatPane.HasSelectedFormat()) {
        m_frame.SetTitle(TitleWith(path));
        return;
    }
    if (!Exists(path, m_frame.Reporter()))
        return;
    const auto type = FileTypeOf(NativePath(path));
    m_document.StartOpen(NativePath(path), type);
    if (type)
        m_frame.ShowRecipeData(*type);
    else
        m_frame.ClearRecipeData(); // the rows of the file before must not be saved into this one
    m_frame.SetTitle(TitleWith(path));
    m_frame.UpdateCommands();
    m_opened();
}

bool CFileCommands::OpenAsLeft(const WorkHeader& work)
{
    const QString path = ToQPath(work.file);
    const bool mayBeOpened = path.isEmpty() || Exists(path, m_frame.Reporter());
    if (!mayBeOpened || !m_dataPane.EndCellEdit())
        return false;
    if (m_document.IsUnsaved()) { // Open would save it, but nobody asked to open anything
        m_frame.TellEdit(
            QCoreApplication::translate("CFileCommands", "Save what is open first: another file is to be opened."));
        return false;
    }
    if (path.isEmpty())
        m_document.StartNew();
    else
        m_document.StartOpen(work.file, work.type);
    m_document.TakeSettings({work.format, work.startAddress, work.rowCount});
    m_frame.ShowRecipeData(work.readAs);
    m_frame.SetTitle(path.isEmpty() ? kNewTitle : TitleWith(path));
    m_frame.UpdateCommands();
    return m_document.HasRowsOfFile();
}

void CFileCommands::OnFileSave()
{
    if (m_dataPane.EndCellEdit() && Save(ForeignRule::HoldBack) == Saving::HeldBack)
        AskAndSave();
}

void CFileCommands::OnFileSaveAs()
{
    if (!m_dataPane.EndCellEdit())
        return;
    m_formatPane.ApplyReadSettings();
    SaveAs();
}

void CFileCommands::OnFileSaveEdited()
{
    if (!m_dataPane.EndCellEdit() || !m_document.IsOpen() || m_document.IsNew())
        return;
    m_formatPane.ApplyReadSettings();
    if (SaveEdited(ForeignRule::HoldBack) == Saving::HeldBack)
        AskAndSave();
}

/// Another program changed meanwhile what the save would write over.
void CFileCommands::AskAndSave()
{
    const bool canSaveEdited = m_document.Plan().FormFault().empty();
    switch (AskHowToSave(m_window, ToQPath(m_document.Path()), canSaveEdited)) {
    case HowToSave::EditedOnly:
        SaveEdited(ForeignRule::Overwrite);
        break;
    case HowToSave::All:
        Save(ForeignRule::Overwrite);
        break;
    case HowToSave::NotAtAll:
        break;
    }
}

CFileCommands::Saving CFileCommands::SaveEdited(ForeignRule rule)
{
    return Marked(m_frame.SaveEditedRecipeData(rule));
}

void CFileCommands::OnFileSaveCopy()
{
    if (!m_dataPane.EndCellEdit())
        return;
    const QString path = AskCopyPath(m_window, ToQPath(m_document.Path()));
    if (path.isEmpty())
        return;
    const auto type = FileTypeOf(NativePath(path));
    if (!type)
        ShowFileError(m_frame.Reporter(), kUnknownTypeError, NativePath(path));
    else if (m_frame.SaveRecipeDataCopy(*type, path))
        m_frame.TellEdit(QCoreApplication::translate("CFileCommands", "A copy was saved: %1").arg(path));
}

void CFileCommands::OnDiscardChanges()
{
    m_frame.ShowRecipeData(m_document.Type());
    m_document.MarkUnmodified();
}

CFileCommands::Saving CFileCommands::Save(ForeignRule rule)
{
    m_formatPane.ApplyReadSettings();
    if (m_document.IsNew())
        return SaveAs();
    return Marked(m_frame.RefreshRecipeData(m_document.Type(), ToQPath(m_document.Path()), rule));
}

/// The work counts as saved when it is.
CFileCommands::Saving CFileCommands::Marked(const SaveResult& result)
{
    if (result.isHeldBack)
        return Saving::HeldBack;
    if (!result.isSaved)
        return Saving::Failed;
    MarkSaved();
    return Saving::Done;
}

CFileCommands::Saving CFileCommands::SaveAs()
{
    const QString path = AskSavePath(m_window, DialogFolder());
    if (path.isEmpty())
        return Saving::Cancelled;
    const Saving outcome = SaveTo(path);
    if (outcome == Saving::Done) {
        m_frame.SetTitle(TitleWith(path));
        MarkSaved();
    }
    return outcome;
}

CFileCommands::Saving CFileCommands::SaveTo(const QString& path)
{
    const auto type = FileTypeOf(NativePath(path));
    if (!type)
        return Saving::Done; // kept: nothing is written under an unknown extension, yet the work counts as saved
    return m_frame.SaveRecipeDataAs(*type, path) ? Saving::Done : Saving::Failed;
}

void CFileCommands::MarkSaved()
{
    m_document.MarkSaved();
    m_frame.UpdateCommands();
}

void CFileCommands::OnClose()
{
    m_frame.SetTitle(QStringLiteral("Saving file，Please be patient!"));
    m_dataPane.EndCellEdit();
    if (!m_document.IsUnsaved())
        return;
    if (AskToSave(m_window))
        Save(ForeignRule::Overwrite);
    else
        m_document.Unsaved().Drop();
}

QString CFileCommands::DialogFolder() const
{
    const auto& path = m_document.Path();
    return path.empty() ? QString() : QFileInfo(ToQPath(path)).absolutePath();
}
