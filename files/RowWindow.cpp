#include "files/RowWindow.h"

#include <algorithm>
#include <utility>

namespace {

/// The most bytes that the text of a cell is made of.
std::size_t ReachOf(const CRecipeRows& layout)
{
    std::size_t reach = sizeof(double); // whatever length the item states
    for (const ColumnCoding& column : layout.Columns())
        reach = std::max(reach, 2 * static_cast<std::size_t>(std::max(column.dataLength, 0)));
    return reach;
}

} // namespace

CRowImages::CRowImages(FileType type, const CRecipeRows& layout, CWordBytes& words)
    : m_layout(layout),
      m_words(words),
      m_isPaged(IsPaged(type)),
      m_reach(ReachOf(layout))
{
}

std::optional<CByteBuffer> CRowImages::Read(std::int32_t first, std::int32_t count)
{
    const std::uint64_t begin = m_layout.BytesBefore({first, 0});
    const std::uint64_t length = m_layout.BytesBefore({first + count, 0}) - begin;

    // A damaged item may be shorter than its value, which goes on in the next row then.
    std::uint64_t shown = std::min(length + m_reach, m_layout.StretchBytes() - begin);
    if (!m_isPaged)
        shown = std::min(shown, BytesFrom(begin));
    CByteBuffer image(static_cast<std::size_t>(shown));
    if (shown > 0 && !m_words.Read(m_layout.FirstByte().number + begin, image.Bytes()))
        return std::nullopt;
    return image;
}

std::uint64_t CRowImages::HeldBytes(std::int32_t first, std::int32_t count) const
{
    const std::uint64_t begin = m_layout.BytesBefore({first, 0});
    return std::min(BytesFrom(begin), m_layout.BytesBefore({first + count, 0}) - begin);
}

/// How many bytes the file holds from there on in the stretch.
std::uint64_t CRowImages::BytesFrom(std::uint64_t begin) const
{
    const std::uint64_t within = m_layout.BytesWithin(m_words.Count());
    return within - std::min(within, begin);
}

bool CRowWindow::Show(std::int32_t first, std::int32_t count)
{
    auto image = m_images.Read(first, count);
    if (!image)
        return false;
    if (m_rows.RowCount() != count || m_rows.Columns().empty())
        m_rows.LayOut(m_layout.Columns(), 0, count);
    m_held = m_images.HeldBytes(first, count);
    m_words = std::as_const(*image).Bytes().first(static_cast<std::size_t>(m_held));
    m_rows.ShowWords(std::move(*image), m_images.Kind());
    return true;
}
