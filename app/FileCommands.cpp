#include "app/FileCommands.h"

#include "app/CloseQuestion.h"
#include "app/FileDialogs.h"
#include "files/RecipeMessages.h"
#include "text/MessageText.h"
#include "views/RecipeDataShowView.h"
#include "views/RecipeFormatEditView.h"
#include "views/RecipeFrame.h"
#include "views/TextCrossing.h"

#include <QFileInfo>

namespace {

const QString kBaseTitle = QStringLiteral("Vantor");

QString TitleWith(const QString& path)
{
    return kBaseTitle + QLatin1Char('[') + path + QLatin1Char(']');
}

} // namespace

CFileCommands::CFileCommands(CRecipeFrame& frame, CRecipeFormatEditView& formatPane, CRecipeDataShowView& dataPane,
                             QWidget& window)
    : m_frame(frame),
      m_formatPane(formatPane),
      m_dataPane(dataPane),
      m_window(window)
{
}

bool CFileCommands::IsUnsaved() const
{
    return m_frame.m_bFileOpen && (m_frame.m_bModified || m_frame.m_bNewFile);
}

/// Saves unsaved work without a question. False when another file must not take its place: a cell's text was refused,
/// the write failed, or the file was left as it is. A cancelled save dialog does not stop the command.
bool CFileCommands::LeaveCurrentWork()
{
    if (!m_dataPane.EndCellEdit())
        return false;
    return !IsUnsaved() || Save() != Outcome::Failed;
}

void CFileCommands::OnFileNew()
{
    if (!LeaveCurrentWork())
        return;
    m_frame.ClearRecipeData();
    m_frame.m_bNewFile = true;
    m_formatPane.ApplyReadSettings();
    m_frame.m_strFilePath.clear();
    m_frame.SetTitle(kBaseTitle + QStringLiteral("[NoName]"));
    m_frame.m_bFileOpen = true;
    m_frame.ShowRecipeData(FileType::Rcp); // m_nFileType keeps its value
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
    OpenChosen(QFileInfo(path).absoluteFilePath());
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
    if (!QFileInfo::exists(path)) {
        m_frame.Reporter().ShowError(FillMessage(u"Open error! %s doesn't exit!", {ViewOf(path)}));
        return;
    }
    m_frame.m_bFileOpen = true;
    m_frame.m_strFilePath = path;
    if (const auto type = FileTypeOf(NativePath(path))) {
        m_frame.m_nFileType = *type;
        m_frame.ShowRecipeData(*type);
    } else {
        m_frame.ClearRecipeData(); // the rows of the file before must not be saved into this one
    }
    m_frame.SetTitle(TitleWith(path));
    m_frame.UpdateCommands();
}

void CFileCommands::OnFileSave()
{
    if (m_dataPane.EndCellEdit())
        Save();
}

void CFileCommands::OnFileSaveAs()
{
    if (!m_dataPane.EndCellEdit())
        return;
    m_formatPane.ApplyReadSettings();
    SaveAs();
}

void CFileCommands::OnDiscardChanges()
{
    m_frame.ShowRecipeData(m_frame.m_nFileType);
    m_frame.m_bModified = false;
}

CFileCommands::Outcome CFileCommands::Save()
{
    m_formatPane.ApplyReadSettings();
    if (m_frame.m_bNewFile)
        return SaveAs();
    if (!m_frame.RefreshRecipeData(m_frame.m_nFileType, m_frame.m_strFilePath))
        return Outcome::Failed;
    MarkSaved();
    return Outcome::Done;
}

CFileCommands::Outcome CFileCommands::SaveAs()
{
    const QString path = AskSavePath(m_window, DialogFolder());
    if (path.isEmpty())
        return Outcome::Cancelled;
    const Outcome outcome = SaveTo(path);
    if (outcome == Outcome::Done) {
        m_frame.SetTitle(TitleWith(path));
        MarkSaved();
    }
    return outcome;
}

CFileCommands::Outcome CFileCommands::SaveTo(const QString& path)
{
    const auto type = FileTypeOf(NativePath(path));
    if (!type)
        return Outcome::Done; // kept: nothing is written under an unknown extension, yet the work counts as saved
    if (!m_dataPane.MaySaveAs(*type, path))
        return Outcome::Failed;
    const bool isPrepared = PrepareSaveAs(*type, NativePath(path), m_frame.m_nStartAddress, m_frame.Reporter());
    const bool isSaved = isPrepared && m_frame.RefreshRecipeData(*type, path);
    const bool isNameKept = !isPrepared && *type == FileType::Rcp; // kept: also when the file cannot be created
    if (isSaved || isNameKept) {
        m_frame.m_nFileType = *type;
        m_frame.m_strFilePath = path;
    }
    return isSaved ? Outcome::Done : Outcome::Failed;
}

void CFileCommands::MarkSaved()
{
    m_frame.m_bNewFile = false;
    m_frame.m_bModified = false;
    m_frame.UpdateCommands();
}

void CFileCommands::OnClose()
{
    m_frame.SetTitle(QStringLiteral("Saving file，Please be patient!"));
    m_dataPane.EndCellEdit();
    if (!IsUnsaved())
        return;
    if (AskToSave(m_window))
        Save();
}

QString CFileCommands::DialogFolder() const
{
    return m_frame.m_strFilePath.isEmpty() ? QString() : QFileInfo(m_frame.m_strFilePath).absolutePath();
}
