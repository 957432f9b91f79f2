#include "changes/ChangeLines.h"
#include "tests/support/TestFiles.h"
#include "text/Utf8Text.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

/// The lines of docs/file-formats.md.
std::vector<std::string> DocumentLines()
{
    std::ifstream document(std::string(VANTOR_SOURCE_DIR) + "/docs/file-formats.md");
    std::vector<std::string> lines;
    for (std::string line; std::getline(document, line);)
        lines.push_back(line);
    return lines;
}

/// The examples that it gives between "```jsonl name" and "```", by their names.
std::map<std::string, std::string> DocumentedExamples()
{
    constexpr std::string_view kBegin = "```jsonl ";
    std::map<std::string, std::string> examples;
    std::string* example = nullptr;
    for (const std::string& line : DocumentLines()) {
        if (line == "```")
            example = nullptr;
        else if (line.starts_with(kBegin))
            example = &examples[line.substr(kBegin.size())];
        else if (example != nullptr)
            *example += line + "\n";
    }
    return examples;
}

struct Changes {
    ChangeHeader header;
    std::vector<ChangeRecord> records;
};

Changes ChangesIn(const std::string& lines)
{
    std::istringstream input(lines);
    CChangeReader reader(input);
    const auto header = reader.ReadHeader();
    if (const auto* fault = std::get_if<ChangeFault>(&header))
        throw std::runtime_error(ToUtf8(FaultText(*fault)));
    Changes changes{std::get<ChangeHeader>(header), {}};
    for (;;) {
        const auto next = reader.Next();
        if (const auto* fault = std::get_if<ChangeFault>(&next))
            throw std::runtime_error(ToUtf8(FaultText(*fault)));
        if (std::holds_alternative<EndOfChanges>(next))
            return changes;
        changes.records.push_back(std::get<ChangeRecord>(next));
    }
}

std::string LinesOf(const Changes& changes)
{
    std::string lines;
    AppendLine(changes.header, lines);
    for (const ChangeRecord& record : changes.records)
        AppendLine(record, lines);
    return lines;
}

/// The keys that the table under `heading` has in its first column, in order.
std::vector<std::string> DocumentedKeys(const std::string& heading)
{
    std::vector<std::string> keys;
    bool isUnder = false;
    for (const std::string& line : DocumentLines()) {
        if (line.starts_with("#"))
            isUnder = line == heading;
        if (!isUnder || !line.starts_with("| `"))
            continue;
        std::istringstream cells(line.substr(1, line.find('|', 1) - 1));
        for (std::string key; cells >> key;)
            keys.push_back(key.substr(1, key.rfind('`') - 1));
    }
    return keys;
}

TEST(ChangesDocument, ExamplesAreReadAndWrittenBackAsTheyStand)
{
    const auto examples = DocumentedExamples();
    EXPECT_EQ(examples.size(), 2u);
    for (const auto& [name, lines] : examples)
        EXPECT_EQ(LinesOf(ChangesIn(lines)), lines) << name;
}

TEST(ChangesDocument, OvenExampleHoldsWhatIsSaidOfIt)
{
    const Changes changes = ChangesIn(DocumentedExamples().at("oven"));
    ASSERT_EQ(changes.records.size(), 5u);
    EXPECT_EQ(changes.records[0].row, 4);
    EXPECT_EQ(changes.records[0].newText, u"240.0");
    EXPECT_EQ(changes.records[1].oldWords, WordBytes({105}));
    EXPECT_EQ(changes.records[1].newWords, WordBytes({150}));
    EXPECT_EQ(changes.records[2].newWords, WordBytes({114}));
    EXPECT_EQ(changes.records[2].reads, u"1.14");
    EXPECT_EQ(changes.records[3].address, WordAddress(700));
    EXPECT_EQ(changes.records[3].oldWords, WordBytes({1, 2}));
    EXPECT_EQ(changes.records[4].address, WordAddress(720));
    EXPECT_EQ(changes.records[4].zeros, 1000);
}

TEST(ChangesDocument, TableExampleHoldsWhatIsSaidOfIt)
{
    const Changes changes = ChangesIn(DocumentedExamples().at("table"));
    ASSERT_EQ(changes.records.size(), 4u);
    EXPECT_EQ(changes.header.type, FileType::Csv);
    for (const ChangeRecord& record : changes.records) {
        EXPECT_EQ(record.address, std::nullopt);
        EXPECT_TRUE(record.oldWords.empty() && record.newWords.empty());
    }
    EXPECT_EQ(changes.records[2].line, 13);
    EXPECT_EQ(changes.records[3].why, ChangeReason::Form);
}

/// The keys of a line of one object without lists, in order.
std::vector<std::string> KeysOf(const std::string& line)
{
    std::vector<std::string> keys;
    for (std::size_t at = 0; (at = line.find("\":", at)) != std::string::npos; ++at) {
        const std::size_t begin = line.rfind('"', at - 1) + 1;
        keys.push_back(line.substr(begin, at - begin));
    }
    return keys;
}

TEST(ChangesDocument, HasAllKeysInTheirOrder)
{
    ChangeHeader header;
    header.file = u"";
    header.type = FileType::Rcp;
    header.bytes = header.newBytes = 0;
    std::string headerLine;
    AppendLine(header, headerLine);
    EXPECT_EQ(DocumentedKeys("### Keys of the header"), KeysOf(headerLine));

    ChangeRecord record;
    record.address = WordAddress(0);
    record.table = record.row.emplace(record.column.emplace(2));
    record.item = record.oldText = record.newText = record.reads = u"";
    record.line = record.zeros = 1;
    record.oldWords = record.newWords = WordBytes({1});
    record.why = ChangeReason::Edited;
    std::string recordLine;
    AppendLine(record, recordLine);
    std::vector<std::string> expected = KeysOf(recordLine);
    EXPECT_EQ(expected.size(), 13u);
    for (int i = 0; i <= static_cast<int>(ChangeReason::Form); ++i)
        expected.push_back(ToUtf8(WordOf(static_cast<ChangeReason>(i))));
    expected.insert(expected.end() - 11, "why"); // the heading of the table of reasons
    EXPECT_EQ(DocumentedKeys("### Keys of a record"), expected);
}

} // namespace
