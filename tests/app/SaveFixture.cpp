#include "tests/app/SaveFixture.h"

#include "controls/GridModel.h"
#include "controls/Strip.h"
#include "library/FormatLibrary.h"
#include "views/ChangesPanel.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QToolButton>

SaveFixture::SaveFixture()
{
    FormatLibrary library;
    library.formats.push_back(std::make_unique<DataFormat>(MakeFormat(
        u"Oven", {MakeItem(u"Belt", DataType::Unsigned16, 1, 2, 2), MakeItem(u"Steam", DataType::Float, 2, 3, 1),
                  MakeItem(u"Name", DataType::String, 2, 0)})));
    library.formats.push_back(
        std::make_unique<DataFormat>(MakeFormat(u"Words", {MakeItem(u"Word", DataType::Signed16, 1, 5)})));
    library.rowCount = 4;
    library.save(folder / "RecipeFile.Dat");
}

void SaveFixture::SetUp()
{
    EditFixture::SetUp();
    WriteOven("oven.rcp");
    Open("oven.rcp");
    WaitForPlan();
    Grid().setFocus();
}

void SaveFixture::OpenByDialog(const std::string& name)
{
    OpenThroughDialog(name);
    ASSERT_EQ(Title(), TitleWith(name));
    Grid().setFocus();
}

Bytes SaveFixture::OvenWith(std::initializer_list<std::pair<std::size_t, std::uint16_t>> words) const
{
    Bytes bytes = oven;
    for (const auto& [at, word] : words) {
        const Bytes low = WordBytes({word});
        std::copy(low.begin(), low.end(), bytes.begin() + static_cast<std::ptrdiff_t>(2 * at));
    }
    return bytes;
}

/// The field is brought up to date when the last slice is over.
void SaveFixture::WaitForPlan()
{
    EXPECT_TRUE(WaitFor([this] {
        return !frame->Document().IsPlanOpen() && !FieldButton().text().contains(QStringLiteral("counting"));
    }));
}

QString SaveFixture::Field()
{
    WaitForPlan();
    return FieldButton().isVisible() ? FieldButton().text() : QString();
}

QToolButton& SaveFixture::FieldButton()
{
    return Find<QToolButton>("fieldChanges");
}

QString SaveFixture::Strip()
{
    return Find<CStrip>("strip").isVisible() ? Find<QLabel>("labelStrip").text() : QString();
}

/// Those before are hidden, and go when the window comes to it.
QList<QWidget*> SaveFixture::ButtonsOfStrip()
{
    QList<QWidget*> buttons;
    for (auto* button : Find<CStrip>("strip").findChildren<QPushButton*>(QStringLiteral("buttonStrip")))
        if (button->isVisible())
            buttons << button;
    return buttons;
}

QStringList SaveFixture::StripButtons()
{
    QStringList texts;
    for (const QWidget* button : ButtonsOfStrip())
        texts << static_cast<const QPushButton*>(button)->text();
    return texts;
}

void SaveFixture::ClickInStrip(const QString& button)
{
    EXPECT_TRUE(WaitFor([&] { return StripButtons().contains(button); })); // they are laid out by an event
    const qsizetype at = StripButtons().indexOf(button);
    ASSERT_GE(at, 0) << button.toStdString();
    QTest::mouseClick(ButtonsOfStrip()[at], Qt::LeftButton);
}

void SaveFixture::PressInStripByKeys(const QString& button)
{
    EXPECT_TRUE(WaitFor([&] { return StripButtons().contains(button); }));
    const qsizetype at = StripButtons().indexOf(button);
    ASSERT_GE(at, 0) << button.toStdString();
    QWidget* wanted = ButtonsOfStrip()[at];
    const auto& strip = Find<CStrip>("strip");
    for (int i = 0; i < 5 && !strip.isAncestorOf(QApplication::focusWidget()); ++i)
        Key(Qt::Key_F6);
    for (int i = 0; i < 5 && QApplication::focusWidget() != wanted; ++i)
        Key(Qt::Key_Tab);
    ASSERT_EQ(QApplication::focusWidget(), wanted);
    Key(Qt::Key_Return);
}

CChangesPanel& SaveFixture::Panel()
{
    return Find<CChangesPanel>("changesPanel");
}

QTableView& SaveFixture::Lines()
{
    return Find<QTableView>("tableChanges");
}

QStringList SaveFixture::Listed()
{
    const QAbstractItemModel& model = *Lines().model();
    QStringList lines;
    for (int row = 0; row < model.rowCount(); ++row) {
        const auto text = [&](int column) { return model.index(row, column).data().toString(); };
        lines << QStringLiteral("%1 %2 %3>%4 %5").arg(text(1), text(2), text(3), text(4), text(5));
    }
    return lines;
}

QString SaveFixture::PanelSummary()
{
    return Panel().findChild<QLabel*>(QStringLiteral("labelSummary"))->text();
}

void SaveFixture::ChooseLine(int line)
{
    const QModelIndex index = Lines().model()->index(line, 1);
    QTest::mouseClick(Lines().viewport(), Qt::LeftButton, {}, Lines().visualRect(index).center());
}

GridCellMarks SaveFixture::Marks(int row, int column)
{
    return Grid().Model().Marks(row, column);
}

QString SaveFixture::Tip(int row, int column)
{
    return Grid().Model().BodyIndex(row, column).data(Qt::ToolTipRole).toString();
}

QString SaveFixture::Description(int row, int column)
{
    return Grid().Model().BodyIndex(row, column).data(Qt::AccessibleDescriptionRole).toString();
}
