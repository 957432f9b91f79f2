#include "recovery/VersionCheck.h"

#include "recovery/VersionWords.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace {

/// Whether the file holds the old words of the record, and only zeros where that tells of zeros.
bool HoldsOldWords(const ChangeRecord& record, CWordBytes& words, std::vector<std::byte>& held)
{
    const std::uint64_t begin = FirstByteOf(*record.address).number;
    held.resize(record.oldWords.size());
    const bool isHeld = words.Read(begin, held) && held == record.oldWords;
    const std::uint64_t size = words.Count();
    const bool isWithin = begin + record.oldWords.size() <= std::max(size, begin);
    return isHeld && isWithin;
}

} // namespace

std::optional<std::u16string> ChangesFault(const CChangeList& changes, FileType type, const std::filesystem::path& file)
{
    const ChangeHeader header = changes.Header();
    if (!changes.IsComplete() || header.type != type || !header.bytes || !header.newBytes)
        return u"What is about to change is not known";
    CFileWords words(type, file);
    if (!words.IsOpen())
        return u"The file can't be read";
    if (words.Count() != static_cast<std::uint64_t>(*header.bytes))
        return u"The file was changed by another program";
    std::vector<std::byte> held;
    for (std::size_t i = 0; i < changes.Count(); ++i) {
        const ChangeRecord record = changes.At(i);
        if (!record.address || (record.oldWords.empty() && record.newWords.empty() && record.zeros == 0))
            return u"What is about to change is not known";
        if (!HoldsOldWords(record, words, held))
            return u"The file was changed by another program";
    }
    return std::nullopt;
}
