#pragma once

#include "files/RecipeRows.h"
#include "text/Reporter.h"

#include <filesystem>
#include <vector>

// The data of the benchmarks, made on the spot: a million rows of 16 one-word columns, the largest recipe that people
// work with.

inline constexpr std::int32_t kBenchRows = 1000000;
inline constexpr std::int32_t kBenchColumns = 16;

/// One value of each type that the grid shows, with decimals where a type has them.
ColumnCoding BenchColumn(DataType type);

/// 16 columns: integers signed and unsigned, with decimals and without, hexadecimal values and short strings.
std::vector<ColumnCoding> BenchColumns();

/// Words that fill `rowCount` rows of BenchColumns.
CByteBuffer BenchImage(std::int32_t rowCount);

/// Rows over BenchImage.
CRecipeRows BenchRows(std::int32_t rowCount);

/// A file of one benchmark's own, removed when the object goes.
class CBenchFile {
public:
    CBenchFile();
    ~CBenchFile();
    CBenchFile(const CBenchFile&) = delete;
    CBenchFile& operator=(const CBenchFile&) = delete;

    const std::filesystem::path& Path() const { return m_path; }

private:
    std::filesystem::path m_path;
};
