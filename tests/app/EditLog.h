#pragma once

#include "controls/GridCtrl.h"
#include "disk/Crc32.h"
#include "files/CellState.h"
#include "tests/support/TestFiles.h"

#include <QString>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

// What a program that edits in the window tells after each command, and the test that ends it compares with.

/// The state after a command was done.
struct EditLogLine {
    std::string command;
    std::string file;   ///< the checksum of its bytes; empty where there is none
    std::string edited; ///< cells with their states
    std::string shown;  ///< the texts of all cells

    friend bool operator==(const EditLogLine&, const EditLogLine&) = default;
};

inline std::string TextOf(const EditLogLine& line)
{
    return line.command + '|' + line.file + '|' + line.edited + '|' + line.shown;
}

/// None of the texts has a bar.
inline EditLogLine EditLogLineOf(std::string_view text)
{
    EditLogLine line;
    for (std::string* part : {&line.command, &line.file, &line.edited, &line.shown}) {
        const std::size_t end = std::min(text.find('|'), text.size());
        *part = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return line;
}

inline std::string ChecksumOfFile(const std::filesystem::path& path)
{
    if (path.empty() || !std::filesystem::exists(path))
        return {};
    char digits[9];
    std::snprintf(digits, sizeof digits, "%08X", Crc32(ReadAll(path)));
    return digits;
}

inline std::string EditedCellText(CellPlace place, std::u16string_view text)
{
    return std::to_string(place.row) + ',' + std::to_string(place.column) + '=' +
           QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size())).toStdString() + ' ';
}

inline std::string ShownTexts(CGridCtrl& grid)
{
    QString texts;
    for (int row = 1; row < grid.RowCount(); ++row)
        for (int column = 2; column < grid.ColumnCount(); ++column)
            texts += grid.GetItemText(row, column) + QLatin1Char('\t');
    return texts.toStdString();
}
