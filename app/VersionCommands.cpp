#include "app/VersionCommands.h"

#include "app/CompareCommands.h"
#include "app/FileCommands.h"
#include "app/SaveCommands.h"
#include "changes/CellDifferences.h"
#include "disk/FileLock.h"
#include "files/RecipeMessages.h"
#include "library/LibraryLock.h"
#include "library/StandingLibrary.h"
#include "recovery/LibraryRestore.h"
#include "recovery/VersionContent.h"
#include "ui_MainFrame.h"
#include "views/ProgressDialog.h"
#include "views/RecipeDataShowView.h"
#include "views/RecipeFormatEditView.h"
#include "views/RecipeFrame.h"
#include "views/TextCrossing.h"
#include "views/VersionTime.h"
#include "views/VersionsDlg.h"

namespace fs = std::filesystem;

namespace {

/// Whether the file may be restored now; reported when another program writes it and does not end.
bool Hold(CFileLock& lock, const fs::path& file, QWidget& window, CReporter& reporter)
{
    CProgressDialog progress(window, CVersionCommands::tr("Waiting for another program"));
    const auto state = lock.Take(file, kLongestLockWait, [&] { return progress.Advance(0, 1); });
    if (state == CFileLock::State::Busy)
        ShowFileError(reporter, kBusyFileError, file);
    return state != CFileLock::State::Busy && state != CFileLock::State::GivenUp;
}

} // namespace

CVersionCommands::CVersionCommands(const Parts& parts) : m_parts(parts)
{
    connect(m_parts.ui.actionEarlierVersions, &QAction::triggered, this, &CVersionCommands::Open);
}

void CVersionCommands::UseStore(const CVersionStore& store)
{
    m_pStore = &store;
    Update();
}

/// A file that has gone has its versions still.
void CVersionCommands::Update()
{
    m_parts.ui.actionEarlierVersions->setEnabled(m_pStore != nullptr && !m_parts.frame.Document().Path().empty());
}

void CVersionCommands::Open()
{
    if (!m_parts.dataPane.EndCellEdit())
        return;
    CVersionsDlg dialog(*m_pStore, m_parts.frame.Document(), m_parts.formatPane.Store().Library().path,
                        &m_parts.window);
    if (dialog.exec() != QDialog::Accepted)
        return;
    if (dialog.Wanted() == CVersionsDlg::Wish::ShowDifferences)
        ShowDifferences(dialog);
    else if (dialog.Wanted() == CVersionsDlg::Wish::Compare)
        Compare(dialog);
    else if (dialog.IsOfLibrary())
        RestoreFormats(dialog.Chosen());
    else
        RestoreRecipe(dialog.Chosen());
}

void CVersionCommands::ShowDifferences(const CVersionsDlg& dialog)
{
    const CRecipeDocument& document = m_parts.frame.Document();
    const VersionDifferences& differences = dialog.Differences();
    const std::size_t count = differences.places.size();
    const ChangeSubject subject{document.Path(), std::u16string(TextOf(document.Format().name))};
    m_parts.saveCommands.Show(
        {std::make_shared<CCellDifferences>(differences.now, differences.then, differences.places, subject),
         tr("Changes back to the version of %1").arg(VersionTime(dialog.Chosen().stamp)),
         count == 1 ? tr("1 value differs") : tr("%1 values differ").arg(count), document.Path(),
         differences.then.Cells()});
}

/// The words of a version may have to be found anew after each save: it may be kept as changes back from the file.
void CVersionCommands::Compare(const CVersionsDlg& dialog)
{
    const fs::path file = m_parts.frame.Document().Path();
    ComparedWith other{.name = std::u16string(ViewOf(tr("the version of %1").arg(VersionTime(dialog.Chosen().stamp)))),
                       .cells = dialog.Differences().then,
                       .openWords = {}};
    if (other.cells.Type() != FileType::Csv)
        other.openWords = [store = m_pStore, file, stamp = dialog.Chosen().stamp]() -> std::shared_ptr<CWordBytes> {
            const auto content = std::make_shared<CVersionContent>(*store, file, stamp);
            return content->Fault().empty() ? std::shared_ptr<CWordBytes>(content, content->Words()) : nullptr;
        };
    m_parts.compareCommands.CompareWith(std::move(other));
}

/// Edits that are not saved are dropped as by reading again, which brings the rows from before back when it is undone.
void CVersionCommands::RestoreRecipe(const Version& version)
{
    CRecipeFrame& frame = m_parts.frame;
    const fs::path file = frame.Document().Path();
    CFileLock lock;
    if (!Hold(lock, file, m_parts.window, frame.Reporter()))
        return;
    const VersionRestored restored = RestoreVersion(*m_pStore, file, version.stamp, frame.Reporter());
    lock.Release();
    if (restored) {
        frame.Document().NoteRestored(restored.kept);
        m_parts.fileCommands.OnDiscardChanges();
        frame.UpdateCommands();
    }
    if (restored || restored.mayHoldOldAndNew)
        emit Restored(ToQPath(file), restored.isRestored);
    if (restored)
        Tell(tr("%1 is as it was %2.").arg(ToQPath(file.filename()), VersionMoment(version.stamp)), restored.kept,
             file);
}

/// What is only in this window goes into the file first, and so into the version that is kept of it. This window has no
/// changes of its own then: what it shows becomes what was restored.
void CVersionCommands::RestoreFormats(const Version& version)
{
    CRecipeFormatEditView& pane = m_parts.formatPane;
    const fs::path library = pane.Store().Library().path;
    if (pane.Store().State().content == LibraryState::Content::Whole)
        pane.SaveFormats();
    const auto restore = [&] {
        const CLibraryLock lock(library);
        return RestoreLibrary(*m_pStore, library, version.stamp, m_parts.frame.Reporter());
    };
    const VersionRestored restored = restore();
    if (!restored)
        return;
    pane.TakeOthers();
    m_parts.frame.UpdateCommands();
    const QString text = ReadStanding(library).IsUnderstood()
                             ? tr("The data formats are as they were %1.")
                             : tr("The file of the data formats is as it was %1. It cannot be read in full: the "
                                  "formats shown stay.");
    Tell(text.arg(VersionMoment(version.stamp)), restored.kept, library);
}

void CVersionCommands::Tell(QString text, const VersionKept& kept, const fs::path& file)
{
    if (const std::u16string notKept = NotKeptText(kept, file); !notKept.empty())
        text += QLatin1Char(' ') + ToQString(notKept);
    m_parts.frame.TellEdit(text);
}
