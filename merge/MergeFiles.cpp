#include "merge/MergeFiles.h"

#include "disk/File.h"
#include "model/Address.h"
#include "text/FileMessages.h"
#include "text/MessageText.h"
#include "text/PathText.h"
#include "text/Utf8Text.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr std::u16string_view kMergeFailed = u"Merge file %s failed!";

/// What goes from one source to the merged file, in words.
struct Stretch {
    const fs::path& source;
    WordAddress readStart;
    std::int32_t length;
    WordAddress place;
};

std::array<Stretch, 2> StretchesOf(const MergeParams& params)
{
    return {{{params.firstPath, WordAddress(params.firstReadStart), params.firstLength, WordAddress(params.firstPlace)},
             {params.secondPath, WordAddress(params.secondReadStart), params.secondLength,
              WordAddress(params.secondPlace)}}};
}

std::size_t ByteCount(std::int32_t words)
{
    return 2 * static_cast<std::size_t>(words);
}

bool FitsInto(std::int32_t mergedWords, const Stretch& stretch)
{
    constexpr WordAddress kFirst(0);
    return stretch.readStart >= kFirst && stretch.length >= 0 && stretch.place >= kFirst &&
           stretch.place + stretch.length <= WordAddress(mergedWords);
}

/// One run, which tells of its first failure.
class CMergeRun {
public:
    CMergeRun(const MergeParams& params, CReporter& reporter)
        : m_mergedPath(params.mergedPath),
          m_buffer(ByteCount(MergedWords(params.mergedSize))),
          m_reporter(reporter)
    {
    }

    bool Create();
    bool Add(const Stretch& stretch);
    bool Finish() { return m_merged.Close() || FailWriting(); }

private:
    bool FailReading(const fs::path& path, const CFile& source) { return Fail(u"Reading", path, source); }
    bool FailWriting() { return Fail(u"Writing", m_mergedPath, m_merged); }
    bool Fail(std::u16string_view operation, const fs::path& path, const CFile& file);

    const fs::path& m_mergedPath;
    std::vector<std::byte> m_buffer; ///< as long as the merged file
    CReporter& m_reporter;
    CFile m_merged;
};

bool CMergeRun::Create()
{
    if (!m_merged.Open(m_mergedPath, CFile::Mode::Truncate)) {
        ShowFileError(m_reporter, kMergeFailed, m_mergedPath);
        return false;
    }
    return m_merged.WriteAt(0, m_buffer) || FailWriting();
}

bool CMergeRun::Add(const Stretch& stretch)
{
    const CFile source(stretch.source, CFile::Mode::Read);
    if (!source.IsOpen()) {
        ShowFileError(m_reporter, u"Open file %s failed!", stretch.source);
        return false;
    }
    const std::span<std::byte> bytes = std::span(m_buffer).first(ByteCount(stretch.length));
    std::fill(bytes.begin(), bytes.end(), std::byte{0}); // what the source no longer holds
    if (!source.ReadAt(FirstByteOf(stretch.readStart).number, bytes))
        return FailReading(stretch.source, source);
    return m_merged.WriteAt(FirstByteOf(stretch.place).number, bytes) || FailWriting();
}

/// Tells what could not be done to the open `file` at `path`, and why.
bool CMergeRun::Fail(std::u16string_view operation, const fs::path& path, const CFile& file)
{
    const std::u16string message = std::u16string(kMergeFailed) + u"\n%s %s: %s";
    m_reporter.ShowError(FillMessage(
        message, {PathText(m_mergedPath), operation, PathText(path), FromUtf8(ReasonUtf8(file.LastError()))}));
    return false;
}

} // namespace

bool MergeFiles(const MergeParams& params, CReporter& reporter)
{
    const std::int32_t words = MergedWords(params.mergedSize);
    const std::array<Stretch, 2> stretches = StretchesOf(params);
    const bool isHarmless = std::all_of(stretches.begin(), stretches.end(), [&](const Stretch& stretch) {
        return FitsInto(words, stretch) && !IsSameFile(stretch.source, params.mergedPath);
    });
    if (!isHarmless) {
        ShowFileError(reporter, kMergeFailed, params.mergedPath);
        return false;
    }
    CMergeRun run(params, reporter);
    return run.Create() && run.Add(stretches[0]) && run.Add(stretches[1]) && run.Finish();
}
