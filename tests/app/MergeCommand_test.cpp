#include "tests/app/FrameFixture.h"
#include "tests/support/PathLook.h"
#include "tests/support/ProcessRun.h"
#include "views/TextCrossing.h"

#include <QFileInfo>
#include <QMessageBox>
#include <QTest>

#include <algorithm>

namespace fs = std::filesystem;

namespace {

using Texts = std::vector<QString>;

const QString kMergeDialog = QStringLiteral("RecipeFile Merge Param Setting Dialog");

/// The command over a folder with first.rcp, ten words, and second.rcp, two words.
struct MergeCommand : FrameFixture {
    void SetUp() override
    {
        WriteAll(folder / "first.rcp", WordBytes({0x1100, 0x1211, 0x1312, 0x1413, 0x1514, 0x1615, 0, 0, 0, 0}));
        WriteAll(folder / "second.rcp", WordBytes({0x2B2A, 0x2C2B}));
        Start();
    }

    /// Chooses both files and the merged one, and what goes where: first words 2 to 4 to 0, second word 0 to 5.
    std::vector<CModalAnswer::Action> Choices(const QString& mergedName) const
    {
        return {CModalAnswer::PressNamed("buttonFirstPath"),
                ChoosePath(Path("first.rcp")),
                CModalAnswer::PressNamed("buttonSecondPath"),
                ChoosePath(Path("second.rcp")),
                [](QWidget& dialog) {
                    TypeInto(dialog, "editFirstReadStart", "2");
                    TypeInto(dialog, "editFirstLength", "3");
                    TypeInto(dialog, "editSecondPlace", "5");
                    TypeInto(dialog, "editSecondLength", "1");
                },
                CModalAnswer::PressNamed("buttonMergedPath"),
                [mergedName](QWidget& dialog) {
                    TypeInto(dialog, "editName", mergedName);
                    QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
                }};
    }

    void ExpectMerged() const
    {
        Bytes expected = WordBytes({0x1312, 0x1413, 0x1514, 0, 0, 0x2B2A});
        expected.resize(261'120);
        EXPECT_EQ(ReadAll(folder / "merged.rcp"), expected);
    }
};

} // namespace

TEST_F(MergeCommand, GoesFromTheMenuToTheMergedFile)
{
    std::vector<CModalAnswer::Action> actions = Choices("merged");
    actions.push_back(CModalAnswer::Key(Qt::Key_Return));
    const CModalAnswer answer(actions);
    Trigger(*frame, "actionFileMerge");
    EXPECT_EQ(answer.titles, (Texts{kMergeDialog, "Open file", kMergeDialog, "Open file", kMergeDialog, kMergeDialog,
                                    "Save Path Dialog", kMergeDialog}));
    ExpectMerged();
}

TEST_F(MergeCommand, MakesTheFileThatTheCommandLineMakes)
{
    const QString sample = QFileInfo(VANTOR_EXAMPLES "/bakery-oven.rcp").absoluteFilePath();
    Bytes other = ReadAll(sample.toStdString());
    std::reverse(other.begin(), other.end());
    WriteAll(folder / "other.rcp", other);
    const CModalAnswer answer({CModalAnswer::PressNamed("buttonFirstPath"), ChoosePath(sample),
                               CModalAnswer::PressNamed("buttonSecondPath"), ChoosePath(Path("other.rcp")),
                               [](QWidget& dialog) {
                                   TypeInto(dialog, "editFirstReadStart", "100");
                                   TypeInto(dialog, "editFirstLength", "40");
                                   TypeInto(dialog, "editFirstPlace", "7");
                                   TypeInto(dialog, "editSecondPlace", "60000");
                                   CModalAnswer::PressNamed("radio256K")(dialog);
                               },
                               CModalAnswer::PressNamed("buttonMergedPath"),
                               [](QWidget& dialog) {
                                   TypeInto(dialog, "editName", "window");
                                   CModalAnswer::PressNamed("buttonOk")(dialog);
                               },
                               CModalAnswer::PressNamed("buttonMerge")});
    Trigger(*frame, "actionFileMerge");

    const ProcessResult cli =
        RunProcess(VANTOR_CLI_PROGRAM, {"merge", sample.toStdString(), (folder / "other.rcp").string(),
                                        (folder / "cli").string(), "--size", "256K", "--first-read", "100",
                                        "--first-length", "40", "--first-place", "7", "--second-place", "60000"});
    EXPECT_EQ(cli.exitCode, 0) << cli.error;
    const Bytes merged = ReadAll(folder / "window.rcp");
    EXPECT_EQ(merged.size(), 523'264u);
    EXPECT_TRUE(std::equal(other.begin(), other.end(), merged.begin() + 120'000));
    EXPECT_TRUE(merged == ReadAll(folder / "cli.rcp"));
}

TEST_F(MergeCommand, ChangesNothingOfTheOpenRecipe)
{
    MakeFile("open.rcp");
    OpenThroughDialog("open.rcp");
    TypeIntoCell(1, 2, "9");
    std::vector<CModalAnswer::Action> actions = Choices("merged");
    actions.push_back(CModalAnswer::PressNamed("buttonMerge"));
    const CModalAnswer answer(actions);
    Trigger(*frame, "actionFileMerge");
    ExpectMerged();
    EXPECT_EQ(Title(), TitleWith("open.rcp"));
    EXPECT_EQ(ToQPath(frame->Document().Path()), Path("open.rcp"));
    EXPECT_TRUE(frame->Document().IsOpen());
    EXPECT_TRUE(frame->Document().IsModified());
    EXPECT_FALSE(frame->Document().IsNew());
    EXPECT_EQ(ReadAll(folder / "open.rcp"), Bytes(24));
}

TEST_F(MergeCommand, ReportsARefusalInABoxOverItsDialog)
{
    QMessageBox::StandardButtons buttons;
    QString over;
    const CModalAnswer answer({CModalAnswer::PressNamed("buttonMerge"),
                               [&](QWidget& dialog) {
                                   auto& box = dynamic_cast<QMessageBox&>(dialog);
                                   buttons = box.standardButtons();
                                   over = box.parentWidget()->windowTitle();
                                   CModalAnswer::Press(QMessageBox::Ok)(dialog);
                               },
                               CModalAnswer::PressNamed("buttonCancel")});
    Trigger(*frame, "actionFileMerge");
    EXPECT_EQ(answer.texts,
              (Texts{kMergeDialog, "Please select the first file  which you want to merge!", kMergeDialog}));
    EXPECT_EQ(answer.titles[1], "Vantor");
    EXPECT_EQ(buttons, QMessageBox::Ok);
    EXPECT_EQ(over, kMergeDialog);
}

TEST_F(MergeCommand, ReportsAFailureAndMergesAtTheNextTry)
{
    fs::create_directory(folder / "merged.rcp");
    std::vector<CModalAnswer::Action> actions = Choices("merged");
    actions.push_back(CModalAnswer::PressNamed("buttonMerge"));
    actions.push_back([this](QWidget& box) {
        fs::remove(folder / "merged.rcp");
        CModalAnswer::Press(QMessageBox::Ok)(box);
    });
    actions.push_back(CModalAnswer::PressNamed("buttonMerge"));
    const CModalAnswer answer(actions);
    Trigger(*frame, "actionFileMerge");
    ASSERT_EQ(answer.texts.size(), 10u);
    EXPECT_EQ(PathLook(answer.texts[8].toStdString()),
              PathLook("Merge file " + Path("merged.rcp").toStdString() + " failed!"));
    ExpectMerged();
}

TEST_F(MergeCommand, AsksBeforeAFileIsReplaced)
{
    WriteAll(folder / "merged.rcp", Bytes(300'000, std::byte{0xFF}));
    std::vector<CModalAnswer::Action> actions = Choices("merged");
    actions.push_back(CModalAnswer::Press(QMessageBox::No));
    actions.push_back([](QWidget& dialog) {
        EXPECT_EQ(TextIn(dialog, "editName"), "merged"); // still open, and asks again
        CModalAnswer::PressNamed("buttonOk")(dialog);
    });
    actions.push_back(CModalAnswer::Press(QMessageBox::Yes));
    actions.push_back(CModalAnswer::PressNamed("buttonMerge"));
    const CModalAnswer answer(actions);
    Trigger(*frame, "actionFileMerge");
    const std::string question = PathLook("The file " + Path("merged.rcp").toStdString() +
                                          " exist,\nMerge operation can empty the file content,continue?");
    ASSERT_EQ(answer.texts.size(), 11u);
    EXPECT_EQ(PathLook(answer.texts[7].toStdString()), question);
    EXPECT_EQ(answer.texts[8], "Save Path Dialog");
    EXPECT_EQ(PathLook(answer.texts[9].toStdString()), question);
    ExpectMerged();
}

TEST_F(MergeCommand, CancelledWritesNothing)
{
    std::vector<CModalAnswer::Action> actions = Choices("merged");
    actions.push_back(CModalAnswer::Key(Qt::Key_Escape));
    const CModalAnswer answer(actions);
    Trigger(*frame, "actionFileMerge");
    EXPECT_EQ(answer.titles.back(), kMergeDialog);
    EXPECT_FALSE(fs::exists(folder / "merged.rcp"));
}

TEST_F(MergeCommand, StartsAfreshEachTime)
{
    {
        std::vector<CModalAnswer::Action> actions = Choices("merged");
        actions.push_back(CModalAnswer::PressNamed("buttonCancel"));
        const CModalAnswer answer(actions);
        Trigger(*frame, "actionFileMerge");
    }
    std::vector<std::string> texts;
    const CModalAnswer answer({[&](QWidget& dialog) {
        for (const char* field : {"editFirstPlace", "editFirstPath", "editFirstFileBytes", "editFirstReadStart",
                                  "editFirstLength", "editSecondPlace", "editSecondPath", "editMergedPath"})
            texts.push_back(TextIn(dialog, field));
        CModalAnswer::PressNamed("buttonCancel")(dialog);
    }});
    Trigger(*frame, "actionFileMerge");
    EXPECT_EQ(texts, (std::vector<std::string>{"0", "", "", "", "", "0", "", ""}));
}
