#pragma once

#include "disk/File.h"
#include "recovery/UnsavedWork.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <system_error>

/// The journal of what one document has not saved: a file that grows by a line a command, and that the program holds
/// (CFile::Hold) as long as the object lives. So edits whose program has gone are known by their journal, which nobody
/// holds any more (UnsavedStore.h). docs/file-formats.md says what stands in it.
///
/// An object that goes without End or Drop leaves the journal, as the end of the program does.
class CJournal {
public:
    /// Makes a journal in the folder `unsaved` of `dataFolder`, both made where they are missing; nobody else may look
    /// into them. It has its name once it is held and has its header. Nothing when that fails, for `fault`; then no
    /// file is left.
    static std::optional<CJournal> Begin(const std::filesystem::path& dataFolder, const WorkHeader& header,
                                         std::error_code& fault);

    /// Hands the new states of cells, of which there may be none, to the system as one line. Exact words and old words
    /// are no longer than their cell. False when they could not be written; the journal is as it was then, and what was
    /// not written goes with the next call of Append or Flush.
    bool Append(std::span<const UnsavedCell> command);

    /// The same cell by cell: BeginCommand, an Add for each, of which there will be about so many, and EndCommand,
    /// whose answer is Append's. All but EndCommand throw std::bad_alloc: then nothing was appended.
    void BeginCommand(std::size_t cells);
    void Add(const UnsavedCell& cell);
    bool EndCommand();

    /// Waits until the disk has what was appended. False when it refuses it.
    bool Flush();

    /// Whether the disk has all that was appended.
    bool IsFlushed() const { return m_isFlushed; }

    /// The work was saved: the file goes. The journal takes nothing more.
    void End();

    /// Puts the journal among the dropped ones, which are kept for a while (UnsavedStore.h), and ends; without an
    /// edited cell it goes. False when that fails: it stays where it is, with nobody's hold.
    bool Drop(UtcTime now = UtcNow());

    /// The latest fault of Append, Flush or Drop.
    std::error_code LastError() const { return m_lastError; }

private:
    CJournal() = default;

    void BeginLine();
    bool WriteCells();
    bool WriteLine();
    bool WriteWaiting();

    CFile m_file; ///< closed once the journal has ended
    std::filesystem::path m_path;
    bool m_isOfWords = false;
    std::uint64_t m_headerSize = 0;
    std::uint64_t m_size = 0;
    std::uint32_t m_checksum = 0; ///< of the last line
    std::string m_line;           ///< the one that is made, or room for it
    std::size_t m_cellsBegin = 0; ///< within it
    bool m_isFirstCell = true;    ///< the next one of the command
    std::string m_waiting;        ///< cells of commands that could not be written
    bool m_isFlushed = false;
    bool m_hasName = false; ///< the folder knows the file for good
    std::error_code m_lastError;
};
