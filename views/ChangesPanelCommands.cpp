// What the panel's lines offer: copied, kept as they are stored, saved as a patch.

#include "changes/ChangeFile.h"
#include "controls/FileDialog.h"
#include "disk/File.h"
#include "files/StoredCells.h"
#include "text/FileMessages.h"
#include "views/ChangesModel.h"
#include "views/ChangesPanel.h"
#include "views/ProgressDialog.h"
#include "views/TextCrossing.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QTableView>

#include <chrono>
#include <limits>

namespace {

constexpr std::chrono::seconds kPatience(1);
constexpr int kLooked = 256;       // chosen lines, to tell whether a command is for one of them
constexpr int kLinesAtOnce = 1024; // between two looks at the progress
constexpr std::size_t kWhole = std::numeric_limits<std::size_t>::max() / 2;

/// Ends the work when `holds` is true no more.
class CProgressWhile final : public CProgress {
public:
    CProgressWhile(CProgress& progress, std::function<bool()> holds) : m_progress(progress), m_holds(std::move(holds))
    {
    }

    bool Advance(std::uint64_t done, std::uint64_t total) override
    {
        return m_progress.Advance(done, total) && m_holds();
    }

private:
    CProgress& m_progress;
    std::function<bool()> m_holds;
};

} // namespace

/// Does `work` for the chosen rows in order. False when it was not done for all: the user had enough, or the list has
/// other changes, which is told.
bool CChangesPanel::ForEachChosen(const QString& label, const std::function<void(int row)>& work)
{
    const auto stretches = ChosenRows(*m_pTable->selectionModel());
    const auto total = static_cast<std::uint64_t>(RowsIn(stretches));
    CProgressDialog progress(*this, label, kPatience);
    const unsigned list = m_nLists;
    std::uint64_t done = 0;
    for (const RowStretch& stretch : stretches)
        for (int row = stretch.first; row <= stretch.last; ++row) {
            if (++done % kLinesAtOnce == 0 && !progress.Advance(done, total))
                return false;
            if (list != m_nLists) {
                TellOthers();
                return false;
            }
            work(row);
        }
    return true;
}

void CChangesPanel::TellOthers()
{
    m_reporter.ShowError(ViewOf(tr("The changes have become others meanwhile. Please try again.")));
}

void CChangesPanel::CopyChosen()
{
    QString lines;
    if (ForEachChosen(tr("Copying the changes"), [&](int row) { lines += LineText(row) + QLatin1Char('\n'); }))
        QGuiApplication::clipboard()->setText(lines);
}

/// The columns in sight with TABs between.
QString CChangesPanel::LineText(int row) const
{
    const ChangeTexts texts = TextsOf(m_pModel->ChangeIn(row), kWhole);
    QStringList shown;
    for (int column = 0; column < m_pModel->columnCount(); ++column)
        if (!m_pTable->isColumnHidden(column))
            shown += texts[static_cast<std::size_t>(column)];
    return shown.join(QLatin1Char('\t'));
}

/// Whether the file holds words in the line's cell that the user did not want to change.
bool CChangesPanel::CanKeep(int row) const
{
    if (!m_pModel->PlaceIn(row))
        return false;
    const ChangeRecord change = m_pModel->ChangeIn(row);
    return !change.oldWords.empty() && change.why != ChangeReason::Edited;
}

/// Whether the line says what its cell is to hold.
bool CChangesPanel::CanTake(int row) const
{
    if (!m_pModel->PlaceIn(row))
        return false;
    const ChangeRecord change = m_pModel->ChangeIn(row);
    return change.newWords.empty() ? change.newText.has_value() : change.newWords.size() % 2 == 0;
}

/// Looks at some of the chosen lines only; it may be for one of more.
bool CChangesPanel::IsForAChosen(ChangeAction action) const
{
    if (!m_actions.testFlag(action))
        return false;
    int looked = 0;
    for (const RowStretch& stretch : ChosenRows(*m_pTable->selectionModel()))
        for (int row = stretch.first; row <= stretch.last; ++row)
            if (++looked > kLooked || (action == ChangeAction::KeepStored ? CanKeep(row) : CanTake(row)))
                return true;
    return false;
}

void CChangesPanel::KeepChosen()
{
    std::vector<CellPlace> cells;
    const auto take = [&](int row) {
        if (CanKeep(row))
            cells.push_back(*m_pModel->PlaceIn(row));
    };
    if (ForEachChosen(tr("Looking at the changes"), take) && !cells.empty())
        emit KeepStored(cells);
}

void CChangesPanel::TakeChosen()
{
    std::vector<CellEdit> cells;
    const auto take = [&](int row) {
        if (!CanTake(row))
            return;
        const ChangeRecord change = m_pModel->ChangeIn(row);
        cells.push_back({*m_pModel->PlaceIn(row), change.newWords.empty()
                                                      ? CCellState::OfText(*change.newText)
                                                      : CCellState::OfWords(WordsOf(change.newWords))});
    };
    if (ForEachChosen(tr("Looking at the changes"), take) && !cells.empty())
        emit TakeOver(cells);
}

void CChangesPanel::SaveAsPatch()
{
    const unsigned lists = m_nLists;
    const std::filesystem::path path = NativePath(AskPatchPath());
    if (path.empty())
        return;
    if (IsSameFile(path, m_file)) {
        ShowFileError(m_reporter, kSaveFileError, path);
        return;
    }
    const auto list = m_pModel->SharedList(); // it may be another one while the progress is shown
    bool isSame = lists == m_nLists;
    if (isSame) {
        CProgressDialog progress(*this, tr("Saving the changes"), kPatience);
        CProgressWhile whileListed(progress, [&] { return isSame = lists == m_nLists; });
        SaveChanges(*list, path, m_reporter, whileListed);
    }
    if (!isSame)
        TellOthers();
}

/// Empty when the user cancelled.
QString CChangesPanel::AskPatchPath()
{
    CFileDialog dialog(this, tr("Save as patch"), ToQPath(m_file.parent_path()));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setNameFilters({tr("Changes (*.jsonl)"), tr("All files (*)")});
    dialog.setDefaultSuffix(QStringLiteral("jsonl"));
    const QString name = m_file.empty() ? QStringLiteral("changes") : ToQPath(m_file.stem());
    dialog.selectFile(name + QStringLiteral(".jsonl"));
    return dialog.AskPath();
}
