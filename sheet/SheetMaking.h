#pragma once

#include "changes/ChangeRecord.h"
#include "changes/ChangeTaker.h"
#include "files/Outcome.h"
#include "files/Progress.h"
#include "files/RecipeRows.h"
#include "files/StoredCells.h"
#include "sheet/RecipeSheet.h"
#include "sheet/SheetFile.h"
#include "text/UtcTime.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// More values are no sheet that anybody reads.
inline constexpr std::uint64_t kMostSheetValues = 200'000;

/// What is told where more are wanted: so many rows, of which each has so many values.
std::u16string TooManyValuesText(std::uint64_t rows, std::uint64_t columns);

/// The rows that a sheet is made of. All of it outlives the making.
struct SheetSubject {
    const CRecipeRows& rows;
    const CStoredCells& stored; ///< what the file holds of them
    std::filesystem::path path; ///< as the user named it; empty for a recipe without a file
    std::u16string format;      ///< that laid out the rows
    FileContent content;        ///< of the file; unknown where there is none
    bool isOtherNow = false;    ///< another program changed the file since the rows were read
};

/// How the sheet is to be.
struct SheetWishes {
    std::u16string title;                          ///< empty for the usual one
    std::optional<std::vector<std::int32_t>> rows; ///< counted from 0, ascending; nothing for all
    std::u16string user;
    UtcTime time;
};

/// Makes a sheet, piece by piece.
class CSheetMaker {
public:
    CSheetMaker(const SheetSubject& subject, const SheetWishes& wishes) : m_subject(subject), m_wishes(wishes) {}

    /// Fills `sheet`, but for its changes; `records` get a line a row (ValueLines.h). Of more than kMostSheetValues
    /// nothing is made: the caller has told. GivenUp by the user's wish. Throws std::bad_alloc.
    Outcome Make(RecipeSheet& sheet, std::string& records, CProgress& progress) const;

    /// How many rows the sheet has.
    std::uint64_t RowCount() const;

private:
    void MakeHead(RecipeSheet& sheet) const;
    std::u16string ShaText() const;

    const SheetSubject& m_subject;
    const SheetWishes& m_wishes;
};

/// Takes the records of changes for a sheet: lists those of its rows, counts all others, and keeps all of them as JSON
/// Lines, as `vantor-cli diff --json` prints them.
class CSheetChanges final : public CChangeTaker {
public:
    /// `rows` as in the wishes; they outlive it.
    CSheetChanges(std::u16string_view since, const std::optional<std::vector<std::int32_t>>& rows);

    /// Once, before the records.
    void TakeHeader(const ChangeHeader& header);
    bool Take(const ChangeRecord& record) override;

    SheetChanges Changes() const;
    const std::string& Records() const { return m_records; }

private:
    bool IsListed(const ChangeRecord& record) const;

    SheetChanges m_changes;
    const std::optional<std::vector<std::int32_t>>& m_rows;
    std::uint64_t m_notListed = 0;
    std::uint64_t m_inOtherRows = 0;
    std::uint64_t m_outside = 0;
    std::string m_records;
};

/// The user's name, as the environment has it; empty where it has none.
std::u16string UserName();

/// The usual title of the sheet of a file of that name, which may be empty.
std::u16string UsualSheetTitle(const std::filesystem::path& path);
