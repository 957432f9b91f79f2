#include "files/RecipeFile.h"
#include "tests/faults/SavePath.h"
#include "tests/files/TestColumns.h"
#include "tests/support/ProcessRun.h"
#include "tests/support/RecordingReporter.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <tuple>
#include <unistd.h>
#include <utility>

namespace fs = std::filesystem;

namespace {

using Words = std::vector<std::string>;

/// What can have the name of a file and is not one.
struct Node {
    const char* name;
    void (*make)(const fs::path& path);
    friend void PrintTo(const Node& node, std::ostream* out) { *out << node.name; }
};

void MakeSocket(const fs::path& path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    const int server = socket(AF_UNIX, SOCK_STREAM, 0);
    EXPECT_EQ(bind(server, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    close(server);
}

#ifdef __SANITIZE_ADDRESS__
constexpr const char* kLimits = "exec timeout 10 \"$0\" \"$@\""; // the sanitizer reserves more than there is
#else
constexpr const char* kLimits = "ulimit -v 1000000; exec timeout 10 \"$0\" \"$@\"";
#endif

struct FileInTheWay : testing::TestWithParam<Node> {
    /// Ten seconds and a gigabyte: what waits or grows without end is ended.
    static ProcessResult RunLimited(Words arguments)
    {
        arguments.insert(arguments.begin(), {"-c", kLimits, VANTOR_CLI_PROGRAM});
        return RunProcess("/bin/bash", arguments);
    }

    SavePlace place;
};

TEST_P(FileInTheWay, IsRefusedAtOnceAndLeftAlone)
{
    const std::string library = place.Aside("RecipeFile.Dat");
    const std::string good = place.Aside("a.rcp");
    std::vector<Words> commands;
    for (const char* name : {"x.rcp", "x.csv", "x.erp", "x.frp"}) {
        const std::string node = place.Disk(name);
        GetParam().make(node);
        commands.push_back({"show", node, "--library", library});
        commands.push_back({"set", node, "--library", library, "--cell", "1", "2", "5"});
        commands.push_back({"convert", good, node, "--library", library});
        commands.push_back({"convert", good, node, "--library", library, "--start", "3"});
    }
    const std::string node = place.Disk("x.rcp");
    commands.push_back({"formats", "list", "--library", node});
    commands.push_back({"formats", "export", "--library", node});
    commands.push_back({"formats", "export", "--library", library, "-o", node});
    commands.push_back({"formats", "import", node, "--library", library});
    commands.push_back({"formats", "import", place.Aside("formats.json"), "--library", node});
    commands.push_back({"merge", node, good, place.Disk("m.rcp")});
    commands.push_back({"merge", good, node, place.Disk("m.rcp"), "--second-place", "50"});
    commands.push_back({"merge", good, good, node, "--force", "--second-place", "50"});
    const fs::file_status before = fs::symlink_status(node);
    for (const Words& command : commands) {
        const ProcessResult result = RunLimited(command);
        EXPECT_EQ(result.exitCode, 1) << testing::PrintToString(command) << result.out << result.error;
        EXPECT_NE(result.error, "") << testing::PrintToString(command);
        EXPECT_EQ(fs::symlink_status(node).type(), before.type());
    }
}

TEST_P(FileInTheWay, IsNoLibraryToReadWith)
{
    GetParam().make(place.Disk("x.Dat"));
    const ProcessResult result = RunLimited({"show", place.Aside("a.rcp"), "--library", place.Disk("x.Dat")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.error, "");
    EXPECT_EQ(result.out, "");
}

INSTANTIATE_TEST_SUITE_P(
    Nodes, FileInTheWay,
    testing::Values(Node{"Folder", [](const fs::path& path) { fs::create_directory(path); }},
                    Node{"Pipe", [](const fs::path& path) { EXPECT_EQ(mkfifo(path.c_str(), 0600), 0); }},
                    Node{"Socket", &MakeSocket},
                    Node{"EndlessDevice", [](const fs::path& path) { fs::create_symlink("/dev/zero", path); }},
                    Node{"FullDevice", [](const fs::path& path) { fs::create_symlink("/dev/full", path); }}),
    [](const auto& node) { return std::string(node.param.name); });

/// Does something to the file the first time that it hears of the work.
class CMeddler : public CProgress {
public:
    explicit CMeddler(std::function<void()> meddle) : m_meddle(std::move(meddle)) {}

    bool Advance(std::uint64_t, std::uint64_t) override
    {
        if (m_meddle)
            std::exchange(m_meddle, nullptr)();
        return true;
    }

private:
    std::function<void()> m_meddle;
};

struct Meddling {
    const char* name;
    void (*meddle)(const fs::path& path);
    friend void PrintTo(const Meddling& c, std::ostream* out) { *out << c.name; }
};

struct FileChangedMeanwhile : testing::TestWithParam<std::tuple<Meddling, const char*>> {
    FileChangedMeanwhile()
    {
        rows.LayOut({Signed16Column()}, 0, kRows);
        for (std::int32_t row = 0; row < kRows; row += 1000)
            rows.SetText(row, 0, u"291");
        EXPECT_TRUE(PrepareSaveAs(type, path, 0, reporter));
        EXPECT_TRUE(SaveRecipe(type, rows, path, reporter, none));
    }

    CMeddler Meddler()
    {
        return CMeddler([this] { std::get<0>(GetParam()).meddle(path); });
    }

    static constexpr std::int32_t kRows = 100000;
    SavePlace place;
    fs::path path = place.Disk(std::get<1>(GetParam()));
    FileType type = FileTypeOf(path).value();
    CRecordingReporter reporter;
    CNoProgress none;
    CRecipeRows rows;
};

TEST_P(FileChangedMeanwhile, IsReadAsFarAsItGoesOrRefused)
{
    CMeddler meddler = Meddler();
    const Outcome outcome = ReadRecipe(type, rows, path, false, reporter, meddler);
    EXPECT_NE(outcome, Outcome::GivenUp);
    EXPECT_EQ(reporter.shown.size(), outcome == Outcome::Failed ? 1u : 0u);
    for (const std::int32_t row : {0, kRows / 2, kRows - 1})
        EXPECT_LE(rows.Text(row, 0).size(), 5u);
}

TEST_P(FileChangedMeanwhile, HoldsWhatWasSavedOrItIsTold)
{
    rows.SetText(kRows - 1, 0, u"77");
    CMeddler meddler = Meddler();
    const SaveResult result = SaveRecipe(type, rows, path, reporter, meddler);
    EXPECT_EQ(reporter.shown.size(), result ? 0u : 1u);
    if (!result)
        return;
    CRecipeRows again;
    again.LayOut({Signed16Column()}, 0, kRows);
    ASSERT_EQ(ReadRecipe(type, again, path, false, reporter, none), Outcome::Done);
    if (type == FileType::Csv)
        return; // its last field keeps its quotes
    for (const std::int32_t row : {0, 1000, kRows - 1})
        EXPECT_EQ(again.Text(row, 0), rows.Text(row, 0)) << row;
}

INSTANTIATE_TEST_SUITE_P(
    Files, FileChangedMeanwhile,
    testing::Combine(testing::Values(Meddling{"Cut", [](const fs::path& path) { fs::resize_file(path, 1000); }},
                                     Meddling{"Deleted", [](const fs::path& path) { fs::remove(path); }},
                                     Meddling{"Replaced",
                                              [](const fs::path& path) {
                                                  fs::remove(path);
                                                  WriteAll(path, Bytes(2000, std::byte{0x31}));
                                              }},
                                     Meddling{"ReplacedByAPipe",
                                              [](const fs::path& path) {
                                                  fs::remove(path);
                                                  EXPECT_EQ(mkfifo(path.c_str(), 0600), 0);
                                              }}),
                     testing::Values("a.rcp", "a.csv", "a.frp")),
    [](const auto& c) { return std::string(std::get<0>(c.param).name) + std::string(std::get<1>(c.param)).substr(2); });

} // namespace
