#include "files/CsvShape.h"

#include "text/AnsiText.h"
#include "text/MessageText.h"
#include "text/Utf16Bytes.h"

#include <algorithm>
#include <new>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace fs = std::filesystem;

namespace {

/// `pattern` with what users call the line and the field.
std::u16string FaultOf(std::u16string_view pattern, const CsvRawField& field)
{
    const auto line = static_cast<std::int64_t>(field.line + 1);
    return FillMessage(pattern, {line, static_cast<std::int64_t>(field.column + 1)});
}

bool IsInQuotes(std::u16string_view raw)
{
    return raw.size() >= 2 && raw.front() == u'"' && raw.back() == u'"';
}

/// Whether a save would write the field as it stands.
bool IsAsSaved(std::u16string_view raw)
{
    return IsInQuotes(raw) && WithoutQuotes(raw) == raw.substr(1, raw.size() - 2);
}

bool EndsAsSaved(const CsvRawField& field)
{
    return field.end == CsvRawField::End::LineFeed && field.returns == 1;
}

} // namespace

void CCsvFormCheck::Take(const CsvRawField& field)
{
    if (!m_fault.empty())
        return;
    if (!field.EndsLine() && !IsInQuotes(field.raw))
        m_fault = FaultOf(u"line %d, field %d is not in quotes", field);
    else if (field.EndsLine() && field.returns > 1)
        m_fault = FaultOf(u"line %d ends with more than one CR", field);
    else if (field.EndsLine() && !EndsAsSaved(field))
        m_fault = FaultOf(u"line %d does not end with CR LF", field);
}

void CCsvFormCheck::Finish(const CCsvFileCutter& cutter)
{
    if (!cutter.Form().isUtf16)
        m_fault = u"it is not UTF-16 text";
    else if (!cutter.HasWholeMark())
        m_fault = u"it does not begin with FF FE";
    else if (m_fault.empty() && cutter.HasOddByte())
        m_fault = u"half a character stands at its end";
}

/// Makes a shape of the fields of a table.
class CCsvShapeScan::CTaker final : public CCsvRawTaker {
public:
    CTaker(const CsvTextForm& form, std::size_t rows, std::size_t columns)
        : m_form(form),
          m_rows(rows),
          m_columns(columns)
    {
        shape.isUtf16 = form.isUtf16;
        shape.isReformedElsewhere = !form.isUtf16;
    }

    void Take(const CsvRawField& field) override
    {
        if (m_form.isUtf16)
            formCheck.Take(field);
        if (field.line >= m_rows)
            return TakeOfFurtherLine(field);
        if (field.column >= m_columns)
            TakeFurtherField(field);
        else if (!field.EndsLine())
            TakeField(field);
        if (field.EndsLine())
            EndLine(field);
    }

    CsvShape shape;
    CCsvFormCheck formCheck;

private:
    void TakeField(const CsvRawField& field)
    {
        if (!m_form.isUtf16 || IsAsSaved(field.raw))
            return;
        if (shape.reformed.size() == kMostReformed)
            shape.isReformedElsewhere = true;
        else
            shape.reformed.push_back({static_cast<std::int32_t>(field.line), static_cast<std::uint32_t>(field.column)});
    }

    void TakeFurtherField(const CsvRawField& field)
    {
        if (field.column == m_columns)
            m_further = {field.line, static_cast<std::uint32_t>(field.column), 0, field.offset, 0};
        const bool hasText = field.IsField() && !field.Shown(m_form).empty();
        m_further.fields += hasText ? 1 : 0;
    }

    void TakeOfFurtherLine(const CsvRawField& field)
    {
        if (field.column == 0)
            m_further = {field.line, std::nullopt, 1, field.offset, 0};
        if (field.EndsLine())
            EndFurther(field);
    }

    void EndLine(const CsvRawField& field)
    {
        const std::size_t fields = field.column + (field.IsField() ? 1 : 0);
        if (fields < m_columns)
            shape.shortLines.push_back({static_cast<std::int32_t>(field.line), static_cast<std::uint32_t>(fields)});
        const bool hasFurther = field.column >= m_columns && m_further.fields > 0;
        const bool hasLastSeparator = field.column > 0 && field.column >= m_columns;
        if (!EndsAsSaved(field) || (hasLastSeparator && !hasFurther))
            shape.isReformedElsewhere = true;
        if (hasFurther)
            EndFurther(field);
    }

    void EndFurther(const CsvRawField& field)
    {
        m_further.length = field.offset + field.length - m_further.offset;
        if (m_further.length > 0)
            shape.dropped.push_back(m_further);
        else
            shape.isReformedElsewhere = true;
    }

    const CsvTextForm& m_form;
    const std::size_t m_rows;
    const std::size_t m_columns;
    CsvShape::Dropped m_further;
};

CCsvShapeScan::CCsvShapeScan(std::size_t rows, std::size_t columns) : m_rows(rows), m_columns(columns) {}

CCsvShapeScan::~CCsvShapeScan() = default;

bool CCsvShapeScan::Open(const fs::path& path)
try {
    m_isDone = false;
    m_hasFailed = !m_file.Open(path, CFile::Mode::Read);
    if (m_hasFailed)
        return false;
    m_cutter = std::make_unique<CCsvFileCutter>(m_file);
    m_taker = std::make_unique<CTaker>(m_cutter->Form(), m_rows, m_columns);
    m_hasFailed = m_cutter->HasFailed();
    return !m_hasFailed;
} catch (const std::bad_alloc&) {
    return Fail();
}

bool CCsvShapeScan::Continue()
try {
    if (m_isDone || m_hasFailed || !m_cutter)
        return false;
    if (m_cutter->Continue(*m_taker))
        return true;
    if (m_cutter->HasFailed())
        return Fail();
    Finish();
    return false;
} catch (const std::bad_alloc&) {
    return Fail();
} catch (const std::length_error&) {
    return Fail();
}

bool CCsvShapeScan::Fail()
{
    m_hasFailed = true;
    return false;
}

void CCsvShapeScan::Finish()
{
    CsvShape& shape = m_taker->shape;
    shape.lines = m_cutter->Cutter().Lines();
    m_taker->formCheck.Finish(*m_cutter);
    shape.formFault = m_taker->formCheck.Fault();
    if (!m_cutter->HasWholeMark() || m_cutter->HasOddByte())
        shape.isReformedElsewhere = true;
    m_isDone = true;
}

std::uint64_t CCsvShapeScan::Position() const
{
    return m_cutter ? m_cutter->Position() : 0;
}

std::uint64_t CCsvShapeScan::Size() const
{
    return m_cutter ? m_cutter->Size() : 0;
}

const CsvShape& CCsvShapeScan::Shape() const
{
    static const CsvShape none;
    return m_taker ? m_taker->shape : none;
}

namespace {

/// Collects the texts of the fields of a stretch that begins with the given column.
class CTextsOfStretch final : public CCsvRawTaker {
public:
    CTextsOfStretch(const CsvTextForm& form, std::uint32_t column) : m_form(form), m_column(column) {}

    void Take(const CsvRawField& field) override
    {
        if (field.IsField() && !field.Shown(m_form).empty())
            texts.push_back({m_column + static_cast<std::uint32_t>(field.column), std::u16string(field.Shown(m_form))});
    }

    std::vector<CsvDroppedText> texts;

private:
    const CsvTextForm& m_form;
    const std::uint32_t m_column;
};

std::u16string TextOf(const CsvTextForm& form, std::span<const std::byte> bytes)
{
    std::u16string text;
    if (form.isUtf16) {
        text.resize(bytes.size() / 2);
        std::copy_n(bytes.begin(), 2 * text.size(), std::as_writable_bytes(std::span(text)).begin());
        SwapUnlessLowByteFirst(text);
    } else {
        AppendFromAnsi({reinterpret_cast<const char*>(bytes.data()), bytes.size()}, text);
    }
    return text;
}

std::vector<CsvDroppedText> TextsOf(const CsvTextForm& form, const CsvShape::Dropped& dropped,
                                    std::span<const std::byte> bytes)
{
    if (!dropped.column)
        return {{0, TextOf(form, bytes)}};
    CTextsOfStretch stretch(form, *dropped.column);
    CCsvCutter cutter(form);
    cutter.Append(bytes, stretch);
    cutter.Finish(stretch);
    return std::move(stretch.texts);
}

} // namespace

std::optional<std::vector<CsvDroppedText>> DroppedTexts(const fs::path& path, const CsvShape& shape,
                                                        const CsvShape::Dropped& dropped)
try {
    const CFile file(path, CFile::Mode::Read);
    const auto size = file.Size();
    if (!size || dropped.offset > *size || dropped.length > *size - dropped.offset)
        return std::nullopt;
    CByteBuffer bytes(static_cast<std::size_t>(dropped.length));
    if (file.ReadAt(dropped.offset, bytes.Bytes()) != dropped.length)
        return std::nullopt;
    return TextsOf(shape.isUtf16 ? kUtf16Csv : kAnsiCsv, dropped, bytes.Bytes());
} catch (const std::bad_alloc&) {
    return std::nullopt;
} catch (const std::length_error&) {
    return std::nullopt;
}
