#include "app/CompareCommands.h"

#include "app/FileDialogs.h"
#include "app/SaveCommands.h"
#include "changes/TableComparison.h"
#include "text/EscapedText.h"
#include "ui_MainFrame.h"
#include "views/ProgressDialog.h"
#include "views/RecipeDataShowView.h"
#include "views/RecipeFrame.h"
#include "views/TextCrossing.h"

#include <QFileInfo>

#include <chrono>
#include <utility>

namespace {

constexpr std::chrono::milliseconds kSlice{8};

} // namespace

CCompareCommands::CCompareCommands(const Parts& parts) : m_parts(parts)
{
    m_counting.setObjectName(QStringLiteral("timerComparing"));
    m_counting.setSingleShot(true);
    connect(&m_counting, &QTimer::timeout, this, &CCompareCommands::CountOn);
    connect(m_parts.ui.actionCompareWith, &QAction::triggered, this, &CCompareCommands::AskAndCompare);
    connect(&m_parts.saveCommands, &CSaveCommands::PanelClosed, this, [this] {
        if (m_parts.saveCommands.Lists(m_list))
            End();
    });
}

void CCompareCommands::AskAndCompare()
{
    CRecipeDocument& document = m_parts.frame.Document();
    if (!m_parts.dataPane.EndCellEdit() || !document.CanCompare())
        return;
    const QFileInfo own(ToQPath(document.Path()));
    const QString folder = document.Path().empty() ? QString() : own.absolutePath();
    const QString path = AskComparePath(m_parts.window, QStringLiteral("*.") + own.suffix().toLower(), folder);
    if (path.isEmpty())
        return;
    CProgressDialog progress(m_parts.window, tr("Comparing the files"));
    if (document.CompareWith(NativePath(path), m_parts.frame.Reporter(), progress) == Outcome::Done)
        Begun();
    else
        Follow();
}

void CCompareCommands::CompareWith(ComparedWith other)
{
    CProgressDialog progress(m_parts.window, tr("Comparing the files"));
    if (m_parts.frame.Document().CompareWith(std::move(other), m_parts.frame.Reporter(), progress) == Outcome::Done)
        Begun();
    else
        Follow();
}

void CCompareCommands::Begun()
{
    Withdraw();
    m_comparison = m_parts.frame.Document().Comparison();
    m_edition = m_comparison->Edition();
    m_list = std::make_shared<CComparedChanges>(m_comparison);
    m_parts.dataPane.StoredChanged();
    m_strTold = Text();
    m_parts.frame.AnswerInStrip(StripSubject::Compared, Message());
    if (m_list->Count() > 0)
        List();
}

void CCompareCommands::Follow()
{
    const CRecipeDocument& document = m_parts.frame.Document();
    m_parts.ui.actionCompareWith->setEnabled(document.CanCompare());
    if (document.Comparison() != m_comparison) {
        Withdraw();
        m_parts.dataPane.StoredChanged();
    }
    if (!m_comparison || m_comparison->Edition() == m_edition)
        return;
    m_edition = m_comparison->Edition();
    m_parts.saveCommands.ListChanged(m_list, Counts());
    CountOn();
}

void CCompareCommands::CountOn()
{
    CRecipeDocument& document = m_parts.frame.Document();
    document.ContinueComparison(std::chrono::steady_clock::now() + kSlice);
    if (document.Comparison() != m_comparison || !m_comparison)
        return Follow();
    Tell();
    m_parts.saveCommands.ListGrew(m_list, Counts());
    if (!m_comparison->IsFinished())
        m_counting.start(0);
}

QString CCompareCommands::Title() const
{
    return tr("Compared with %1").arg(ToQString(EscapedText(m_comparison->Name())));
}

/// "12 values differ, 3 words outside the table".
QString CCompareCommands::Counts() const
{
    const std::size_t values = m_comparison->Places().size();
    const COutsideWords* outside = m_comparison->Outside();
    const std::uint64_t words = outside != nullptr ? outside->WordCount() : 0;
    QString text = values == 0   ? tr("no value differs")
                   : values == 1 ? tr("1 value differs")
                                 : tr("%1 values differ").arg(values);
    if (words > 0)
        text += words == 1 ? tr(", 1 word outside the table") : tr(", %1 words outside the table").arg(words);
    if (m_comparison->IsOutsideUnknown())
        text += tr(", the words outside the table cannot be read");
    else if (values == 0 && words == 0 && m_comparison->IsFinished())
        text = tr("no difference");
    return text;
}

/// "Compared with oven-old.rcp: 12 values differ, 3 words outside the table."
QString CCompareCommands::Text() const
{
    const QString counts = m_comparison->IsFinished() ? Counts() : tr("%1, counting…").arg(Counts());
    return QStringLiteral("%1: %2.").arg(Title(), counts);
}

void CCompareCommands::Tell()
{
    if (Text() == m_strTold)
        return;
    m_strTold = Text();
    m_parts.frame.ShowStrip(StripSubject::Compared, Message());
}

StripMessage CCompareCommands::Message()
{
    StripMessage message{m_strTold, {}};
    if (m_list->Count() > 0)
        message.buttons << StripButton{tr("Show"), [this] { List(); }};
    message.buttons << StripButton{tr("End comparing"), [this] {
                                       End();
                                       m_parts.dataPane.setFocus(Qt::OtherFocusReason); // the button goes
                                   }};
    return message;
}

void CCompareCommands::List()
{
    if (!m_comparison)
        return;
    m_parts.saveCommands.Show({.changes = m_list,
                               .title = Title(),
                               .summary = Counts(),
                               .path = m_parts.frame.Document().Path(),
                               .layout = m_comparison->Layout(),
                               .summarySaysAll = true});
}

void CCompareCommands::End()
{
    if (!m_comparison)
        return;
    m_parts.frame.Document().EndComparison();
    Follow();
}

/// What is shown of a comparison that has ended, or gives way to another one.
void CCompareCommands::Withdraw()
{
    m_counting.stop();
    m_strTold.clear();
    m_comparison.reset();
    m_parts.saveCommands.Withdraw(std::exchange(m_list, {}));
    m_parts.frame.WithdrawStrip(StripSubject::Compared);
}
