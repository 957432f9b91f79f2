#pragma once

#include "changes/WordDifferences.h"
#include "disk/Replacement.h"
#include "files/FileType.h"
#include "recovery/VersionChain.h"
#include "recovery/VersionStore.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What a file held in a version. A copy is that itself. One of which only the changes were kept is had by going back
/// from the oldest copy that is newer, or else from the file as it is now, through all versions in between. Writes
/// nothing but what Grow is given.
class CVersionContent {
public:
    /// Finds the version, and goes back to it. Throws std::bad_alloc.
    CVersionContent(const CVersionStore& store, std::filesystem::path file, std::string_view stamp);

    /// Why it cannot be had, as the end of a sentence; empty when it can.
    const std::u16string& Fault() const { return m_fault; }

    bool IsCopy() const { return m_records.empty(); }
    bool IsMadeOfFile() const { return m_base == m_file; }

    /// The copy, or where going back begins.
    const std::filesystem::path& Base() const { return m_base; }

    /// Its words; null where the type of the file has none, or they cannot be read.
    CWordBytes* Words();

    /// What became otherwise since `before`, which holds the words of the file now; both must outlive the answer. For a
    /// version that has words.
    std::unique_ptr<CWordDifferences> DifferencesFrom(CWordBytes& before);

    /// Appends all of it to `fresh`. False after a failure.
    bool Grow(CReplacement& fresh);

private:
    std::u16string Find(const CVersionStore& store, std::string_view stamp);
    std::u16string GoBack();

    std::filesystem::path m_file;
    std::optional<FileType> m_type;
    std::filesystem::path m_base;
    std::vector<std::filesystem::path> m_records; ///< to go back by from there, the newest first
    std::optional<CFileWords> m_baseWords;
    std::optional<CVersionChain> m_chain;
    std::u16string m_fault;
};

/// How many words of `file` are others now than in its version `stamp`. Nothing where that cannot be told: the file or
/// the version cannot be had, or its type has no words and it differs.
std::optional<std::uint64_t> CountDifferentWords(const CVersionStore& store, const std::filesystem::path& file,
                                                 std::string_view stamp);
