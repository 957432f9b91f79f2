#include "tests/app/NotesFixture.h"

#include "library/FormatLibrary.h"
#include "library/NotesFile.h"

NotesFixture::NotesFixture(int rows)
{
    FormatLibrary library;
    library.formats.push_back(std::make_unique<DataFormat>(
        MakeFormat(u"Oven", {ArrayOf(MakeItem(u"Zone °C", DataType::Unsigned16, 1, 3, 1), 2),
                             MakeItem(u"Mode", DataType::Hex16, 1, 4), MakeItem(u"Count", DataType::Signed16, 1, 5),
                             MakeItem(u"Speed", DataType::Unsigned16, 1, 5)})));
    library.rowCount = rows;
    library.save(folder / "RecipeFile.Dat");

    ItemNotes zone;
    zone.unit = u"°C";
    zone.lowest = CDecimal(150);
    zone.highest = CDecimal(280);
    zone.comment = u"Never < 150\nwhile the belt runs";
    zone.texts = {{u"0", u"off"}};
    ItemNotes mode;
    mode.bits = {u"Heater", u"", u"", u"Door open"};
    ItemNotes speed;
    speed.highest = CDecimal(100);
    EXPECT_TRUE(WriteNotes({{{.format = u"Oven", .item = u"Zone °C"}, zone},
                            {{.format = u"Oven", .item = u"Mode"}, mode},
                            {{.format = u"Oven", .item = u"Speed"}, speed}},
                           NotesPathOf(folder / "RecipeFile.Dat")));
}

void NotesFixture::SetUp()
{
    EditFixture::SetUp();
    // clang-format off
    WriteAll(folder / "notes.rcp", WordBytes({2400, 2500, 0x0009, 1, 10,
                                              2400,    5, 0x0002, 2, 20,
                                                 0, 2500, 0x0001, 3, 30,
                                              1500, 2800, 0x8000, 4, 40}));
    // clang-format on
    Open("notes.rcp");
    WaitForPlan();
    Grid().setFocus();
}
