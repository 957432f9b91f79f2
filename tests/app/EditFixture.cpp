#include "tests/app/EditFixture.h"

#include "controls/GridCtrl.h"
#include "controls/GridModel.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QProgressDialog>
#include <QTest>

void EditFixture::SetUp()
{
    QObject::connect(&m_boxes, &QTimer::timeout, [this] { LookForBoxes(); });
    m_boxes.start(1000);
    WriteAll(folder / "a.rcp", original);
    Start();
    OpenThroughDialog("a.rcp");
    Grid().setFocus();
}

/// Closes a dialog that has been open for a second or two, and fails the test. What only shows progress may take
/// longer.
void EditFixture::LookForBoxes()
{
    QWidget* dialog = QApplication::activeModalWidget();
    m_nLooks = dialog != nullptr && dialog == m_pBox ? m_nLooks + 1 : 0;
    const int mostLooks = qobject_cast<QProgressDialog*>(dialog) != nullptr ? 10 : 1;
    if (m_nLooks >= mostLooks) {
        const auto* box = qobject_cast<QMessageBox*>(dialog);
        ADD_FAILURE() << "nobody answered: " << (box ? box->text() : dialog->windowTitle()).toStdString();
        dialog->close();
    }
    m_pBox = dialog;
}

void EditFixture::Key(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QWidget* focus = QApplication::focusWidget();
    ASSERT_NE(focus, nullptr);
    QTest::keyClick(focus, key, modifiers);
}

void EditFixture::PasteAt(int row, int column, const QString& text)
{
    QApplication::clipboard()->setText(text);
    ClickCell(row, column);
    Key(Qt::Key_V, Qt::ControlModifier);
}

void EditFixture::ChooseCells(int firstRow, int firstColumn, int lastRow, int lastColumn)
{
    ClickCell(firstRow, firstColumn);
    const QModelIndex last = Grid().Model().BodyIndex(lastRow, lastColumn);
    QTest::mouseClick(Grid().viewport(), Qt::LeftButton, Qt::ShiftModifier, Grid().visualRect(last).center());
}

QLineEdit& EditFixture::GoToField(const char* name)
{
    auto& field = Find<QLineEdit>(name);
    field.setFocus(Qt::TabFocusReason);
    return field;
}

QStringList EditFixture::Shown()
{
    QStringList texts;
    for (int row = 1; row < Grid().RowCount(); ++row)
        for (int column = 2; column < Grid().ColumnCount(); ++column)
            texts << Grid().GetItemText(row, column);
    return texts;
}

QString EditFixture::Selected()
{
    QStringList cells;
    for (int row = 1; row < Grid().RowCount(); ++row)
        for (int column = 2; column < Grid().ColumnCount(); ++column)
            if (Grid().selectionModel()->isSelected(Grid().Model().BodyIndex(row, column)))
                cells << QStringLiteral("%1,%2").arg(row).arg(column);
    return cells.join(u' ');
}

QString EditFixture::Told()
{
    return Find<QLabel>("labelMessage").text();
}

QString EditFixture::NameAfter(const char* action, const QString& command)
{
    const QAction& entry = Action(action);
    EXPECT_TRUE(entry.text().startsWith(command));
    EXPECT_TRUE(entry.isEnabled() || entry.text() == command);
    return entry.isEnabled() ? entry.text().mid(command.size() + 1) : QString();
}

bool EditFixture::ClosingAsks()
{
    const CModalAnswer answer(QMessageBox::No);
    frame->close();
    return !answer.texts.empty();
}

QMenu& EditFixture::OpenEditMenu()
{
    auto& bar = Find<QMenuBar>("menuBar");
    QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.actionGeometry(EditMenu().menuAction()).center());
    EXPECT_TRUE(WaitFor([this] { return EditMenu().isVisible(); }));
    return EditMenu();
}

QMenu& EditFixture::OpenEditMenuByKeys()
{
    Key(Qt::Key_E, Qt::AltModifier);
    EXPECT_TRUE(WaitFor([this] { return EditMenu().isVisible(); }));
    return EditMenu();
}

/// The first Escape leads to the menu bar.
void EditFixture::CloseEditMenu()
{
    QTest::keyClick(&EditMenu(), Qt::Key_Escape);
    ASSERT_TRUE(WaitFor([this] { return !EditMenu().isVisible(); }));
    auto& bar = Find<QMenuBar>("menuBar");
    if (QApplication::focusWidget() == &bar)
        QTest::keyClick(&bar, Qt::Key_Escape);
    EXPECT_NE(QApplication::focusWidget(), &bar);
}

QStringList EditFixture::EntriesOf(const QMenu& menu)
{
    QStringList entries;
    for (const QAction* action : menu.actions())
        if (!action->isSeparator())
            entries << (action->isEnabled() ? QString() : QStringLiteral("-")) + action->text();
    return entries;
}

void EditFixture::Choose(const char* action)
{
    QMenu& menu = OpenEditMenu();
    QAction& entry = Action(action);
    EXPECT_TRUE(entry.isEnabled()) << action;
    QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(&entry).center());
    EXPECT_TRUE(WaitFor([&menu] { return !menu.isVisible(); }));
}
