#include "merge/MergeFileChoice.h"
#include "merge/MergeFiles.h"
#include "tests/fuzz/FuzzInput.h"
#include "tests/fuzz/Numbers.h"
#include "tests/fuzz/Property.h"
#include "tests/fuzz/Scratch.h"
#include "tests/fuzz/Targets.h"
#include "tests/support/RecordingReporter.h"

#include <algorithm>
#include <optional>

namespace {

using Text = std::u16string;
using Wide = std::int64_t; // no sum or double of two 32-bit numbers leaves it

constexpr std::int64_t kMostRealBytes = 3000; ///< of a source that is truly made

Text WithNumbers(const Text& a, Wide x, const Text& b, Wide y, const Text& c)
{
    return a + Printed("%lld", static_cast<long long>(x)) + b + Printed("%lld", static_cast<long long>(y)) + c;
}

/// One rule after the other, as they are told to a user; the first that is broken answers.
std::optional<Text> FirstRuleBroken(const MergeParams& p, Wide merged)
{
    const Wide placed1 = Wide{p.firstPlace} + p.firstLength;
    const Wide placed2 = Wide{p.secondPlace} + p.secondLength;
    const Wide read1 = Wide{p.firstReadStart} + p.firstLength;
    const Wide read2 = Wide{p.secondReadStart} + p.secondLength;
    const Text words = Printed("%lld words", static_cast<long long>(p.firstFileBytes / 2));
    if (p.firstPath.empty())
        return u"Please select the first file  which you want to merge!";
    if (p.secondPath.empty())
        return u"Please select the second file which you want to merge!";
    if (p.mergedPath.empty())
        return u"Please select the appropriate name and path for the merging file!";
    if (p.firstPlace < 0)
        return u"The first file's saving location in the merged file can not be negative!";
    if (p.firstReadStart < 0)
        return u"The first file's reading location  cann't be negative!";
    if (p.firstLength <= 0)
        return u"The first file's reading length   cann't be zero or negative!";
    if (p.firstPlace >= merged)
        return u"The first file's saving location is too large ,which can lead to the second file can't be merged!";
    if (Wide{p.firstLength} * 2 > p.firstFileBytes)
        return u"The first file's reading length is larger than it's total length!";
    if (Wide{p.firstReadStart} * 2 > p.firstFileBytes)
        return u"The first file's location for  reading  is larger than it's total length!";
    if (read1 * 2 > p.firstFileBytes)
        return WithNumbers(u"The first file can't be read ", p.firstReadStart, u" words from the starting location ",
                           p.firstLength, u" ,the number is larger than it's toltal length " + words);
    if (placed1 > merged)
        return WithNumbers(u"The first file's saving location ", p.firstPlace,
                           u" in merged file and it's reading length don't match with the merged file , the  sum of "
                           u"them is larger than this merged file's length ",
                           p.firstLength, u"!");
    if (p.secondPlace < 0)
        return u"The second file's saving location in the merged file can not be negative!";
    if (p.secondReadStart < 0)
        return u"The second file's reading location  can not be negative!";
    if (p.secondLength <= 0)
        return u"The second file's reading length  can not be negative!";
    if (p.secondPlace >= merged)
        return u"The second file's saving location in the merged file is too larger,which will lead to this app can't "
               u"merge file!";
    if (Wide{p.secondLength} * 2 > p.secondFileBytes)
        return u"The second file's reading length is larger than it's total length!";
    if (Wide{p.secondReadStart} * 2 > p.secondFileBytes)
        return u"The second file's reading location is larger than it's total length!";
    if (read2 * 2 > p.secondFileBytes)
        return WithNumbers(u"The secong file  can't be read ", p.firstReadStart, u"  words from the starting location ",
                           p.firstLength, u" ,the number is larger than it's toltal length " + words);
    if (placed2 > merged)
        return WithNumbers(u"The second file's saving location ", p.firstPlace,
                           u" in merged file and it's reading length don't match with the merged file , the  sum of "
                           u"them is larger than this merged file's length ",
                           p.firstLength, u"!");
    if (Wide{p.firstLength} + p.secondLength > merged)
        return u"The sum of these two file's reading length is larger than the merged file's length " +
               Printed("%d", p.firstPlace) + u" !";
    if (p.secondPlace < p.firstPlace)
        return u"The second file's saving location in merged file should be larger than the first file's saving "
               u"location in the merged file!";
    if (p.secondPlace < placed1)
        return u"The second file's saving location in merged file should be larger than the sum of the first file's "
               u"reading length and it's saving location in the merged file!";
    return std::nullopt;
}

/// Half of the time numbers that nearly fit a small file, else any.
void TakeNumbers(CFuzzInput& input, MergeParams& p)
{
    const bool isNear = input.TakeFlag();
    const auto number = [&]() -> std::int32_t {
        return isNear ? static_cast<std::int32_t>(input.Take<std::uint16_t>() % 2000) - 2
                      : input.TakeNumber<std::int32_t>();
    };
    p.firstReadStart = number();
    p.firstLength = number();
    p.firstPlace = number();
    p.secondReadStart = number();
    p.secondLength = number();
    p.secondPlace = number();
}

Bytes Content(std::int64_t length, int seed)
{
    Bytes bytes(static_cast<std::size_t>(length));
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::byte>(seed + static_cast<int>(i * 31 % 251));
    return bytes;
}

/// Whether the stretch lies within a merged file of `merged` words.
bool Fits(Wide readStart, Wide length, Wide place, Wide merged)
{
    return readStart >= 0 && length >= 0 && place >= 0 && place + length <= merged;
}

void Lay(const Bytes& source, Wide readStart, Wide length, Wide place, Bytes& merged)
{
    for (Wide i = 0; i < 2 * length; ++i) {
        const auto from = static_cast<std::size_t>(2 * readStart + i);
        merged[static_cast<std::size_t>(2 * place + i)] = from < source.size() ? source[from] : std::byte{0};
    }
}

/// Merges files that are truly there and compares every byte.
void CheckMerge(MergeParams p, Wide mergedWords)
{
    const Bytes first = Content(p.firstFileBytes, 7);
    const Bytes second = Content(p.secondFileBytes, 100);
    const Bytes old = Content(5, 50);
    p.firstPath = ScratchFolder() / "first.rcp";
    p.secondPath = ScratchFolder() / "second.rcp";
    p.mergedPath = ScratchFolder() / "merged.rcp";
    PutFile(p.firstPath, first);
    PutFile(p.secondPath, second);
    PutFile(p.mergedPath, old);

    CRecordingReporter reporter;
    const bool fits = Fits(p.firstReadStart, p.firstLength, p.firstPlace, mergedWords) &&
                      Fits(p.secondReadStart, p.secondLength, p.secondPlace, mergedWords);
    Require(MergeFiles(p, reporter) == fits, "a merge fails when, and only when, a stretch does not fit");
    Require(reporter.shown.size() == (fits ? 0U : 1U), "a failure is reported once");
    Bytes wanted = old;
    if (fits) {
        wanted.assign(static_cast<std::size_t>(2 * mergedWords), std::byte{0});
        Lay(first, p.firstReadStart, p.firstLength, p.firstPlace, wanted);
        Lay(second, p.secondReadStart, p.secondLength, p.secondPlace, wanted);
    }
    Require(AreSame(FileContent(p.mergedPath), wanted), "the merged file holds both stretches and zeros");
    Require(AreSame(FileContent(p.firstPath), first) && AreSame(FileContent(p.secondPath), second),
            "the sources stay as they are");
}

} // namespace

void FuzzMerge(FuzzBytes bytes)
{
    CFuzzInput input(bytes);
    MergeParams p;
    const std::uint8_t shape = input.TakeByte();
    p.mergedSize = static_cast<MergedSize>(shape % 3);
    p.firstPath = shape / 3 % 8 == 0 ? "" : "a.rcp";
    p.secondPath = shape / 3 % 8 == 1 ? "" : "b.rcp";
    p.mergedPath = shape / 3 % 8 == 2 ? "" : "c.rcp";
    const bool isReal = input.TakeByte() % 4 == 0;
    p.firstFileBytes =
        isReal ? input.Take<std::uint16_t>() % kMostRealBytes : std::int64_t{input.Take<std::uint32_t>()};
    p.secondFileBytes =
        isReal ? input.Take<std::uint16_t>() % kMostRealBytes : std::int64_t{input.Take<std::uint32_t>()};
    TakeNumbers(input, p);

    const Wide merged = p.mergedSize == MergedSize::None ? 0 : p.mergedSize == MergedSize::Words128K ? 130560 : 261632;
    const auto fault = ValidateMergeParams(p);
    Require(fault == FirstRuleBroken(p, merged), "the first rule that is broken answers");
    if (isReal)
        CheckMerge(p, merged);
    if (isReal && !fault)
        Require(WholeWords(p.firstFileBytes) >= p.firstLength, "what passes is there");
}
