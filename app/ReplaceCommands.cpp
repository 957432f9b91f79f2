#include "app/ReplaceCommands.h"

#include "app/FindCommands.h"
#include "app/SaveCommands.h"
#include "changes/CellPatch.h"
#include "files/TableTitles.h"
#include "model/CellRefusal.h"
#include "views/ProgressDialog.h"
#include "views/RecipeDataShowView.h"
#include "views/RecipeFrame.h"
#include "views/TextCrossing.h"

#include <utility>

CReplaceCommands::CReplaceCommands(const Parts& parts) : m_parts(parts)
{
    connect(&m_parts.findCommands.Bar(), &CFindBar::ReplaceAskedFor, this, &CReplaceCommands::ReplaceOne);
    connect(&m_parts.findCommands.Bar(), &CFindBar::ReplaceAllAskedFor, this, &CReplaceCommands::ReplaceAll);
}

/// Where the focus cell is no hit, the next one is shown first: nothing is replaced that was not seen.
void CReplaceCommands::ReplaceOne()
{
    if (!m_parts.dataPane.EndCellEdit())
        return;
    const CCellSearch* search = m_parts.findCommands.Search();
    if (search == nullptr)
        return;
    const CellPlace place = m_parts.dataPane.FocusPlace();
    m_parts.findCommands.GoToNext(search->IsHit(place) ? ReplaceAt(place, *search) : QString());
}

/// What there is to say of it.
QString CReplaceCommands::ReplaceAt(CellPlace place, const CCellSearch& search)
{
    const CRecipeRows& rows = m_parts.frame.Document().Rows();
    const std::u16string text = rows.Text(place.row, place.column);
    const ColumnCoding& coding = rows.Columns()[place.column];
    const QString with = m_parts.findCommands.Bar().Replacement();
    std::u16string fresh = ReplacedText(search.Matcher(), coding, text, ViewOf(with));
    if (fresh == text)
        return tr("Nothing to replace.");
    if (!m_parts.frame.ValidateCellValue(static_cast<int>(place.column) + kTitleColumns, ToQString(fresh)))
        return tr("Row %1, %2 is not replaced: %3.")
            .arg(place.row + kTitleRows)
            .arg(ToQString(coding.title).simplified(), ToQString(RefusalOf(coding, fresh)));
    return m_parts.dataPane.SetTexts(EditKind::Replace, {{place, std::move(fresh)}}) ? tr("1 replaced.") : QString();
}

void CReplaceCommands::ReplaceAll()
{
    if (!m_parts.dataPane.EndCellEdit())
        return;
    const CCellSearch* search = m_parts.findCommands.Search();
    if (search == nullptr)
        return;
    ReplacementPlan plan;
    Outcome outcome;
    {
        CProgressDialog progress(m_parts.window, tr("Replacing"));
        const QString with = m_parts.findCommands.Bar().Replacement();
        outcome = PlanReplacement(*search, m_parts.frame.Document().Rows(), ViewOf(with), progress, plan);
    }
    if (outcome == Outcome::GivenUp)
        return m_parts.findCommands.Tell(tr("Cancelled. Nothing was replaced."));
    if (outcome != Outcome::Done)
        return m_parts.findCommands.Tell(ToQString(kNoMemoryForEdit));
    const std::size_t replaced = plan.texts.size();
    if (replaced > 0 && !m_parts.dataPane.SetTexts(EditKind::Replace, std::move(plan.texts)))
        return;
    TellReplaced(replaced, plan);
    if (plan.refusedCount > 0)
        ListRefused(plan);
}

void CReplaceCommands::TellReplaced(std::size_t replaced, const ReplacementPlan& plan)
{
    QString text = replaced == 0 ? tr("Nothing replaced") : tr("%1 replaced").arg(replaced);
    if (plan.refusedCount > 0)
        text += tr(", %1 refused").arg(plan.refusedCount);
    if (plan.sameCount > 0)
        text += tr(", %1 as they should be already").arg(plan.sameCount);
    m_parts.findCommands.TellDone(text + u'.');
}

void CReplaceCommands::ListRefused(const ReplacementPlan& plan)
{
    const CRecipeDocument& document = m_parts.frame.Document();
    const CRecipeRows& rows = document.Rows();
    std::vector<CellPatch::Entry> entries;
    for (const auto& [place, text] : plan.refused) {
        ChangeRecord record = PlaceRecord(rows, document.Type(), place);
        record.oldText = rows.Text(place.row, place.column);
        record.note = u"refused: " + RefusalOf(rows.Columns()[place.column], text);
        entries.push_back({std::move(record), place});
    }
    const ChangeSubject subject{document.Path(), std::u16string(TextOf(document.Format().name))};
    QString summary = tr("%1 refused, and left as they are").arg(plan.refusedCount);
    if (plan.refusedCount > plan.refused.size())
        summary += tr(": the first %1").arg(plan.refused.size());
    m_refused = std::make_shared<const CKnownChanges>(HeaderOf(subject, rows, document.Type()), std::move(entries));
    CRecipeRows layout;
    layout.LayOut(rows.Columns(), rows.StartAddress(), rows.RowCount());
    m_parts.saveCommands.Show({.changes = m_refused,
                               .title = tr("Not replaced"),
                               .summary = summary,
                               .path = document.Path(),
                               .layout = std::move(layout),
                               .actions = {},
                               .summarySaysAll = true});
}
