#pragma once

#include "recovery/VersionStore.h"
#include "tests/support/TestFiles.h"
#include "tests/support/Variable.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>
#include <vector>

/// A folder of its own with a store of versions and a recipe file of three words.
struct VersionTest : testing::Test {
    using Result = VersionKept::Result;

    VersionTest() { WriteAll(recipe, WordBytes({1, 2, 3})); }

    Result Keep(const std::filesystem::path& file, std::u16string_view command = u"Save") const
    {
        return store.Keep(file, command).result;
    }

    /// Keeps a version of `file`, and then writes `bytes` into it; gives the version's stamp.
    std::string KeepAndWrite(const std::filesystem::path& file, const Bytes& bytes) const
    {
        const VersionKept kept = store.Keep(file, u"Save");
        EXPECT_EQ(kept.result, Result::Kept) << std::string(kept.reason.begin(), kept.reason.end());
        WriteAll(file, bytes);
        return kept.stamp;
    }

    std::filesystem::path Versions() const { return data / "versions"; }

    /// The only folder of versions.
    std::filesystem::path OnlyFolder() const
    {
        std::vector<std::filesystem::path> folders;
        for (const auto& entry : std::filesystem::directory_iterator(Versions()))
            folders.push_back(entry.path());
        EXPECT_EQ(folders.size(), 1U);
        return folders.empty() ? std::filesystem::path() : folders.front();
    }

    static std::set<std::string> NamesIn(const std::filesystem::path& path)
    {
        std::set<std::string> names;
        if (std::filesystem::exists(path))
            for (const auto& entry : std::filesystem::directory_iterator(path))
                names.insert(entry.path().filename().string());
        return names;
    }

    Bytes Content(const std::filesystem::path& file, const Version& version) const
    {
        return ReadAll(store.PathOf(file, version));
    }

    CVariable variable{"VANTOR_VERSIONS", nullptr};
    CTempFolder folder;
    std::filesystem::path data = folder / "data";
    std::filesystem::path recipe = folder / "oven.rcp";
    CVersionStore store{data};
};
