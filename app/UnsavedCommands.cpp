#include "app/UnsavedCommands.h"

#include "app/FileCommands.h"
#include "app/SaveCommands.h"
#include "disk/File.h"
#include "recovery/UnsavedChanges.h"
#include "views/RecipeDataShowView.h"
#include "views/RecipeFrame.h"
#include "views/TextCrossing.h"

#include <QDateTime>
#include <QLocale>

#include <utility>

namespace {

constexpr int kOfferPause = 100;  // milliseconds
constexpr int kFlushPause = 1500; // milliseconds after the first edit that the disk may not have

/// "14:02", with the date before it where that is another day.
QString MomentText(UtcTime time)
{
    const QDateTime moment = QDateTime::fromMSecsSinceEpoch(time.time_since_epoch().count());
    QString clock = moment.toString(QStringLiteral("HH:mm"));
    if (moment.date() == QDate::currentDate())
        return clock;
    return QLocale().toString(moment.date(), QLocale::ShortFormat) + QLatin1Char(' ') + clock;
}

QString NameOf(const WorkHeader& work)
{
    return work.file.empty() ? CUnsavedCommands::tr("a new document") : ToQPath(work.file.filename());
}

/// Edits as a list that keeps them.
struct ListedWork {
    explicit ListedWork(UnsavedWork edits) : work(std::move(edits)), list(work) {}

    const UnsavedWork work;
    const CUnsavedChanges list;
};

} // namespace

CUnsavedCommands::CUnsavedCommands(CRecipeFrame& frame, CFileCommands& fileCommands, CRecipeDataShowView& dataPane,
                                   CSaveCommands& saveCommands)
    : m_frame(frame),
      m_fileCommands(fileCommands),
      m_dataPane(dataPane),
      m_saveCommands(saveCommands)
{
    m_flushing.setObjectName(QStringLiteral("timerFlushing"));
    m_flushing.setSingleShot(true);
    m_flushing.setInterval(kFlushPause);
    connect(&m_flushing, &QTimer::timeout, this, &CUnsavedCommands::Flush);
}

void CUnsavedCommands::Start(const std::filesystem::path& dataFolder)
{
    m_frame.Document().KeepUnsavedIn(dataFolder);
    m_store = CUnsavedStore(dataFolder);
    QTimer::singleShot(kOfferPause, this, [this] { // the window is painted first
        m_store.RemoveOldDropped(UtcNow());
        OfferNext();
    });
}

void CUnsavedCommands::Follow()
{
    if (!m_frame.Document().Unsaved().IsFlushed() && !m_flushing.isActive())
        m_flushing.start();
    TellTrouble();
}

void CUnsavedCommands::Flush()
{
    m_frame.Document().Unsaved().Flush();
    TellTrouble();
}

void CUnsavedCommands::TellTrouble()
{
    const std::error_code fault = m_frame.Document().Unsaved().LastFault();
    const QString trouble =
        fault
            ? tr("What is not saved would be lost with this window: %1").arg(QString::fromStdString(ReasonUtf8(fault)))
            : QString();
    if (trouble == m_strTrouble)
        return;
    m_strTrouble = trouble;
    emit TroubleChanged(trouble);
}

void CUnsavedCommands::OfferNext()
{
    m_saveCommands.Withdraw(std::exchange(m_pListed, {}));
    m_offered.reset();
    m_offered = m_store.ClaimOldest();
    if (!m_offered && !m_setAside.empty()) {
        m_offered = std::move(m_setAside.front());
        m_setAside.pop_front();
    }
    if (!m_offered)
        return m_frame.WithdrawStrip(StripSubject::Unsaved);
    m_frame.ShowStrip(StripSubject::Unsaved, {OfferText(),
                                              {{tr("Put back"), [this] { PutBack(); }},
                                               {tr("Show"), [this] { Show(); }},
                                               {tr("Discard"), [this] { Discard(); }}}});
}

/// "12 edits to oven.rcp of 14:02 were not saved."
QString CUnsavedCommands::OfferText() const
{
    const UnsavedWork& work = m_offered->Work();
    const QString name = NameOf(work.header);
    const QString moment = MomentText(work.lastEdit);
    if (work.cells.size() == 1)
        return tr("1 edit to %1 of %2 was not saved.").arg(name, moment);
    return tr("%1 edits to %2 of %3 were not saved.").arg(QString::number(work.cells.size()), name, moment);
}

/// Unless its rows are shown. False when it cannot be opened, or another file must not go.
bool CUnsavedCommands::OpenItsFile()
{
    const WorkHeader& work = m_offered->Work().header;
    const bool isShown = !work.file.empty() && m_frame.Document().IsLaidOutFor(work);
    return isShown ? m_dataPane.EndCellEdit() : m_fileCommands.OpenAsLeft(work);
}

/// The window's own journal has them before the one that was left goes.
void CUnsavedCommands::PutBack()
{
    if (!m_offered)
        return;
    if (!OpenItsFile())
        return SetAside();
    const UnsavedWork& work = m_offered->Work();
    const std::size_t count = work.cells.size();
    auto others = m_dataPane.PutBackUnsaved(work);
    if (!others)
        return;
    const bool isSafe = others->empty() && m_frame.Document().Unsaved().Flush();
    if (isSafe)
        m_offered->Remove();
    else
        m_offered->Drop();
    const std::size_t done = count - others->size();
    TellPutBack(done, *std::move(others));
    OfferNext();
}

/// Its file is not there, for one: others must not wait for that.
void CUnsavedCommands::SetAside()
{
    m_setAside.push_back(*std::move(m_offered));
    OfferNext();
}

void CUnsavedCommands::TellPutBack(std::size_t count, std::vector<UnsavedCell> others)
{
    m_frame.UpdateCommands();
    m_dataPane.setFocus(Qt::OtherFocusReason); // the button goes
    QString text = count == 1 ? tr("1 edit was put back.") : tr("%1 edits were put back.").arg(count);
    if (!others.empty()) {
        const QString rest = others.size() == 1
                                 ? tr("1 was not: the file holds another value there now.")
                                 : tr("%1 were not: the file holds other values there now.").arg(others.size());
        text += QLatin1Char(' ') + rest;
        List({m_offered->Work().header, std::move(others), m_offered->Work().lastEdit},
             tr("Edits that were not put back"), rest);
    }
    m_frame.TellEdit(text);
}

void CUnsavedCommands::Show()
{
    if (m_offered)
        m_pListed = List(m_offered->Work(), tr("Edits that were not saved"), OfferText());
}

/// They are kept for a while all the same.
void CUnsavedCommands::Discard()
{
    if (m_offered)
        m_offered->Drop();
    OfferNext();
}

std::shared_ptr<const CChangeList> CUnsavedCommands::List(UnsavedWork work, const QString& title,
                                                          const QString& summary)
{
    const WorkHeader& header = work.header;
    const CRecipeRows layout = LayOutRows({header.format, header.startAddress, header.rowCount});
    const std::filesystem::path path = header.file;
    const auto listed = std::make_shared<ListedWork>(std::move(work));
    std::shared_ptr<const CChangeList> changes(listed, &listed->list);
    m_saveCommands.Show({changes, title, summary, path, layout});
    return changes;
}
