#include "tests/views/FormatPaneFixture.h"

#include "views/DataItemRow.h"

#include <QWindow>

void FormatPane::Store(const std::vector<DataFormat>& formats, std::int32_t startAddress, std::int32_t rows)
{
    FormatLibrary library;
    for (const DataFormat& format : formats)
        library.formats.push_back(std::make_unique<DataFormat>(format));
    library.startAddress = startAddress;
    library.rowCount = rows;
    ASSERT_EQ(library.save(LibraryPath()), 0);
}

void FormatPane::Start()
{
    view = std::make_unique<CRecipeFormatEditView>(frame, folder / "vantor");
    view->resize(355, 852); // all of it is in sight
    ASSERT_TRUE(ShowActive(*view));
}

FormatLibrary FormatPane::Stored() const
{
    FormatLibrary library;
    library.load(LibraryPath());
    return library;
}

void FormatPane::ExpectStored(const std::vector<DataFormat>& formats) const
{
    FormatLibrary expected;
    for (const DataFormat& format : formats)
        expected.formats.push_back(std::make_unique<DataFormat>(format));
    const std::filesystem::path scratch = folder / "expected";
    ASSERT_EQ(expected.save(scratch), 0);
    EXPECT_EQ(ReadAll(LibraryPath()), ReadAll(scratch));
}

bool FormatPane::SavesAtTheEnd()
{
    std::filesystem::remove(LibraryPath());
    view.reset();
    return std::filesystem::exists(LibraryPath());
}

QStringList FormatPane::Row(int row) const
{
    QStringList texts;
    for (int column = 0; column <= CDataItemRow::DescriptionColumn; ++column)
        texts << List().topLevelItem(row)->text(column);
    return texts;
}

QStringList FormatPane::Column(int column) const
{
    QStringList texts;
    for (int row = 0; row < List().topLevelItemCount(); ++row)
        texts << List().topLevelItem(row)->text(column);
    return texts;
}

void FormatPane::SetAutoUse(bool on)
{
    auto& box = Find<QCheckBox>("checkAutoUse");
    if (box.isChecked() != on)
        QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(8, box.height() / 2));
    ASSERT_EQ(box.isChecked(), on);
}

QPoint FormatPane::RowCentre(int row) const
{
    return List().visualItemRect(List().topLevelItem(row)).center();
}

void FormatPane::RightClick(const QPoint& listPosition)
{
    // On the window, so that the toolkit makes the context menu event of it.
    QWidget* window = view->window();
    ASSERT_TRUE(List().viewport()->rect().contains(listPosition));
    QTest::mouseClick(window->windowHandle(), Qt::RightButton, {}, List().viewport()->mapTo(window, listPosition));
}

void FormatPane::DoubleClickRow(int row)
{
    const QPoint centre = RowCentre(row);
    QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, centre);
    QTest::mouseDClick(List().viewport(), Qt::LeftButton, {}, centre);
}

void FormatPane::PressKey(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    List().setFocus();
    QTest::keyClick(&List(), key, modifiers);
}

void FormatPane::ChooseInMenu(const char* action)
{
    QMenu& menu = ItemMenu();
    ASSERT_TRUE(WaitFor([&] { return menu.isVisible(); })) << "the menu is not open";
    auto& entry = Find<QAction>(action);
    ASSERT_TRUE(entry.isEnabled()) << action;
    QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(&entry).center());
}
