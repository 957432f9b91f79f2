#pragma once

#include "changes/ChangeList.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Files of words that are larger are not copied: only the words that change are kept.
inline constexpr std::uint64_t kMostCopiedBytes = std::uint64_t{64} << 20;

/// What became of keeping a version.
struct VersionKept {
    enum class Result {
        Kept,
        Same,         ///< as the newest version, which is enough
        Nothing,      ///< there is no file
        Off,          ///< the user wants no versions
        NeedsChanges, ///< the file is too large: KeepChanges keeps what is about to change
        Failed,       ///< `reason` says why
    };

    Result result = Result::Failed;
    std::u16string reason; ///< a sentence without its full stop, in the system's words where it has any
    std::string stamp;     ///< of the version that was made, or of the one that is the same

    /// Whether what the file holds can be had back afterwards, or need not be.
    bool IsSafe() const { return result == Result::Kept || result == Result::Same || result == Result::Nothing; }
};

/// What users are told where a version of `file` was wanted and could not be kept, with its full stop; else empty.
std::u16string NotKeptText(const VersionKept& kept, const std::filesystem::path& file);

/// An earlier version of a file.
struct Version {
    std::string stamp;                  ///< UtcStamp: its name, and by it its place among the others
    std::u16string command;             ///< after which it was kept: "Save", "set"; empty where that is not known
    std::optional<std::uint64_t> words; ///< that the file held; nothing for a file that has none
    std::uint64_t bytes = 0;            ///< that the file held, of a paged file on the disk
    bool isRecords = false;             ///< only what one change made of the words was kept
};

/// The earlier versions of files, in the folder "versions" of the user's data folder. None of its calls throws or
/// reports anything, and a file that is not there or is damaged is no version. Files that have other names than it
/// gives are neither used nor removed. Only Keep, KeepChanges, Forget and ForgetAll write.
///
/// A file is known by its path: links lead to the versions of the file that they lead to, one that is gone still has
/// its versions, and case does not count where the system ignores it. Several programs may keep versions at the same
/// time.
class CVersionStore {
public:
    /// `dataFolder` as OwnDataFolder gives it: where it is empty, keeping fails and there are no versions.
    explicit CVersionStore(std::filesystem::path dataFolder);

    const std::filesystem::path& DataFolder() const { return m_dataFolder; }

    /// Copies what `file` holds, because `command` is about to change it, unless the newest version is the same. A file
    /// above kMostCopiedBytes whose type has words needs KeepChanges instead. Then removes what is too old or too much
    /// (VersionRetention.h). After a failure nothing new is there.
    VersionKept Keep(const std::filesystem::path& file, std::u16string_view command) const;

    /// Keeps the words that `command` is about to change in `file`, all of which `changes` must name, complete, with
    /// the old words as the file holds them and the sizes in the header.
    VersionKept KeepChanges(const std::filesystem::path& file, std::u16string_view command,
                            const CChangeList& changes) const;

    /// All versions of `file`, the newest first.
    std::vector<Version> List(const std::filesystem::path& file) const;

    /// The versions among those of `file` whose stamp begins with `stamp`, the newest first.
    std::vector<Version> Find(const std::filesystem::path& file, std::string_view stamp) const;

    /// Where the version lies: a plain copy with the extension of `file`, or records as JSON Lines.
    std::filesystem::path PathOf(const std::filesystem::path& file, const Version& version) const;

    /// Removes all versions of `file`, or of all files, and their folders, unless something else is in them. False when
    /// one of them is still there.
    bool Forget(const std::filesystem::path& file) const;
    bool Forget(const std::filesystem::path& file, const Version& version) const; ///< this one alone
    bool ForgetAll() const;

private:
    std::optional<VersionKept> WhyNotKept(const std::filesystem::path& file) const;
    std::filesystem::path FolderOf(const std::filesystem::path& file) const;

    std::filesystem::path m_dataFolder;
};
