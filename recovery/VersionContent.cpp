#include "recovery/VersionContent.h"

#include "disk/Content.h"
#include "files/WordRuns.h"

#include <algorithm>
#include <exception>
#include <system_error>
#include <utility>

namespace fs = std::filesystem;

namespace {

/// Whether the user's own file is there, and not a link that another one put there.
bool IsOwnFile(const fs::path& path)
{
    const CFile file(path, CFile::Mode::Read);
    return file.IsOwn() && file.IsAt(path);
}

} // namespace

CVersionContent::CVersionContent(const CVersionStore& store, fs::path file, std::string_view stamp)
    : m_file(std::move(file)),
      m_type(FileTypeOf(m_file))
{
    m_fault = Find(store, stamp);
    if (m_fault.empty() && !IsCopy())
        m_fault = GoBack();
}

std::u16string CVersionContent::Find(const CVersionStore& store, std::string_view stamp)
{
    const std::vector<Version> versions = store.List(m_file);
    const auto wanted =
        std::find_if(versions.begin(), versions.end(), [&](const Version& version) { return version.stamp == stamp; });
    if (wanted == versions.end())
        return u"there is no such version";
    m_base = m_file;
    for (auto version = versions.begin(); version <= wanted; ++version) {
        const fs::path path = store.PathOf(m_file, *version);
        if (version->isRecords) {
            m_records.push_back(path);
        } else {
            m_records.clear();
            m_base = path;
        }
    }
    if (m_base != m_file && !IsOwnFile(m_base))
        return u"it can't be read";
    return {};
}

std::u16string CVersionContent::GoBack()
{
    if (!m_type || *m_type == FileType::Csv)
        return u"it is of a file with words";
    m_baseWords.emplace(*m_type, m_base);
    if (!m_baseWords->IsOpen())
        return u"the file can't be read, and only changes of it were kept";
    m_chain.emplace(*m_baseWords, *m_type);
    for (const fs::path& records : m_records)
        if (const auto fault = m_chain->GoBack(records))
            return *fault;
    return {};
}

CWordBytes* CVersionContent::Words()
{
    if (!m_type || *m_type == FileType::Csv || !m_fault.empty())
        return nullptr;
    if (m_chain)
        return &m_chain->Words();
    if (!m_baseWords)
        m_baseWords.emplace(*m_type, m_base);
    return m_baseWords->IsOpen() ? &*m_baseWords : nullptr;
}

std::unique_ptr<CWordDifferences> CVersionContent::DifferencesFrom(CWordBytes& before)
{
    if (m_chain && IsMadeOfFile())
        return std::make_unique<CWordDifferences>(before, m_chain->Words(), *m_type, m_file,
                                                  m_chain->Words().ChangedBlocks());
    return std::make_unique<CWordDifferences>(before, *Words(), *m_type, m_file);
}

bool CVersionContent::Grow(CReplacement& fresh)
{
    if (!fresh.AppendFile(m_base))
        return false;
    if (IsCopy())
        return true;
    const CWordDifferences differences(*m_baseWords, m_chain->Words(), *m_type, m_file,
                                       m_chain->Words().ChangedBlocks());
    const auto runs = differences.Runs();
    const auto length = IsPaged(*m_type) ? std::nullopt : std::optional(m_chain->Words().Count());
    CSilentReporter silent;
    return runs && differences.IsRead() && WriteWordRuns(*m_type, *runs, fresh.FreshPath(), length, silent);
}

std::optional<std::uint64_t> CountDifferentWords(const CVersionStore& store, const fs::path& file,
                                                 std::string_view stamp)
try {
    CVersionContent content(store, file, stamp);
    if (!content.Fault().empty())
        return std::nullopt;
    if (content.IsCopy() && HaveSameContent(file, content.Base()))
        return 0;
    if (content.Words() == nullptr)
        return std::nullopt;
    CFileWords present(*FileTypeOf(file), file);
    if (!present.IsOpen())
        return std::nullopt;
    const auto differences = content.DifferencesFrom(present);
    return differences->IsRead() ? std::optional(differences->WordCount()) : std::nullopt;
} catch (const std::exception&) {
    return std::nullopt;
}
