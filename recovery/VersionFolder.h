#pragma once

#include "text/UtcTime.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The names in the folder "versions": NAME-HASH for a file, in it STAMP.EXT or STAMP.jsonl for a version and STAMP.json
// for its note.

/// The path by which `file` is known: absolute, and the one that links lead to; the file itself may be missing.
std::filesystem::path KnownPath(const std::filesystem::path& file);

/// `knownPath` as it is compared with others: in lower case where files are known in whatever case.
std::filesystem::path PathKey(const std::filesystem::path& knownPath);

/// The name of the folder for the versions of the file of that known path: the file's name, cut where it is very long,
/// and a hash of the path.
std::filesystem::path VersionFolderName(const std::filesystem::path& knownPath);

/// Whether it could be such a name.
bool IsVersionFolderName(const std::filesystem::path& name);

/// A version that is there.
struct StoredVersion {
    std::string stamp;
    UtcTime time{}; ///< of the stamp
    bool isRecords = false;
    std::uint64_t bytes = 0; ///< of its file
};

/// One folder of versions, by its path. Never throws.
class CVersionFolder {
public:
    explicit CVersionFolder(std::filesystem::path path);

    const std::filesystem::path& Path() const { return m_path; }

    std::filesystem::path CopyPath(std::string_view stamp) const;
    std::filesystem::path RecordsPath(std::string_view stamp) const;
    std::filesystem::path NotePath(std::string_view stamp) const;
    std::filesystem::path PartPath(std::string_view stamp) const; ///< of a version that is not complete yet
    std::filesystem::path PathOf(const StoredVersion& version) const;

    /// All complete versions, the oldest first.
    std::vector<StoredVersion> Versions() const;

    /// The latest stamp that a version has, or one that is being made.
    std::optional<UtcTime> Newest() const;

    /// Removes what programs that ended too early left of versions that they were making.
    void RemoveLeftOvers() const;

    /// Removes the version with its note; false when it is still there.
    bool Remove(const StoredVersion& version) const;

    /// Removes all versions, and the folder if nothing else is in it; false when a version is still there.
    bool RemoveAll() const;

private:
    enum class Kind { Copy, Records, Note, Part };
    struct Entry {
        Kind kind;
        std::string stamp;
        UtcTime time;
        std::filesystem::path path;
    };

    std::optional<Entry> EntryOf(const std::filesystem::path& path) const;
    std::vector<Entry> Entries() const;
    void RemoveIfLeftOver(std::string_view stamp) const;

    std::filesystem::path m_path;
    std::string m_suffix; ///< of copies: the extension of the file
};
