// What the changes panel shows, and how it is worked by mouse and keys.

#include "tests/views/ChangesPanelFixture.h"

#include <QAccessible>
#include <QHeaderView>
#include <QMenu>
#include <QSignalSpy>

namespace {

struct ChangesPanel : CChangesPanelFixture {
    ChangesPanel()
    {
        List(AllKinds());
        panel->show();
        EXPECT_TRUE(WaitFor([this] { return Table().isVisible(); }));
    }

    QMenu* OpenContextMenu()
    {
        QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(20, 20),
                                Table().viewport()->mapToGlobal(QPoint(20, 20)));
        QApplication::sendEvent(Table().viewport(), &event);
        return panel->findChild<QMenu*>();
    }
};

QStringList TextsOf(const QMenu& menu)
{
    QStringList texts;
    for (const QAction* action : menu.actions())
        if (!action->isSeparator())
            texts += action->text().remove(QLatin1Char('&'));
    return texts;
}

} // namespace

TEST_F(CChangesPanelFixture, IsHiddenUntilItIsShown)
{
    List(AllKinds());
    EXPECT_FALSE(panel->isVisible());
    EXPECT_EQ(panel->objectName(), "changesPanel");
}

TEST_F(ChangesPanel, ShowsALineAChange)
{
    EXPECT_EQ(Table().model()->rowCount(), 6);
    EXPECT_EQ(Line(0), "RW169|2|Belt m/min|0.75|1.15 (reads 1.14)|edited");
    EXPECT_EQ(Line(1), "RW129|3|Belt m/min|1.50 [0069]|1.50 [0096]|decimals");
    EXPECT_EQ(Line(2), "RW700|||0001 0002|0003 0002|");
    EXPECT_EQ(Line(3), "RW720||||1000 zero words|");
    EXPECT_EQ(Line(4), "RW730|4|Name|a\\tb\\n\\u0007|ab|text");
    EXPECT_EQ(Line(5), "RW1720|5|No.||0|end");
}

TEST_F(ChangesPanel, OfATableOfTextHasNoAddresses)
{
    auto list = std::make_shared<CFakeChanges>();
    list->header.type = FileType::Csv;
    list->records = {{.line = 13, .oldText = u"1\t2", .newText = u"", .why = ChangeReason::Rows},
                     {.why = ChangeReason::Form}};
    List(list);
    EXPECT_EQ(Line(0), "line 13||1\\t2||rows");
    EXPECT_EQ(Line(1), "|the whole file|||form");
    List(AllKinds());
    EXPECT_EQ(Line(3), "RW720||||1000 zero words|");
}

TEST_F(ChangesPanel, SaysWhatItLists)
{
    panel->SetSummary("1 edited, 3 others change");
    EXPECT_EQ(panel->windowTitle(), "Changes on saving");
    EXPECT_EQ(Label("labelSummary"), "1 edited, 3 others change");
    panel->SetList(AllKinds(), "Differences to a&b.rcp", {});
    EXPECT_EQ(panel->windowTitle(), "Differences to a&&b.rcp");
    EXPECT_EQ(panel->accessibleName(), "Differences to a&b.rcp");
    EXPECT_FALSE(KeepButton().isVisible());
}

TEST_F(ChangesPanel, SaysThatNothingChangesAndThatCountingGoesOn)
{
    auto list = std::make_shared<CFakeChanges>();
    list->isComplete = false;
    List(list);
    EXPECT_EQ(Label("labelSummary"), "counting…");
    EXPECT_FALSE(PatchButton().isEnabled());
    list->isComplete = true;
    panel->ListGrew();
    EXPECT_EQ(Label("labelSummary"), "No value changes.");
    EXPECT_FALSE(PatchButton().isEnabled());
    list->records.push_back(ChangeOfRow(1));
    list->isComplete = false;
    panel->SetSummary("1 other changes");
    panel->ListGrew();
    EXPECT_EQ(Label("labelSummary"), "1 other changes, counting…");
    list->isComplete = true;
    panel->ListGrew();
    EXPECT_EQ(Label("labelSummary"), "1 other changes");
    EXPECT_TRUE(PatchButton().isEnabled());
    List(nullptr);
    panel->SetSummary({});
    EXPECT_EQ(Label("labelSummary"), "");
    EXPECT_EQ(Table().model()->rowCount(), 0);
}

TEST_F(ChangesPanel, TellsTheReasonInASentence)
{
    const QModelIndex why = Table().model()->index(0, 5);
    EXPECT_EQ(why.data(Qt::ToolTipRole).toString(), "<p>You changed this value.</p>");
    EXPECT_EQ(why.data(Qt::AccessibleDescriptionRole).toString(), "You changed this value.");
    EXPECT_EQ(Table().model()->index(0, 3).data(Qt::AccessibleDescriptionRole).toString(), QString());
    EXPECT_EQ(Table().model()->index(0, 3).data(Qt::ToolTipRole).toString(), "<p>0.75</p>");
}

TEST_F(ChangesPanel, EachPartHasANameForScreenReaders)
{
    const auto nameOf = [](QWidget& widget) {
        return QAccessible::queryAccessibleInterface(&widget)->text(QAccessible::Name);
    };
    EXPECT_EQ(nameOf(*panel), "Changes on saving");
    EXPECT_EQ(nameOf(Table()), "Changes on saving");
    EXPECT_EQ(nameOf(Filter()), "Filter of the changes");
    EXPECT_EQ(nameOf(KeepButton()), "Keep stored");
    EXPECT_EQ(nameOf(PatchButton()), "Save as patch…");
    QAccessibleTableInterface* table = QAccessible::queryAccessibleInterface(&Table())->tableInterface();
    EXPECT_EQ(table->cellAt(1, 3)->text(QAccessible::Name), "1.50 [0069]");
    QLabel* label = nullptr;
    for (auto* each : panel->findChildren<QLabel*>())
        if (each->buddy() == &Filter())
            label = each;
    ASSERT_NE(label, nullptr);
}

TEST_F(ChangesPanel, ADoubleClickGoesToTheCell)
{
    const QPoint at = Table().visualRect(Table().model()->index(1, 4)).center();
    QTest::mouseClick(Table().viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(Table().viewport(), Qt::LeftButton, {}, at);
    EXPECT_EQ(log, std::vector<std::string>{"go 2,9"});
    EXPECT_TRUE(grid->hasFocus());
}

TEST_F(ChangesPanel, EnterGoesToTheCellOfALineThatHasOne)
{
    ClickRow(2);
    Press(Qt::Key_Return);
    EXPECT_EQ(log, std::vector<std::string>{});
    ClickRow(4);
    Press(Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_EQ(log, std::vector<std::string>{"go 3,1"});
}

TEST_F(ChangesPanel, F8GoesFromLineToLineAndStaysInThePanel)
{
    panel->setFocus();
    EXPECT_TRUE(Table().hasFocus());
    Press(Qt::Key_F8);
    EXPECT_EQ(Chosen(), "0");
    Press(Qt::Key_F8);
    Press(Qt::Key_F8); // the words outside have no cell
    Press(Qt::Key_F8, Qt::ShiftModifier);
    EXPECT_EQ(Chosen(), "1");
    EXPECT_EQ(log, (std::vector<std::string>{"show 1,9", "show 2,9", "show 2,9"}));
    EXPECT_TRUE(Table().hasFocus());
    ClickRow(5);
    Press(Qt::Key_F8);
    EXPECT_EQ(Chosen(), "5");
    Filter().setFocus();
    Press(Qt::Key_F8, Qt::ShiftModifier);
    EXPECT_EQ(Chosen(), "4");
    EXPECT_TRUE(Filter().hasFocus());
}

TEST_F(ChangesPanel, LeavesTheWindowItsKeysElsewhere)
{
    grid->setFocus();
    Press(Qt::Key_F8);
    Press(Qt::Key_K, Qt::ControlModifier);
    EXPECT_EQ(log, (std::vector<std::string>{"window's F8", "window's Ctrl+K"}));
}

TEST_F(ChangesPanel, EscapeEmptiesTheFilterAndThenLeaves)
{
    Filter().setFocus();
    QTest::keyClicks(&Filter(), "belt");
    Press(Qt::Key_Escape);
    EXPECT_EQ(Filter().text(), "");
    EXPECT_EQ(Table().model()->rowCount(), 6);
    EXPECT_TRUE(log.empty());
    Press(Qt::Key_Escape);
    EXPECT_EQ(log, std::vector<std::string>{"left"});
    panel->setFocus();
    Press(Qt::Key_Escape);
    EXPECT_EQ(log.size(), 2U);
}

TEST_F(ChangesPanel, TabGoesThroughItsParts)
{
    ClickRow(1);
    Filter().setFocus();
    std::vector<QString> names;
    for (int i = 0; i < 4; ++i) {
        names.push_back(window.focusWidget()->objectName());
        Press(Qt::Key_Tab);
    }
    EXPECT_EQ(names, (std::vector<QString>{"editFilter", "buttonKeepStored", "buttonSaveAsPatch", "tableChanges"}));
    Filter().setFocus();
    Press(Qt::Key_Down);
    EXPECT_TRUE(Table().hasFocus());
}

TEST_F(ChangesPanel, TheContextMenuHasWhatALineOffers)
{
    ClickRow(1);
    QMenu* menu = OpenContextMenu();
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(TextsOf(*menu),
              (QStringList{"Go to the cell", "Next line", "Previous line", "Keep stored", "Copy", "Save as patch…"}));
    QTest::keyClick(menu, Qt::Key_K);
    EXPECT_EQ(log, std::vector<std::string>{"keep 2,9"});
}

TEST_F(ChangesPanel, AFilterShowsTheLinesWithItsText)
{
    Filter().setFocus();
    QTest::keyClicks(&Filter(), "BELT");
    EXPECT_EQ(Table().model()->rowCount(), 2);
    EXPECT_EQ(Label("labelCount"), "2 of 6");
    TypeInto(*panel, "editFilter", "1.14");
    EXPECT_EQ(Line(0), "RW169|2|Belt m/min|0.75|1.15 (reads 1.14)|edited");
    TypeInto(*panel, "editFilter", "rw7");
    EXPECT_EQ(Label("labelCount"), "3 of 6");
    TypeInto(*panel, "editFilter", "decimals");
    EXPECT_EQ(Label("labelCount"), "1 of 6");
    TypeInto(*panel, "editFilter", "nowhere");
    EXPECT_EQ(Label("labelCount"), "0 of 6");
    TypeInto(*panel, "editFilter", "");
    EXPECT_EQ(Label("labelCount"), "");
    EXPECT_EQ(Table().model()->rowCount(), 6);
}

TEST_F(ChangesPanel, TheCurrentLineStaysWhenTheFilterGoes)
{
    Filter().setFocus();
    QTest::keyClicks(&Filter(), "text");
    Press(Qt::Key_Return);
    EXPECT_EQ(log, std::vector<std::string>{"go 3,1"});
    Filter().setFocus();
    Press(Qt::Key_Escape);
    EXPECT_EQ(Chosen(), "4");
}

TEST_F(ChangesPanel, AMillionChangesAreMadeAsTheyArePainted)
{
    const auto many = std::make_shared<CManyChanges>(1'000'000);
    List(many);
    EXPECT_EQ(many->made, 0U);
    panel->grab();
    const auto inSight = static_cast<std::size_t>(Table().viewport()->height()) / // and those partly in sight
                             static_cast<std::size_t>(Table().rowHeight(0)) +
                         2;
    EXPECT_GT(many->made, 0U);
    EXPECT_LE(many->made, inSight);
    const std::size_t made = many->made;
    panel->grab();
    EXPECT_EQ(many->made, made); // they are kept
    panel->setFocus();
    Press(Qt::Key_End, Qt::ControlModifier);
    EXPECT_EQ(Current(), 999'999);
    panel->grab();
    EXPECT_LE(many->made, 3 * inSight);
}

TEST_F(ChangesPanel, AFilterOfAMillionChangesStopsNobody)
{
    List(std::make_shared<CManyChanges>(1'000'000));
    Filter().setFocus();
    QElapsedTimer elapsed;
    elapsed.start();
    QTest::keyClicks(&Filter(), "99");
    EXPECT_LT(elapsed.elapsed(), 500);
    EXPECT_TRUE(Label("labelCount").endsWith(" of 1000000, looking…")) << Label("labelCount").toStdString();
    const int before = Table().model()->rowCount();
    EXPECT_TRUE(WaitFor([&] { return Table().model()->rowCount() > before; }));
    panel->setFocus(); // the keys work meanwhile
    Press(Qt::Key_F8);
    EXPECT_EQ(log.back(), "show 98,0");
}

TEST_F(ChangesPanel, AFilterComesToItsEnd)
{
    List(std::make_shared<CManyChanges>(100'000));
    Filter().setFocus();
    QTest::keyClicks(&Filter(), "99998.5");
    EXPECT_TRUE(WaitFor([&] { return Label("labelCount") == "1 of 100000"; })) << Label("labelCount").toStdString();
    EXPECT_EQ(Line(0), "RW100097|99998|No.|99998|99998.5|decimals");
}
