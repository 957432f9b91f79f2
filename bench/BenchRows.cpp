#include "bench/BenchRows.h"

#include <cstddef>
#include <random>
#include <string>
#include <system_error>

namespace fs = std::filesystem;

ColumnCoding BenchColumn(DataType type)
{
    constexpr std::int32_t kWords[] = {1, 2, 1, 2, 1, 2, 2, 4, 8};
    ColumnCoding column;
    column.title = TypeName(type);
    column.dataType = type;
    column.dataLength = kWords[static_cast<std::size_t>(type)];
    column.codeType = CodeType::Bin;
    column.integerDigits = 8;
    column.decimalDigits = 2;
    column.minValue = type == DataType::Signed32 ? -2147483647 - 1 : -32768;
    column.maxValue = column.dataLength == 1 ? 32767 : 2147483647;
    return column;
}

std::vector<ColumnCoding> BenchColumns()
{
    std::vector<ColumnCoding> columns;
    for (std::int32_t i = 0; i < kBenchColumns; ++i) {
        constexpr DataType kTypes[] = {DataType::Signed16, DataType::Unsigned16, DataType::Hex16, DataType::String};
        ColumnCoding column = BenchColumn(kTypes[i % 4]);
        column.dataLength = 1;
        column.decimalDigits = i < kBenchColumns / 2 ? 0 : 2;
        columns.push_back(column);
    }
    return columns;
}

CByteBuffer BenchImage(std::int32_t rowCount)
{
    CByteBuffer image(std::size_t{2} * kBenchColumns * static_cast<std::size_t>(rowCount));
    std::uint32_t state = 1;
    for (std::byte& b : image.Bytes()) { // letters and digits, so that the strings are strings
        state = state * 1664525 + 1013904223;
        b = static_cast<std::byte>('0' + (state >> 24) % 75);
    }
    return image;
}

CRecipeRows BenchRows(std::int32_t rowCount)
{
    CRecipeRows rows;
    rows.LayOut(BenchColumns(), 0, rowCount);
    rows.ShowWords(BenchImage(rowCount), RecipeKind::Flat);
    return rows;
}

CBenchFile::CBenchFile()
    : m_path(fs::temp_directory_path() / ("vantor-bench-" + std::to_string(std::random_device{}()) + ".rcp"))
{
}

CBenchFile::~CBenchFile()
{
    std::error_code ignored;
    fs::remove(m_path, ignored);
}
