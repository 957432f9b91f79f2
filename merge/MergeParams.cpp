#include "merge/MergeParams.h"

#include "merge/MergeFileChoice.h"
#include "text/MessageText.h"

#include <algorithm>
#include <iterator>

namespace {

using P = MergeParams;
using Predicate = bool (*)(const P& p);
using Filling = std::u16string (*)(std::u16string_view message, const P& p);

struct MergeCheck {
    Predicate fails;
    std::u16string_view message;
    Filling fill = nullptr; ///< for a message with placeholders
};

// In 64 bits: no two typed numbers overflow them.

std::int64_t ByteCount(std::int64_t words)
{
    return 2 * words;
}

std::int64_t Sum(std::int64_t one, std::int64_t other)
{
    return one + other;
}

std::u16string FirstReading(std::u16string_view message, const P& p)
{
    return FillMessage(message, {p.firstReadStart, p.firstLength, WholeWords(p.firstFileBytes)});
}

std::u16string FirstPlacing(std::u16string_view message, const P& p)
{
    return FillMessage(message, {p.firstPlace, p.firstLength});
}

std::u16string FirstPlace(std::u16string_view message, const P& p)
{
    return FillMessage(message, {p.firstPlace});
}

// The order is the one in which the user hears of them.
// clang-format off
constexpr MergeCheck kChecks[] = {
    {[](const P& p) { return p.firstPath.empty(); },
     u"Please select the first file  which you want to merge!"},
    {[](const P& p) { return p.secondPath.empty(); },
     u"Please select the second file which you want to merge!"},
    {[](const P& p) { return p.mergedPath.empty(); },
     u"Please select the appropriate name and path for the merging file!"},
    {[](const P& p) { return p.firstPlace < 0; },
     u"The first file's saving location in the merged file can not be negative!"},
    {[](const P& p) { return p.firstReadStart < 0; },
     u"The first file's reading location  cann't be negative!"},
    {[](const P& p) { return p.firstLength < 1; },
     u"The first file's reading length   cann't be zero or negative!"},
    {[](const P& p) { return p.firstPlace > MergedWords(p.mergedSize) - 1; },
     u"The first file's saving location is too large ,which can lead to the second file can't be merged!"},
    {[](const P& p) { return ByteCount(p.firstLength) > p.firstFileBytes; },
     u"The first file's reading length is larger than it's total length!"},
    {[](const P& p) { return ByteCount(p.firstReadStart) > p.firstFileBytes; },
     u"The first file's location for  reading  is larger than it's total length!"},
    // kept: the start stands where the message speaks of words, the length where it speaks of the location
    {[](const P& p) { return ByteCount(Sum(p.firstReadStart, p.firstLength)) > p.firstFileBytes; },
     u"The first file can't be read %d words from the starting location %d ,the number is larger than it's "
     u"toltal length %d words", FirstReading},
    // kept: the length stands where the message speaks of the merged file's
    {[](const P& p) { return Sum(p.firstPlace, p.firstLength) > MergedWords(p.mergedSize); },
     u"The first file's saving location %d in merged file and it's reading length don't match with the merged "
     u"file , the  sum of them is larger than this merged file's length %d!", FirstPlacing},
    {[](const P& p) { return p.secondPlace < 0; },
     u"The second file's saving location in the merged file can not be negative!"},
    {[](const P& p) { return p.secondReadStart < 0; },
     u"The second file's reading location  can not be negative!"},
    // kept: zero is refused, too
    {[](const P& p) { return p.secondLength < 1; },
     u"The second file's reading length  can not be negative!"},
    {[](const P& p) { return p.secondPlace > MergedWords(p.mergedSize) - 1; },
     u"The second file's saving location in the merged file is too larger,which will lead to this app can't "
     u"merge file!"},
    {[](const P& p) { return ByteCount(p.secondLength) > p.secondFileBytes; },
     u"The second file's reading length is larger than it's total length!"},
    {[](const P& p) { return ByteCount(p.secondReadStart) > p.secondFileBytes; },
     u"The second file's reading location is larger than it's total length!"},
    // kept: the first file's numbers
    {[](const P& p) { return ByteCount(Sum(p.secondReadStart, p.secondLength)) > p.secondFileBytes; },
     u"The secong file  can't be read %d  words from the starting location %d ,the number is larger than it's "
     u"toltal length %d words", FirstReading},
    // kept: the first file's numbers
    {[](const P& p) { return Sum(p.secondPlace, p.secondLength) > MergedWords(p.mergedSize); },
     u"The second file's saving location %d in merged file and it's reading length don't match with the merged "
     u"file , the  sum of them is larger than this merged file's length %d!", FirstPlacing},
    // kept: the first file's place
    {[](const P& p) { return Sum(p.firstLength, p.secondLength) > MergedWords(p.mergedSize); },
     u"The sum of these two file's reading length is larger than the merged file's length %d !", FirstPlace},
    {[](const P& p) { return p.secondPlace < p.firstPlace; },
     u"The second file's saving location in merged file should be larger than the first file's saving location "
     u"in the merged file!"},
    {[](const P& p) { return p.secondPlace < Sum(p.firstPlace, p.firstLength); },
     u"The second file's saving location in merged file should be larger than the sum of the first file's "
     u"reading length and it's saving location in the merged file!"},
};
// clang-format on

} // namespace

std::int32_t MergedWords(MergedSize size)
{
    switch (size) {
    case MergedSize::Words128K:
        return 0x1FE00;
    case MergedSize::Words256K:
        return 0x3FE00;
    case MergedSize::None:
        break;
    }
    return 0;
}

std::optional<std::u16string> ValidateMergeParams(const MergeParams& params)
{
    const auto* check = std::find_if(std::begin(kChecks), std::end(kChecks),
                                     [&params](const MergeCheck& c) { return c.fails(params); });
    if (check == std::end(kChecks))
        return std::nullopt;
    return check->fill != nullptr ? check->fill(check->message, params) : std::u16string(check->message);
}
