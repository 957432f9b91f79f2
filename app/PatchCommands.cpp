#include "app/PatchCommands.h"

#include "app/FileDialogs.h"
#include "app/SaveCommands.h"
#include "text/EscapedText.h"
#include "ui_MainFrame.h"
#include "views/ProgressDialog.h"
#include "views/RecipeDataShowView.h"
#include "views/RecipeFrame.h"
#include "views/TextCrossing.h"

#include <QFileInfo>

#include <utility>

CPatchCommands::CPatchCommands(const Parts& parts) : m_parts(parts)
{
    connect(m_parts.ui.actionApplyPatch, &QAction::triggered, this, &CPatchCommands::AskAndRead);
}

void CPatchCommands::Follow()
{
    m_parts.ui.actionApplyPatch->setEnabled(m_parts.frame.Document().CanCompare());
    if (!m_strName.isEmpty() && !IsForTable())
        Withdraw();
}

/// Whether the table is still the one that the patch was read for.
bool CPatchCommands::IsForTable() const
{
    const CRecipeDocument& document = m_parts.frame.Document();
    return document.CanCompare() && document.Path() == m_toldFor &&
           (!m_offer || m_offer->layout.IsLaidOutLike(document.Rows()));
}

void CPatchCommands::AskAndRead()
{
    CRecipeDocument& document = m_parts.frame.Document();
    if (!m_parts.dataPane.EndCellEdit() || !document.CanCompare())
        return;
    const QString folder = document.Path().empty() ? QString() : QFileInfo(ToQPath(document.Path())).absolutePath();
    const QString path = AskPatchPath(m_parts.window, folder);
    if (path.isEmpty())
        return;
    ReadCellPatch read;
    {
        CProgressDialog progress(m_parts.window, tr("Reading the patch"));
        if (!document.ReadPatch(NativePath(path), read, m_parts.frame.Reporter(), progress) || read.isGivenUp)
            return;
    }
    Withdraw();
    m_strName = ToQString(EscapedText(ViewOf(QFileInfo(path).fileName())));
    m_toldFor = document.Path();
    if (!read.fault.empty())
        return Refuse(ToQString(EscapedText(read.fault)), nullptr);
    CRecipeRows layout;
    layout.LayOut(document.Rows().Columns(), document.Rows().StartAddress(), document.Rows().RowCount());
    m_offer = Offer{std::move(read.patch), document.Path(), std::move(layout)};
    Look();
}

/// Offers the patch where every old value is there.
void CPatchCommands::Look()
{
    const std::size_t count = m_offer->patch.entries.size();
    std::shared_ptr<const CChangeList> others;
    auto changes = m_parts.frame.Document().ChangesBy(m_offer->patch, others);
    if (!changes && !others) {
        m_parts.frame.Reporter().ShowError(kNoMemoryForEdit);
        return Withdraw();
    }
    if (others) {
        const std::size_t differing = others->Count();
        return Refuse(differing == 1 ? tr("1 value is not what it expects")
                                     : tr("%1 values are not what it expects").arg(differing),
                      others);
    }
    if (count == 0) {
        m_offer.reset();
        return m_parts.frame.AnswerInStrip(StripSubject::PatchRefused,
                                           {tr("Patch %1 changes nothing.").arg(m_strName), {}});
    }
    const QString values = count == 1 ? tr("1 value") : tr("%1 values").arg(count);
    m_parts.frame.AnswerInStrip(StripSubject::PatchOffered,
                                {QStringLiteral("%1.").arg(tr("Patch %1: %2").arg(m_strName, values)),
                                 {{tr("Apply"), [this] { Apply(); }}, {tr("Cancel"), [this] { WithdrawByButton(); }}}});
    List(std::move(changes), tr("Patch %1").arg(m_strName), tr("%1, not applied yet").arg(values));
}

/// Cells may have been edited since it was offered.
void CPatchCommands::Apply()
{
    if (!m_offer || !m_parts.dataPane.EndCellEdit())
        return;
    std::shared_ptr<const CChangeList> others;
    if (!m_parts.frame.Document().ChangesBy(m_offer->patch, others) || !IsForTable())
        return Look();
    const CellPatch patch = std::move(m_offer->patch);
    WithdrawByButton();
    if (!m_parts.dataPane.ApplyPatch(patch))
        return;
    const std::size_t count = patch.entries.size();
    m_parts.frame.TellEdit(count == 1 ? tr("The patch changed 1 value.")
                                      : tr("The patch changed %1 values.").arg(count));
}

void CPatchCommands::Refuse(const QString& reason, const std::shared_ptr<const CChangeList>& others)
{
    m_offer.reset();
    m_parts.frame.WithdrawStrip(StripSubject::PatchOffered);
    StripMessage message{QStringLiteral("%1.").arg(tr("Patch %1 was not applied: %2").arg(m_strName, reason)), {}};
    if (others) {
        const QString title = tr("Expected by %1, and found").arg(m_strName);
        const auto show = [this, others, title, reason] { List(others, title, reason); };
        message.buttons << StripButton{tr("Show"), show};
        show();
    }
    m_parts.frame.AnswerInStrip(StripSubject::PatchRefused, message);
}

void CPatchCommands::List(std::shared_ptr<const CChangeList> changes, const QString& title, const QString& summary)
{
    m_list = changes;
    const CRecipeDocument& document = m_parts.frame.Document();
    m_parts.saveCommands.Show({.changes = std::move(changes),
                               .title = title,
                               .summary = summary,
                               .path = document.Path(),
                               .layout = document.Rows(),
                               .actions = {}});
}

void CPatchCommands::WithdrawByButton()
{
    Withdraw();
    m_parts.dataPane.setFocus(Qt::OtherFocusReason); // the button goes
}

void CPatchCommands::Withdraw()
{
    m_offer.reset();
    m_strName.clear();
    m_parts.saveCommands.Withdraw(std::exchange(m_list, {}));
    m_parts.frame.WithdrawStrip(StripSubject::PatchOffered);
    m_parts.frame.WithdrawStrip(StripSubject::PatchRefused);
}
