#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <system_error>

/// A regular file, opened once and closed with the object: the only place that makes the platform's file calls. A
/// folder, a pipe or a device is refused as if it could not be opened. Paths are in the platform's native encoding and
/// may be of any length. All offsets are bytes from the file's start; no call moves a shared position.
class CFile {
public:
    enum class Mode {
        Read,         ///< must exist
        ReadWrite,    ///< must exist; never truncated
        OpenOrCreate, ///< read and write; created empty when missing, never truncated
        Truncate,     ///< read and write; created, or emptied when it exists
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

    /// Writes all of `bytes` at `offset`; a gap behind the old end reads as zero bytes. False after an error, when a
    /// part may have been written.
    bool WriteAt(std::uint64_t offset, std::span<const std::byte> bytes);

    /// Hands what was written to the disk and closes. False when the disk refuses it; the file is closed all the same.
    /// Without this call the object closes the file too, but nobody hears of a refusal.
    bool Close();

    /// Why the latest call on the open file that failed did so; zero before one. A call that succeeds leaves it.
    std::error_code LastError() const { return m_lastError; }

private:
    std::intptr_t m_handle = -1;
    bool m_changed = false; ///< something waits to be handed to the disk
    mutable std::error_code m_lastError;
};

/// The system's own words for `error`, in the user's language where the system has them in it.
std::u16string ReasonText(std::error_code error);

/// The full name of the running program; empty when the platform does not tell it.
std::filesystem::path ExecutablePath();

/// The folder for what programs keep for this user: XDG_DATA_HOME, else .local/share in the home folder; on Windows the
/// local application data. It may not exist yet. Empty when the platform does not tell it.
std::filesystem::path UserDataFolder();

/// `path` as text for a message; what is no valid text in it shows as U+FFFD. Never throws.
std::u16string PathText(const std::filesystem::path& path);
