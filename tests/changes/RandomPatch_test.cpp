#include "changes/ChangeLines.h"
#include "changes/FileDifferences.h"
#include "changes/Patch.h"
#include "tests/changes/RandomPair.h"
#include "tests/support/RecordingReporter.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>
#include <string>

namespace fs = std::filesystem;

namespace {

/// How many pairs of each type: more when VANTOR_RANDOM_PAIRS says so.
unsigned PairCount(FileType type)
{
    const char* const more = std::getenv("VANTOR_RANDOM_PAIRS");
    const bool isLarge = type == FileType::Erp; // 1 MiB a file
    return more != nullptr ? static_cast<unsigned>(std::stoul(more)) : isLarge ? 60U : 300U;
}

/// Keeps changes as lines.
class CLines final : public CChangeTaker {
public:
    bool Take(const ChangeRecord& record) override
    {
        hasForm = hasForm || record.why == ChangeReason::Form;
        records.push_back(record);
        AppendLine(record, text);
        return true;
    }

    std::string text;
    std::vector<ChangeRecord> records;
    bool hasForm = false;
};

Patch PatchOf(const std::string& lines)
{
    std::istringstream input(lines);
    auto patch = ReadPatch(input);
    if (const auto* fault = std::get_if<ChangeFault>(&patch))
        ADD_FAILURE() << lines.substr(0, 2000) << "line " << fault->line;
    return std::holds_alternative<Patch>(patch) ? std::get<Patch>(std::move(patch)) : Patch();
}

struct RandomPatch : testing::TestWithParam<FileType> {
    /// The changes of a pair as `diff --patch` prints them.
    static CLines LinesOf(const CRandomPair& pair)
    {
        CFileDifferences differences({pair.Before(), pair.Type()}, {pair.After(), pair.Type()}, pair.Tables());
        CLines lines;
        AppendLine(differences.Header(), lines.text);
        CNoProgress progress;
        EXPECT_TRUE(differences.HandTo(lines, progress));
        if (pair.Type() == FileType::Csv) {
            EXPECT_EQ(differences.WhyNoPatch(progress), u"");
        }
        return lines;
    }

    static void Apply(const Patch& patch, const CRandomPair& pair, const fs::path& path)
    {
        const PatchedFile file{path, pair.Type(), pair.Tables()};
        const auto filePatch = MakeFilePatch(patch, file);
        const auto refusal = filePatch->Look();
        ASSERT_FALSE(refusal) << testing::PrintToString(refusal->reason) << refusal->others.size();
        CRecordingReporter reporter;
        EXPECT_TRUE(filePatch->Write(path, reporter));
        EXPECT_EQ(reporter.shown, std::vector<std::u16string>());
    }

    static void ExpectSame(const CRandomPair& pair, const fs::path& made, const fs::path& wanted)
    {
        EXPECT_TRUE(LogicalContent(pair.Type(), made) == LogicalContent(pair.Type(), wanted));
    }
};

TEST_P(RandomPatch, MakesTheOtherFileAndGoesBack)
{
    for (unsigned seed = 1; seed <= PairCount(GetParam()) && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        const CRandomPair pair(seed, GetParam());
        const CLines lines = LinesOf(pair);
        if (lines.hasForm)
            continue;
        Patch patch = PatchOf(lines.text);
        const fs::path made = pair.Before().parent_path() / ("made" + pair.Before().extension().string());
        fs::copy_file(pair.Before(), made);
        Apply(patch, pair, made);
        ExpectSame(pair, made, pair.After());
        Reverse(patch);
        Apply(patch, pair, made);
        ExpectSame(pair, made, pair.Before());
    }
}

TEST_P(RandomPatch, IsRefusedByOneOtherValue)
{
    for (unsigned seed = 1; seed <= PairCount(GetParam()) / 3 && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        CRandomPair pair(seed, GetParam());
        const CLines lines = LinesOf(pair);
        Patch patch = PatchOf(lines.text);
        if (lines.hasForm || patch.entries.empty())
            continue;
        ChangeRecord& record =
            patch.entries[static_cast<std::size_t>(pair.Below(static_cast<int>(patch.entries.size())))].record;
        if (GetParam() == FileType::Csv)
            record.oldText = record.oldText.value_or(u"") + u"x";
        else if (record.oldWords.empty())
            continue;
        else
            record.oldWords[0] ^= std::byte{1};
        const bool isSeen = GetParam() != FileType::Rcp || patch.header.bytes == patch.header.newBytes;
        const Bytes before = ReadAll(pair.Before());
        const PatchedFile file{pair.Before(), pair.Type(), pair.Tables()};
        const auto refusal = MakeFilePatch(patch, file)->Look();
        ASSERT_TRUE(refusal);
        EXPECT_TRUE(!isSeen || !refusal->reason.empty() || refusal->others.size() == 1U);
        EXPECT_TRUE(ReadAll(pair.Before()) == before);
    }
}

TEST_P(RandomPatch, ADifferenceIsNeverLeftOut)
{
    for (unsigned seed = 1; seed <= PairCount(GetParam()) / 3 && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        const CRandomPair pair(seed, GetParam());
        EXPECT_EQ(LinesOf(pair).records.empty(), ReadAll(pair.Before()) == ReadAll(pair.After()));
    }
}

std::string NameOf(const testing::TestParamInfo<FileType>& type)
{
    static constexpr const char* kNames[] = {"Rcp", "Csv", "Erp", "Frp"};
    return kNames[static_cast<int>(type.param)];
}

INSTANTIATE_TEST_SUITE_P(Types, RandomPatch,
                         testing::Values(FileType::Rcp, FileType::Csv, FileType::Erp, FileType::Frp), NameOf);

} // namespace
