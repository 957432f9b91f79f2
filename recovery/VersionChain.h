#pragma once

#include "changes/ChangeRecord.h"
#include "files/FileType.h"
#include "files/WordBytes.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

/// The way back from the words of a file through versions of which only the changes were kept, the newest first. Every
/// word that a change had written is looked at before its old one takes its place. Throws std::bad_alloc.
class CVersionChain {
public:
    /// `base` holds the words after the newest change; it must outlive the chain.
    CVersionChain(CWordBytes& base, FileType type) : m_words(base), m_type(type) {}

    /// Goes back by the change in the file at `records`. What is in the way of it, and then the chain is of no further
    /// use; nothing when it is done.
    std::optional<std::u16string> GoBack(const std::filesystem::path& records);

    /// The words before the change gone back by last.
    CChangedWords& Words() { return m_words; }

private:
    bool HasSize(std::uint64_t size);
    bool IsZero(std::uint64_t begin, std::uint64_t end);
    bool Undo(const ChangeRecord& record);
    bool TakeSize(const ChangeHeader& header);

    CChangedWords m_words;
    FileType m_type;
    std::uint64_t m_oldEnd = 0;             ///< behind the words that the change had found
    std::vector<WordAddress> m_firstOthers; ///< the first words that are not as the change left them
    std::uint64_t m_others = 0;             ///< how many there are
};
