#pragma once

#include "disk/Holder.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <system_error>

/// A regular file, opened once and closed with the object: the only place that makes the platform's file calls. A
/// folder, a pipe or a device is refused as if it could not be opened. Paths are in the platform's native encoding and
/// may be of any length. All offsets are bytes from the file's start; no call moves a shared position. A file never
/// stands in for a standard stream that is closed, so that no message ends up in it.
class CFile {
public:
    enum class Mode {
        Read,          ///< must exist
        ReadWrite,     ///< must exist; never truncated
        OpenOrCreate,  ///< read and write; created empty when missing, never truncated
        Truncate,      ///< read and write; created, or emptied when it exists
        CreateNew,     ///< read and write; created, refused where anything has the name
        CreatePrivate, ///< the same, and nobody but the user may read or write it
    };

    CFile() = default;
    CFile(const std::filesystem::path& path, Mode mode) { Open(path, mode); }
    ~CFile();
    CFile(CFile&& other) noexcept;
    CFile& operator=(CFile&& other) noexcept;
    CFile(const CFile&) = delete;
    CFile& operator=(const CFile&) = delete;

    /// Closes what was open and opens `path`. False, with no file open, when that fails.
    bool Open(const std::filesystem::path& path, Mode mode);
    bool IsOpen() const;

    /// The length in bytes; nothing after a failure.
    std::optional<std::uint64_t> Size() const;

    /// Reads into `bytes` from `offset`: the number of bytes that arrived, fewer only at the end of the file; nothing
    /// after an error.
    std::optional<std::size_t> ReadAt(std::uint64_t offset, std::span<std::byte> bytes) const;

    /// Writes all of `bytes` at `offset`; a gap after the old end reads as zero bytes. False after an error, when a
    /// part may have been written.
    bool WriteAt(std::uint64_t offset, std::span<const std::byte> bytes);

    /// Has the disk set room aside for `size` bytes at `offset`, so that writing them there does not fail for want of
    /// it. A file that ends before them grows to hold them, and reads as zero bytes there. False when there is no room;
    /// the file is as long as before then, and what it held is untouched.
    bool Reserve(std::uint64_t offset, std::uint64_t size);

    /// Cuts a longer file to `length` bytes.
    bool CutTo(std::uint64_t length);

    /// Gives the file the owner, rights and extended attributes of the one at `path`; false when that is not allowed.
    bool TakeAttributesOf(const std::filesystem::path& path);

    /// Takes the hold of the file until it is closed, however the program ends, unless another open file has it. It
    /// keeps nobody from reading, writing or removing the file: it is a sign for those who ask for it, too.
    Holder Hold();

    /// Whether `path` names this very file; a link that leads to it does not.
    bool IsAt(const std::filesystem::path& path) const;

    /// Whether it belongs to the user who runs the program.
    bool IsOwn() const;

    /// Waits until the disk has what was written. False when it refuses it.
    bool Flush();

    /// Flushes and closes; a file that OpenOrCreate or Truncate created is in its folder for good then, too. False when
    /// the disk refuses it; the file is closed all the same. Without this call the object closes the file too, but
    /// nobody hears of a refusal.
    bool Close();

    /// Closes, and removes the file again when OpenOrCreate or Truncate created it.
    void Discard();

    /// Why the latest call that failed, Open or one on the open file, did so; zero before any has. A call that succeeds
    /// leaves it as it is, except for Open.
    std::error_code LastError() const { return m_lastError; }

private:
    void OpenOrMake(const std::filesystem::path& path);

    std::intptr_t m_handle = -1;
    bool m_changed = false;       ///< something waits to be handed to the disk
    std::filesystem::path m_made; ///< the file's own name when OpenOrCreate or Truncate created it; else empty
    mutable std::error_code m_lastError;
};

/// Waits until the disk knows which files the folder of `path` holds, as after a rename in it. False when it refuses.
bool FlushFolderOf(const std::filesystem::path& path);

/// Makes the folder at `path`, and those above it that are missing, so that nobody but the user may look into them; one
/// that is there already and the user's own is closed to others, too. False when there is no such folder then.
bool MakePrivateFolder(const std::filesystem::path& path);

/// Whether it is certain that nothing has the name, or only a link that leads nowhere; false when that cannot be told.
bool IsMissing(const std::filesystem::path& path);

/// Whether both paths lead to one file, by whatever names or links; false for what is not there.
bool IsSameFile(const std::filesystem::path& one, const std::filesystem::path& other);

/// Whether a file that could not be opened because of `fault` is missing, or may not be used in that way. Anything else
/// that has its name, and a disk that fails, is neither.
bool IsMissingOrProtected(std::error_code fault);

/// What `path` names when all symbolic links at its end are followed; it need not exist. A circle of links ends in one
/// of them.
std::filesystem::path LinkTarget(std::filesystem::path path);

/// From now on a write that fails, because a reader has gone or a file may not grow, says so and does not end the
/// program.
void SurviveFailedWrites();

/// Whether what is written to `stream` goes to a terminal, and so to somebody who watches.
bool IsTerminal(std::FILE* stream);

/// Writes `text`, which is UTF-8: these bytes, or on a console of Windows its characters, whatever code page that one
/// has. False, with the reason in errno, when not all of it could be written.
bool WriteText(std::FILE* stream, std::string_view text);

/// The system's own words for `error` in UTF-8, in the user's language where the system has them in it.
std::string ReasonUtf8(std::error_code error);

/// The full name of the running program; empty when the platform does not tell it.
std::filesystem::path ExecutablePath();

/// The folder for what programs keep for this user: XDG_DATA_HOME, else .local/share in the home folder; on Windows the
/// local application data. It may not exist yet. Empty when the platform does not tell it.
std::filesystem::path UserDataFolder();
