#include "tests/document/DocumentFixture.h"

// What the items of the rows mean follows the library.

namespace {

ItemNotes WithUnit(std::u16string_view unit)
{
    ItemNotes notes;
    notes.unit = unit;
    return notes;
}

class NotesOfRows : public RecipeDocument {
protected:
    /// Of the columns, with "|" between them.
    std::u16string Units() const
    {
        std::u16string units;
        for (const ColumnCoding& column : document.Rows().Columns())
            units += column.notes->unit + u"|";
        return units;
    }

    void SetUnit(std::size_t item, std::u16string_view unit)
    {
        document.NoteFormatChange(EditKind::Notes, store.SetNotes(0, item, WithUnit(unit)));
    }
};

} // namespace

TEST_F(NotesOfRows, AreTakenWithoutReadingAgain)
{
    Type({0, 1}, u"12");
    SetUnit(1, u"pcs");
    EXPECT_EQ(Units(), u"||");
    const auto cells = document.CellsEdition();
    const auto stored = document.StoredEdition();
    const auto edition = document.NotesEdition();
    EXPECT_TRUE(document.TakeNotes());
    EXPECT_EQ(Units(), u"|pcs|");
    EXPECT_EQ(document.Format().items[1]->notes->unit, u"pcs");
    EXPECT_NE(document.NotesEdition(), edition);
    EXPECT_EQ(document.CellsEdition(), cells);
    EXPECT_EQ(document.StoredEdition(), stored);
    EXPECT_EQ(Text({0, 1}), u"12");
    EXPECT_FALSE(document.TakeNotes());
}

TEST_F(NotesOfRows, ThatAreSetAreAnEditOfTheirNameThatLeavesTheWorkUnmodified)
{
    SetUnit(1, u"pcs");
    EXPECT_EQ(document.UndoName(), u"Notes of No.");
    EXPECT_FALSE(document.IsModified());
    document.TakeNotes();
    document.Undo();
    EXPECT_EQ(Units(), u"||");
    EXPECT_EQ(document.RedoName(), u"Notes of No.");
    document.Redo();
    EXPECT_EQ(Units(), u"|pcs|");
    EXPECT_FALSE(document.IsModified());
}

TEST_F(NotesOfRows, AreThoseOfNowWhenAReadingIsUndone)
{
    document.TakeSettings({TwoColumns(), 0, 2});
    Read();
    store.SetNotes(0, 0, WithUnit(u"m"));
    document.Undo();
    EXPECT_EQ(document.Rows().RowCount(), 3);
    EXPECT_EQ(Units(), u"m||");
    store.SetNotes(0, 0, WithUnit(u"mm"));
    document.Redo();
    EXPECT_EQ(Units(), u"mm||");
}

TEST_F(NotesOfRows, AreThoseOfNowThoughTheSettingsAreOlder)
{
    store.SetNotes(0, 0, WithUnit(u"m"));
    document.TakeSettings({TwoColumns(), 0, 2});
    Read();
    EXPECT_EQ(Units(), u"m||");
    EXPECT_EQ(document.Settings().format.items[0]->notes->unit, u"m");
}

TEST_F(NotesOfRows, StayWhereTheLibraryHasTheFormatNoMore)
{
    SetUnit(0, u"m");
    document.TakeNotes();
    store.RenameFormat(0, u"Other");
    store.SetNotes(0, 0, WithUnit(u"mm"));
    EXPECT_FALSE(document.TakeNotes());
    EXPECT_EQ(Units(), u"m||");
}

TEST_F(NotesOfRows, OfAnItemThatIsAnotherByNowStayWhileTheOthersFollow)
{
    SetUnit(0, u"m");
    document.TakeNotes();
    DataItem other = MakeItem(u"Temp", DataType::Hex32, 2, 4);
    other.notes = CSharedNotes(WithUnit(u"mm"));
    store.ReplaceItem(0, 0, other);
    store.SetNotes(0, 1, WithUnit(u"pcs"));
    store.MoveItem(0, 1, 0);
    EXPECT_TRUE(document.TakeNotes());
    EXPECT_EQ(Units(), u"m|pcs|");
}

TEST_F(NotesOfRows, AreNotLookedForWithoutAStore)
{
    CRecipeDocument alone;
    EXPECT_FALSE(alone.TakeNotes());
}
