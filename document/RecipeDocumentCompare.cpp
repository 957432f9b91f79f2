// The open recipe compared with another file, or with another state of its own.

#include "disk/File.h"
#include "document/EditMemory.h"
#include "document/RecipeDocument.h"
#include "files/RecipeMessages.h"
#include "text/PathText.h"

#include <utility>

namespace fs = std::filesystem;

namespace {

/// The file stays open: it may be removed, or another one take its place, while it is compared with.
std::function<std::shared_ptr<CWordBytes>()> WordsOf(FileType type, const fs::path& path)
{
    const auto words = std::make_shared<CFileWords>(type, path);
    return [words] { return words->IsOpen() ? words : nullptr; };
}

} // namespace

Outcome CRecipeDocument::CompareWith(const fs::path& path, CReporter& reporter, CProgress& progress)
{
    ComparedWith other;
    const Outcome outcome = ReadToCompare(path, other, reporter, progress);
    return outcome == Outcome::Done ? CompareWith(std::move(other), reporter, progress) : outcome;
}

Outcome CRecipeDocument::ReadToCompare(const fs::path& path, ComparedWith& other, CReporter& reporter,
                                       CProgress& progress) const
{
    const auto type = FileTypeOf(path);
    if (!type) {
        ShowFileError(reporter, kUnknownTypeError, path);
        return Outcome::Failed;
    }
    other = {.name = PathText(path.filename()), .cells = {}, .openWords = {}};
    Outcome outcome = Outcome::Failed;
    const auto read = [&] {
        CRecipeRows rows;
        rows.LayOut(m_shown.rows.Columns(), m_shown.rows.StartAddress(), m_shown.rows.RowCount());
        outcome = ReadRecipeOnly(*type, rows, path, reporter, progress);
        const auto bytes = outcome == Outcome::Done ? LogicalBytes(*type, path) : std::nullopt;
        if (outcome == Outcome::Done && !bytes) {
            outcome = Outcome::Failed;
            ShowFileError(reporter, OpenErrorOf(*type), path);
        }
        if (outcome != Outcome::Done)
            return;
        rows.ShareSourceOf(m_shown.rows);
        other.cells = CStoredCells(rows, *type, *bytes);
        other.isSelf = *type == m_nFileType && IsSameFile(path, m_strFilePath);
        if (*type != FileType::Csv)
            other.openWords = WordsOf(*type, path);
    };
    if (WithMemoryFor(read) != EditOutcome::Made) {
        ShowFileError(reporter, OpenErrorOf(*type), path);
        return Outcome::Failed;
    }
    return outcome;
}

Outcome CRecipeDocument::CompareWith(ComparedWith other, CReporter& reporter, CProgress& progress)
{
    EndComparison();
    Outcome outcome = Outcome::Failed;
    const auto compare = [&] {
        m_comparison = std::make_shared<CTableComparison>(m_shown.rows, m_shown.stored, std::move(other));
        CompareAnew();
        outcome = m_comparison ? m_comparison->Finish(progress) : Outcome::Failed;
    };
    if (WithMemoryFor(compare) != EditOutcome::Made)
        reporter.ShowError(kNoMemoryToCompare);
    if (outcome != Outcome::Done)
        EndComparison();
    return outcome;
}

/// Ends the comparison where the rows are laid out otherwise.
void CRecipeDocument::CompareAnew() noexcept
{
    if (!m_comparison)
        return;
    const auto begin = [this] {
        m_comparison->Begin({m_strFilePath, std::u16string(TextOf(Format().name))}, m_nFileType);
    };
    if (!m_comparison->Layout().IsLaidOutLike(m_shown.rows) || WithMemoryFor(begin) != EditOutcome::Made)
        EndComparison();
}

void CRecipeDocument::EndComparison()
{
    if (m_comparison)
        m_comparison->End(); // who lists it may do so for a while
    m_comparison.reset();
}

bool CRecipeDocument::ContinueComparison(std::chrono::steady_clock::time_point end)
{
    bool isFinished = true;
    const auto count = [&] { isFinished = !m_comparison || m_comparison->Continue(end); };
    if (WithMemoryFor(count) != EditOutcome::Made)
        EndComparison();
    return isFinished;
}
