#include "tests/files/FileSizeLimit.h"
#include "tests/support/ModalAnswer.h"
#include "tests/views/FormatPaneFixture.h"

#include <QStatusTipEvent>

namespace fs = std::filesystem;

namespace {

const DataFormat kMixer = MakeFormat(u"Mixer", {MakeItem(u"Speed", DataType::Unsigned32, 2, 10)});

/// Keeps what the pane has the status bar say.
class CStatusTips final : public QObject {
public:
    explicit CStatusTips(QObject& source) { source.installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::StatusTip)
            texts.push_back(static_cast<QStatusTipEvent*>(event)->tip());
        return false;
    }

    std::vector<QString> texts;
};

struct LibraryLife : FormatPane {
    /// A library of two formats, the second one cut short.
    void StoreDamaged()
    {
        Store({kMixer, kMixer});
        damaged = ReadAll(LibraryPath());
        damaged.resize(damaged.size() - 10);
        WriteAll(LibraryPath(), damaged);
    }

    fs::path Copy(const char* ending = ".bak") const { return LibraryPath() += ending; }

    Bytes damaged;
};

} // namespace

TEST_F(LibraryLife, ADamagedFileIsCopiedBeforeItIsFirstSaved)
{
    StoreDamaged();
    Start();
    EXPECT_EQ(Formats().count(), 1);
    EXPECT_FALSE(fs::exists(Copy())); // nothing is lost yet
    Press("buttonUseFormat");
    EXPECT_EQ(ReadAll(Copy()), damaged);
    ExpectStored({kMixer});
    Press("buttonUseFormat");
    EXPECT_FALSE(fs::exists(Copy(".bak2"))); // what is saved now is understood
    EXPECT_EQ(frame.reporter.shown, Shown{});
}

TEST_F(LibraryLife, ADamagedFileIsCopiedWhenOnlyTheEndSavesIt)
{
    StoreDamaged();
    Start();
    SetAutoUse(false);
    Press("buttonDeleteFormat");
    view.reset();
    EXPECT_EQ(ReadAll(Copy()), damaged);
    ExpectStored({});
}

TEST_F(LibraryLife, AnotherCopyStaysAndTheNewOneIsNumbered)
{
    StoreDamaged();
    WriteAll(Copy(), BytesOf({1, 2, 3}));
    Start();
    Press("buttonUseFormat");
    EXPECT_EQ(ReadAll(Copy()), BytesOf({1, 2, 3}));
    EXPECT_EQ(ReadAll(Copy(".bak2")), damaged);
}

TEST_F(LibraryLife, AFileOfALaterVersionIsCopied)
{
    Store({kMixer});
    Bytes later = ReadAll(LibraryPath());
    later[24] = std::byte{'5'}; // "RecipeFile2.5"
    WriteAll(LibraryPath(), later);
    Start();
    EXPECT_EQ(frame.m_nLibraryFileVersion, 25);
    Press("buttonUseFormat");
    EXPECT_EQ(ReadAll(Copy()), later);
}

TEST_F(LibraryLife, AFileThatIsUnderstoodIsNotCopied)
{
    Store({kMixer});
    Start();
    Press("buttonUseFormat");
    Press("buttonDeleteFormat");
    EXPECT_FALSE(fs::exists(Copy()));
}

TEST_F(LibraryLife, ANewLibraryIsNotCopied)
{
    Start();
    Press("buttonUseFormat");
    EXPECT_EQ(fs::file_size(LibraryPath()), 660u);
    EXPECT_FALSE(fs::exists(Copy()));
}

TEST_F(LibraryLife, ADamagedFileThatCannotBeCopiedIsLeftAlone)
{
    StoreDamaged();
    damaged.resize(damaged.size() + 50'000); // the copy is what does not fit on the disk
    WriteAll(LibraryPath(), damaged);
    Start();
    const CStatusTips tips(*view);
    {
        const CFileSizeLimit limit(10'000);
        Press("buttonUseFormat");
    }
    EXPECT_EQ(ReadAll(LibraryPath()), damaged);
    EXPECT_FALSE(fs::exists(Copy()));
    EXPECT_EQ(tips.texts.size(), 1U);
    Press("buttonUseFormat"); // with room again
    EXPECT_EQ(ReadAll(Copy()), damaged);
    ExpectStored({kMixer});
}

TEST_F(LibraryLife, AFailedSaveIsToldOnceInTheStatusBarAndByNoBox)
{
    Store({kMixer});
    Start();
    frame.m_bFileOpen = true;
    const CStatusTips tips(*view);
    fs::remove(LibraryPath());
    fs::create_directory(LibraryPath());
    Press("buttonUseFormat");
    Press("buttonUseFormat");
    const QString text = "The data formats could not be saved in " + QString::fromStdString(LibraryPath().string());
    EXPECT_EQ(tips.texts, std::vector<QString>{text});
    EXPECT_EQ(frame.calls, (Calls{"show 0", "show 0"})); // the data is read all the same
    EXPECT_EQ(frame.reporter.shown, Shown{});

    fs::remove(LibraryPath());
    Press("buttonUseFormat");
    fs::remove(LibraryPath());
    fs::create_directory(LibraryPath());
    Press("buttonUseFormat"); // a new failure
    EXPECT_EQ(tips.texts, (std::vector<QString>{text, text}));
}

TEST_F(LibraryLife, ANegativeStartAddressIsStoredAndTheDataIsShownAsBefore)
{
    Store({kMixer}, 3, 5);
    Start();
    frame.m_bFileOpen = true;
    Press("buttonUseFormat");
    Type("editStartAddress", "-1");
    List().setCurrentItem(List().topLevelItem(0));
    PressKey(Qt::Key_Delete); // a command uses the settings, too
    EXPECT_EQ(frame.reporter.shown, Shown{u"The Address for reading data is error , it can' be less than 0!"});
    EXPECT_EQ(Stored().startAddress, -1);
    EXPECT_EQ(frame.m_nStartAddress, 3);
    EXPECT_EQ(frame.calls, (Calls{"show 0", "show 0"}));
}

// The places in the file are those of a 72-byte header, a format's 264 bytes before its items, and 320 bytes an item.
TEST_F(LibraryLife, AnAddedItemIsOnDiskFieldByField)
{
    Store({kMixer}, 7, 9);
    Start();
    RightClickRow(0);
    const CModalAnswer answer({[](QWidget& dialog) {
        TypeInto(dialog, "editDescription", "Zone");
        auto& array = FindIn<QAbstractButton>(dialog, "radioArray");
        QTest::mouseClick(&array, Qt::LeftButton, {}, QPoint(8, array.height() / 2));
        TypeInto(dialog, "editArrayLength", "6");
        auto& bcd = FindIn<QAbstractButton>(dialog, "radioBcd");
        QTest::mouseClick(&bcd, Qt::LeftButton, {}, QPoint(8, bcd.height() / 2));
        QTest::keyClick(&FindIn<QComboBox>(dialog, "comboType"), Qt::Key_Down);    // 32 bit signed number
        QTest::keyClick(&FindIn<QComboBox>(dialog, "comboDecimal"), Qt::Key_Down); // 1
        QTest::keyClick(&FindIn<QComboBox>(dialog, "comboInteger"), Qt::Key_Down); // 2
        ClickOn(dialog, "buttonOk");
    }});
    ChooseInMenu("actionAddItem");
    const Bytes stored = ReadAll(LibraryPath());
    ASSERT_EQ(stored.size(), 72u + 264u + 2 * 320u + 4u);
    EXPECT_EQ(LoadLE32(stored, 32), 7);       // start address
    EXPECT_EQ(LoadLE32(stored, 36), 9);       // rows
    EXPECT_EQ(LoadLE32(stored, 72), 100);     // start mark
    EXPECT_EQ(LoadLE32(stored, 72 + 260), 2); // items
    const std::size_t item = 72 + 264 + 320;
    const std::pair<std::size_t, std::int32_t> fields[] = {{0, 0},           // reserved
                                                           {4, 2},           // words
                                                           {8, 1},           // type
                                                           {12, 2},          // integer digits
                                                           {16, 1},          // decimal digits
                                                           {20, 1},          // BCD
                                                           {24, 0x006F005A}, // "Zo"
                                                           {28, 0x0065006E}, // "ne"
                                                           {32, 0},          // the end of the text
                                                           {280, 1},         // an array
                                                           {284, -1},        // reserved
                                                           {288, 0},         // reserved
                                                           {292, 6},         // array length
                                                           {296, -99},       // lower bound
                                                           {300, -1},        // its high half
                                                           {304, 999},       // upper bound
                                                           {308, 0},         // its high half
                                                           {312, 0},         // unicode
                                                           {316, 0},         // padding
                                                           {320, 200}};      // end mark
    for (const auto& [offset, value] : fields)
        EXPECT_EQ(LoadLE32(stored, item + offset), value) << offset;
}
