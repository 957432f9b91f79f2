#include "recovery/JournalReader.h"
#include "tests/recovery/UnsavedSample.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace {

/// What the document gives between "```text journal" and "```".
std::string DocumentedJournal()
{
    std::ifstream document(std::filesystem::path(VANTOR_SOURCE_DIR) / "docs/file-formats.md");
    std::string journal;
    std::string line;
    while (std::getline(document, line) && line != "```text journal")
        continue;
    while (std::getline(document, line) && line != "```")
        journal += line + '\n';
    return journal;
}

} // namespace

TEST(JournalDocument, GivesAJournalThatIsRead)
{
    const CTempFolder folder;
    const std::string journal = DocumentedJournal();
    WriteAll(folder / "journal", std::as_bytes(std::span(journal)));
    const JournalContent content = ReadJournal(CFile(folder / "journal", CFile::Mode::Read));
    ASSERT_EQ(content.kind, JournalContent::Kind::Readable);
    EXPECT_FALSE(content.isCut);
    EXPECT_EQ(content.work.header.file, "/recipes/tank.rcp");
    EXPECT_EQ(content.work.header.startAddress, 100);
    EXPECT_EQ(UtcStamp(content.work.lastEdit), "20261122T140219.004Z");
    EXPECT_EQ(Told(content.work.cells),
              Told(std::vector{UnsavedCell{{0, 0}, CCellState::OfWords(u"\x96"), BytesOf({0x69, 0}), std::nullopt}}));
}
