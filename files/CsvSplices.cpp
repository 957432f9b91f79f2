#include "files/CsvSplices.h"

#include "files/CsvFieldForm.h"

#include <algorithm>

namespace {

constexpr std::u16string_view kLineEnd = u"\r\n";

} // namespace

CCsvSplicer::CCsvSplicer(const CsvTextForm& form, std::span<const CsvEdit> edits) : m_form(form), m_edits(edits) {}

void CCsvSplicer::Take(const CsvRawField& field)
{
    const auto row = [&] { return static_cast<std::uint64_t>(m_edits.front().place.row); };
    if (m_edits.empty() || row() != field.line || !m_refusal.empty())
        return;
    if (field.EndsLine())
        return EndLine(field);
    if (m_edits.front().place.column != field.column)
        return;
    ReplaceField(field, m_edits.front().text);
    m_edits = m_edits.subspan(1);
}

void CCsvSplicer::ReplaceField(const CsvRawField& field, std::u16string_view text)
{
    if (field.Shown(m_form) == text)
        return;
    const auto written = SeparatedCsvField(m_form, text, field.raw.starts_with(u'"'));
    if (!written)
        return Refuse(m_edits.front().place);
    Splice(field.offset, field.length, *written);
}

void CCsvSplicer::EndLine(const CsvRawField& field)
{
    Edits edits = TakeEditsOfRow(field.line);
    const std::u16string_view shown = field.Shown(m_form);
    while (!edits.empty() && edits.back().text == (edits.back().place.column == field.column ? shown : kMissingField))
        edits = edits.first(edits.size() - 1);
    if (edits.empty())
        return;
    const CellPlace place{edits.front().place.row, static_cast<std::uint32_t>(field.column)};
    Splice(field.offset, field.length, Tail(place, shown, edits));
}

CCsvSplicer::Edits CCsvSplicer::TakeEditsOfRow(std::uint64_t row)
{
    const auto isOfRow = [row](const CsvEdit& edit) { return static_cast<std::uint64_t>(edit.place.row) == row; };
    const auto end = std::find_if_not(m_edits.begin(), m_edits.end(), isOfRow);
    const auto count = static_cast<std::size_t>(end - m_edits.begin());
    const Edits edits = m_edits.first(count);
    m_edits = m_edits.subspan(count);
    return edits;
}

/// The fields from `place`, which shows `shown`, to that of the last edit.
std::u16string CCsvSplicer::Tail(CellPlace place, std::u16string_view shown, Edits edits)
{
    std::u16string tail;
    for (; !edits.empty(); ++place.column) {
        const bool isEdit = edits.front().place == place;
        const std::u16string_view text = isEdit ? std::u16string_view(edits.front().text) : shown;
        edits = edits.subspan(isEdit ? 1 : 0);
        const auto field = edits.empty() ? LastCsvField(m_form, text) : SeparatedCsvField(m_form, text, true);
        if (!field) {
            isEdit ? Refuse(place) : RefuseToLengthen(place.row);
            return {};
        }
        tail += *field;
        if (!edits.empty())
            tail += m_form.separator;
        shown = kMissingField;
    }
    return tail;
}

void CCsvSplicer::Finish(const CCsvCutter& cutter, std::uint64_t size)
{
    while (!m_edits.empty() && m_edits.back().text == kMissingField)
        m_edits = m_edits.first(m_edits.size() - 1);
    if (m_edits.empty() || !m_refusal.empty())
        return;
    std::u16string lines(cutter.NeedsLineEnd() ? kLineEnd : u"");
    for (std::uint64_t row = cutter.Lines(); !m_edits.empty(); ++row) {
        Edits edits = TakeEditsOfRow(row);
        while (!edits.empty() && edits.back().text == kMissingField)
            edits = edits.first(edits.size() - 1);
        if (!edits.empty())
            lines += Tail({edits.front().place.row, 0}, kMissingField, edits);
        lines += kLineEnd;
    }
    Splice(std::min(cutter.EndOffset(), size), 0, lines);
    if (m_refusal.empty() && m_form.isUtf16 && size < m_form.begin) // the mark is not whole
        m_splices.back().bytes.insert(0, 1, '\xFE');
}

void CCsvSplicer::Refuse(CellPlace place)
{
    m_refusal = RefusedCsvText(static_cast<std::uint64_t>(place.row), place.column);
}

void CCsvSplicer::RefuseToLengthen(std::int32_t row)
{
    m_refusal = RefusedLongerLine(static_cast<std::uint64_t>(row));
}

void CCsvSplicer::Splice(std::uint64_t offset, std::uint64_t length, std::u16string_view text)
{
    if (m_refusal.empty())
        m_splices.push_back({offset, length, CsvTextBytes(m_form, text)});
}
