#include "app/OfferCommands.h"

#include "app/SaveCommands.h"
#include "views/ProgressDialog.h"
#include "views/RecipeDataShowView.h"
#include "views/RecipeFrame.h"
#include "views/TextCrossing.h"

#include <utility>

namespace {

constexpr std::size_t kMostShown = 65536; // cells that are selected after an edit

QString Cells(std::size_t count)
{
    return count == 1 ? QObject::tr("1 cell") : QObject::tr("%1 cells").arg(count);
}

QString WouldChange(std::size_t count)
{
    return count == 0 ? QObject::tr("no cell would change") : QObject::tr("%1 would change").arg(Cells(count));
}

QString AreRefused(std::size_t count)
{
    return count == 1 ? QObject::tr("1 is refused") : QObject::tr("%1 are refused").arg(count);
}

QString Counts(const COfferedEdits& offered)
{
    const QString changes = WouldChange(offered.ChangeCount());
    return offered.RefusedCount() == 0 ? changes
                                       : QStringLiteral("%1, %2").arg(changes, AreRefused(offered.RefusedCount()));
}

} // namespace

/// False when the command is not to go on.
bool COfferCommands::Begin(Order order)
{
    if (!m_parts.dataPane.EndCellEdit())
        return false;
    Withdraw();
    const CRecipeDocument& document = m_parts.frame.Document();
    m_order = std::move(order);
    m_edition = document.CellsEdition();
    m_storedEdition = document.StoredEdition();
    m_path = document.Path();
    m_type = document.Type();
    return true;
}

Outcome COfferCommands::WorkOut(COfferedEdits& offered, std::vector<CellEdit>* edits)
{
    Outcome outcome = Outcome::Done;
    {
        CProgressDialog progress(m_parts.window, tr("Working out the changes"));
        outcome = offered.WorkOut(progress, edits);
    }
    if (HasFailed(outcome))
        m_parts.frame.Reporter().ShowError(kNoMemoryForEdit);
    return IsForTable() ? outcome : Outcome::GivenUp;
}

void COfferCommands::Preview(Order order)
{
    if (!Begin(std::move(order)))
        return;
    const CRecipeDocument& document = m_parts.frame.Document();
    auto offered =
        std::make_shared<COfferedEdits>(document.Rows(), document.Stored(), document.Type(), m_order.command);
    if (WorkOut(*offered, nullptr) != Outcome::Done)
        return;
    if (offered->Count() == 0)
        return TellDone(0, 0);
    m_offered = std::move(offered);
    m_isToBeApplied = true;
    Offer();
}

void COfferCommands::Offer()
{
    const QString counts = Counts(*m_offered);
    StripMessage message{WithRemark(QStringLiteral("%1: %2.").arg(m_order.name, counts)), {}};
    if (m_offered->ChangeCount() > 0)
        message.buttons << StripButton{tr("Apply"), [this] { Apply(); }};
    message.buttons << StripButton{tr("Discard"), [this] { WithdrawByButton(); }};
    m_parts.frame.AnswerInStrip(StripSubject::EditsOffered, message);
    List(m_order.name, tr("%1, not applied yet").arg(counts));
}

void COfferCommands::Apply()
{
    if (!m_parts.dataPane.EndCellEdit() || !m_isToBeApplied || !IsForTable())
        return Follow();
    std::vector<CellEdit> edits;
    Outcome outcome = Outcome::Done;
    {
        CProgressDialog progress(m_parts.window, tr("Working out the changes"));
        outcome = m_offered->TakeEdits(progress, edits);
    }
    if (HasFailed(outcome))
        m_parts.frame.Reporter().ShowError(kNoMemoryForEdit);
    if (outcome != Outcome::Done || !IsForTable())
        return Follow();
    const std::size_t refused = m_offered->RefusedCount();
    WithdrawByButton();
    Make(std::move(edits), refused);
}

void COfferCommands::Do(Order order)
{
    if (!Begin(std::move(order)))
        return;
    const CRecipeDocument& document = m_parts.frame.Document();
    auto offered = std::make_shared<COfferedEdits>(document.Rows(), document.Stored(), document.Type(), m_order.command,
                                                   COfferedEdits::Listed::RefusedOnly);
    std::vector<CellEdit> edits;
    if (WorkOut(*offered, &edits) != Outcome::Done)
        return;
    Make(std::move(edits), offered->RefusedCount());
    if (offered->RefusedCount() == 0 || document.Path() != m_path)
        return;
    m_offered = std::move(offered);
    m_edition = document.CellsEdition();
}

void COfferCommands::Make(std::vector<CellEdit> edits, std::size_t refused)
{
    const std::size_t count = edits.size();
    std::vector<CellPlace> places;
    if (m_order.showsCells && count <= kMostShown)
        for (const CellEdit& edit : edits)
            places.push_back(edit.place);
    if (count > 0 && !m_parts.dataPane.SetStates(m_order.kind, std::move(edits)))
        return;
    if (!places.empty())
        m_parts.dataPane.ShowCells(places);
    TellDone(count, refused);
}

/// What was refused is told in the strip, as it may be looked at; else the status bar will do.
void COfferCommands::TellDone(std::size_t changed, std::size_t refused)
{
    const QString done = changed == 0 ? tr("%1 changed nothing.").arg(m_order.name)
                                      : tr("%1 changed %2.").arg(m_order.name, Cells(changed));
    m_parts.frame.TellEdit(WithRemark(done));
    if (refused == 0 && m_order.remark.isEmpty())
        return;
    QString text = done;
    if (refused > 0)
        text = QStringLiteral("%1, %2.").arg(done.chopped(1), refused == 1 ? tr("1 cell was refused")
                                                                           : tr("%1 cells were refused").arg(refused));
    StripMessage message{WithRemark(text), {}};
    const auto list = [this, text] {
        if (m_offered)
            List(tr("Refused: %1").arg(m_order.name), text);
    };
    if (refused > 0)
        message.buttons << StripButton{tr("Show"), list};
    m_parts.frame.AnswerInStrip(StripSubject::EditsOffered, message);
    m_isToldOfEnd = true;
    m_edition = m_parts.frame.Document().CellsEdition();
}

void COfferCommands::List(const QString& title, const QString& summary)
{
    const CRecipeDocument& document = m_parts.frame.Document();
    m_parts.saveCommands.Show({.changes = m_offered,
                               .title = title,
                               .summary = summary,
                               .path = document.Path(),
                               .layout = document.Rows(),
                               .actions = {}});
}

QString COfferCommands::WithRemark(const QString& sentence) const
{
    return m_order.remark.isEmpty() ? sentence : sentence + QLatin1Char(' ') + m_order.remark;
}

/// Whether the cells are those that the offer was worked out for. What was refused stays so when the file is saved.
bool COfferCommands::IsForTable() const
{
    const CRecipeDocument& document = m_parts.frame.Document();
    const bool isStoredSame = !m_isToBeApplied || document.StoredEdition() == m_storedEdition;
    return isStoredSame && document.CellsEdition() == m_edition && document.Path() == m_path &&
           document.Type() == m_type;
}

void COfferCommands::Follow()
{
    if ((!m_offered && !m_isToldOfEnd) || IsForTable())
        return;
    const bool wasOffered = m_isToBeApplied && m_parts.frame.Document().Path() == m_path;
    const bool isFileOther = m_parts.frame.Document().CellsEdition() == m_edition;
    Withdraw();
    if (!wasOffered)
        return;
    m_parts.frame.AnswerInStrip(StripSubject::EditsOffered,
                                {(isFileOther ? tr("%1 was not applied: the file was changed meanwhile.")
                                              : tr("%1 was not applied: the table was changed meanwhile."))
                                     .arg(m_order.name),
                                 {}});
    m_edition = m_parts.frame.Document().CellsEdition();
    m_isToldOfEnd = true;
}

void COfferCommands::WithdrawByButton()
{
    Withdraw();
    m_parts.dataPane.setFocus(Qt::OtherFocusReason); // the button goes
}

void COfferCommands::Withdraw()
{
    const std::shared_ptr<const CChangeList> list = std::exchange(m_offered, {});
    m_isToBeApplied = false;
    m_isToldOfEnd = false;
    m_parts.saveCommands.Withdraw(list);
    m_parts.frame.WithdrawStrip(StripSubject::EditsOffered);
}
