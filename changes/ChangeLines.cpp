#include "changes/ChangeLines.h"

#include "changes/WordsText.h"
#include "library/JsonText.h"
#include "text/NumberText.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace {

/// A JSON object that grows field by field, without blanks.
class CObject {
public:
    explicit CObject(std::string& json) : m_json(json) { m_json += '{'; }
    void End() { m_json += '}'; }

    void Number(std::string_view key, std::int64_t value)
    {
        Key(key);
        AppendDecimal(value, m_json);
    }

    void Text(std::string_view key, std::u16string_view value)
    {
        Key(key);
        AppendWholeJsonText(value, m_json);
    }

    void Words(std::string_view key, const WordRun& value)
    {
        Key(key);
        m_json += '"';
        AppendWordsText(value, m_json);
        m_json += '"';
    }

    void Key(std::string_view key)
    {
        m_json.append(std::exchange(m_hasFields, true) ? ",\"" : "\"").append(key).append("\":");
    }

private:
    std::string& m_json;
    bool m_hasFields = false;
};

std::u16string_view WordOfType(FileType type)
{
    switch (type) {
    case FileType::Rcp:
        return u"rcp";
    case FileType::Csv:
        return u"csv";
    case FileType::Erp:
        return u"erp";
    case FileType::Frp:
        break;
    }
    return u"frp";
}

void AppendTable(const ChangedTable& table, std::string& json)
{
    CObject object(json);
    object.Text("format", table.format);
    object.Number("start", table.start.number);
    object.Number("rows", table.rows);
    object.End();
}

void AppendTables(const std::vector<ChangedTable>& tables, std::string& json)
{
    json += '[';
    for (std::size_t i = 0; i < tables.size(); ++i) {
        if (i > 0)
            json += ',';
        AppendTable(tables[i], json);
    }
    json += ']';
}

void AppendPlace(const ChangeRecord& record, CObject& object)
{
    if (record.address)
        object.Number("address", record.address->number);
    if (record.table != 0)
        object.Number("table", record.table);
    if (record.row)
        object.Number("row", *record.row);
    if (record.column)
        object.Number("column", *record.column);
    if (record.item)
        object.Text("item", *record.item);
    if (record.line)
        object.Number("line", *record.line);
}

void AppendValues(const ChangeRecord& record, CObject& object)
{
    if (record.oldText)
        object.Text("old", *record.oldText);
    if (record.newText)
        object.Text("new", *record.newText);
    if (record.reads)
        object.Text("reads", *record.reads);
    if (!record.oldWords.empty())
        object.Words("oldWords", record.oldWords);
    if (!record.newWords.empty())
        object.Words("newWords", record.newWords);
    if (record.zeros != 0)
        object.Number("zeros", record.zeros);
}

bool IsBlank(std::string_view line)
{
    return line.find_first_not_of(" \t\r") == std::string_view::npos;
}

constexpr std::size_t kPieceBytes = std::size_t{64} << 10;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

} // namespace

void AppendLine(const ChangeHeader& header, std::string& lines)
{
    CObject object(lines);
    object.Text("vantor", u"changes");
    object.Number("version", 1);
    if (header.file)
        object.Text("file", *header.file);
    if (header.type)
        object.Text("type", WordOfType(*header.type));
    if (header.bytes)
        object.Number("bytes", *header.bytes);
    if (header.newBytes)
        object.Number("newBytes", *header.newBytes);
    object.Key("tables");
    AppendTables(header.tables, lines);
    object.End();
    lines += '\n';
}

void AppendLine(const ChangeRecord& record, std::string& lines)
{
    CObject object(lines);
    AppendPlace(record, object);
    AppendValues(record, object);
    if (record.why)
        object.Text("why", WordOf(*record.why));
    object.End();
    lines += '\n';
}

std::variant<ChangeHeader, ChangeFault> CChangeReader::ReadHeader()
{
    if (!ReadLine())
        return m_fault ? *m_fault : Refuse({1, {}, u"there is no header"});
    ChangeHeader header;
    if (auto fault = HeaderFromLine(m_line, header))
        return Refuse(std::move(*fault));
    return header;
}

std::variant<ChangeRecord, EndOfChanges, ChangeFault> CChangeReader::Next()
{
    if (m_fault)
        return *m_fault;
    if (!ReadLine()) {
        if (m_fault)
            return *m_fault;
        return EndOfChanges();
    }
    ChangeRecord record;
    if (auto fault = ChangeFromLine(m_line, record))
        return Refuse(std::move(*fault));
    return record;
}

/// Takes the next line that is not blank; false at the end of the input and after a fault.
bool CChangeReader::ReadLine()
{
    do {
        if (!TakeLine())
            return false;
        if (++m_number == 1 && m_line.starts_with(kByteOrderMark))
            m_line.erase(0, kByteOrderMark.size());
    } while (IsBlank(m_line));
    return true;
}

/// Takes bytes up to the next line feed or to the end of the input; false when there are none, or too many.
bool CChangeReader::TakeLine()
{
    m_line.clear();
    bool hasBytes = false;
    while (m_taken < m_piece.size() || Fill()) {
        hasBytes = true;
        const std::size_t end = std::min(m_piece.find('\n', m_taken), m_piece.size());
        m_line.append(m_piece, m_taken, end - m_taken);
        if (m_line.size() > kMostLineBytes) {
            Refuse({m_number + 1, {}, u"the line is longer than 16 MiB"});
            return false;
        }
        m_taken = std::min(end + 1, m_piece.size());
        if (end < m_piece.size())
            return true;
    }
    return hasBytes && !m_fault;
}

/// Reads the next piece; false at the end of the input, and with a fault when that fails.
bool CChangeReader::Fill()
{
    m_taken = 0;
    m_piece.resize(kPieceBytes);
    m_input.read(m_piece.data(), static_cast<std::streamsize>(m_piece.size()));
    m_piece.resize(static_cast<std::size_t>(m_input.gcount()));
    if (m_input.bad())
        Refuse({m_number + 1, {}, u"it cannot be read"});
    return !m_piece.empty();
}

ChangeFault CChangeReader::Refuse(ChangeFault fault)
{
    if (fault.line == 0)
        fault.line = m_number;
    m_fault = std::move(fault);
    return *m_fault;
}
