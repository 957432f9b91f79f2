#include "tests/files/FileSizeLimit.h"
#include "tests/files/OrdinaryUser.h"
#include "tests/support/ModalAnswer.h"
#include "tests/views/FormatPaneFixture.h"

#include <QLineEdit>

namespace fs = std::filesystem;

namespace {

const QString kNotSaved = QStringLiteral("The data formats could not be saved in ");
const DataFormat kMixer = MakeFormat(u"Mixer", {MakeItem(u"Speed", DataType::Unsigned32, 2, 10)});

struct LibraryLife : FormatPane {
    /// A library of two formats, the second one cut short.
    void StoreDamaged()
    {
        Store({kMixer, kMixer});
        damaged = ReadAll(LibraryPath());
        damaged.resize(damaged.size() - 10);
        WriteAll(LibraryPath(), damaged);
    }

    /// What the strip says of the library.
    QString Told() const
    {
        const auto said = frame.strip.find(StripSubject::LibraryNotKept);
        return said == frame.strip.end() ? QString() : said->second.text;
    }

    QString PathText() const { return QString::fromStdString(LibraryPath().string()); }

    fs::path Copy(const char* ending = ".bak") const { return LibraryPath() += ending; }

    ~LibraryLife() override
    {
        view.reset();
        fs::permissions(folder.Path(), fs::perms::all);
    }

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
    EXPECT_EQ(view->Store().Library().fileVersion, 25);
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
    {
        const CFileSizeLimit limit(10'000);
        Press("buttonUseFormat");
    }
    EXPECT_EQ(ReadAll(LibraryPath()), damaged);
    EXPECT_FALSE(fs::exists(Copy()));
    EXPECT_EQ(frame.libraryTroubles, std::vector<QString>{kNotSaved + PathText()});
    Press("buttonUseFormat"); // with room again
    EXPECT_EQ(frame.libraryTroubles.back(), "");
    EXPECT_EQ(ReadAll(Copy()), damaged);
    ExpectStored({kMixer});
}

TEST_F(LibraryLife, AFailedSaveIsToldInTheStatusBarAndByNoBoxUntilOneSucceeds)
{
    Store({kMixer});
    Start();
    frame.document.StartNew();
    fs::remove(LibraryPath());
    fs::create_directory(LibraryPath());
    Press("buttonUseFormat");
    EXPECT_EQ(frame.libraryTroubles, std::vector<QString>{kNotSaved + PathText()});
    Press("buttonUseFormat");
    EXPECT_EQ(frame.libraryTroubles.back(), kNotSaved + PathText());
    EXPECT_EQ(frame.calls, (Calls{"show 0", "show 0"})); // the data is read all the same
    EXPECT_EQ(frame.reporter.shown, Shown{});

    fs::remove(LibraryPath());
    Press("buttonUseFormat");
    EXPECT_EQ(frame.libraryTroubles.back(), "");
}

TEST_F(LibraryLife, ADamagedFileIsToldInTheStrip)
{
    StoreDamaged();
    Start();
    EXPECT_EQ(Told(),
              "The data formats in " + PathText() +
                  " are damaged: what stands after the damage is not shown. The file is copied before it is saved.");
}

TEST_F(LibraryLife, AFileThatIsUnderstoodOrNewIsNotTold)
{
    Start();
    EXPECT_EQ(Told(), "");
    view.reset();
    Store({kMixer});
    Start();
    EXPECT_EQ(Told(), "");
}

TEST_F(LibraryLife, AFileThatMayOnlyBeReadIsShown)
{
    Store({kMixer}, 7, 9);
    const Bytes before = ReadAll(LibraryPath());
    MakeReadOnly(LibraryPath());
    MakeReadOnly(folder.Path());
    {
        const COrdinaryUser user;
        Start();
        EXPECT_EQ(Formats().currentText(), "Mixer");
        EXPECT_EQ(Find<QLineEdit>("editStartAddress").text(), "7");
        EXPECT_EQ(Told(), PathText() + " may not be written: changes to the data formats are not kept.");
        Press("buttonUseFormat"); // nothing changed
        EXPECT_EQ(frame.libraryTroubles, std::vector<QString>{""});
        EXPECT_NE(Told(), "");
        Type("editReadCount", "3");
        Press("buttonUseFormat");
        EXPECT_EQ(frame.libraryTroubles.back(), kNotSaved + PathText());
    }
    EXPECT_EQ(ReadAll(LibraryPath()), before);
    EXPECT_FALSE(fs::exists(Copy()));

    fs::permissions(LibraryPath(), fs::perms::all);
    fs::permissions(folder.Path(), fs::perms::all);
    Press("buttonUseFormat");
    EXPECT_EQ(Stored().rowCount, 3);
    EXPECT_EQ(Told(), "");
}

TEST_F(LibraryLife, ADamagedFileThatMayOnlyBeReadIsBoth)
{
    StoreDamaged();
    MakeReadOnly(LibraryPath());
    MakeReadOnly(folder.Path());
    const COrdinaryUser user;
    Start();
    EXPECT_EQ(Formats().currentText(), "Mixer");
    EXPECT_EQ(Told(), "The data formats in " + PathText() +
                          " are damaged: what stands after the damage is not shown. " + PathText() +
                          " may not be written: changes to the data formats are not kept.");
}

TEST_F(LibraryLife, AFileThatCannotBeMadeIsTold)
{
    MakeReadOnly(folder.Path());
    const COrdinaryUser user;
    Start();
    EXPECT_EQ(Formats().currentText(), "TestDataFormat");
    EXPECT_EQ(Told(), PathText() + " cannot be made: changes to the data formats are not kept.");
}

TEST_F(LibraryLife, AFileThatCannotBeReadIsTold)
{
    fs::create_directory(LibraryPath());
    Start();
    EXPECT_EQ(Formats().currentText(), "TestDataFormat");
    EXPECT_EQ(Told(), "The data formats in " + PathText() + " cannot be read. " + PathText() +
                          " may not be written: changes to the data formats are not kept.");
}

TEST_F(LibraryLife, AFileThatCouldNotBeReadOrMadeIsToldUntilASaveMakesIt)
{
    fs::create_directory(LibraryPath());
    Start();
    Press("buttonUseFormat");
    EXPECT_NE(Told(), "");
    fs::remove(LibraryPath());
    Press("buttonUseFormat");
    EXPECT_EQ(Stored().formats.size(), 1u);
    EXPECT_EQ(Told(), "");
}

TEST_F(LibraryLife, WhatAKilledProgramLeftOfASaveIsRemovedAtTheStart)
{
    Store({kMixer});
    WriteAll(folder / "vantor-123.new", BytesOf({1, 2, 3}));
    Start();
    EXPECT_FALSE(fs::exists(folder / "vantor-123.new"));
    Press("buttonUseFormat");
    ExpectStored({kMixer});
}

TEST_F(LibraryLife, ANegativeStartAddressIsStoredAndTheDataIsShownAsBefore)
{
    Store({kMixer}, 3, 5);
    Start();
    frame.document.StartNew();
    Press("buttonUseFormat");
    Type("editStartAddress", "-1");
    List().setCurrentItem(List().topLevelItem(0));
    PressKey(Qt::Key_Delete); // a command uses the settings, too
    EXPECT_EQ(frame.reporter.shown, Shown{u"The Address for reading data is error , it can' be less than 0!"});
    EXPECT_EQ(Stored().startAddress, -1);
    EXPECT_EQ(frame.Document().Settings().startAddress, 3);
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
