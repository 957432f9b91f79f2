#pragma once

#include "files/CellState.h"
#include "files/CsvCutter.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// A cell of a text table and the text that reading is to show in it.
struct CsvEdit {
    CellPlace place;
    std::u16string text;
};

/// Bytes of a file that others take the place of.
struct CsvSplice {
    std::uint64_t offset = 0;
    std::uint64_t length = 0;
    std::string bytes;
};

/// Finds the bytes of a text table that have to change.
class CCsvEditor : public CCsvRawTaker {
public:
    /// All fields were taken; `cutter` has cut them, of `size` bytes in all.
    virtual void Finish(const CCsvCutter& cutter, std::uint64_t size) = 0;

    /// In the order of their offsets, none within another.
    virtual const std::vector<CsvSplice>& Splices() const = 0;

    /// Why it cannot be done: a part of a sentence without a full stop; empty when it can.
    virtual const std::u16string& Refusal() const = 0;
};

/// Finds the bytes of a text table that have to change so that reading shows some cells with other texts and all
/// others as before. A field keeps its kind: with quotes or bare. Lines that are too short and lines that are missing
/// get fields with "0" in quotes (bare ones in ANSI text) before the cell. A cell that shows its text already changes
/// nothing.
class CCsvSplicer final : public CCsvEditor {
public:
    /// The places of `edits`, which outlive the splicer, are in ascending order, none twice.
    CCsvSplicer(const CsvTextForm& form, std::span<const CsvEdit> edits);

    /// The next field of the table.
    void Take(const CsvRawField& field) override;

    void Finish(const CCsvCutter& cutter, std::uint64_t size) override;
    const std::vector<CsvSplice>& Splices() const override { return m_splices; }
    const std::u16string& Refusal() const override { return m_refusal; }

private:
    using Edits = std::span<const CsvEdit>;

    void ReplaceField(const CsvRawField& field, std::u16string_view text);
    void EndLine(const CsvRawField& field);
    Edits TakeEditsOfRow(std::uint64_t row);
    std::u16string Tail(CellPlace place, std::u16string_view shown, Edits edits);
    void Refuse(CellPlace place);
    void RefuseToLengthen(std::int32_t row);
    void Splice(std::uint64_t offset, std::uint64_t length, std::u16string_view text);

    const CsvTextForm& m_form;
    Edits m_edits; ///< those to come
    std::vector<CsvSplice> m_splices;
    std::u16string m_refusal;
};

/// Hands on the bytes of a file with splices in it. The file's bytes come piece by piece.
class CCsvSplicedBytes {
public:
    explicit CCsvSplicedBytes(std::span<const CsvSplice> splices) : m_splices(splices) {}

    /// Hands on what becomes of the next bytes of the file.
    template <class Sink>
    void Append(std::span<const std::byte> piece, Sink sink)
    {
        while (!piece.empty()) {
            PutDueSplices(sink);
            const bool isLeftOut = m_leftOut > 0;
            const auto count = std::min<std::uint64_t>(piece.size(), isLeftOut ? m_leftOut : BytesToNextSplice());
            if (!isLeftOut)
                sink(piece.first(static_cast<std::size_t>(count)));
            m_leftOut -= isLeftOut ? count : 0;
            m_position += count;
            piece = piece.subspan(static_cast<std::size_t>(count));
        }
    }

    /// The file has no further bytes.
    template <class Sink>
    void Finish(Sink sink)
    {
        PutDueSplices(sink);
    }

private:
    template <class Sink>
    void PutDueSplices(Sink& sink)
    {
        for (; m_leftOut == 0 && !m_splices.empty() && m_splices.front().offset == m_position;
             m_splices = m_splices.subspan(1)) {
            sink(std::as_bytes(std::span(m_splices.front().bytes)));
            m_leftOut = m_splices.front().length;
        }
    }

    std::uint64_t BytesToNextSplice() const
    {
        return m_splices.empty() ? UINT64_MAX : m_splices.front().offset - m_position;
    }

    std::span<const CsvSplice> m_splices; ///< those to come
    std::uint64_t m_position = 0;
    std::uint64_t m_leftOut = 0; ///< so many bytes are still to be left out
};
