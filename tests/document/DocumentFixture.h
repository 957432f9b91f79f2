#pragma once

#include "document/RecipeDocument.h"
#include "tests/support/Formats.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <memory>

inline DataFormat TwoColumns()
{
    return MakeFormat(u"Two",
                      {MakeItem(u"Temp", DataType::Float, 2, 4, 1), MakeItem(u"No.", DataType::Signed16, 1, 4)});
}

/// A document of a file with three rows: 235.04 and 7, 1.0 and 8, 0.0 and 9.
class RecipeDocument : public testing::Test {
protected:
    RecipeDocument()
    {
        store.AppendFormat(TwoColumns());
        store.RemoveFormat(0); // the built-in one
        document.UseFormatsOf(store);
        WriteAll(path, words);
        Open();
    }

    void Open()
    {
        document.StartOpen(path, FileType::Rcp);
        document.TakeSettings({TwoColumns(), 0, 3});
        EXPECT_EQ(Read(), CRecipeDocument::Reading::Done);
    }

    CRecipeDocument::Reading Read() { return document.Read(FileType::Rcp, reporter, progress); }

    bool Save()
    {
        if (!document.Write(document.Type(), document.Path(), reporter, progress).isSaved)
            return false;
        document.MarkSaved();
        return true;
    }

    void Type(CellPlace place, const char16_t* text)
    {
        EXPECT_EQ(document.SetTexts(EditKind::Typing, {{place, text}}), EditOutcome::Made);
    }

    std::u16string Text(CellPlace place) const { return document.Rows().Text(place.row, place.column); }

    FormatChange RenameTo(std::u16string_view name)
    {
        const DataFormat& before = *store.Library().formats[0];
        DataFormat after = before;
        SetText(after.name, name);
        const FormatChange change{0, std::make_shared<DataFormat>(before), std::make_shared<DataFormat>(after)};
        store.Apply(change);
        return change;
    }

    std::u16string FormatName() const { return std::u16string(TextOf(store.Library().formats[0]->name)); }

    CTempFolder folder;
    std::filesystem::path path = folder / "oven.rcp";
    Bytes words = WordBytes({0x0A3D, 0x436B, 7, 0x0000, 0x3F80, 8, 0, 0, 9});
    CRecordingReporter reporter;
    CNoProgress progress;
    CFormatStore store{folder / "RecipeFile.Dat"};
    CRecipeDocument document;
};
