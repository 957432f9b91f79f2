#pragma once

#include <cstddef>
#include <memory>
#include <span>

/// An owned run of bytes that starts uninitialised, so that a large read touches its memory only once.
class CByteBuffer {
public:
    CByteBuffer() = default;

    /// Throws std::bad_alloc when there is no memory for `size` bytes.
    explicit CByteBuffer(std::size_t size) : m_bytes(std::make_unique_for_overwrite<std::byte[]>(size)), m_size(size) {}

    std::span<std::byte> Bytes() { return {m_bytes.get(), m_size}; }
    std::span<const std::byte> Bytes() const { return {m_bytes.get(), m_size}; }

    /// Keeps the first `size` bytes, which must not be more than there are.
    void Shorten(std::size_t size) { m_size = size; }

private:
    std::unique_ptr<std::byte[]> m_bytes;
    std::size_t m_size = 0;
};
