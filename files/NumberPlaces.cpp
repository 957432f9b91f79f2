#include "files/NumberPlaces.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::size_t kPieceBytes = std::size_t{256} << 10;
constexpr std::size_t kLongestForm = 8; // bytes

std::size_t FirstWord(std::span<const std::byte> bytes)
{
    return std::to_integer<std::size_t>(bytes[0]) | std::to_integer<std::size_t>(bytes[1]) << 8;
}

} // namespace

CNumberPlaces::CNumberPlaces(FileType type, const std::filesystem::path& path, std::vector<NumberForm> forms)
    : m_words(type, path),
      m_forms(std::move(forms)),
      m_begins(0x10000),
      m_piece(kPieceBytes + kLongestForm)
{
    for (const NumberForm& form : m_forms)
        m_begins[FirstWord(form.bytes)] = true;
    m_hasFailed = !m_words.IsOpen() || !m_words.IsUndamaged();
}

/// What follows the piece is read with it, for the places that begin at its end.
bool CNumberPlaces::Continue(const Taker& take)
{
    if (m_hasFailed || m_position >= Size())
        return false;
    const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(m_piece.size(), Size() - m_position));
    const auto bytes = std::span(m_piece).first(count);
    m_hasFailed = !m_words.Read(m_position, bytes);
    if (m_hasFailed)
        return false;
    for (std::size_t at = 0; at < kPieceBytes && at + 1 < bytes.size(); at += 2)
        if (m_begins[FirstWord(bytes.subspan(at))])
            LookAt((m_position + at) / 2, bytes.subspan(at), take);
    m_position = std::min(m_position + kPieceBytes, Size());
    return true;
}

void CNumberPlaces::LookAt(std::uint64_t word, std::span<const std::byte> bytes, const Taker& take) const
{
    for (const NumberForm& form : m_forms)
        if (form.bytes.size() <= bytes.size() && std::equal(form.bytes.begin(), form.bytes.end(), bytes.begin()))
            take(word, form);
}

CNumberFields::CNumberFields(const std::filesystem::path& path, CDecimal number)
    : m_file(path, CFile::Mode::Read),
      m_cutter(m_file),
      m_number(std::move(number))
{
}

bool CNumberFields::Continue(const Taker& take)
{
    m_take = &take;
    const bool goesOn = m_cutter.Continue(*this);
    m_take = nullptr;
    m_hasEnded = !goesOn;
    return goesOn;
}

void CNumberFields::Take(const CsvRawField& field)
{
    if (!field.IsField())
        return;
    const std::u16string_view text = field.Shown(m_cutter.Form());
    if (CDecimal::Parse(text) == m_number)
        (*m_take)(field.line + 1, field.column + 1, text);
}
