#include "controls/ElidedLabel.h"
#include "ui_RecipeFormatEditView.h"
#include "views/DataItemRow.h"
#include "views/DataTypeEditDlg.h"
#include "views/NewFormatNameDlg.h"
#include "views/NotesDlg.h"
#include "views/RecipeFormatEditView.h"
#include "views/TextCrossing.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QStyledItemDelegate>

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

namespace {

constexpr std::array<int, CDataItemRow::ColumnCount> kItemColumnWidths{28, 66, 108, 110, 90}; // pixels

/// A type that there is no room for ends where an array's length does.
class CTypeDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        if (index.data(CDataItemRow::IsArrayRole).toBool())
            option->textElideMode = Qt::ElideMiddle;
    }
};

/// What a new format begins with.
DataFormat NewFormat(const QString& name)
{
    DataItem item = DefaultItem();
    SetText(item.description, u"Desc0");
    DataFormat format(ViewOf(name));
    format.insertItem(0, std::make_unique<DataItem>(item));
    format.itemCount = 1;
    return format;
}

bool IsNotesKey(const QKeyEvent& event)
{
    const bool isEnter = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    return isEnter && (event.modifiers() & ~Qt::KeypadModifier) == Qt::ControlModifier;
}

bool IsDuplicateKey(const QKeyEvent& event)
{
    return event.key() == Qt::Key_D && event.modifiers() == Qt::ControlModifier;
}

} // namespace

void CRecipeFormatEditView::SetUpList()
{
    QHeaderView* header = m_pUi->listItems->header();
    header->setMinimumSectionSize(kItemColumnWidths[CDataItemRow::IdColumn]);
    header->setStretchLastSection(false);
    FitColumns();
    connect(header, &QHeaderView::sectionResized, this, [this] { m_areFittedByHand |= !m_isFitting; });
    m_pUi->listItems->setItemDelegateForColumn(CDataItemRow::TypeColumn, new CTypeDelegate(this));
    m_pUi->listItems->installEventFilter(this);
    m_pUi->listItems->viewport()->installEventFilter(this);
}

/// The list's last column is out of sight while the pane has its usual width.
void CRecipeFormatEditView::CreateFirstRowLine()
{
    m_pFirstRowLine = new CElidedLabel({});
    m_pFirstRowLine->setObjectName(QStringLiteral("labelFirstRow"));
    m_pFirstRowLine->setMinimumHeight(m_pFirstRowLine->fontMetrics().height()); // nothing moves when it says something
    m_pUi->layoutFormatDetail->addWidget(m_pFirstRowLine);
    connect(m_pUi->listItems, &QTreeWidget::currentItemChanged, this, &CRecipeFormatEditView::TellFirstRow);
}

void CRecipeFormatEditView::TellFirstRow()
{
    const QString text = m_firstRow.TextOf(CurrentRow());
    m_pFirstRowLine->setText(text.isEmpty() ? QString() : tr("First row: %1").arg(text));
}

/// Room that is left goes to the types as far as they need it, then to the descriptions. A width that the user has set
/// ends that.
void CRecipeFormatEditView::FitColumns()
{
    if (m_areFittedByHand)
        return;
    QTreeWidget& list = *m_pUi->listItems;
    auto widths = kItemColumnWidths;
    const int room = std::max(0, list.viewport()->width() - std::accumulate(widths.begin(), widths.end(), 0));
    int& typeWidth = widths[CDataItemRow::TypeColumn];
    const QAbstractItemView& view = list; // whose hint can be asked for
    const int forTypes = std::clamp(view.sizeHintForColumn(CDataItemRow::TypeColumn) - typeWidth, 0, room);
    typeWidth += forTypes;
    widths[CDataItemRow::DescriptionColumn] += room - forTypes;
    m_isFitting = true;
    for (int column = 0; column < CDataItemRow::ColumnCount; ++column)
        list.header()->resizeSection(column, widths[static_cast<std::size_t>(column)]);
    m_isFitting = false;
}

void CRecipeFormatEditView::CreateItemMenu()
{
    m_pItemMenu = new QMenu(QStringLiteral("DoFormatDataItem"), this);
    m_pItemMenu->setObjectName(QStringLiteral("menuItems"));
    m_pItemMenu->addActions({m_pUi->actionAddItem, m_pUi->actionModifyItem, m_pUi->actionDeleteItem});
    m_pItemMenu->addSeparator();
    m_pItemMenu->addAction(m_pUi->actionDeleteAllItems);
    m_pItemMenu->addSeparator();
    m_pItemMenu->addActions({m_pUi->actionMoveItemUp, m_pUi->actionMoveItemDown, m_pUi->actionDuplicateItem});
    m_pItemMenu->addSeparator();
    m_pItemMenu->addAction(m_pUi->actionItemNotes);
    m_pItemMenu->addSeparator();
    m_pItemMenu->addActions({m_pUi->actionRenameFormat, m_pUi->actionDuplicateFormat});
}

/// That of the box with the formats' names; the menu of the items has its commands, too.
void CRecipeFormatEditView::CreateFormatMenu()
{
    m_pUi->comboFormats->addActions({m_pUi->actionRenameFormat, m_pUi->actionDuplicateFormat});
    m_pUi->comboFormats->setContextMenuPolicy(Qt::ActionsContextMenu);
}

void CRecipeFormatEditView::FillList()
{
    QTreeWidget& list = *m_pUi->listItems;
    list.setUpdatesEnabled(false);
    list.clear();
    if (const DataFormat* format = SelectedFormat()) {
        QList<QTreeWidgetItem*> rows;
        for (const auto& item : format->items)
            rows.append(new CDataItemRow(static_cast<int>(rows.size()), *item, m_firstRow));
        list.addTopLevelItems(rows);
    }
    list.setUpdatesEnabled(true);
    FitColumns();
    ShowFirstRow();
}

void CRecipeFormatEditView::ShowFirstRow()
{
    m_firstRow.Follow(SelectedFormat());
    m_pUi->listItems->viewport()->update();
    TellFirstRow();
}

void CRecipeFormatEditView::SelectRow(int row)
{
    m_pUi->listItems->setCurrentItem(m_pUi->listItems->topLevelItem(row));
}

int CRecipeFormatEditView::CurrentRow() const
{
    return m_pUi->listItems->currentIndex().row();
}

void CRecipeFormatEditView::contextMenuEvent(QContextMenuEvent* event)
{
    const QTreeWidget& list = *m_pUi->listItems;
    const QPoint position = list.viewport()->mapFromGlobal(event->globalPos());
    if (event->reason() == QContextMenuEvent::Keyboard && list.hasFocus())
        OpenItemMenuAtCurrentRow();
    else if (event->reason() == QContextMenuEvent::Mouse && list.viewport()->rect().contains(position))
        OpenItemMenu(list.indexAt(position).row(), event->globalPos());
    else
        QScrollArea::contextMenuEvent(event);
}

bool CRecipeFormatEditView::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_pUi->listItems) {
        if (event->type() == QEvent::FocusIn)
            SelectRowForKeys(static_cast<QFocusEvent*>(event)->reason());
        else if (event->type() == QEvent::ShortcutOverride && IsDuplicateKey(*static_cast<QKeyEvent*>(event)))
            event->accept(); // the window has a command of its own on that key
        else if (event->type() == QEvent::KeyPress && HandleListKey(*static_cast<QKeyEvent*>(event)))
            return true;
    } else if (watched == m_pUi->listItems->viewport() && event->type() == QEvent::Resize)
        FitColumns();
    return QScrollArea::eventFilter(watched, event);
}

/// Where no row was current the toolkit makes the first one current, but does not show it as selected: one would not
/// see which row Delete takes.
void CRecipeFormatEditView::SelectRowForKeys(Qt::FocusReason reason)
{
    if (reason != Qt::MouseFocusReason && CurrentRow() < 0)
        SelectRow(0);
}

/// The commands of the mouse, for the current row. The menu key needs nothing here: it is a context menu event.
bool CRecipeFormatEditView::HandleListKey(const QKeyEvent& event)
{
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    if (event.key() == Qt::Key_F10 && modifiers == Qt::ShiftModifier) {
        OpenItemMenuAtCurrentRow();
        return true;
    }
    if (modifiers == Qt::AltModifier)
        return HandleMoveKey(event);
    if (IsDuplicateKey(event) && !event.isAutoRepeat()) {
        m_nContextItem = CurrentRow();
        OnDuplicateItem();
        return true;
    }
    if (IsNotesKey(event) && !event.isAutoRepeat()) {
        m_nContextItem = CurrentRow();
        OnItemNotes();
        return true;
    }
    if (modifiers != Qt::NoModifier || event.isAutoRepeat())
        return false; // a key held down must not empty the list
    if (event.key() == Qt::Key_Insert && HasSelectedFormat()) {
        m_nContextItem = CurrentRow();
        OnAddItem();
        return true;
    }
    if (CurrentRow() < 0)
        return false;
    if (event.key() == Qt::Key_Delete)
        DeleteItem(CurrentRow());
    else if (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter)
        EditItem(CurrentRow());
    else
        return false;
    return true;
}

bool CRecipeFormatEditView::HandleMoveKey(const QKeyEvent& event)
{
    if (event.key() != Qt::Key_Up && event.key() != Qt::Key_Down)
        return false;
    MoveItem(CurrentRow(), event.key() == Qt::Key_Up ? -1 : +1);
    return true;
}

void CRecipeFormatEditView::OpenItemMenuAtCurrentRow()
{
    QTreeWidget& list = *m_pUi->listItems;
    list.scrollTo(list.currentIndex());
    const QRect row = list.visualRect(list.currentIndex()); // empty without one: the menu opens in the list's corner
    OpenItemMenu(CurrentRow(), list.viewport()->mapToGlobal(row.bottomLeft()));
}

void CRecipeFormatEditView::OpenItemMenu(int row, const QPoint& globalPosition)
{
    m_nContextItem = row;
    if (m_pUi->comboFormats->count() == 0)
        return;
    m_pUi->actionModifyItem->setEnabled(row >= 0);
    m_pUi->actionDeleteItem->setEnabled(row >= 0);
    m_pUi->actionMoveItemUp->setEnabled(row > 0);
    m_pUi->actionMoveItemDown->setEnabled(row >= 0 && row + 1 < m_pUi->listItems->topLevelItemCount());
    m_pUi->actionDuplicateItem->setEnabled(row >= 0);
    m_pUi->actionItemNotes->setEnabled(row >= 0);
    m_pItemMenu->popup(globalPosition);
}

void CRecipeFormatEditView::AddItem(const DataItem& item)
{
    if (!HasSelectedFormat())
        return;
    m_nContextItem = CurrentRow();
    AskForItem(item, CDataTypeEditDlg::Mode::AddFilled);
}

void CRecipeFormatEditView::OnAddItem()
{
    AskForItem(*CreateItem(FormatLibrary::ProgramVersion()), CDataTypeEditDlg::Mode::Add);
}

/// After the row that the menu was opened on, else at the end.
void CRecipeFormatEditView::AskForItem(const DataItem& item, CDataTypeEditDlg::Mode mode)
{
    m_store.SetChanged(); // kept: even when the dialog is cancelled
    const int rows = m_pUi->listItems->topLevelItemCount();
    const int position = m_nContextItem >= 0 ? std::min(m_nContextItem + 1, rows) : rows;
    m_nContextItem = -1;
    CDataTypeEditDlg dialog(position, item, mode, m_frame.Reporter(), this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const FormatChange change = m_store.InsertItem(SelectedIndex(), static_cast<std::size_t>(position), dialog.Item());
    ShowSelectedFormat();
    SelectRow(position);
    Made(EditKind::AddItem, change);
}

/// The row that the menu was opened on, -1 for none. It no longer is one when rows have gone since.
int CRecipeFormatEditView::TakeContextItem()
{
    const int row = std::exchange(m_nContextItem, -1);
    return row < m_pUi->listItems->topLevelItemCount() ? row : -1;
}

void CRecipeFormatEditView::OnModifyItem()
{
    EditItem(TakeContextItem());
}

void CRecipeFormatEditView::EditItem(int row)
{
    if (row < 0)
        return;
    const std::size_t format = SelectedIndex();
    const auto position = static_cast<std::size_t>(row);
    const DataItem item = *SelectedFormat()->items[position];
    CDataTypeEditDlg dialog(row, item, CDataTypeEditDlg::Mode::Modify, m_frame.Reporter(), this);
    connect(&dialog, &CDataTypeEditDlg::UnicodeTaken, this,
            [&](std::int32_t unicode) { m_store.SetUnicode(format, position, unicode); });
    if (dialog.exec() != QDialog::Accepted)
        return;
    m_store.SetUnicode(format, position, item.unicode); // all that was done is one change
    const FormatChange change = m_store.ReplaceItem(format, position, dialog.Item());
    ShowSelectedFormat();
    SelectRow(row);
    Made(EditKind::ModifyItem, change);
}

void CRecipeFormatEditView::OnDeleteItem()
{
    if (const int row = TakeContextItem(); row >= 0)
        DeleteItem(row);
}

/// kept: the numbers of the rows after it stay as they are, until the list is filled again
void CRecipeFormatEditView::DeleteItem(int row)
{
    const FormatChange change = m_store.RemoveItem(SelectedIndex(), static_cast<std::size_t>(row));
    delete m_pUi->listItems->takeTopLevelItem(row);
    ShowFormatSize();
    Made(EditKind::DeleteItem, change);
}

void CRecipeFormatEditView::OnDeleteAllItems()
{
    const FormatChange change = m_store.RemoveAllItems(SelectedIndex());
    m_pUi->listItems->clear();
    ShowFormatSize();
    Made(EditKind::DeleteAllItems, change);
}

void CRecipeFormatEditView::OnMoveItem(int rows)
{
    MoveItem(TakeContextItem(), rows);
}

/// The first one cannot go up, nor the last one down.
void CRecipeFormatEditView::MoveItem(int row, int rows)
{
    const int to = row + rows;
    if (row < 0 || to < 0 || to >= m_pUi->listItems->topLevelItemCount())
        return;
    const FormatChange change =
        m_store.MoveItem(SelectedIndex(), static_cast<std::size_t>(row), static_cast<std::size_t>(to));
    ShowSelectedFormat();
    SelectRow(to);
    Made(EditKind::MoveItem, change);
}

/// The copy comes after the item.
void CRecipeFormatEditView::OnDuplicateItem()
{
    const int row = TakeContextItem();
    if (row < 0)
        return;
    const auto position = static_cast<std::size_t>(row);
    const DataItem copy = *SelectedFormat()->items[position];
    const FormatChange change = m_store.InsertItem(SelectedIndex(), position + 1, copy);
    ShowSelectedFormat();
    SelectRow(row + 1);
    Made(EditKind::DuplicateItem, change);
}

void CRecipeFormatEditView::OnItemNotes()
{
    if (const int row = TakeContextItem(); row >= 0)
        AskForNotes({SelectedIndex(), static_cast<std::size_t>(row)});
}

/// Nothing that is shown of the items changes, and nothing is read again. Notes that stay the same are no command.
void CRecipeFormatEditView::AskForNotes(const LibraryItem& place)
{
    const DataItem& item = *m_store.Library().formats[place.format]->items[place.item];
    const CSharedNotes notes = item.notes;
    CNotesDlg dialog(CodingOf(item), *notes, this);
    if (dialog.exec() == QDialog::Accepted && !(CSharedNotes(dialog.Notes()) == notes))
        Made(EditKind::Notes, m_store.SetNotes(place.format, place.item, dialog.Notes()), AfterChange::Save);
}

void CRecipeFormatEditView::OnAddFormat()
{
    m_store.SetChanged(); // kept: even when the dialog is cancelled
    CNewFormatNameDlg dialog(m_frame.Reporter(), this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    Made(EditKind::AddFormat, m_store.AppendFormat(NewFormat(dialog.Name())));
}

/// The format after the deleted one is selected, or, when that was the last, the one before it.
void CRecipeFormatEditView::OnDeleteFormat()
{
    Made(EditKind::DeleteFormat, m_store.RemoveFormat(SelectedIndex()));
}

/// A name that stays the same is no command.
void CRecipeFormatEditView::OnRenameFormat()
{
    const DataFormat* format = SelectedFormat();
    if (!format)
        return;
    const QString name = ToQString(TextOf(format->name));
    CNewFormatNameDlg dialog(m_frame.Reporter(), this);
    dialog.AskToRename(name);
    if (dialog.exec() != QDialog::Accepted || dialog.Name() == name)
        return;
    const std::size_t index = SelectedIndex();
    const FormatChange change = m_store.RenameFormat(index, ViewOf(dialog.Name()));
    FormatChanged(index);
    Made(EditKind::RenameFormat, change);
}

void CRecipeFormatEditView::OnDuplicateFormat()
{
    if (HasSelectedFormat())
        Made(EditKind::DuplicateFormat, m_store.DuplicateFormat(SelectedIndex()));
}

/// Every command on formats and items ends here. What became of a format is shown by now, but not that it came or went.
/// With the reading that it brings about it is one edit.
void CRecipeFormatEditView::Made(EditKind kind, const FormatChange& change, AfterChange next)
{
    {
        const CRecipeDocument::CGroup group(m_frame.Document(), kind);
        m_frame.Document().NoteFormatChange(kind, change);
        TakeIntoUse(change, next);
    }
    emit FormatsChanged();
    m_frame.WithdrawEdit();
    m_frame.UpdateCommands();
}

void CRecipeFormatEditView::TakeIntoUse(const FormatChange& change, AfterChange next)
{
    if (!change.before || !change.after)
        FormatChanged(change.index);
    if (next == AfterChange::Save)
        SaveFormats();
    else if (m_bAutoUse)
        UseFormat();
    else
        TakeOthers();
}
