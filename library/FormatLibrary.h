#pragma once

#include "model/DataFormat.h"
#include "model/FixedText.h"
#include "text/Reporter.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string_view>
#include <vector>

// The format library file, "RecipeFile.Dat" beside the program. All integers little-endian, all text UTF-16LE.
//
//   header, version 20                          version 0 (older)
//   offset  size                                offset
//        0    32  "RecipeFile2.0", zero-filled       -  no marker
//       32     4  startAddress, signed words         0
//       36     4  rowCount, signed                   4
//       40    32  filePattern, 16 units              8
//       72        format records to the end         40
//
//   format record                               item record (version 20: 320 bytes; version 0: the first 312)
//        0     4  start mark 100                     0  reserved0       24  description, 256 bytes
//        4   256  name, 128 units                    4  dataLength     280  isArray
//      260     4  itemCount, signed                  8  dataType       284  reserved1
//      264        itemCount item records            12  integerDigits  288  reserved2
//        …     4  end mark 200                      16  decimalDigits  292  arrayLength
//                                                   20  codeType       296  minValue, 64 bits
//                                                  312  unicode        304  maxValue, 64 bits
//                                                  316  padding, 4 zero bytes

class CFile;

/// All formats that the user defined, with the read settings that go with them. Owns its formats.
class FormatLibrary {
public:
    static constexpr std::u16string_view kMarker = u"RecipeFile2.0";
    static constexpr std::u16string_view kFileName = u"RecipeFile.Dat";

    /// The version that this program writes, made from the marker: 20.
    static std::int32_t ProgramVersion();

    /// Frees all formats and reads the file at `libraryPath`, which is created empty when it is missing and never
    /// truncated. Returns -1 when it cannot be opened or a format record is bad (the formats before that one stay), 0
    /// when it is empty, else its length in bytes. Reports nothing. A file that the disk fails to read counts as one
    /// that cannot be opened: -1, no formats, and the versions not known.
    ///
    /// A version 0 file is converted: its items get `arrayLength` from the old `codeType` (kept). A file of a later
    /// version gives formats without items.
    std::int64_t load(const std::filesystem::path& libraryPath);

    /// As `load`, but never creates or changes the file: -1 when it is missing.
    std::int64_t loadReadOnly(const std::filesystem::path& libraryPath);

    /// Writes the library to `libraryPath` as version 20: a complete new file that takes the old one's place
    /// (CReplacement). Where a file already holds these very bytes, even one that may only be read, nothing is written
    /// or made. Returns 0 once they are on the disk, or -1 after a failure, which leaves the old file as it was
    /// wherever it could be replaced. Reports nothing. A link keeps leading to the file; what exists and is no regular
    /// file is refused. Of each format `itemCount` items are written, but no more than it holds, and the number written
    /// is the count in the file.
    int save(const std::filesystem::path& libraryPath) const;

    /// Whether the file at `libraryPath` holds the very bytes that a save would write there.
    bool isSavedAt(const std::filesystem::path& libraryPath) const;

    /// The same of its formats alone, whatever its read settings.
    bool hasFormatsOf(const std::filesystem::path& libraryPath) const;

    std::vector<std::unique_ptr<DataFormat>> formats;        ///< in file order; the first is selected at start
    std::filesystem::path path;                              ///< the library file's full name, set by load
    std::int32_t startAddress = 0;                           ///< first word to read
    std::int32_t rowCount = 10;                              ///< rows to read
    FixedText<16> filePattern{u'*', u'.', u'r', u'c', u'p'}; ///< what the Open command last used
    std::int32_t fileVersion = 0;    ///< of the file read last: 20, 0 without a marker, or a later one
    std::int32_t programVersion = 0; ///< 20 once a library file was opened
    bool versionsKnown = false;      ///< whether the load got as far as reading both versions

private:
    void forget();
    std::int64_t read(const CFile& libraryFile);
};

/// The library file beside the executable with the full name `executable`: its folder, then "RecipeFile.Dat".
///
/// A name without a folder separator is reported ("Open Recipe FormatData file Error!") and turned back to front, which
/// names no file in practice.
std::filesystem::path LibraryPathBeside(const std::filesystem::path& executable, CReporter& reporter);
