#include "app/FillCommands.h"

#include "app/OfferCommands.h"
#include "ui_MainFrame.h"
#include "views/CalculateDlg.h"
#include "views/FillDlg.h"
#include "views/RecipeDataShowView.h"
#include "views/RecipeFrame.h"
#include "views/TextCrossing.h"

#include <memory>
#include <utility>

CFillCommands::CFillCommands(const Parts& parts) : m_parts(parts)
{
    Ui::CMainFrame& ui = m_parts.ui;
    ui.actionFillDown->setShortcut(Qt::CTRL | Qt::Key_D);
    ui.actionFillDown->setShortcutContext(Qt::WidgetWithChildrenShortcut); // elsewhere it has nothing to fill
    m_parts.dataPane.addAction(ui.actionFillDown);
    connect(ui.actionFill, &QAction::triggered, this, &CFillCommands::Fill);
    connect(ui.actionFillDown, &QAction::triggered, this, &CFillCommands::FillDown);
    connect(ui.actionCalculate, &QAction::triggered, this, &CFillCommands::Calculate);
    connect(ui.menuEdit, &QMenu::aboutToShow, this, &CFillCommands::EnableForMenu);
    connect(ui.menuEdit, &QMenu::aboutToHide, this, &CFillCommands::AllowKeys);
    connect(&m_parts.dataPane.Grid(), &CGridCtrl::TextForChosen, this, &CFillCommands::FillWithTyped);
}

/// Keys find out by themselves whether there is something for them.
void CFillCommands::EnableForMenu()
{
    const bool areChosen = !m_parts.dataPane.ChosenRanges().empty();
    for (QAction* action : {m_parts.ui.actionFill, m_parts.ui.actionFillDown, m_parts.ui.actionCalculate})
        action->setEnabled(areChosen);
}

void CFillCommands::AllowKeys()
{
    for (QAction* action : {m_parts.ui.actionFill, m_parts.ui.actionFillDown, m_parts.ui.actionCalculate})
        action->setEnabled(true);
}

/// "12 cells are chosen."
QString CFillCommands::TextOf(const CChosenCells& cells) const
{
    return cells.Count() == 1 ? tr("1 cell is chosen.") : tr("%1 cells are chosen.").arg(cells.Count());
}

void CFillCommands::Fill()
{
    if (!m_parts.dataPane.EndCellEdit())
        return;
    CChosenCells cells(m_parts.dataPane.ChosenRanges());
    if (cells.Count() == 0)
        return m_parts.frame.TellEdit(tr("No cell is chosen."));
    CFillDlg dialog(TextOf(cells), &m_parts.window);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const COfferCommands::Order order{
        .kind = EditKind::Fill, .name = tr("Fill"), .command = dialog.CommandFor(std::move(cells))};
    dialog.Answer() == CellsAnswer::Do ? m_parts.offers.Do(order) : m_parts.offers.Preview(order);
}

void CFillCommands::Calculate()
{
    if (!m_parts.dataPane.EndCellEdit())
        return;
    CChosenCells cells(m_parts.dataPane.ChosenRanges());
    if (cells.Count() == 0)
        return m_parts.frame.TellEdit(tr("No cell is chosen."));
    CCalculateDlg dialog(TextOf(cells), &m_parts.window);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const COfferCommands::Order order{.kind = EditKind::Calculate,
                                      .name = tr("Calculate"),
                                      .command = std::make_shared<CCalculate>(std::move(cells), dialog.Change())};
    dialog.Answer() == CellsAnswer::Do ? m_parts.offers.Do(order) : m_parts.offers.Preview(order);
}

/// A block of one row is filled from the row that is shown above it, any other from its own first row.
void CFillCommands::FillDown()
{
    if (!m_parts.dataPane.EndCellEdit())
        return;
    std::vector<FillDownBlock> blocks;
    for (auto& [ranges, rowAbove] : m_parts.dataPane.ChosenBlocks()) {
        CellRange& top = ranges.front();
        const bool isOneRow = ranges.size() == 1 && top.firstRow == top.lastRow;
        if (isOneRow && !rowAbove)
            continue;
        const std::int32_t source = isOneRow ? *rowAbove : top.firstRow++;
        std::erase_if(ranges, [](const CellRange& range) { return range.firstRow > range.lastRow; });
        blocks.push_back({source, std::move(ranges)});
    }
    if (blocks.empty())
        return m_parts.frame.TellEdit(tr("There is no row above to fill down from."));
    const CRecipeDocument& document = m_parts.frame.Document();
    const CCellJudge judge(document.Rows(), document.Stored(), document.Type());
    m_parts.offers.Do(
        {.kind = EditKind::Fill, .name = tr("Fill down"), .command = std::make_shared<CFillDown>(blocks, judge)});
}

void CFillCommands::FillWithTyped(const QString& text)
{
    const auto ranges = m_parts.dataPane.ChosenRanges();
    if (ranges.empty())
        return;
    m_parts.offers.Do({.kind = EditKind::Fill,
                       .name = tr("Fill"),
                       .command = std::make_shared<CFillWithText>(CChosenCells(ranges), text.toStdU16String(),
                                                                  CFillWithText::As::Typed)});
}
