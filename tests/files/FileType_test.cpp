#include "files/FileType.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace {

struct ExtensionCase {
    const char* name;
    const char* path;
    std::optional<FileType> type;
    friend void PrintTo(const ExtensionCase& c, std::ostream* out) { *out << c.name; }
};

struct Extension : testing::TestWithParam<ExtensionCase> {};

TEST_P(Extension, TellsTheType)
{
    EXPECT_EQ(FileTypeOf(GetParam().path), GetParam().type);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, Extension, testing::Values(
    ExtensionCase{"Rcp",             "/data/a.rcp",     FileType::Rcp},
    ExtensionCase{"Csv",             "a.csv",           FileType::Csv},
    ExtensionCase{"Erp",             "a.erp",           FileType::Erp},
    ExtensionCase{"Frp",             "a.frp",           FileType::Frp},
    ExtensionCase{"UpperCase",       "a.RCP",           FileType::Rcp},
    ExtensionCase{"MixedCase",       "a.fRp",           FileType::Frp},
    ExtensionCase{"LastPointCounts", "a.csv.erp",       FileType::Erp},
    ExtensionCase{"NameIsExtension", "/data/.RCP",      FileType::Rcp},
    ExtensionCase{"PointInFolder",   "/data.rcp/a",     std::nullopt},
    ExtensionCase{"None",            "rcp",             std::nullopt},
    ExtensionCase{"Text",            "a.txt",           std::nullopt},
    ExtensionCase{"Longer",          "a.rcpx",          std::nullopt},
    ExtensionCase{"PointAtTheEnd",   "a.rcp.",          std::nullopt},
    ExtensionCase{"NoUtf8",          "a.\xFFrcp",       std::nullopt},
    ExtensionCase{"Empty",           "",                std::nullopt}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

} // namespace
