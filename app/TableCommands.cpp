#include "app/TableCommands.h"

#include "controls/GridClipboard.h"
#include "model/SpreadsheetNumber.h"
#include "ui_MainFrame.h"
#include "views/ProgressDialog.h"
#include "views/RecipeDataShowView.h"
#include "views/RecipeFormatEditView.h"
#include "views/ShowRowsDlg.h"
#include "views/TextCrossing.h"

#include <QAccessible>
#include <QLocale>
#include <QToolButton>

#include <new>

CTableCommands::CTableCommands(const Parts& parts)
    : m_parts(parts),
      m_pField(new QToolButton(&parts.window)),
      m_pNotes(new QAction(tr("&Notes…"), this))
{
    m_pNotes->setObjectName(QStringLiteral("popupNotes"));
    m_pField->setObjectName(QStringLiteral("fieldRowsShown"));
    m_pField->setAutoRaise(true);
    m_pField->setFocusPolicy(Qt::TabFocus);
    m_pField->setToolTip(tr("The other rows are hidden, and saved all the same. A click shows all rows."));
    m_pField->hide();
    m_titleMenu.setObjectName(QStringLiteral("menuTitle"));
    m_titleMenu.addAction(tr("&Freeze up to this column"), this, [this] { Freeze(m_nTitleColumn); })
        ->setObjectName(QStringLiteral("popupFreezeColumns"));
    m_titleMenu.addAction(m_parts.ui.actionUnfreezeColumns);
    m_titleMenu.addSeparator();
    m_titleMenu.addAction(m_pNotes);
    m_titleMenu.setToolTipsVisible(true);
    ConnectActions();
}

void CTableCommands::ConnectActions()
{
    const Ui::CMainFrame& ui = m_parts.ui;
    CRecipeDataShowView& pane = m_parts.dataPane;
    connect(ui.menuView, &QMenu::aboutToShow, this, &CTableCommands::Update);
    connect(ui.menuEdit, &QMenu::aboutToShow, this, &CTableCommands::EnableForEditMenu);
    connect(ui.actionFreezeColumns, &QAction::triggered, this, [this] {
        if (const auto focus = m_parts.dataPane.FocusCell())
            Freeze(focus->column);
    });
    connect(ui.actionUnfreezeColumns, &QAction::triggered, this, [this] {
        m_parts.dataPane.Unfreeze();
        Update();
    });
    connect(ui.actionShowRows, &QAction::triggered, this, &CTableCommands::AskAndShowRows);
    connect(ui.actionShowAllRows, &QAction::triggered, &pane, &CRecipeDataShowView::ShowAllRows);
    connect(ui.actionCopyWithTitles, &QAction::triggered, this, [this] { Copy(false); });
    connect(ui.actionCopyForSpreadsheet, &QAction::triggered, this, [this] { Copy(true); });
    connect(m_pNotes, &QAction::triggered, this, &CTableCommands::AskForNotes);
    connect(m_pField, &QToolButton::clicked, this, [this] {
        if (m_parts.dataPane.ShowAllRows())
            m_parts.dataPane.setFocus(Qt::OtherFocusReason); // the field goes
    });
    connect(&pane, &CRecipeDataShowView::TitleMenuAsked, this, &CTableCommands::ShowTitleMenu);
    connect(&pane, &CRecipeDataShowView::ShownRowsChanged, this, &CTableCommands::TellShownRows);
}

void CTableCommands::Update()
{
    const CRecipeDataShowView& pane = m_parts.dataPane;
    const bool hasFocusCell = pane.FocusCell().has_value();
    m_parts.ui.actionFreezeColumns->setEnabled(hasFocusCell);
    m_parts.ui.actionFreezeColumns->setStatusTip(
        hasFocusCell ? tr("Keeps the columns up to the chosen cell's in sight while the others scroll")
                     : tr("Choose a cell of the column first"));
    m_parts.ui.actionUnfreezeColumns->setEnabled(pane.HasFrozenColumns());
    m_parts.ui.actionShowRows->setEnabled(m_parts.frame.Document().Rows().RowCount() > 0);
    m_parts.ui.actionShowAllRows->setEnabled(pane.ShownRows().AreSome());
}

void CTableCommands::EnableForEditMenu()
{
    const bool isChosen = !m_parts.dataPane.Grid().ChosenCells().isEmpty();
    m_parts.ui.actionCopyWithTitles->setEnabled(isChosen);
    m_parts.ui.actionCopyForSpreadsheet->setEnabled(isChosen);
}

void CTableCommands::Freeze(std::uint32_t column)
{
    if (column >= m_parts.frame.Document().Rows().Columns().size()) // others are shown by now
        return;
    const bool areKept = m_parts.dataPane.FreezeUpTo(column);
    Update();
    if (!areKept)
        m_parts.frame.TellEdit(tr("These columns would leave too little room for the others: they scroll until the "
                                  "window is wider."));
}

void CTableCommands::ShowTitleMenu(std::uint32_t column, QPoint position)
{
    m_nTitleColumn = column;
    Update();
    EnableNotes();
    m_titleMenu.popup(position);
}

/// The item of the library that the column shows; nothing where that is another one by now.
std::optional<LibraryItem> CTableCommands::TitleItem() const
{
    return ItemOfColumn(m_parts.formatPane.Store().Library().formats, m_parts.frame.Document().Format(),
                        m_nTitleColumn);
}

void CTableCommands::EnableNotes()
{
    const auto& formats = m_parts.formatPane.Store().Library().formats;
    QString prompt = tr("What the values of the column mean: unit, sensible range, names of bits");
    const bool isThere = TitleItem().has_value();
    if (!FormatInUse(formats, m_parts.frame.Document().Format()))
        prompt = tr("The table's data format is not in the list any more");
    else if (!isThere)
        prompt = tr("The item is another one in the list by now: use the data format first");
    m_pNotes->setEnabled(isThere);
    m_pNotes->setStatusTip(prompt);
    m_pNotes->setToolTip(prompt);
}

void CTableCommands::AskForNotes()
{
    if (!m_parts.dataPane.EndCellEdit())
        return;
    if (const auto item = TitleItem())
        m_parts.formatPane.AskForNotes(*item);
}

void CTableCommands::AskAndShowRows()
{
    const CRecipeDocument& document = m_parts.frame.Document();
    if (!m_parts.dataPane.EndCellEdit() || document.Rows().RowCount() == 0)
        return;
    if (m_condition.column && *m_condition.column >= document.Rows().Columns().size())
        m_condition.column.reset();
    CShowRowsDlg dialog(document.Rows(), m_condition, document.Comparison() != nullptr, &m_parts.window);
    if (dialog.exec() != QDialog::Accepted)
        return;
    m_condition = dialog.Condition();
    try {
        ShowRows();
    } catch (const std::bad_alloc&) {
        m_parts.frame.Reporter().ShowError(kNoMemoryForEdit);
    }
}

void CTableCommands::ShowRows()
{
    CRecipeDocument& document = m_parts.frame.Document();
    std::optional<std::vector<std::int32_t>> rows;
    {
        CProgressDialog progress(m_parts.window, tr("Looking for the rows"));
        rows = CRowChoice(document, m_condition).Find(progress);
    }
    if (!rows)
        return;
    if (rows->empty()) {
        m_parts.frame.TellEdit(tr("No row is so. The rows that are shown stay."));
        return;
    }
    if (!m_parts.dataPane.ShowOnlyRows(std::move(*rows)))
        return;
    m_parts.dataPane.setFocus(Qt::OtherFocusReason);
    if (m_parts.dataPane.ShownRows().AreSome())
        m_parts.ui.actionStatusBar->setChecked(true); // that rows are hidden is to be seen
    else
        m_parts.frame.TellEdit(tr("All rows are so."));
}

void CTableCommands::TellShownRows(std::size_t added)
{
    const CShownRows& shown = m_parts.dataPane.ShownRows();
    m_pField->setVisible(shown.AreSome());
    Update();
    if (!shown.AreSome())
        return;
    QString text = (shown.Count() == 1 ? tr("%1 of %2 rows is shown") : tr("%1 of %2 rows are shown"))
                       .arg(shown.Count())
                       .arg(shown.All());
    if (added > 0)
        text += (added == 1 ? tr(", %1 of them was hidden before") : tr(", %1 of them were hidden before")).arg(added);
    m_pField->setText(text + QLatin1Char('.'));
    QAccessibleEvent alert(m_pField, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void CTableCommands::Copy(bool isForSpreadsheet)
{
    if (!m_parts.dataPane.EndCellEdit())
        return;
    GridCopyForm form{.hasTitles = true, .edit = {}};
    const QString point = QLocale::system().decimalPoint();
    if (isForSpreadsheet)
        form.edit = [&](int column, QString& text) {
            const auto& columns = m_parts.frame.Document().Rows().Columns();
            const ColumnCoding& coding = columns[static_cast<std::size_t>(column - kTitleColumns)];
            text = ToQString(SpreadsheetNumber(coding, text.toStdU16String(), point.at(0).unicode()));
        };
    m_parts.dataPane.Grid().CopyAs(form);
}
