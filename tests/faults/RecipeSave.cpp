// vantor-recipe-save COMMAND FILE START ROWS [ORIGINAL] opens FILE in a document, gives cells texts and writes:
//
//   all       all cells
//   edited    the edited cells alone
//   put-back  what a save of all cells changed that nobody had edited. For that FILE is first given the bytes of
//             ORIGINAL, opened and saved; "saved" does that much.
//
// Only the last step meets the faults of the disk. Prints "torn" when the file may hold old and new words, and what
// went wrong. Ends with 0 when it succeeded, with 1 when it failed, and with 3 when the document then takes something
// for true that is not.

#include "disk/File.h"
#include "document/RecipeDocument.h"
#include "tests/faults/SoundDisk.h"
#include "tests/support/Formats.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr auto kNoEnd = std::chrono::steady_clock::time_point::max();

/// The document of one run, and what its user does.
class CSession {
public:
    CSession(fs::path path, int start, int rows) : m_path(std::move(path)), m_start(start), m_rows(rows) {}

    bool Open()
    {
        document.StartOpen(m_path, FileTypeOf(m_path));
        document.TakeSettings({Format(), m_start, m_rows});
        return document.ReadOnly(printer, progress) == CRecipeDocument::Reading::Done;
    }

    /// Into four rows all over, from `first` on.
    void Type(int first, const char16_t* text)
    {
        std::vector<TextForCell> texts;
        for (int row = first; row < m_rows; row += std::max(m_rows / 4, 1))
            texts.push_back({{row, 0}, text});
        document.SetTexts(EditKind::Typing, std::move(texts));
    }

    SaveResult SaveAll()
    {
        const SaveResult result = document.Write(document.Type(), m_path, printer, progress);
        if (result.isSaved)
            document.MarkSaved();
        return result;
    }

    SaveResult SaveEdited()
    {
        const SaveResult result = document.WriteEdited(printer, progress);
        if (result.isSaved)
            document.MarkSaved();
        return result;
    }

    SaveResult PutBack()
    {
        std::size_t count = 0;
        return document.PutBackStored(printer, progress, count);
    }

    CErrorPrinter printer;
    CNoProgress progress;
    CRecipeDocument document;

private:
    /// With two decimals a save rewrites 105, which is shown as "1.50".
    static DataFormat Format()
    {
        return MakeFormat(
            u"Two", {MakeItem(u"Temp", DataType::Unsigned16, 1, 4, 2), MakeItem(u"Name", DataType::String, 2, 0)});
    }

    fs::path m_path;
    int m_start;
    int m_rows;
};

/// What the document takes for true and is not; empty when there is nothing.
std::string ErrorIn(CRecipeDocument& document, bool isUnreadable)
{
    document.ContinuePlan(kNoEnd);
    const CSavePlan& plan = document.Plan();
    if (!plan.IsFinished())
        return isUnreadable ? "" : "there is no plan";
    const CStoredCells stored = ReadStoredCells(document.Rows(), document.Type(), document.Path());
    CSavePlan anew;
    anew.Begin(document.Rows(), stored, document.Path(), false);
    anew.Continue(kNoEnd);
    if (plan.Changes() != anew.Changes() || plan.CountOfUnedited() != anew.CountOfUnedited())
        return "the plan is not that of the file";
    return plan.NewFileBytes() == anew.NewFileBytes() ? "" : "the plan ends elsewhere than the file";
}

/// What is wrong about the flags of a document with so many edited cells whose last step ended so.
std::string FlagError(const CRecipeDocument& document, const SaveResult& result, bool isPutBack, std::size_t edited)
{
    const std::size_t left = result.isSaved && !isPutBack ? 0 : edited;
    if (document.Rows().EditedCount() != left)
        return "another number of cells is edited";
    if (document.IsModified() != (left > 0))
        return "the flag that tells of changes is wrong";
    const bool isOffered = document.StoredAsShown() != nullptr;
    const bool isKept = isPutBack && !result.isSaved && !result.mayHoldOldAndNew;
    return isPutBack && isOffered != isKept ? "the offer to put back is wrong" : "";
}

int Told(CSession& session, const SaveResult& result, bool isPutBack, std::size_t edited)
{
    const CSoundDisk sound;
    if (result.mayHoldOldAndNew)
        std::puts("torn");
    const bool isUnreadable = std::string_view(std::getenv("VANTOR_FAULT_KIND")) == "read";
    std::string error = FlagError(session.document, result, isPutBack, edited);
    if (error.empty())
        error = ErrorIn(session.document, isUnreadable);
    if (error.empty())
        return result.isSaved ? 0 : 1;
    std::fprintf(stderr, "%s\n", error.c_str());
    return 3;
}

bool SaveAFirstTime(CSession& session, const fs::path& path, const fs::path& original)
{
    fs::copy_file(original, path, fs::copy_options::overwrite_existing);
    if (!session.Open())
        return false;
    session.Type(1, u"2.91");
    return session.SaveAll().isSaved;
}

int Run(const std::string& command, CSession& session, const fs::path& path, const fs::path& original)
{
    const bool isPutBack = command == "put-back";
    {
        const CSoundDisk sound;
        if (command == "saved")
            return SaveAFirstTime(session, path, original) ? 0 : 2;
        if (!(isPutBack ? SaveAFirstTime(session, path, original) : session.Open()))
            return 2;
        session.Type(2, u"7.34");
    }
    const std::size_t edited = session.document.Rows().EditedCount();
    if (isPutBack)
        return Told(session, session.PutBack(), isPutBack, edited);
    return Told(session, command == "all" ? session.SaveAll() : session.SaveEdited(), isPutBack, edited);
}

} // namespace

int main(int argc, char* argv[])
{
    SurviveFailedWrites();
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.size() != 4 && arguments.size() != 5)
        return 2;
    const fs::path path = arguments[1];
    CSession session(path, std::stoi(arguments[2]), std::stoi(arguments[3]));
    return Run(arguments[0], session, path, arguments.size() == 5 ? arguments[4] : "");
}
