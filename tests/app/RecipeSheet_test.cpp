// Recipe sheets, as a user looks at them, prints them and hands them over.

#include "tests/app/SaveFixture.h"
#include "tests/support/ProcessRun.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPrintDialog>
#include <QPrintPreviewWidget>
#include <QPushButton>
#include <QTest>

#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

namespace {

/// The window over "oven.rcp", with versions in a folder of their own.
struct RecipeSheets : SaveFixture {
    void SetUp() override
    {
        SaveFixture::SetUp();
        frame->KeepIn(data);
        Activate();
    }

    /// Ctrl+P; the actions are those in the dialog, which the last one closes.
    QStringList OpenSheet(std::vector<CModalAnswer::Action> actions)
    {
        actions.push_back(CModalAnswer::Key(Qt::Key_Escape));
        const CModalAnswer answer(std::move(actions));
        Key(Qt::Key_P, Qt::ControlModifier);
        Activate();
        return QStringList(answer.titles.begin(), answer.titles.end());
    }

    std::string FileText(const char* name) const
    {
        std::ifstream file(folder / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::string PdfText(const char* name) const
    {
        return RunProcess("/usr/bin/env", {"pdftotext", "-layout", (folder / name).string(), "-"}).out;
    }

    /// Saves as HTML, and the text of that.
    std::string HtmlOf(std::vector<CModalAnswer::Action> actions)
    {
        fs::remove(folder / "sheet.html");
        actions.push_back(CModalAnswer::PressNamed("buttonHtml"));
        actions.push_back(ChoosePath(Path("sheet.html")));
        OpenSheet(std::move(actions));
        return FileText("sheet.html");
    }

    const fs::path data = folder / "data";
};

bool Has(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

/// By keys.
void ChooseIn(const QWidget& dialog, const QString& name, int index)
{
    auto& combo = FindIn<QComboBox>(dialog, name);
    combo.setFocus();
    QTest::keyClick(&combo, Qt::Key_Home);
    for (int i = 0; i < index; ++i)
        QTest::keyClick(&combo, Qt::Key_Down);
    EXPECT_EQ(combo.currentIndex(), index);
}

CModalAnswer::Action Choosing(const char* combo, int index)
{
    return [combo, index](QWidget& dialog) { ChooseIn(dialog, combo, index); };
}

/// The last entry, by keys: it asks for the file at once.
CModalAnswer::Action ChoosingAFile()
{
    return [](QWidget& dialog) {
        auto& combo = FindIn<QComboBox>(dialog, "comboSince");
        combo.setFocus();
        QTest::keyClick(&combo, Qt::Key_End);
    };
}

QStringList EntriesIn(const QWidget& dialog, const char* name)
{
    const auto& combo = FindIn<QComboBox>(dialog, name);
    QStringList entries;
    for (int i = 0; i < combo.count(); ++i)
        entries << combo.itemText(i);
    return entries;
}

QString NoticeIn(const QWidget& dialog)
{
    return FindIn<QLabel>(dialog, "labelNotice").text();
}

QString PagesIn(const QWidget& dialog)
{
    return FindIn<QLabel>(dialog, "labelPages").text();
}

} // namespace

TEST_F(RecipeSheets, OpenByTheirKey)
{
    EXPECT_TRUE(Action("actionRecipeSheet").isEnabled());
    EXPECT_EQ(OpenSheet({}), QStringList("Recipe sheet"));
}

TEST_F(RecipeSheets, DialogShowsThePages)
{
    OpenSheet({[](QWidget& dialog) {
        EXPECT_EQ(FindIn<QLineEdit>(dialog, "editTitle").text(), "Recipe sheet of oven.rcp");
        EXPECT_EQ(EntriesIn(dialog, "comboRows").value(0), "All 4 rows");
        EXPECT_EQ(FindIn<QComboBox>(dialog, "comboRows").currentIndex(), 0);
        EXPECT_EQ(EntriesIn(dialog, "comboSince"), (QStringList{"Nothing", "A file…"}));
        EXPECT_EQ(PagesIn(dialog), "1 page.");
        EXPECT_EQ(NoticeIn(dialog), "");
        const auto& preview = FindIn<QPrintPreviewWidget>(dialog, "preview");
        EXPECT_EQ(preview.pageCount(), 1);
        EXPECT_EQ(preview.accessibleName(), "Preview");
        EXPECT_EQ(dialog.focusWidget()->objectName(), "editTitle");
    }});
    EXPECT_EQ(Oven(), oven);
}

TEST_F(RecipeSheets, HtmlHasWhatTheTableShows)
{
    const std::string html = HtmlOf({});
    EXPECT_TRUE(Has(html, "<caption>Row 1 (RW0)</caption>"));
    const QStringList shown = Shown();
    ASSERT_EQ(shown.size(), 12);
    for (int cell = 0; cell < shown.size(); ++cell)
        EXPECT_TRUE(Has(html, " dir=\"auto\">" + shown[cell].toStdString() + "</td>")) << cell;
    EXPECT_TRUE(Has(html, RunProcess("/usr/bin/env", {"sha256sum", (folder / "oven.rcp").string()}).out.substr(0, 64)));
    EXPECT_EQ(Oven(), oven);
}

TEST_F(RecipeSheets, PdfHasItToo)
{
    QString told;
    OpenSheet({Choosing("comboPaper", 1), CModalAnswer::PressNamed("buttonPdf"), ChoosePath(Path("sheet.pdf")),
               [&](QWidget& dialog) { told = PagesIn(dialog); }});
    EXPECT_EQ(told, "1 page. Saved as sheet.pdf.");
    const std::string text = PdfText("sheet.pdf");
    EXPECT_TRUE(Has(text, "Recipe sheet of oven.rcp")) << text;
    EXPECT_TRUE(Has(text, "Row 4 (RW15)")) << text;
    EXPECT_TRUE(Has(text, "ABCD")) << text;
    EXPECT_TRUE(Has(RunProcess("/usr/bin/env", {"pdfinfo", (folder / "sheet.pdf").string()}).out, "(letter)"));
    RunProcess("/usr/bin/env", {"pdfdetach", "-savefile", "values.jsonl", "-o", (folder / "values").string(),
                                (folder / "sheet.pdf").string()});
    EXPECT_TRUE(
        Has(FileText("values"), "\"text\":\"1.50\",\"number\":1.05,\"words\":\"0069\",\"marks\":[\"rewritten\"]"));
}

TEST_F(RecipeSheets, TitleIsThatOfTheField)
{
    const std::string html = HtmlOf({[](QWidget& dialog) { TypeInto(dialog, "editTitle", "Oven <2>"); }});
    EXPECT_TRUE(Has(html, "<title>Oven &lt;2&gt;</title>"));
}

TEST_F(RecipeSheets, TellOfEditsThatAreNotSaved)
{
    PasteAt(2, kName, "xy");
    const std::string html = HtmlOf({});
    EXPECT_TRUE(Has(html, ", with 1 edit that is not saved</td>"));
    EXPECT_TRUE(Has(html, "<td dir=\"auto\">xy</td>\n<td dir=\"auto\">not saved</td>"));
    EXPECT_EQ(Oven(), oven);
    EXPECT_TRUE(IsModified());
}

TEST_F(RecipeSheets, TellThatAnotherProgramChangedTheFile)
{
    WriteAll(folder / "oven.rcp", OvenWith({{0, 106}}));
    EXPECT_TRUE(Has(HtmlOf({}), ", changed by another program since these values were read</td>"));
}

TEST_F(RecipeSheets, SelectedRows)
{
    ChooseCells(2, kBelt, 3, kSteam);
    const std::string html = HtmlOf({[](QWidget& dialog) {
        EXPECT_EQ(EntriesIn(dialog, "comboRows"), (QStringList{"All 4 rows", "The 2 rows with chosen cells"}));
        ChooseIn(dialog, "comboRows", 1);
    }});
    EXPECT_FALSE(Has(html, "<caption>Row 1 "));
    EXPECT_TRUE(Has(html, "<caption>Row 2 "));
    EXPECT_TRUE(Has(html, "<caption>Row 3 "));
    EXPECT_FALSE(Has(html, "<caption>Row 4 "));
    EXPECT_TRUE(Has(html, "<td dir=\"auto\">2-3 of 4</td>"));
}

TEST_F(RecipeSheets, ChangesSinceAVersion)
{
    PasteAt(2, kName, "xy");
    SaveEditedOnly();
    PasteAt(3, kName, "zz");
    const std::string html = HtmlOf({[](QWidget& dialog) {
        const QStringList entries = EntriesIn(dialog, "comboSince");
        ASSERT_EQ(entries.size(), 3);
        EXPECT_TRUE(entries[1].endsWith(", before Save edited only")) << entries[1].toStdString();
        ChooseIn(dialog, "comboSince", 1);
        EXPECT_EQ(NoticeIn(dialog), "");
    }});
    EXPECT_TRUE(Has(html, "Changes since the version of 20"));
    EXPECT_TRUE(Has(html, "<td>2</td>\n<th scope=\"row\" dir=\"auto\">Name</th>\n<td dir=\"auto\">EFGH</td>\n"
                          "<td dir=\"auto\">xy</td>"))
        << html;
    EXPECT_TRUE(Has(html, "<td dir=\"auto\">IJKL</td>\n<td dir=\"auto\">zz</td>"));
    EXPECT_EQ(frame->Document().Comparison(), nullptr);
}

TEST_F(RecipeSheets, ChangesSinceAFile)
{
    WriteAll(folder / "old.rcp", OvenWith({{10, 100}, {20, 7}}));
    std::string html = HtmlOf({ChoosingAFile(), ChoosePath(Path("old.rcp")), [](QWidget& dialog) {
                                   const auto& combo = FindIn<QComboBox>(dialog, "comboSince");
                                   EXPECT_EQ(combo.currentText(), "File old.rcp");
                                   EXPECT_EQ(EntriesIn(dialog, "comboSince").last(), "A file…");
                               }});
    EXPECT_TRUE(Has(html, "Changes since old.rcp"));
    EXPECT_TRUE(Has(html, "<td>3</td>\n<th scope=\"row\" dir=\"auto\">Belt</th>\n<td dir=\"auto\">1.00</td>\n"
                          "<td dir=\"auto\">2.00</td>"))
        << html;
    EXPECT_TRUE(Has(html, "Further: 1 change outside the table."));
    html = HtmlOf({ChoosingAFile(), CancelDialog(), [](QWidget& dialog) {
                       EXPECT_EQ(FindIn<QComboBox>(dialog, "comboSince").currentText(), "Nothing");
                   }});
    EXPECT_FALSE(Has(html, "Changes since"));
}

TEST_F(RecipeSheets, RecordsOfChangesAreThoseOfDiff)
{
    WriteAll(folder / "old.rcp", OvenWith({{10, 100}, {13, 0x4141}, {20, 7}}));
    OpenSheet({ChoosingAFile(), ChoosePath(Path("old.rcp")), CModalAnswer::PressNamed("buttonPdf"),
               ChoosePath(Path("sheet.pdf"))});
    const ProcessResult detach =
        RunProcess("/usr/bin/env", {"pdfdetach", "-savefile", "changes.jsonl", "-o", (folder / "changes").string(),
                                    (folder / "sheet.pdf").string()});
    EXPECT_EQ(detach.exitCode, 0) << detach.error;
    const fs::path patched = folder / "patched.rcp";
    fs::copy_file(folder / "old.rcp", patched);
    const ProcessResult patch =
        RunProcess(VANTOR_CLI_PROGRAM, {"patch", patched.string(), (folder / "changes").string()});
    EXPECT_EQ(patch.exitCode, 0) << patch.error;
    EXPECT_EQ(ReadAll(patched), oven);
}

TEST_F(RecipeSheets, OtherFileThatCannotBeReadIsTold)
{
    OpenSheet({ChoosingAFile(), ChoosePath(Path("gone.rcp")), [this](QWidget& dialog) {
                   EXPECT_EQ(NoticeIn(dialog), "Open file " + Path("gone.rcp") + " error!");
                   EXPECT_FALSE(FindIn<QPushButton>(dialog, "buttonPdf").isEnabled());
                   EXPECT_FALSE(FindIn<QPushButton>(dialog, "buttonPrint").isEnabled());
                   ChooseIn(dialog, "comboSince", 0);
                   EXPECT_EQ(NoticeIn(dialog), "");
                   EXPECT_TRUE(FindIn<QPushButton>(dialog, "buttonPdf").isEnabled());
               }});
}

TEST_F(RecipeSheets, FailureToWriteIsTold)
{
    OpenSheet({CModalAnswer::PressNamed("buttonPdf"), ChoosePath(Path("no/x.pdf")), [this](QWidget& dialog) {
                   EXPECT_EQ(NoticeIn(dialog),
                             "Can't save file " + Path("no/x.pdf") + ",please check file or your disk!");
               }});
}

TEST_F(RecipeSheets, MoreValuesThanASheetHasAreTold)
{
    TypeInto(*frame, "editReadCount", "70000");
    OpenByDialog("oven.rcp");
    OpenSheet({[](QWidget& dialog) {
        EXPECT_EQ(NoticeIn(dialog), "70000 rows of 3 values are too many for a sheet, which has 200000 values at most. "
                                    "Choose fewer rows!");
        EXPECT_FALSE(FindIn<QPushButton>(dialog, "buttonHtml").isEnabled());
    }});
}

TEST_F(RecipeSheets, PrintingAsksForThePrinter)
{
    bool wasAsked = false;
    OpenSheet({CModalAnswer::PressNamed("buttonPrint"),
               [&](QWidget& dialog) {
                   wasAsked = qobject_cast<QPrintDialog*>(&dialog) != nullptr;
                   QTest::keyClick(&dialog, Qt::Key_Escape);
               },
               [](QWidget& dialog) { EXPECT_EQ(PagesIn(dialog), "1 page."); }});
    EXPECT_TRUE(wasAsked);
}

TEST_F(RecipeSheets, PrintsWithTheDialogsPrinter) // which is a file, where there is no other
{
    QString told;
    OpenSheet({CModalAnswer::PressNamed("buttonPrint"),
               [this](QWidget& dialog) {
                   TypeInto(dialog, "filename", Path("printed.pdf"));
                   QTest::keyClick(&dialog, Qt::Key_Return);
               },
               [&](QWidget& dialog) { told = PagesIn(dialog); }});
    EXPECT_EQ(told, "1 page. Printed.");
    EXPECT_TRUE(Has(PdfText("printed.pdf"), "Row 4 (RW15)"));
}

TEST_F(RecipeSheets, NewDocumentHasOne)
{
    Trigger(*frame, "actionNew");
    const std::string html = HtmlOf({});
    EXPECT_TRUE(Has(html, "<td dir=\"auto\">not saved yet</td>")) << html.substr(0, 3000);
    EXPECT_TRUE(Has(html, "<td dir=\"auto\">none</td>"));
}

TEST_F(RecipeSheets, TheTitleIsOneLine)
{
    QGuiApplication::clipboard()->setText("Oven 3\nnight\tshift");
    const std::string html = HtmlOf({[](QWidget& dialog) {
        auto& title = FindIn<QLineEdit>(dialog, "editTitle");
        QTest::keyClick(&title, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(&title, Qt::Key_V, Qt::ControlModifier);
    }});
    EXPECT_TRUE(Has(html, "<title>Oven 3 night shift</title>")) << html;
}
