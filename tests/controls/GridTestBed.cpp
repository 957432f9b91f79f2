#include "tests/controls/GridTestBed.h"

#include "controls/GridModel.h"
#include "tests/support/GuiTest.h"

#include <QTest>
#include <QVBoxLayout>

namespace {

std::string Place(int row, int column)
{
    return std::to_string(row) + "," + std::to_string(column);
}

} // namespace

CGridTestBed::CGridTestBed()
    : grid(new CGridCtrl(kGridId, &window)),
      field(new QLineEdit(&window)),
      button(new QPushButton("Go", &window))
{
    auto* layout = new QVBoxLayout(&window);
    layout->addWidget(grid);
    layout->addWidget(field);
    layout->addWidget(button);
    field->setObjectName("field");
    button->setFocusPolicy(Qt::StrongFocus);
    window.resize(800, 500);

    grid->SetCellCheck([](int, const QString& text) { return !text.contains("bad"); });
    grid->SetReporter([this](const QString& text, const QString& further) {
        log.push_back("reported " + text.toStdString());
        if (!further.isEmpty())
            log.push_back("further " + further.toStdString());
    });
    QObject::connect(grid, &CGridCtrl::CellEdited, [this](int row, int column) {
        log.push_back("edited " + Place(row, column)); //
    });
    QObject::connect(grid, &CGridCtrl::Notify, [this](const GridNotification& note) {
        log.push_back(std::to_string(note.code) + " of " + std::to_string(note.controlId) + " at " +
                      Place(note.row, note.column));
    });
}

void CGridTestBed::SetUp()
{
    ASSERT_TRUE(ShowActive(window));
}

void CGridTestBed::Fill(int rows, int columns)
{
    grid->DeleteAllItems();
    grid->SetRowCount(rows);
    grid->SetColumnCount(columns);
    grid->SetDefaultRowHeight(26);
    grid->SetFixedRowCount(1);
    grid->SetFixedColumnCount(2);
    for (int row = 0; row < rows; ++row)
        for (int column = 0; column < columns; ++column)
            grid->SetItemText(row, column, QString::fromStdString(Place(row, column)));
    grid->setFocus();
}

CInPlaceEdit* CGridTestBed::Editor() const
{
    for (auto* editor : grid->findChildren<CInPlaceEdit*>())
        if (editor->isVisible())
            return editor;
    return nullptr;
}

std::string CGridTestBed::TextAt(int row, int column) const
{
    return grid->GetItemText(row, column).toStdString();
}

std::string CGridTestBed::Focus() const
{
    int row = 0;
    int column = 0;
    return grid->FocusCell(row, column) ? Place(row, column) : "none";
}

std::string CGridTestBed::Selected() const
{
    std::string all;
    for (int row = 0; row < grid->RowCount(); ++row)
        for (int column = 0; column < grid->ColumnCount(); ++column)
            if ((grid->GetItemState(row, column) & CGridCellBase::Selected) != 0)
                all += (all.empty() ? "" : " ") + Place(row, column);
    return all;
}

QPoint CGridTestBed::Center(int row, int column) const
{
    return grid->visualRect(grid->Model().BodyIndex(row, column)).center();
}

void CGridTestBed::Click(int row, int column, Qt::KeyboardModifiers modifiers)
{
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, modifiers, Center(row, column));
}

void CGridTestBed::Press(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(window.focusWidget(), key, modifiers);
}

void CGridTestBed::Type(const char* text)
{
    for (; *text != '\0'; ++text)
        QTest::keyClick(window.focusWidget(), *text); // the first one opens the editor, which takes the rest
}

void CGridTestBed::Edit(int row, int column, const char* text)
{
    ASSERT_TRUE(ShowActive(window)); // a message box leaves it inactive on the offscreen platform
    ASSERT_TRUE(grid->SetFocusCell(row, column));
    log.clear();
    Press(Qt::Key_F2);
    ASSERT_NE(Editor(), nullptr);
    QTest::keyClicks(Editor(), text);
}
