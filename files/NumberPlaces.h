#pragma once

#include "disk/File.h"
#include "files/CsvCutter.h"
#include "files/FileType.h"
#include "files/Outcome.h"
#include "files/WordBytes.h"
#include "model/NumberForms.h"
#include "text/Decimal.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Finds the places in the words of a file, of whatever tables, where a number stands in one of its forms. Reads piece
/// by piece, and never writes.
class CNumberPlaces {
public:
    /// Takes the address of the first word of a place, and the form that stands there.
    using Taker = std::function<void(std::uint64_t word, const NumberForm& form)>;

    /// In the file at `path`, of a type that has words.
    CNumberPlaces(FileType type, const std::filesystem::path& path, std::vector<NumberForm> forms);

    /// Looks at the next piece. False after the last one, and after a failure.
    bool Continue(const Taker& take);

    const std::vector<NumberForm>& Forms() const { return m_forms; }
    bool HasFailed() const { return m_hasFailed; }
    std::uint64_t Position() const { return m_position; } ///< bytes looked at
    std::uint64_t Size() const { return m_words.Count(); }

private:
    void LookAt(std::uint64_t word, std::span<const std::byte> bytes, const Taker& take) const;

    CFileWords m_words;
    std::vector<NumberForm> m_forms;
    std::vector<bool> m_begins; ///< by the first word of a form
    std::vector<std::byte> m_piece;
    std::uint64_t m_position = 0;
    bool m_hasFailed = false;
};

/// Finds the fields of a table of texts that are a number.
class CNumberFields final : private CCsvRawTaker {
public:
    /// Takes line and field, counted from 1, and what reading shows for the field.
    using Taker = std::function<void(std::uint64_t line, std::size_t field, std::u16string_view text)>;

    CNumberFields(const std::filesystem::path& path, CDecimal number);

    /// Looks at the next piece. False after the last one, and after a failure.
    bool Continue(const Taker& take);

    bool HasFailed() const { return !m_cutter.IsDone() && m_hasEnded; }
    std::uint64_t Position() const { return m_cutter.Position(); }
    std::uint64_t Size() const { return m_cutter.Size(); }

private:
    void Take(const CsvRawField& field) override;

    CFile m_file;
    CCsvFileCutter m_cutter;
    CDecimal m_number;
    const Taker* m_take = nullptr;
    bool m_hasEnded = false;
};
