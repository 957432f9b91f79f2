#pragma once

#include "changes/CellPatch.h"
#include "changes/TableComparison.h"
#include "disk/FileLock.h"
#include "document/EditHistory.h"
#include "document/EditOutcome.h"
#include "document/ReadSettings.h"
#include "document/UnsavedKeeper.h"
#include "files/Outcome.h"
#include "files/Progress.h"
#include "files/PutBack.h"
#include "files/RecipeFile.h"
#include "files/RecipeWalk.h"
#include "files/SavePlan.h"
#include "library/FormatStore.h"
#include "model/TypedValue.h"
#include "recovery/VersionStore.h"
#include "text/Reporter.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

inline constexpr std::u16string_view kNoMemoryForEdit =
    u"There is not enough memory for this command. Nothing was changed.";

inline constexpr std::u16string_view kNoMemoryToCompare = u"There is not enough memory to compare the files.";

/// A text for a cell.
struct TextForCell {
    CellPlace place;
    std::u16string text;
};

/// What an undo or redo did, for those who show the document.
struct EditReport {
    EditOutcome outcome = EditOutcome::Nothing;
    std::u16string name;               ///< of the edit
    std::vector<CellPlace> cells;      ///< those that it gave other states, in ascending order
    bool hasOtherRows = false;         ///< other rows are shown, perhaps of another layout
    bool isFormatLeftAlone = false;    ///< a format is no longer what the edit made of it: that part was dropped
    std::optional<std::size_t> format; ///< the place in the library of a format that changed, came or went
};

/// What another program made of the current file: the cells that are others than the document knows them.
struct ForeignChanges {
    std::filesystem::path path;
    CStoredCells before; ///< as known
    CStoredCells after;  ///< as they are
    std::vector<CellPlace> places;
};

/// What a look at the current file finds.
struct FileLook {
    enum class State {
        AsKnown, ///< or nobody can tell: it was never read, or cannot be now
        Changed,
        Gone,
        NoFile, ///< something else has its name
    };

    State state = State::AsKnown;
    std::shared_ptr<const ForeignChanges> changes; ///< of a changed one
};

/// What a save does where another program changed the words or fields that it would write over.
enum class ForeignRule { Overwrite, HoldBack };

/// What came along with the last save, besides its result.
struct SaveNotes {
    std::shared_ptr<const ForeignChanges> overwritten; ///< what another program had changed there; null for nothing
    bool wasBusy = false;                              ///< another program was writing, and did not end
    std::optional<VersionKept> version;                ///< of what the file held before; nothing where none was to be
};

class CTableExport;

/// What a save will do to a cell: the numbers that its words are (StoredNumber.h), in full, or their texts where they
/// are no numbers.
struct CellOutlook {
    ChangeReason why = ChangeReason::Edited;
    std::optional<std::u16string> holds; ///< in the file; nothing where it ends before the cell
    std::u16string shown;
    std::u16string stores; ///< a save
};

/// The open recipe: its file and type, how it was laid out, its rows, what is edited, and the edits that can be undone.
///
/// The window's commands and the command line work on it; it shows nothing and asks nothing. What fails is reported in
/// the words of the file's type.
class CRecipeDocument {
public:
    /// How a reading ended.
    enum class Reading {
        Done,
        NotShown, ///< the format has no words, or breaks a limit that was reported: there are no rows
        Failed,   ///< reported; the cells are empty, or, where there was no memory for them, as they were
        GivenUp,  ///< by the user's wish: there are no rows
    };

    explicit CRecipeDocument(std::size_t mostHistoryBytes = CEditHistory::kMostBytes) : m_history(mostHistoryBytes) {}
    ~CRecipeDocument();
    CRecipeDocument(const CRecipeDocument&) = delete;
    CRecipeDocument& operator=(const CRecipeDocument&) = delete;

    /// The store whose formats undo and redo change; it outlives the document.
    void UseFormatsOf(CFormatStore& store) { m_pStore = &store; }

    /// Has each write first keep what the file holds in `store`, which outlives the document. The version says
    /// `command` made it, else what the write is: "Save", "Put back".
    void KeepVersionsIn(const CVersionStore& store, std::u16string command = {});

    /// Has edits kept in a journal in `dataFolder`, from the next one on, until they are saved or dropped. When the
    /// document goes, the journal of edits that are neither stays behind.
    void KeepUnsavedIn(std::filesystem::path dataFolder) { m_unsaved.KeepIn(std::move(dataFolder)); }
    CUnsavedKeeper& Unsaved() { return m_unsaved; }

    // What is open.

    bool IsOpen() const { return m_bFileOpen; }     ///< New or Open succeeded once
    bool IsNew() const { return m_bNewFile; }       ///< made by New and not saved since
    bool IsModified() const { return m_bModified; } ///< changed since the last save
    bool IsUnsaved() const { return m_bFileOpen && (m_bModified || m_bNewFile); }
    const std::filesystem::path& Path() const { return m_strFilePath; } ///< empty for one without a name
    FileType Type() const { return m_nFileType; }                       ///< of the file opened or saved last
    const ReadSettings& Settings() const { return m_settings; }         ///< in use: for the next reading
    const CRecipeRows& Rows() const { return m_shown.rows; }
    const DataFormat& Format() const { return m_shown.settings.format; } ///< that laid out the rows

    /// Another number whenever cells became others: by an edit, an undo, or rows that took the place of those shown.
    std::uint64_t CellsEdition() const { return m_cellsEdition; }

    /// Another number whenever the file holds, or is known to hold, other words or texts of the cells: after a save,
    /// and where another program's are taken as known.
    std::uint64_t StoredEdition() const { return m_storedEdition; }

    /// Another number whenever columns of the rows got other notes.
    std::uint64_t NotesEdition() const { return m_notesEdition; }

    /// Gives the format in use, and so the columns of the rows, the notes that its items have in the store's library by
    /// now (ItemsInUse.h); those that it does not have any more keep theirs. Readings, undo and redo do so themselves.
    /// Is no edit. False when all had these notes.
    bool TakeNotes() noexcept;

    /// Whether there are rows that may be saved: those of the current file, or of a new document. Others would put
    /// zeros over words that nobody has seen. A paged file that could not be opened has none.
    bool HasRowsOfFile() const { return m_shown.areOfFile && !m_shown.rows.ShowsTheSameEverywhere(); }

    /// Takes the settings for the next reading. What is shown stays.
    void TakeSettings(ReadSettings settings) { m_settings = std::move(settings); }

    // Files.

    /// A new document without a name is the open one, without rows until Read. The history ends.
    void StartNew();

    /// The file at `path` is the open one, without rows until Read. Where its type is not known it keeps the former
    /// one, and gets no rows by Open. The history ends.
    void StartOpen(const std::filesystem::path& path, std::optional<FileType> type);

    /// Fills the rows from the current file as `type`, laid out by the settings in use. The first reading after a start
    /// begins the history; each later one drops edits and can be undone: then rows, layout and edits come back.
    Reading Read(FileType type, CReporter& reporter, CProgress& progress);

    /// As Read, but for the document's own type, and never writes: nothing is made that is missing.
    Reading ReadOnly(CReporter& reporter, CProgress& progress);

    /// Hands the text of every cell of the current file to `taker`, as the settings in use lay them out, without
    /// keeping rows. Never writes. False after a failure, reported.
    bool Walk(CCellTaker& taker, CReporter& reporter) const;

    /// There are no rows any more. Like a reading, this can be undone unless it is the first; without the memory to
    /// keep the rows they are gone, and the history ends.
    void ClearRows();

    // Each write first waits until no other program writes the file, for 5 seconds at most, and keeps others waiting
    // until it has ended (CFileLock). Where the other does not end it writes all the same; LastSave tells.

    /// Writes the rows to `path` as `type`; then no cell is edited. The document's own path, type and flags stay: see
    /// SaveAs and MarkSaved. Rows that are not the file's (HasRowsOfFile) are reported as the type's failed save, and
    /// not a byte is written; those of a paged file that could not be opened are left out as it is. `rule` is for the
    /// current file.
    SaveResult Write(FileType type, const std::filesystem::path& path, CReporter& reporter, CProgress& progress,
                     ForeignRule rule = ForeignRule::Overwrite);

    /// Writes the rows to `path` as `type` as Write does after its preparation for a new name (PrepareSaveAs), but all
    /// at once: the old file is as it was until the new one is complete (ReplaceRecipe). The document stays as it is.
    /// Rows that are not the file's are reported as the type's failed save: they would empty the target, or put zeros
    /// over it.
    SaveResult Replace(FileType type, const std::filesystem::path& path, CReporter& reporter);

    /// Writes the edited cells into the current file, and no other byte (EditedSave.h); then no cell is edited. Path,
    /// type and flags stay. Reported and left out as by Write.
    SaveResult WriteEdited(CReporter& reporter, CProgress& progress, ForeignRule rule = ForeignRule::Overwrite);

    /// Whether WriteEdited would get as far as writing; never writes. False when it would refuse or fail before, then
    /// reported as by it.
    bool MayWriteEdited(CReporter& reporter, CProgress& progress) const;

    /// Writes a file that the current one would be if it were saved, under another name; the document stays as it is.
    /// A file of another type than the current one gets the rows alone, as by Replace. The target is as it was until
    /// the new file is complete. Refused, and reported, when `path` is the current file itself.
    SaveResult WriteCopy(FileType type, const std::filesystem::path& path, CReporter& reporter, CProgress& progress);

    /// Writes the rows as a table for other programs; the document stays as it is. Refused, and reported, when `path`
    /// is the current file itself.
    SaveResult WriteTable(const CTableExport& table, const std::filesystem::path& path, CReporter& reporter,
                          CProgress& progress);

    /// As Write, to the new name `path`, which is made ready first (PrepareSaveAs); `path` and `type` are the
    /// document's then. Rows that Replace would not take cost the target no byte. After a failure all is as it was, but
    /// for one case, kept: a flat file that cannot be made ready gives the document its name all the same.
    SaveResult SaveAs(FileType type, const std::filesystem::path& path, CReporter& reporter, CProgress& progress);

    const SaveNotes& LastSave() const { return m_notes; }

    /// Keeps other programs that ask from writing the file at `path` until the next write has ended, or the document
    /// goes; waits as a write does. Busy when the other did not end: nothing is held then.
    CFileLock::State Hold(const std::filesystem::path& path);

    /// Looks at what the current file holds of the cells. Reads them all, and never writes.
    FileLook Look() const;

    /// Has the plan begun anew where the file could not be read before, and where that of a table of texts has another
    /// size than when it was begun: others may have written lines that are not shown.
    void CheckPlan();

    /// From now on the file is known to hold what the look found, and what is shown stays.
    void KeepShown(const ForeignChanges& changes);

    /// The current file was made what it was earlier, and is to be read again: rows that come back from before are
    /// edited where they differ from what it holds then. `kept` is the version of what it held before; LastSave has it
    /// from now on, and nothing else of the last save.
    void NoteRestored(VersionKept kept);

    /// The work counts as saved.
    void MarkSaved();

    /// What is shown is what the file holds: changes were dropped, and nothing is to be saved.
    void MarkUnmodified();

    // What a save of all cells would change in the current file.

    /// The plan of it, as far as it is counted. Nothing is planned where there is no current file, or no rows of it.
    const CSavePlan& Plan() const { return m_plan; }

    /// Begins it where there is something to plan and it is not begun. Cheap; ContinuePlan does it, too.
    void BeginPlan();

    /// Counts on until `end`; each edit is taken into account by itself. False when there is more to count then.
    bool ContinuePlan(std::chrono::steady_clock::time_point end);

    /// Whether there is something to plan that is not counted yet.
    bool IsPlanOpen() const { return CanPlan() && (m_isPlanStale || (m_plan.IsBegun() && !m_plan.IsFinished())); }

    /// Why the cell is stored otherwise by a save, counted or not; nothing when it is not.
    std::optional<ChangeReason> WhyChanged(CellPlace place);

    /// The same with what the cell holds and would hold.
    std::optional<CellOutlook> OutlookOf(CellPlace place);

    /// What a save in words makes, or made, of a text that the cell was given, and how it is read again; nothing for
    /// any other cell, and for a table of texts, which stores what was typed.
    std::optional<TypedValue> JudgeTyped(CellPlace place) const;

    /// What the file holds of the cells that are shown.
    const CStoredCells& Stored() const { return m_shown.stored; }

    /// What the last Write changed in the current file that nobody had edited; null when there is none, or the offer to
    /// put it back has ended: with the next save.
    const std::shared_ptr<const SavedChanges>& StoredAsShown() const { return m_pStoredAsShown; }

    /// Puts that back (PutBack.h), into a file that is not the current one any more, too; no state of a cell changes.
    /// `count` becomes the number of values that are as they were before that save.
    SaveResult PutBackStored(CReporter& reporter, CProgress& progress, std::size_t& count);

    // Comparing the rows with another file, or with another state of their own. It ends with New and Open, and where
    // the rows come to be laid out otherwise.

    /// Whether there are rows that can be compared.
    bool CanCompare() const { return HasRowsOfFile() && m_shown.rows.RowCount() > 0; }

    /// Compares them from now on with what the file at `path`, of any type, holds in their layout. It is read once, and
    /// never written. After a failure to read it, reported, and when that was given up, all is as it was.
    Outcome CompareWith(const std::filesystem::path& path, CReporter& reporter, CProgress& progress);

    /// The same with `other`, whose cells are known and laid out as the rows. Nothing is compared when it was given
    /// up, or memory did not suffice for it, which is reported.
    Outcome CompareWith(ComparedWith other, CReporter& reporter, CProgress& progress);

    /// Reads the file at `path` as CompareWith does, and compares nothing. After a failure, reported, and when it was
    /// given up, `other` means nothing.
    Outcome ReadToCompare(const std::filesystem::path& path, ComparedWith& other, CReporter& reporter,
                          CProgress& progress) const;

    /// The comparison at hand; null for none. It follows edits, saves and readings.
    const std::shared_ptr<CTableComparison>& Comparison() const { return m_comparison; }

    void EndComparison();

    /// Counts on until `end` what differs; a comparison that memory does not suffice for ends. False when there is more
    /// to count then.
    bool ContinueComparison(std::chrono::steady_clock::time_point end);

    // A patch for the cells of the rows.

    /// Reads the patch at `path` for them; its fault tells where it is none. False when the file cannot be read, which
    /// is reported, and when memory does not suffice, likewise. Nothing is changed.
    bool ReadPatch(const std::filesystem::path& path, ReadCellPatch& read, CReporter& reporter,
                   CProgress& progress) const;

    /// What the patch, which was read for rows laid out like these, will change; null, and `others` are the values that
    /// it expects with what is there instead, when one of them is another. Nothing of both where memory does not
    /// suffice.
    std::shared_ptr<const CChangeList> ChangesBy(const CellPatch& patch,
                                                 std::shared_ptr<const CChangeList>& others) const;

    /// Makes the changes of a patch that was read for rows laid out like these: all, or none when it does not find
    /// every old value now. One edit.
    EditOutcome ApplyPatch(const CellPatch& patch);

    // Edits. Each can be undone; those of cells make the document modified.

    /// Gives cells texts that passed their check. A cell that stands twice gets the last text. Places outside the rows
    /// are left out.
    EditOutcome SetTexts(EditKind kind, std::vector<TextForCell> texts);

    /// Gives cells states. The places lie within the rows, in ascending order, none twice.
    EditOutcome SetStates(EditKind kind, std::vector<CellEdit> edits);

    /// Whether cells may be given the very words to be saved: rows of words, for a file of words.
    bool HasExactWords() const { return m_nFileType != FileType::Csv && m_shown.rows.IsOfWords(); }

    /// Whether KeepStored, or StoreExactly, has something to do for the cell.
    bool CanKeepStored(CellPlace place);
    bool CanStoreExactly(CellPlace place) const { return ExactWordsOf(place).has_value(); }

    /// Gives those of the cells that a save would store otherwise, without being edited, the words that the file holds.
    EditOutcome KeepStored(std::span<const CellPlace> places);

    /// Gives those of the cells whose typed numbers would be stored as others the words that store them exactly.
    EditOutcome StoreExactly(std::span<const CellPlace> places);

    /// Gives cells the words or texts that another file, or another state of this one, holds for them. Left out are
    /// places outside the rows, words that are not as many as the cell has, or for rows that take none, and texts that
    /// may not become the value of a cell in words; `refused`, unless it is null, becomes the number of them.
    EditOutcome TakeOver(std::vector<CellEdit> edits, std::size_t* refused = nullptr);

    /// Whether the rows are those of the file that `work` is about, in its layout.
    bool IsLaidOutFor(const WorkHeader& work) const;

    /// Gives cells the states that `work`, of this file in this layout, had not saved, where the file still holds what
    /// it held then: one edit. Those of the others are left out, and come back; all are where the layout is another.
    std::vector<UnsavedCell> PutBackUnsaved(const UnsavedWork& work, EditOutcome& outcome);

    /// Takes note of a change of the library's formats that was made.
    EditOutcome NoteFormatChange(EditKind kind, FormatChange change);

    /// All edits until the group goes are one, named `kind`. Groups do not nest.
    class CGroup {
    public:
        CGroup(CRecipeDocument& document, EditKind kind);
        ~CGroup();
        CGroup(const CGroup&) = delete;
        CGroup& operator=(const CGroup&) = delete;

    private:
        CRecipeDocument& m_document;
    };

    /// The name of the edit that an undo or redo is for; nothing when there is none.
    std::optional<std::u16string> UndoName() const;
    std::optional<std::u16string> RedoName() const;

    /// Another number whenever an edit was made, undone, made again or forgotten, whatever it was about.
    std::uint64_t HistoryEdition() const { return m_history.Edition(); }

    EditReport Undo() { return Exchange(m_history.NextToUndo(), Way::Back); }
    EditReport Redo() { return Exchange(m_history.NextToRedo(), Way::Forth); }

private:
    enum class Way { Back, Forth };
    enum class Access { AsOpened, ReadOnly };

    /// What a format is before the way is gone.
    static ChangeSide SideBefore(Way way) { return way == Way::Back ? ChangeSide::After : ChangeSide::Before; }

    enum class Written { AllCells, EditedCells, OwnWords };
    using Writing = std::function<SaveResult(const WriteTarget&)>;

    /// A write: how it is called, and what it writes where.
    struct WriteOrder {
        std::u16string_view command;
        FileType type;
        const std::filesystem::path& path;
        Written written = Written::AllCells;
        ForeignRule rule = ForeignRule::Overwrite;
        std::function<bool(const std::filesystem::path& copy)> rehearse =
            {}; ///< makes the file as it will be, under another name; none where a plan tells it
    };

    SaveResult Guarded(const WriteOrder& order, CProgress& progress, const Writing& write);
    void KeepVersion(const WriteOrder& order, CProgress& progress);
    VersionKept KeepChanges(const WriteOrder& order, std::u16string_view command, CProgress& progress);
    VersionKept KeepPlanned(const WriteOrder& order, std::u16string_view command, CProgress& progress);
    VersionKept KeepRehearsed(const WriteOrder& order, std::u16string_view command) const;
    bool MakeReplaced(FileType type, const std::filesystem::path& old, const std::filesystem::path& copy) const;
    WorkInProgress Work() const;
    void FollowRows(bool areEditsDropped);
    void ReadStoredAgain();
    void LearnStored();
    std::shared_ptr<const ForeignChanges> Overwritten(const std::shared_ptr<const ForeignChanges>& changes,
                                                      Written written) const;
    std::vector<CellPlace> LeftAlone(const FileLook& look, Written written) const;
    void NoteStillUnknown(const ForeignChanges& changes, const std::vector<CellPlace>& places,
                          const SaveResult& result);
    void StartFrom(CStoredCells stored);
    FileLook LookAtCells() const;
    void Start();
    bool CanPlan() const;
    void ForgetPlan();
    std::optional<std::u16string> ExactWordsOf(CellPlace place) const;
    bool MayHaveState(const CellEdit& edit) const;
    bool MayTake(const CellEdit& edit) const;
    void NoteSaved();
    void FollowEdit(const CellsStep& step) noexcept;
    void CompareAnew() noexcept;
    CStoredCells ReadStored(const CRecipeRows& layout) const
    {
        return ReadStoredCells(layout, m_nFileType, m_strFilePath);
    }
    std::shared_ptr<SavedChanges> ChangesToCome(CProgress& progress, Outcome& outcome);
    SaveResult WriteAll(FileType type, const WriteTarget& target, CReporter& reporter, CProgress& progress);
    SaveResult WriteRows(FileType type, const WriteTarget& target, CReporter& reporter, CProgress& progress);
    SaveResult WriteAs(FileType type, const WriteTarget& target, CReporter& reporter, CProgress& progress);
    void NoteFailed(const SaveResult& result, const std::filesystem::path& path);
    bool MaySaveAs(FileType type, const std::filesystem::path& path, CReporter& reporter) const;
    Reading Read(FileType type, Access access, CReporter& reporter, CProgress& progress);
    Reading FillRows(ShownRows& shown, FileType type, Access access, CReporter& reporter, CProgress& progress) const;
    void ShowOther(ShownRows rows);
    void ShowFirst(ShownRows rows);
    bool ShowsRows() const { return !m_shown.rows.Columns().empty(); }
    std::vector<EditStep>& StepsFor(EditKind kind, CEditHistory::Prepared& own);
    void Keep(CEditHistory::Prepared own) noexcept;
    void Make(EditKind kind, EditStep step);
    void Exchange(EditStep& step, Way way);
    void ExchangeRows(ShownRows& other);
    void BringUpToDate(ShownRows& other) const;
    bool CompareWithSaved(ShownRows& other) const;
    void ExchangeAll(Edit& edit, Way way);
    EditReport Exchange(Edit* edit, Way way);
    bool DropForeignFormats(Edit& edit, Way way);
    void StepPast(const Edit& edit, Way way);
    void Drop(Way way);
    void ReportOn(const Edit& edit, Way way, EditReport& report) const;
    void Flag(const Edit& edit);

    CFormatStore* m_pStore = nullptr;
    bool m_bFileOpen = false;
    bool m_bNewFile = false;
    bool m_bModified = false;
    std::filesystem::path m_strFilePath;
    FileType m_nFileType = FileType::Rcp;
    ReadSettings m_settings;
    ShownRows m_shown;
    std::uint64_t m_cellsEdition = 0;
    std::uint64_t m_storedEdition = 0;
    std::uint64_t m_notesEdition = 0;
    std::uint64_t m_names = 0;   ///< taken by SaveAs so far
    std::uint64_t m_saves = 0;   ///< writes so far
    bool m_bFirstReading = true; ///< since the start: there is nothing to come back to
    CSavePlan m_plan;
    bool m_isPlanStale = true;         ///< it is to begin anew
    std::uint64_t m_nPlannedBytes = 0; ///< that the file of a table had when CheckPlan last looked
    std::shared_ptr<const SavedChanges> m_pStoredAsShown;
    std::shared_ptr<CTableComparison> m_comparison;
    CUnsavedKeeper m_unsaved;
    const CVersionStore* m_pVersions = nullptr;
    std::u16string m_command;     ///< that versions name; empty where each write has its own
    CFileLock m_lock;             ///< of the file that is being written
    std::filesystem::path m_held; ///< that Hold was asked for, and no write has ended since
    SaveNotes m_notes;
    CEditHistory m_history;
    std::optional<CEditHistory::Prepared> m_group; ///< while one is open
};
