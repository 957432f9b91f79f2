#pragma once

#include "model/Address.h"

#include <cstddef>
#include <cstdint>

// The paged recipe file, ".erp" and ".frp". Word address a is the logical byte address A = 2a, 32 bits wide. With L,
// the length of the flat part, 1 MiB in an ".erp" and 64 KiB in a ".frp":
//
//   0 to L - 1    the bytes with A below L, flat
//   L             the directory: 1024 offsets of page tables, of 4 bytes each, little-endian; 0 for none
//   L + 4096 on   page tables (1024 offsets of pages each, likewise) and pages of 4096 bytes, in the order in which
//                 they came to be
//
// The byte at A, from L on, is byte A modulo 4096 of the page that entry A / 4096 modulo 1024 of a table gives, which
// entry A / 4194304 of the directory gives: A itself, not A - L.

/// The two kinds of paged file.
enum PagedKind : std::int32_t {
    kErp = 1, ///< a flat part of 1 MiB
    kFrp = 2, ///< a flat part of 64 KiB
};

constexpr std::size_t kBlockBytes = 4096; ///< of the directory, of a table and of a page

std::uint32_t FlatBytes(PagedKind kind);

/// Which entry of the directory, and which of its table, leads to the byte at `address`.
std::size_t DirectoryIndex(ByteOffset address);
std::size_t TableIndex(ByteOffset address);

/// Where the byte at `address` lies in its page.
std::uint32_t PlaceInPage(ByteOffset address);

/// The first byte after the page of `address`.
ByteOffset NextPage(ByteOffset address);

/// How many of the next `left` bytes lie in the page of `address`.
std::size_t BytesInPage(ByteOffset address, std::size_t left);
