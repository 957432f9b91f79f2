#include "disk/File.h"
#include "tests/support/GuiTest.h"
#include "tests/support/ListOpenChoice.h"
#include "tests/views/MergeParamFixture.h"
#include "text/PathText.h"

#include <QApplication>
#include <QFileDialog>
#include <QHelpEvent>
#include <QScreen>
#include <QTest>
#include <QTextDocument>

namespace fs = std::filesystem;

namespace {

/// The tip that comes up where the pointer rests on `field`.
const QWidget* ShowTip(QWidget& field)
{
    const QPoint point = field.rect().center();
    QHelpEvent help(QEvent::ToolTip, point, field.mapToGlobal(point));
    QApplication::sendEvent(&field, &help);
    for (const QWidget* window : QApplication::topLevelWidgets())
        if (window->inherits("QTipLabel") && window->isVisible())
            return window;
    return nullptr;
}

/// What the user reads in a tip.
QString TextOf(const QString& tip)
{
    QTextDocument document;
    document.setHtml(tip);
    return document.toPlainText().remove(QChar(0x200B)); // where it may break
}

struct SourceCase {
    const char* name;
    const char* button;
    const char* path;
    const char* bytes;
    const char* readStart;
    const char* length;
    const char* place;
    const char16_t* cannotOpen;
    friend void PrintTo(const SourceCase& c, std::ostream* out) { *out << c.name; }
};
struct ChosenSource : MergeParam, testing::WithParamInterface<SourceCase> {
    void Choose(const std::string& name) { Answer(GetParam().button, ChoosePath(Path(name)), "Open file"); }
};

TEST_P(ChosenSource, IsTypedWithTheListOfCompletionsOpen)
{
    ChooseFirst("first.rcp"); // the folder in which the dialogs start from now on
    const CListOpenChoice choice("second.rcp");
    ClickOn(*dialog, GetParam().button);
    EXPECT_TRUE(choice.WasListOpen());
    EXPECT_TRUE(choice.ClosedListFirst());
    EXPECT_EQ(Field(GetParam().bytes), "4");
}

TEST_P(ChosenSource, ShowsItsPathAndLengthAndIsTakenWhole)
{
    WriteAll(folder / "nine.rcp", Bytes(9));
    Type(GetParam().place, "33");
    Type(GetParam().readStart, "7");
    auto expected = Fields();
    Choose("nine.rcp");
    expected[GetParam().path] = Path("nine.rcp");
    expected[GetParam().bytes] = "9";
    expected[GetParam().readStart] = "0";
    expected[GetParam().length] = "4"; // the odd byte is not counted
    EXPECT_EQ(Fields(), expected);
    EXPECT_TRUE(reporter.shown.empty());
}

TEST_P(ChosenSource, MayBeLongerThan32BitsCount)
{
    WriteAll(folder / "long.rcp", {});
    fs::resize_file(folder / "long.rcp", 6'000'000'001); // takes no room on the disk
    Choose("long.rcp");
    EXPECT_EQ(Field(GetParam().bytes), "6000000001");
    EXPECT_EQ(Field(GetParam().length), "3000000000");
}

TEST_P(ChosenSource, MayBeNamedWithoutItsEnding)
{
    Choose("first");
    EXPECT_EQ(Field(GetParam().path), Look("first.rcp"));
}

TEST_P(ChosenSource, ThatCannotBeOpenedIsReportedAndChangesNothing)
{
    Choose("first.rcp");
    Type(GetParam().length, "2");
    const auto fields = Fields();
    Choose("gone.rcp");
    ExpectStaysOpen(u"Can't open file " + PathText(folder / "gone.rcp") + GetParam().cannotOpen, fields);
    EXPECT_FALSE(fs::exists(folder / "gone.rcp"));
}

TEST_P(ChosenSource, ThatIsCancelledChangesNothing)
{
    Choose("first.rcp");
    Type(GetParam().length, "2");
    const auto fields = Fields();
    Answer(GetParam().button, CancelDialog(), "Open file");
    EXPECT_EQ(Fields(), fields);
    EXPECT_TRUE(reporter.shown.empty());
}

TEST_P(ChosenSource, IsLookedForAmongTheRecipeFilesBesideTheOneBefore)
{
    fs::create_directory(folder / "sub");
    WriteAll(folder / "sub" / "a.rcp", Bytes(2));
    Choose("sub/a.rcp");
    QStringList filters;
    QString start;
    const auto look = [&](QWidget& window) {
        const auto& files = dynamic_cast<QFileDialog&>(window);
        filters = files.nameFilters();
        start = files.directory().path();
        QTest::keyClick(&window, Qt::Key_Escape);
    };
    Answer(GetParam().button, look, "Open file");
    EXPECT_EQ(filters, QStringList{"(*.rcp)"});
    EXPECT_EQ(PathLook(start.toStdString()), Look("sub"));
}

TEST_P(ChosenSource, WithALongPathShowsItsEndAtEverySizeAndTheWholeInATip)
{
    const fs::path deep = folder / std::string(240, 'd') / std::string(240, 'e');
    fs::create_directories(deep);
    WriteAll(deep / "a.rcp", Bytes(2));
    Choose(fs::relative(deep / "a.rcp", folder.Path()).string());
    auto& field = FindIn<QLineEdit>(*dialog, GetParam().path);
    const auto isEndInSight = [&field] {
        const int end = field.inputMethodQuery(Qt::ImCursorRectangle).toRect().left();
        return field.cursorPosition() == field.text().size() && end > 0 && end < field.width();
    };
    for (const int width : {0, 700, 1500}) { // the first is the smallest that there is
        dialog->resize(width, dialog->height());
        EXPECT_TRUE(WaitFor(isEndInSight)) << width;
    }
    const QWidget* tip = ShowTip(field);
    ASSERT_NE(tip, nullptr);
    EXPECT_LE(tip->width(), tip->screen()->geometry().width());
    EXPECT_EQ(TextOf(field.toolTip()), field.text());
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, ChosenSource, testing::Values(
    SourceCase{"First", "buttonFirstPath", "editFirstPath", "editFirstFileBytes", "editFirstReadStart",
               "editFirstLength", "editFirstPlace", u",it can't be mergered!"}, // kept
    SourceCase{"Second", "buttonSecondPath", "editSecondPath", "editSecondFileBytes", "editSecondReadStart",
               "editSecondLength", "editSecondPlace", u",it can't be merged!"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(MergeParam, TheSecondFileIsLookedForBesideTheFirst)
{
    ChooseFirst("first.rcp");
    QString start;
    const auto look = [&](QWidget& window) {
        start = dynamic_cast<QFileDialog&>(window).directory().path();
        QTest::keyClick(&window, Qt::Key_Escape);
    };
    Answer("buttonSecondPath", look, "Open file");
    EXPECT_EQ(PathLook(start.toStdString()), PathLook(folder.Path().string()));
}

TEST_F(MergeParam, TheMergedPathIsThatOfTheSavePathDialog)
{
    ChooseMerged("merged");
    EXPECT_EQ(Field("editMergedPath"), Look("merged.rcp"));
    EXPECT_FALSE(fs::exists(folder / "merged.rcp"));
}

TEST_F(MergeParam, ACancelledSavePathDialogLeavesTheMergedPath)
{
    ChooseMerged("merged");
    const auto cancel = [](QWidget& savePath) {
        TypeInto(savePath, "editName", "other");
        QTest::keyClick(savePath.focusWidget(), Qt::Key_Escape);
    };
    Answer("buttonMergedPath", cancel, "Save Path Dialog");
    EXPECT_EQ(Field("editMergedPath"), Look("merged.rcp"));
}

TEST_F(MergeParam, TheSavePathDialogRemembersNothing)
{
    ChooseMerged("merged");
    std::string name = "?";
    std::string path;
    const auto look = [&](QWidget& savePath) {
        name = TextIn(savePath, "editName");
        path = PathLook(TextIn(savePath, "editPath"));
        QTest::keyClick(&savePath, Qt::Key_Escape);
    };
    Answer("buttonMergedPath", look, "Save Path Dialog");
    EXPECT_EQ(name, "");
    EXPECT_EQ(path, Look(""));
}

} // namespace
