#pragma once

#include "changes/FileTables.h"
#include "files/FileType.h"
#include "tests/support/TestFiles.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

/// Two files of one type that mostly hold the same, and tables for them.
class CRandomPair {
public:
    CRandomPair(unsigned seed, FileType type);

    const std::filesystem::path& Before() const { return m_before; }
    const std::filesystem::path& After() const { return m_after; }
    FileType Type() const { return m_type; }
    const std::vector<FileTable>& Tables() const { return m_tables; }

    /// A number from 0 up to, but without, `count`.
    int Below(int count) { return std::uniform_int_distribution<int>(0, count - 1)(m_random); }

private:
    void MakeTables();
    void MakeWords();
    void WritePages(const std::filesystem::path& path, const Bytes& bytes, std::int64_t first) const;
    Bytes Changed(Bytes bytes);
    void MakeTexts();
    std::u16string RandomLine(int fields);
    std::byte RandomByte();

    FileType m_type;
    std::mt19937 m_random;
    CTempFolder m_folder;
    std::filesystem::path m_before;
    std::filesystem::path m_after;
    std::vector<FileTable> m_tables;
};

/// The bytes of a file; of a paged one those of its logical content, without the zeros at its end.
Bytes LogicalContent(FileType type, const std::filesystem::path& path);
