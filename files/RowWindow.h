#pragma once

#include "files/ByteBuffer.h"
#include "files/FileType.h"
#include "files/RecipeRows.h"
#include "files/StoredCells.h"
#include "files/WordBytes.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

/// Reads the bytes that some rows of a table are shown from.
class CRowImages {
public:
    /// `layout` is that of the whole table, of which only the geometry counts; it and `words` outlive the object.
    CRowImages(FileType type, const CRecipeRows& layout, CWordBytes& words);

    /// The bytes of `count` rows, which the table has, and those that the last values of a damaged format reach into;
    /// of a flat file none behind its end. Nothing after a failure. Throws std::bad_alloc.
    std::optional<CByteBuffer> Read(std::int32_t first, std::int32_t count);

    /// How many bytes of those rows the file holds.
    std::uint64_t HeldBytes(std::int32_t first, std::int32_t count) const;

    RecipeKind Kind() const { return m_isPaged ? RecipeKind::Paged : RecipeKind::Flat; }

private:
    std::uint64_t BytesFrom(std::uint64_t begin) const;

    const CRecipeRows& m_layout;
    CWordBytes& m_words;
    bool m_isPaged;
    std::size_t m_reach;
};

/// Any rows of a table in a file of words, read when they are asked for: each cell shows what it does in the table as a
/// whole (ReadRecipeOnly). Never writes. Throws std::bad_alloc.
class CRowWindow {
public:
    /// As CRowImages.
    CRowWindow(FileType type, const CRecipeRows& layout, CWordBytes& words)
        : m_type(type),
          m_layout(layout),
          m_images(type, layout, words)
    {
    }

    /// The window shows `count` rows, which the table has, from now on. False after a failure.
    bool Show(std::int32_t first, std::int32_t count);

    /// The rows, laid out from word address 0 on.
    CRecipeRows& Rows() { return m_rows; }

    /// What the file holds of them.
    CStoredCells Stored() const { return {m_rows, m_type, m_held}; }

    /// Their words, as far as the file goes.
    std::span<const std::byte> Words() const { return m_words; }

private:
    FileType m_type;
    const CRecipeRows& m_layout;
    CRowImages m_images;
    CRecipeRows m_rows;
    std::span<const std::byte> m_words; ///< kept alive by the rows
    std::uint64_t m_held = 0;
};
