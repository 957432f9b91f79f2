#pragma once

#include "disk/Holder.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <system_error>

/// The platform's file calls, each once and in the same shape for all platforms: what CFile is made of, and for it
/// alone. A file is the platform's number for it. After a call that failed, SystemError tells why.
namespace platform {

constexpr std::intptr_t kNoFile = -1;

enum class Access {
    Read,
    Write,         ///< and read
    Create,        ///< write and read a file that is not there yet
    CreatePrivate, ///< the same, for the user alone
};

/// Why the call just made failed.
std::error_code SystemError();

/// Never waits, and never gives the number of a standard stream; kNoFile after an error. May open what is no file.
std::intptr_t OpenByName(const std::filesystem::path& path, Access access);

/// Makes one folder for the user alone; false when there is anything of that name.
bool MakePrivateFolder(const std::filesystem::path& path);

/// Closes the folder at `path` to others than the user, if it is one of the user's own; false when it is not, or after
/// an error.
bool MakePrivate(const std::filesystem::path& path);

/// What speaks against it as a file: it is a folder, a pipe or a device, or that cannot be told; no fault where it is a
/// file.
std::error_code NoFileFault(std::intptr_t file);

/// Bytes.
std::optional<std::uint64_t> LengthOf(std::intptr_t file);

/// Cuts the file, or has it grow by zero bytes.
bool SetLength(std::intptr_t file, std::uint64_t length);

/// Moves one byte or more of at most 1 GiB between `bytes` and the file at `offset`: the number of them, 0 at the
/// file's end; nothing after an error.
std::optional<std::size_t> ReadSome(std::intptr_t file, std::uint64_t offset, std::span<std::byte> bytes);
std::optional<std::size_t> WriteSome(std::intptr_t file, std::uint64_t offset, std::span<const std::byte> bytes);

/// Sets room aside for `size` bytes at `offset`; the file is then at least as long as that. Otherwise tells why not.
std::error_code Allocate(std::intptr_t file, std::uint64_t offset, std::uint64_t size);

/// Gives the file the owner, rights and extended attributes of the one at `path`.
bool TakeAttributes(std::intptr_t file, const std::filesystem::path& path);

/// Takes the hold of the file, which ends with its release.
Holder TakeHold(std::intptr_t file);

/// Whether `path` names this file, not a link to it.
bool IsAt(std::intptr_t file, const std::filesystem::path& path);

/// Whether it belongs to the user who runs the program.
bool IsOwn(std::intptr_t file);

/// Waits until the disk has the file's content, or knows what files the folder holds.
bool FlushToDisk(std::intptr_t file);
bool FlushFolder(const std::filesystem::path& folder);

/// The number is free again, whatever the answer.
bool Release(std::intptr_t file);

} // namespace platform
