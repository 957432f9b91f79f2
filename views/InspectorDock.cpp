#include "views/InspectorDock.h"

#include "document/CellWords.h"
#include "document/OutsideRange.h"
#include "files/CellComparison.h"
#include "text/EscapedText.h"
#include "views/CellRemarks.h"
#include "views/InspectorModel.h"
#include "views/RecipeDataShowView.h"
#include "views/TextCrossing.h"

#include <QAccessible>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QTableView>
#include <QVBoxLayout>

#include <utility>

namespace {

constexpr std::size_t kMostBytes = 256; // of a cell that are shown
constexpr std::size_t kAhead = 8;       // bytes that the longest number takes
constexpr int kLeastWidth = 54;         // characters: the longest name, and the bits of a word

} // namespace

CInspectorDock::CInspectorDock(CRecipeFrame& frame, CRecipeDataShowView& dataPane, QWidget* parent)
    : QDockWidget(tr("Inspector"), parent),
      m_frame(frame),
      m_dataPane(dataPane),
      m_pModel(new CInspectorModel(this)),
      m_pTitle(new QLabel),
      m_pTable(new QTableView),
      m_pNotice(new QLabel)
{
    setObjectName(QStringLiteral("inspector"));
    setAllowedAreas(Qt::LeftDockWidgetArea | Qt::RightDockWidgetArea);
    m_pTitle->setObjectName(QStringLiteral("labelInspected"));
    m_pTitle->setWordWrap(true);
    m_pTitle->setTextFormat(Qt::PlainText);
    m_pNotice->setObjectName(QStringLiteral("labelInspectorNotice"));
    m_pNotice->setWordWrap(true);
    m_pNotice->setTextFormat(Qt::PlainText);
    m_pNotice->hide();
    SetUpTable();

    auto* content = new QWidget;
    content->setMinimumWidth(kLeastWidth * fontMetrics().averageCharWidth());
    auto* layout = new QVBoxLayout(content);
    layout->addWidget(m_pTitle);
    layout->addWidget(m_pTable, 1);
    layout->addWidget(m_pNotice);
    setWidget(content);
    content->setFocusProxy(m_pTable);
    setFocusProxy(m_pTable);

    connect(m_pModel, &CInspectorModel::Typed, this, &CInspectorDock::Take);
    connect(&m_dataPane, &CRecipeDataShowView::CellChosen, this, &CInspectorDock::Follow);
    connect(&m_dataPane, &CRecipeDataShowView::ChosenCellChanged, this, &CInspectorDock::Follow);
    connect(this, &QDockWidget::visibilityChanged, this, &CInspectorDock::Follow);
    hide();
}

void CInspectorDock::SetUpTable()
{
    m_pTable->setObjectName(QStringLiteral("tableInspector"));
    m_pTable->setAccessibleName(tr("The words of the chosen cell in every way to read them"));
    m_pTable->setModel(m_pModel);
    m_pTable->setSelectionMode(QAbstractItemView::SingleSelection);
    m_pTable->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                              QAbstractItemView::AnyKeyPressed);
    m_pTable->setTabKeyNavigation(false);
    m_pTable->setWordWrap(false);
    m_pTable->verticalHeader()->hide();
    m_pTable->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_pTable->horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    m_pTable->horizontalHeader()->setStretchLastSection(true);
    m_pTable->horizontalHeader()->setHighlightSections(false);
    m_pTable->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    m_pTable->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff); // what is cut off has a tip
    m_pTable->setCurrentIndex(m_pModel->index(0, 1));
}

void CInspectorDock::Follow()
{
    if (!isVisible())
        return;
    const auto place = m_dataPane.ChosenPlace();
    if (place != m_place)
        Say({});
    m_place = place;
    if (!place)
        ShowNothing(tr("No cell is chosen."));
    else if (!m_frame.Document().HasExactWords())
        ShowNothing(tr("A table of texts has no words."));
    else if (BytesOfCell(m_frame.Document().Rows(), *place) == 0)
        ShowNothing(tr("This cell has no words."));
    else
        ShowCell(*place);
}

void CInspectorDock::ShowNothing(const QString& why)
{
    m_pTitle->setText(why);
    m_pModel->SetWords({}, 0, false);
}

void CInspectorDock::ShowCell(CellPlace place)
{
    const CRecipeRows& rows = m_frame.Document().Rows();
    CellWords words = CellWordsOf(m_frame.Document(), place, kMostBytes, kAhead);
    const bool isWhole = words.own == words.whole;
    QString title = tr("RW%1, row %2, %3")
                        .arg(AddressOfCell(rows, place).number)
                        .arg(place.row + kTitleRows)
                        .arg(ToQString(rows.Columns()[place.column].title));
    if (!isWhole && words.own == kMostBytes)
        title += tr(" (its first %1 words)").arg(words.own / 2);
    else if (!isWhole)
        title += tr(" (the file ends before it does)");
    const QStringList meaning = CellMeaning(m_frame.Document(), place);
    const QString outside = ToQString(EscapedText(OutsideRangeRemark(m_frame.Document(), place)));
    for (const QString& line : QStringList(outside) + meaning)
        if (!line.isEmpty())
            title += QLatin1Char('\n') + line;
    m_pTitle->setText(title);
    m_pModel->SetWords(std::move(words.bytes), words.own, isWhole);
}

/// The table's own edit is ended first: it may be one of the same cell.
void CInspectorDock::Take(const WordView& view, const QString& text)
{
    if (!m_place || !m_dataPane.EndCellEdit())
        return;
    const CellPlace place = *m_place;
    const CellWords words = CellWordsOf(m_frame.Document(), place, kMostBytes, 0);
    const auto bytes = BytesWith(view, ViewOf(text), words.bytes);
    if (!bytes)
        return Say(tr("“%1” cannot be read as %2, or does not fit.").arg(text, ToQString(NameOf(view))));
    CellVerdict verdict = JudgeWords(m_frame.Document(), place, *bytes);
    Say(verdict.kind == CellVerdict::Kind::Refused ? tr("Not taken: %1.").arg(ToQString(verdict.reason)) : QString());
    if (verdict.kind == CellVerdict::Kind::Changes)
        m_dataPane.SetStates(EditKind::Typing, {{place, std::move(verdict.state)}});
}

void CInspectorDock::Say(const QString& notice)
{
    m_pNotice->setText(notice);
    m_pNotice->setVisible(!notice.isEmpty());
    if (notice.isEmpty())
        return;
    QAccessibleEvent event(m_pNotice, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

void CInspectorDock::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        m_dataPane.setFocus();
    else
        QDockWidget::keyPressEvent(event);
}
