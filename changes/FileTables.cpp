#include "changes/FileTables.h"

#include "model/Address.h"
#include "model/FixedText.h"

#include <algorithm>

FileTable MakeTable(const DataFormat& format, std::int32_t start, std::int32_t rowCount)
{
    FileTable table{std::u16string(TextOf(format.name)), {}};
    if (format.totalLength() != 0)
        table.layout.LayOut(LayOutColumns(format), start, rowCount);
    return table;
}

std::int64_t WholeRows(const DataFormat& format, std::int32_t start, std::uint64_t bytes)
{
    const std::uint64_t begin = FirstByteOf(WordAddress(start)).number;
    const std::int64_t rowWords = format.totalLength();
    if (rowWords <= 0 || bytes <= begin)
        return 0;
    return static_cast<std::int64_t>((bytes - begin) / (2 * static_cast<std::uint64_t>(rowWords)));
}

std::vector<ChangedTable> NamesOf(std::span<const FileTable> tables)
{
    std::vector<ChangedTable> names;
    for (const FileTable& table : tables)
        names.push_back({table.format, WordAddress(table.layout.StartAddress()), table.layout.RowCount()});
    return names;
}

std::vector<FileZone> ZonesOf(std::span<const FileTable> tables, std::uint64_t bytes)
{
    std::vector<FileZone> ofTables;
    for (std::size_t i = 0; i < tables.size(); ++i) {
        const std::uint64_t begin = tables[i].layout.FirstByte().number;
        const std::uint64_t length = tables[i].layout.StretchBytes();
        if (length > 0 && begin < bytes)
            ofTables.push_back({i, begin, begin + length});
    }
    std::stable_sort(ofTables.begin(), ofTables.end(),
                     [](const FileZone& a, const FileZone& b) { return a.begin < b.begin; });

    std::vector<FileZone> zones;
    std::uint64_t covered = 0;
    for (const FileZone& zone : ofTables) {
        if (zone.begin > covered)
            zones.push_back({std::nullopt, covered, zone.begin});
        zones.push_back(zone);
        covered = std::max(covered, zone.end);
    }
    if (covered < bytes)
        zones.push_back({std::nullopt, covered, bytes});
    return zones;
}
