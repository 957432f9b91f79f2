#include "files/CsvCutter.h"
#include "files/CsvFields.h"
#include "tests/files/CsvTables.h"

namespace fs = std::filesystem;

namespace {

/// Looks whether each field's bytes are where it says, and comes in order.
class CPlaceCheck final : public CCsvRawTaker {
public:
    CPlaceCheck(const CsvTextForm& form, std::span<const std::byte> bytes) : m_form(form), m_bytes(bytes) {}

    void Take(const CsvRawField& field) override
    {
        ASSERT_GE(field.offset, m_end);
        ASSERT_LE(field.offset + field.length, m_bytes.size());
        if (m_form.isUtf16) {
            const auto raw = m_bytes.subspan(field.offset, field.length);
            ASSERT_EQ(Bytes(raw.begin(), raw.end()), UnitBytes(field.raw));
        } else if (std::all_of(field.raw.begin(), field.raw.end(), [](char16_t c) { return c < 0x80; })) {
            for (std::size_t i = 0; i < field.raw.size(); ++i)
                ASSERT_EQ(std::to_integer<char16_t>(m_bytes[field.offset + i]), field.raw[i]);
        }
        ASSERT_EQ(field.line, m_line);
        ASSERT_EQ(field.column, m_column);
        m_end = field.offset + field.length;
        m_line += field.EndsLine() ? 1u : 0u;
        m_column = field.EndsLine() ? 0 : m_column + 1;
    }

private:
    const CsvTextForm& m_form;
    const std::span<const std::byte> m_bytes;
    std::uint64_t m_end = 0;
    std::uint64_t m_line = 0;
    std::size_t m_column = 0;
};

struct CsvCutting : testing::TestWithParam<unsigned> {
    CFieldTable Read(std::size_t lines, std::size_t columns) const
    {
        CFieldTable fields;
        CNoProgress progress;
        EXPECT_EQ(ReadCsvFields(path, lines, columns, fields, progress), Outcome::Done);
        return fields;
    }

    CFieldTable Cut(std::size_t lines, std::size_t columns) const
    {
        CFieldTable fields;
        const CFile file(path, CFile::Mode::Read);
        CCsvFileCutter cutter(file);
        CCsvShownFields shown(cutter.Form(), lines, columns, fields);
        while (cutter.Continue(shown)) {
        }
        EXPECT_TRUE(cutter.IsDone());
        return fields;
    }

    void ExpectCutAsRead(const Bytes& bytes)
    {
        WriteAll(path, bytes);
        const std::size_t lines = maker.Below(12);
        const std::size_t columns = maker.Below(6);
        ASSERT_EQ(Cut(lines, columns), Read(lines, columns));
        CPlaceCheck places(CsvFormOf(bytes), bytes);
        CutCsv(bytes, places);
    }

    CTempFolder folder;
    fs::path path = folder / "a.csv";
    CCsvMaker maker{GetParam()};
};

TEST_P(CsvCutting, IsThatOfTheReader)
{
    for (int i = 0; i < 400 && !HasFailure(); ++i) {
        Bytes bytes = Utf16File(maker.Text(u"\"\"\t\t\r\n\na0,\u0A0A\u0D09", 60));
        if (maker.Happens(20))
            bytes.resize(maker.Below(bytes.size() + 1));
        ExpectCutAsRead(bytes);
        const std::u16string ansi = maker.Text(u"\"\"\t,,,\r\n\na0\u00E4", 60);
        Bytes ansiBytes;
        for (const char16_t c : ansi)
            ansiBytes.push_back(static_cast<std::byte>(c));
        ExpectCutAsRead(ansiBytes);
    }
}

TEST_P(CsvCutting, OfLongFilesIsThatOfTheReader)
{
    Bytes utf16 = Utf16File(u"");
    Bytes ansi;
    while (ansi.size() < (std::size_t{300} << 10)) {
        const Bytes more = UnitBytes(maker.Text(u"\"abcdefgh", 40) + (maker.Happens(70) ? u"\t" : u"\r\n"));
        utf16.insert(utf16.end(), more.begin(), more.end());
        const Bytes line = AsciiBytes(std::string(maker.Below(30) + 2030, 'x') + (maker.Happens(30) ? "," : "") +
                                      (maker.Happens(30) ? "\r" : "") + (maker.Happens(70) ? "\n" : ""));
        ansi.insert(ansi.end(), line.begin(), line.end());
    }
    for (const Bytes& bytes : {utf16, ansi}) {
        WriteAll(path, bytes);
        ASSERT_TRUE(Cut(100000, 3) == Read(100000, 3));
        CPlaceCheck places(CsvFormOf(bytes), bytes);
        CutCsv(bytes, places);
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, CsvCutting, testing::Range(1u, 9u));

} // namespace
