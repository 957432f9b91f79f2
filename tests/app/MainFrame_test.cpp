#include "app/MainFrame.h"
#include "app/VantorApp.h"
#include "controls/GridCtrl.h"
#include "tests/app/FrameFixture.h"

#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPushButton>
#include <QStatusBar>
#include <QTest>
#include <QToolBar>
#include <QUrl>

namespace {

struct MainFrame : FrameFixture {
    void SetUp() override { Start(); }
};

/// Each action's text, "-" for a separator.
QStringList TextsOf(const QWidget& bar)
{
    QStringList texts;
    for (const QAction* action : bar.actions())
        texts << (action->isSeparator() ? QStringLiteral("-") : action->text());
    return texts;
}

} // namespace

TEST_F(MainFrame, TheMenusHoldTheCommands)
{
    const QList<QAction*> menus = Find<QMenuBar>("menuBar").actions();
    const std::pair<QString, QStringList> expected[] = {
        {"File(&F)",
         {"New file", "Open file", "Save file", "Save as...", "-", "Save edited only",
          QString::fromUtf8("Save a cop&y…"), QString::fromUtf8("Changes on saving…"),
          QString::fromUtf8("Earlier &versions…"), QString::fromUtf8("Compare &with…"),
          QString::fromUtf8("Apply &patch…"), "-", QString::fromUtf8("最近文件"), "-", "Exit(&X)"}},
        {"Edit(&E)",
         {"&Undo",
          "&Redo",
          "-",
          "Cu&t",
          "&Copy",
          "&Paste",
          "-",
          "&Next change",
          "Pre&vious change",
          "-",
          "Store e&xactly",
          "&Keep stored",
          "-",
          "Copy &with titles",
          "Copy for &spreadsheet",
          QString::fromUtf8("Paste wit&h preview…"),
          QString::fromUtf8("I&mport table…"),
          QString::fromUtf8("Exp&ort table…"),
          QString::fromUtf8("Recipe sheet…"),
          "-",
          QString::fromUtf8("&Go to…"),
          QString::fromUtf8("&Find…"),
          "Find next",
          "Find previous",
          QString::fromUtf8("Rep&lace…"),
          QString::fromUtf8("Find value in fil&e…"),
          "-",
          QString::fromUtf8("F&ill…"),
          "Fill &down",
          QString::fromUtf8("C&alculate…")}},
        {"View(&V)",
         {"ToolBar(&T)", "Status Bar(&S)", "-", "&Freeze up to this column", "&Unfreeze columns", "-",
          QString::fromUtf8("Show only &rows that…"), "Show &all rows", "-", "&Inspector"}},
        {"File Merge(&M)", {"File Merge(&F)"}},
        {"Help(&H)", {"About Vantor(&A)..."}},
    };
    ASSERT_EQ(menus.size(), 5);
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(menus[i]->text(), expected[i].first);
        EXPECT_EQ(TextsOf(*menus[i]->menu()), expected[i].second);
    }
    EXPECT_FALSE(Action("actionRecentFiles").isEnabled());
}

TEST_F(MainFrame, TheToolBarHoldsItsButtonsAndDocksOnAllSides)
{
    auto& bar = Find<QToolBar>("toolBar");
    EXPECT_EQ(bar.windowTitle(), "ToolBar");
    EXPECT_EQ(TextsOf(bar), (QStringList{"New file", "Open file", "Save file", "Save as...", "-", "BitBrowse", "-",
                                         "About Vantor(&A)..."}));
    EXPECT_TRUE(bar.isMovable());
    EXPECT_EQ(bar.allowedAreas(), Qt::AllToolBarAreas);
    for (const QAction* action : bar.actions())
        EXPECT_TRUE(action->isSeparator() || !action->icon().isNull()) << action->text().toStdString();
}

struct PromptCase {
    const char* action;
    int id;
    const char* prompt;
    const char* tip;
    friend void PrintTo(const PromptCase& c, std::ostream* out) { *out << c.action; }
};

struct Prompt : MainFrame, testing::WithParamInterface<PromptCase> {};

TEST_P(Prompt, GoesWithTheCommand)
{
    const QAction& action = Action(GetParam().action);
    EXPECT_EQ(action.property("controlId").toInt(), GetParam().id);
    EXPECT_EQ(action.statusTip(), GetParam().prompt);
    EXPECT_EQ(action.toolTip(), GetParam().tip);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Strings, Prompt, testing::Values(
    PromptCase{"actionSave",      32780, "Save file",            "Save file"},
    PromptCase{"actionNew",       32781, "New file",             "New file"},
    PromptCase{"actionOpen",      32782, "Open file",            "Open file"},
    PromptCase{"actionSaveAs",    32783, "Save as",              "Save as"},
    PromptCase{"actionBitBrowse", 32784, "BitBrowse",            "BitBrowse"},
    PromptCase{"actionExit",      57665, "Exit application",     "Exit"},
    PromptCase{"actionToolBar",   59392, "Show hide toolbar",    "Show hide toolbar"},
    PromptCase{"actionStatusBar", 59393, "Show hide Status Bar", "Show hide Status Bar"}),
    [](const auto& c) { return std::string(c.param.action); });
// clang-format on

TEST_F(MainFrame, TheStatusBarShowsReadyAndTheLockKeys)
{
    EXPECT_EQ(Find<QLabel>("labelMessage").text(), "Ready");
    EXPECT_EQ(Find<QLabel>("labelCapital").text(), "Capital");
    EXPECT_EQ(Find<QLabel>("labelNumber").text(), "Number");
    EXPECT_EQ(Find<QLabel>("labelScroll").text(), "Scroll");
    EXPECT_FALSE(Find<QLabel>("labelCapital").isEnabled());
    QKeyEvent press(QEvent::KeyPress, Qt::Key_CapsLock, Qt::NoModifier, 66, 0, 0x02);
    QCoreApplication::sendEvent(frame.get(), &press);
    EXPECT_TRUE(Find<QLabel>("labelCapital").isEnabled());
    EXPECT_EQ(Find<QLabel>("labelCapital").accessibleName(), "Capital on");
}

TEST_F(MainFrame, TheViewMenuShowsAndHidesTheBars)
{
    Trigger(*frame, "actionToolBar");
    EXPECT_FALSE(Find<QToolBar>("toolBar").isVisible());
    Trigger(*frame, "actionToolBar");
    EXPECT_TRUE(Find<QToolBar>("toolBar").isVisible());
    Trigger(*frame, "actionStatusBar");
    EXPECT_FALSE(Find<QStatusBar>("statusBar").isVisible());
    EXPECT_FALSE(Action("actionStatusBar").isChecked());
}

TEST_F(MainFrame, EveryCommandIsEnabledExactlyWhenItsStateAllowsIt)
{
    const auto enabled = [&] {
        QStringList names;
        // Those of editing and looking at the table have tests of their own.
        const QList<QAction*> others = Find<QMenu>("menuEdit").actions() + Find<QMenu>("menuView").actions().mid(2);
        for (QAction* action : frame->findChildren<QAction*>(Qt::FindDirectChildrenOnly)) // not the panes'
            if (action->objectName().startsWith("action") && action->isEnabled() && !others.contains(action))
                names << action->objectName();
        names.sort();
        return names;
    };
    const QStringList always{"actionAbout", "actionExit",      "actionFileMerge", "actionNew",
                             "actionOpen",  "actionStatusBar", "actionToolBar"};
    EXPECT_EQ(enabled(), always);
    {
        const CModalAnswer answer({ChoosePath(Path("gone.rcp")), CModalAnswer::Press(QMessageBox::Ok)});
        Trigger(*frame, "actionOpen");
    }
    EXPECT_EQ(enabled(), always); // a failed Open opens nothing
    Trigger(*frame, "actionNew");
    const QStringList open{"actionAbout",       "actionApplyPatch", "actionChangesOnSaving",
                           "actionCompareWith", "actionExit",       "actionFileMerge",
                           "actionNew",         "actionOpen",       "actionSave",
                           "actionSaveAs",      "actionSaveCopy",   "actionStatusBar",
                           "actionToolBar"};
    EXPECT_EQ(enabled(), open);
    MakeFile("a.rcp");
    {
        const CModalAnswer answer({ChoosePath(Path("b.rcp")), ChoosePath(Path("a.rcp"))}); // the new one is saved first
        Trigger(*frame, "actionOpen");
    }
    QStringList ofFile = open;
    ofFile << "actionSaveEdited";
    ofFile.sort();
    EXPECT_EQ(enabled(), ofFile);
}

struct KeyCase {
    const char* name;
    Qt::KeyboardModifiers modifiers;
    Qt::Key key;
    const char* dialog;
    friend void PrintTo(const KeyCase& c, std::ostream* out) { *out << c.name; }
};

struct Accelerator : MainFrame, testing::WithParamInterface<KeyCase> {};

TEST_P(Accelerator, RunsItsCommand)
{
    Trigger(*frame, "actionNew");
    const CModalAnswer answer({CancelDialog()});
    QTest::keyClick(frame.get(), GetParam().key, GetParam().modifiers);
    ASSERT_FALSE(answer.titles.empty());
    EXPECT_EQ(answer.titles[0], GetParam().dialog);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Keys, Accelerator, testing::Values( // each meets unsaved new work, so each asks where to save it
    KeyCase{"New",  Qt::ControlModifier, Qt::Key_N, "Save as"},
    KeyCase{"Open", Qt::ControlModifier, Qt::Key_O, "Save as"},
    KeyCase{"Save", Qt::ControlModifier, Qt::Key_S, "Save as"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(MainFrame, F6ComesToTheStripWhileItSaysSomething)
{
    Start();
    frame->ShowStrip(StripSubject::NotWritten, {QStringLiteral("told"), {{QStringLiteral("Do"), [] {}}}});
    Grid().setFocus();
    QTest::keyClick(frame.get(), Qt::Key_F6);
    const auto* button = qobject_cast<QPushButton*>(frame->focusWidget());
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(button->text(), QStringLiteral("Do"));
    QTest::keyClick(frame.get(), Qt::Key_F6, Qt::ShiftModifier);
    EXPECT_EQ(frame->focusWidget(), &Grid());
    frame->WithdrawStrip(StripSubject::NotWritten);
    QTest::keyClick(frame.get(), Qt::Key_F6, Qt::ShiftModifier);
    QTest::keyClick(frame.get(), Qt::Key_F6);
    EXPECT_EQ(frame->focusWidget(), &Grid());
}

TEST_F(MainFrame, F6GoesFromPaneToPane)
{
    const auto inFormatPane = [&] { return Find<QWidget>("formatPane").isAncestorOf(frame->focusWidget()); };
    Grid().setFocus();
    QTest::keyClick(frame.get(), Qt::Key_F6);
    EXPECT_TRUE(inFormatPane());
    QTest::keyClick(frame.get(), Qt::Key_F6);
    EXPECT_EQ(frame->focusWidget(), &Grid());
    QTest::keyClick(frame.get(), Qt::Key_F6, Qt::ShiftModifier);
    EXPECT_TRUE(inFormatPane());
}

TEST_F(MainFrame, AltBackspaceTakesTypingBack)
{
    auto& field = Find<QLineEdit>("editReadCount");
    field.setFocus();
    QTest::keyClicks(&field, "7");
    ASSERT_EQ(field.text(), "47");
    QTest::keyClick(&field, Qt::Key_Backspace, Qt::AltModifier);
    EXPECT_EQ(field.text(), "4");
}

TEST_F(MainFrame, AboutShowsTheVersion)
{
    QString line;
    const CModalAnswer answer({[&](QWidget& dialog) {
        line = dialog.findChild<QLabel*>("labelVersion")->text();
        CModalAnswer::Press(QMessageBox::Ok)(dialog);
    }});
    Trigger(*frame, "actionAbout");
    EXPECT_EQ(answer.titles, std::vector<QString>{"About Vantor"});
    EXPECT_EQ(line, "Vantor 1.6   Build 100");
}

TEST_F(MainFrame, AFileDroppedOnTheWindowIsOpened)
{
    MakeFile("a.rcp");
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(Path("a.rcp"))});
    QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(frame.get(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(frame.get(), &drop);
    EXPECT_TRUE(WaitFor([&] { return Title() == TitleWith("a.rcp"); }));
}

/// A field that takes drops of its own would get the file's name for its text.
TEST_F(MainFrame, AFileDroppedOnAFieldGoesToTheWindow)
{
    MakeFile("a.rcp");
    frame->OpenPath(Path("a.rcp"));
    ClickCell(1, 2);
    QTest::keyClick(&Grid(), Qt::Key_F2);
    const QList<QLineEdit*> fields = frame->findChildren<QLineEdit*>();
    ASSERT_EQ(fields.size(), 8); // three in the format pane and in the bars, the open cell, the filter of the changes
    for (const QLineEdit* field : fields) {
        const QWidget* target = field;
        while (!target->acceptDrops())
            target = target->parentWidget();
        EXPECT_EQ(target, frame.get()) << qPrintable(field->objectName());
    }
}

TEST_F(MainFrame, OnlyASingleFileCanBeDropped)
{
    QMimeData two;
    two.setUrls({QUrl::fromLocalFile(Path("a.rcp")), QUrl::fromLocalFile(Path("b.rcp"))});
    QMimeData aFolder;
    aFolder.setUrls({QUrl::fromLocalFile(Path(""))});
    QMimeData text;
    text.setText("not a file");
    for (const QMimeData* data : {&two, &aFolder, &text}) {
        QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, data, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QCoreApplication::sendEvent(frame.get(), &enter);
        EXPECT_FALSE(enter.isAccepted());
    }
}

TEST_F(MainFrame, TheClipboardKeysWorkOnTheGridAndOnTheFields)
{
    WriteAll(folder / "a.rcp", WordBytes({5, 0, 0, 6, 0, 0}));
    frame->OpenPath(Path("a.rcp"));
    ClickCell(1, 2);
    Grid().setFocus();
    QTest::keyClick(&Grid(), Qt::Key_C, Qt::ControlModifier);
    ClickCell(3, 2);
    QTest::keyClick(&Grid(), Qt::Key_Insert, Qt::ShiftModifier);
    EXPECT_EQ(Grid().GetItemText(3, 2), "5");
    EXPECT_TRUE(frame->Document().IsModified());
    auto& field = Find<QLineEdit>("editReadCount");
    field.setFocus();
    field.selectAll();
    QTest::keyClick(&field, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(field.text(), "5");
    EXPECT_EQ(Grid().GetItemText(3, 2), "5");
}
