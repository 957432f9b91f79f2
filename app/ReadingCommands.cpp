#include "app/ReadingCommands.h"

#include "changes/LayoutFile.h"
#include "changes/RowCount.h"
#include "files/ShowLimits.h"
#include "files/UnlikeFormat.h"
#include "library/FormatChange.h"
#include "text/Surrogates.h"
#include "views/RecipeDataShowView.h"
#include "views/RecipeFormatEditView.h"
#include "views/RecipeFrame.h"
#include "views/TextCrossing.h"

#include <QMenu>
#include <QPushButton>

#include <algorithm>
#include <utility>

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kMostTablesNamed = 3;

/// A name as far as it is read again.
std::u16string_view ReadName(std::u16string_view name)
{
    return CutText(name, kReadNameLength);
}

bool IsSameReading(const LastReading& a, const LastReading& b)
{
    return ReadName(a.format) == ReadName(b.format) && a.start == b.start && a.rows == b.rows;
}

QString ReadingText(const LastReading& reading)
{
    const QString text =
        reading.rows == 1 ? CReadingCommands::tr("%1 from RW%2, 1 row") : CReadingCommands::tr("%1 from RW%2, %3 rows");
    const QStringList values{ToQString(reading.format), QString::number(reading.start), QString::number(reading.rows)};
    return reading.rows == 1 ? text.arg(values[0], values[1]) : text.arg(values[0], values[1], values[2]);
}

/// The layout file that names tables for `file`: the nearest that does. One with a fault ends the search; what is wrong
/// in it is no concern of who opens a recipe.
std::optional<Layout> LayoutOf(const fs::path& file)
{
    CSilentReporter silent;
    for (const fs::path& path : LayoutFilesFor(file)) {
        auto layout = ReadLayout(path, silent);
        if (!layout || !TablesFor(*layout, file).empty())
            return layout;
    }
    return std::nullopt;
}

} // namespace

CReadingCommands::CReadingCommands(const Parts& parts) : m_parts(parts)
{
    connect(&m_parts.formatPane, &CRecipeFormatEditView::FormatUsed, this, &CReadingCommands::Remember);
}

void CReadingCommands::Start(const fs::path& dataFolder)
{
    m_readings = CLastReadings(dataFolder);
    Offer();
}

void CReadingCommands::Offer()
{
    const CRecipeDocument& document = m_parts.frame.Document();
    Withdraw();
    if (!document.IsOpen() || document.IsNew())
        return;
    m_offeredFor = document.Path();
    m_offered = ReadingsFor(m_offeredFor);
    Tell();
}

/// None where it is read so already: as the last time, or, when that is not known, as the layout says.
std::vector<CReadingCommands::Offered> CReadingCommands::ReadingsFor(const fs::path& file) const
{
    const auto current = Current();
    const auto last = m_readings.Find(file);
    if (last && current && IsSameReading(*last, *current))
        return {};
    std::vector<Offered> readings;
    if (last && IsUsable(*last))
        readings.push_back({*last, Source::LastTime});
    AddLayoutTables(file, readings);
    const auto isCurrent = [&](const Offered& offered) { return current && IsSameReading(offered.reading, *current); };
    if (!last && std::any_of(readings.begin(), readings.end(), isCurrent))
        return {};
    std::erase_if(readings, isCurrent);
    return readings;
}

void CReadingCommands::AddLayoutTables(const fs::path& file, std::vector<Offered>& readings) const
{
    const auto layout = LayoutOf(file);
    const auto type = FileTypeOf(file);
    if (!layout || !type)
        return;
    std::optional<std::uint64_t> content; // counted once, and only where a table asks for it
    for (const std::size_t index : TablesFor(*layout, file)) {
        const LayoutTable& table = layout->tables[index];
        LastReading reading{table.format, table.start, table.rows.value_or(1)};
        if (!IsUsable(reading))
            continue;
        if (!table.rows) {
            content = content ? content : ContentCount(file, *type);
            const auto& formats = m_parts.formatPane.Store().Library().formats;
            reading.rows = RowsIn(*formats[*FormatOf(reading)], reading.start, *type, content.value_or(0));
        }
        const auto isThere = [&](const Offered& offered) { return IsSameReading(offered.reading, reading); };
        if (IsUsable(reading) && std::none_of(readings.begin(), readings.end(), isThere))
            readings.push_back({std::move(reading), Source::Layout});
    }
}

/// By what the rows shown were read.
std::optional<LastReading> CReadingCommands::Current() const
{
    const CRecipeDocument& document = m_parts.frame.Document();
    if (!document.HasRowsOfFile())
        return std::nullopt;
    return LastReading{std::u16string(TextOf(document.Format().name)), document.Rows().StartAddress(),
                       document.Rows().RowCount()};
}

std::optional<std::size_t> CReadingCommands::FormatOf(const LastReading& reading) const
{
    const auto& formats = m_parts.formatPane.Store().Library().formats;
    const auto found = std::find_if(formats.begin(), formats.end(), [&](const auto& format) {
        return ReadName(TextOf(format->name)) == ReadName(reading.format);
    });
    return found == formats.end() ? std::nullopt : std::optional(static_cast<std::size_t>(found - formats.begin()));
}

bool CReadingCommands::IsUsable(const LastReading& reading) const
{
    const auto format = FormatOf(reading);
    if (!format || ReadSettingsFault(reading.start, reading.rows))
        return false;
    const DataFormat& found = *m_parts.formatPane.Store().Library().formats[*format];
    return found.totalLength() > 0 && !ShowFault(found, reading.rows);
}

void CReadingCommands::Remember()
{
    const CRecipeDocument& document = m_parts.frame.Document();
    const auto current = Current();
    if (!current || document.Path().empty())
        return;
    m_readings.Remember(document.Path(), *current);
    Withdraw();
}

/// Keeps what it judged, so that Follow sees when undo brings other rows back.
void CReadingCommands::Judge()
{
    const CRecipeDocument& document = m_parts.frame.Document();
    const CRecipeRows& rows = document.Rows();
    m_judged = Judged{rows.SourceId(), rows.StartAddress(), rows.RowCount(), document.Format()};
    const auto doubt = document.HasRowsOfFile() && !document.IsNew() ? DoubtAbout(rows) : std::nullopt;
    m_strDoubt = doubt ? ToQString(DoubtText(*doubt, TextOf(document.Format().name), rows.StartAddress())) : QString();
    Tell();
}

bool CReadingCommands::AreJudged() const
{
    const CRecipeDocument& document = m_parts.frame.Document();
    const CRecipeRows& rows = document.Rows();
    return m_judged && m_judged->words == rows.SourceId() && m_judged->start == rows.StartAddress() &&
           m_judged->rows == rows.RowCount() && AreSame(m_judged->format, document.Format());
}

void CReadingCommands::Follow()
{
    const CRecipeDocument& document = m_parts.frame.Document();
    const auto current = Current();
    const bool isRead = std::any_of(m_offered.begin(), m_offered.end(), [&](const Offered& offered) {
        return current && IsSameReading(offered.reading, *current);
    });
    if (!m_offered.empty() && (isRead || document.IsNew() || document.Path() != m_offeredFor))
        Withdraw();
    if (!AreJudged())
        Judge();
}

/// The weightier message has the way out, too.
void CReadingCommands::Tell()
{
    const StripMessage offer = Message();
    if (m_offered.empty())
        m_parts.frame.WithdrawStrip(StripSubject::LastRead);
    else
        m_parts.frame.ShowStrip(StripSubject::LastRead, offer);
    if (m_strDoubt.isEmpty())
        m_parts.frame.WithdrawStrip(StripSubject::UnlikeFormat);
    else
        m_parts.frame.ShowStrip(StripSubject::UnlikeFormat,
                                {m_offered.empty() ? m_strDoubt : m_strDoubt + u' ' + offer.text, offer.buttons});
}

void CReadingCommands::Withdraw()
{
    if (m_offered.empty())
        return;
    m_offered.clear();
    Tell();
}

StripMessage CReadingCommands::Message()
{
    QStringList sentences;
    QStringList tables;
    for (const Offered& offered : m_offered)
        if (offered.source == Source::LastTime)
            sentences << tr("Last read as %1.").arg(ReadingText(offered.reading));
        else
            tables << ReadingText(offered.reading);
    const auto named = static_cast<qsizetype>(kMostTablesNamed);
    if (tables.size() > named)
        tables = tables.mid(0, named) << tr("and %1 more").arg(tables.size() - named);
    if (!tables.isEmpty())
        sentences << tr("This folder's layout names: %1.").arg(tables.join(QStringLiteral("; ")));
    StripMessage message{sentences.join(u' '), {}};
    if (m_offered.size() == 1)
        message.buttons << StripButton{tr("Use"), [this] { Use(LastReading(m_offered.front().reading)); }};
    else if (!m_offered.empty())
        message.buttons << StripButton{tr("Use…"), [this] { ChooseAndUse(); }};
    if (!m_offered.empty() && m_offered.front().source == Source::LastTime)
        message.buttons << StripButton{tr("Forget"), [this] { Forget(); }};
    return message;
}

/// Below its button, with the first one chosen, so that the keyboard goes on.
void CReadingCommands::ChooseAndUse()
{
    auto* menu = new QMenu(&m_parts.window);
    menu->setObjectName(QStringLiteral("menuReadings"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (const Offered& offered : m_offered) {
        QString text = ReadingText(offered.reading);
        connect(menu->addAction(text.replace(u'&', QStringLiteral("&&"))), &QAction::triggered, this,
                [this, reading = offered.reading] { Use(reading); });
    }
    const auto* button = m_parts.window.findChild<QPushButton*>(QStringLiteral("buttonStrip"));
    menu->popup(button ? button->mapToGlobal(button->rect().bottomLeft()) : QCursor::pos());
    menu->setActiveAction(menu->actions().front());
}

/// Reads again, as "Use dataformat" does, which also remembers it. A format that has gone meanwhile is offered no more.
void CReadingCommands::Use(const LastReading& reading)
{
    if (!m_parts.dataPane.EndCellEdit())
        return;
    if (const auto format = FormatOf(reading))
        m_parts.formatPane.UseReading(*format, reading.start, reading.rows);
    Withdraw();
}

void CReadingCommands::Forget()
{
    m_readings.Forget(m_offeredFor);
    std::erase_if(m_offered, [](const Offered& offered) { return offered.source == Source::LastTime; });
    Tell();
}
