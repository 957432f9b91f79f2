// A window that is ended in the middle of its user's work, by a signal or by the loss of its display: what it had told
// as done is in the file or comes back. VANTOR_KILLS in the environment makes it longer, VANTOR_KILL_SEED another one.

#include "library/FormatLibrary.h"
#include "recovery/UnsavedStore.h"
#include "recovery/VersionStore.h"
#include "tests/app/EditLog.h"
#include "tests/app/FrameFixture.h"
#include "tests/app/Program.h"

#include <QPushButton>
#include <QTest>

#include <csignal>
#include <cstdlib>
#include <random>
#include <set>
#include <thread>

namespace fs = std::filesystem;

namespace {

constexpr int kRunsOfAType = 9;
constexpr int kRunsWithADisplay = 2;
constexpr int kCommands = 40;
constexpr int kRunsOfAStory = 12; // of kCommands commands

using Lines = std::vector<EditLogLine>;

int FromEnvironment(const char* name, int otherwise)
{
    const char* value = std::getenv(name);
    return value != nullptr ? std::atoi(value) : otherwise;
}

Lines LinesIn(const std::vector<std::string>& texts)
{
    Lines lines;
    for (const std::string& text : texts)
        lines.push_back(EditLogLineOf(text));
    return lines;
}

/// The folder of one run: a library of a word and a name, and a file of six rows.
struct KilledWindow {
    explicit KilledWindow(const std::string& type)
    {
        FormatLibrary library;
        library.formats.push_back(std::make_unique<DataFormat>(MakeFormat(
            u"Row", {MakeItem(u"Word", DataType::Signed16, 1, 5), MakeItem(u"Name", DataType::String, 2, 0)})));
        library.rowCount = 6;
        library.save(folder / "RecipeFile.Dat");
        if (type.empty())
            return;
        file = folder / ("a." + type);
        WriteAll(file, type == "csv" ? Utf16File(u"\"5\"\tone\r\n\"6\"\ttwo\r\n\"7\"\t\r\n") : Bytes(40));
    }

    /// Has the story `seed` told by the window up to `lines` lines, ends it by `end`, and gives all that it told.
    Lines Tell(unsigned seed, std::size_t lines, const std::function<void(CProgram&)>& end) const
    {
        CProgram window(
            VANTOR_WINDOW_EDITS_PROGRAM,
            {folder.Path().string(), file.string(), data.string(), std::to_string(seed), std::to_string(kCommands)},
            environment);
        window.ReadLines(lines);
        end(window);
        return LinesIn(window.ReadToTheEnd());
    }

    CTempFolder folder;
    fs::path data = folder / "data";
    fs::path file;
    std::vector<std::string> environment;
};

/// The edited cells of the one journal that was left; empty where there is none.
std::string LeftIn(const fs::path& data)
{
    std::string edited;
    for (const UnsavedEntry& entry : CUnsavedStore(data).List()) {
        if (entry.state != UnsavedState::Left || !edited.empty())
            continue;
        EXPECT_FALSE(entry.isDamaged);
        const auto work = CUnsavedStore(data).Read(entry.id);
        for (const UnsavedCell& cell : work ? work->cells : std::vector<UnsavedCell>())
            edited += EditedCellText(cell.place, cell.state.Text());
    }
    return edited;
}

/// Judges what the end of a window left behind by a `story`, of which it had told `told` lines.
struct Judge {
    const Lines& story;
    std::size_t told;

    std::size_t Last() const { return std::min(told, story.size() - 1); } ///< what it was about to tell

    bool IsOneOf(const std::function<bool(std::size_t)>& holds) const
    {
        for (std::size_t at = told - 1; at <= Last(); ++at)
            if (holds(at))
                return true;
        return false;
    }

    /// A journal never ends before the file has its edits.
    void ExpectEditsSomewhere(const std::string& file, const std::string& edited) const
    {
        const bool isSafe = IsOneOf([&](std::size_t journal) {
            return edited == story[journal].edited &&
                   (file == story[journal].file || (journal < Last() && file == story[Last()].file));
        });
        EXPECT_TRUE(isSafe) << "file " << file << ", journal " << edited << "\ntold " << TextOf(story[told - 1])
                            << "\nnext " << TextOf(story[Last()]);
    }

    /// Each content that a save wrote over is a version, and each version was such a content.
    void ExpectVersions(const fs::path& data, const fs::path& path) const
    {
        const CVersionStore store(data);
        std::set<std::string> versions;
        for (const Version& version : store.List(path))
            versions.insert(ChecksumOfFile(store.PathOf(path, version)));
        std::set<std::string> contents;
        for (std::size_t at = 0; at <= Last(); ++at)
            contents.insert(story[at].file);
        for (const std::string& version : versions)
            EXPECT_EQ(contents.count(version), 1u) << "torn: " << version;
        for (std::size_t at = 1; at < told; ++at)
            if (story[at].file != story[at - 1].file) {
                EXPECT_EQ(versions.count(story[at - 1].file), 1u) << "overwritten by command " << at;
            }
    }

    void ExpectShown(const std::string& shown) const
    {
        EXPECT_TRUE(IsOneOf([&](std::size_t at) { return Plain(shown) == Plain(story[at].shown); }))
            << "shown " << shown << "\ntold " << TextOf(story[told - 1]) << "\nnext " << TextOf(story[Last()]);
    }

    /// A save of a table puts fields in quotes, which are shown when it is read again.
    static std::string Plain(std::string texts)
    {
        std::erase(texts, '"');
        return texts;
    }
};

struct Killed : testing::TestWithParam<std::string> {
    Killed() : random(static_cast<unsigned>(FromEnvironment("VANTOR_KILL_SEED", 1))) {}

    std::size_t Below(std::size_t bound) { return random() % bound; }

    /// Ends a window at a random moment of the story.
    void EndOnce(unsigned seed, const Lines& story, const std::vector<std::string>& environment,
                 const std::function<void(CProgram&)>& end)
    {
        KilledWindow place(GetParam());
        place.environment = environment;
        const std::size_t from = 1 + Below(story.size());
        const std::chrono::microseconds pause(Below(8000));
        const Lines lines = place.Tell(seed, from, [&](CProgram& window) {
            std::this_thread::sleep_for(pause);
            end(window);
        });
        SCOPED_TRACE("story " + std::to_string(seed) + ", ended after " + std::to_string(lines.size()) + " lines");
        ASSERT_GE(lines.size(), from);
        ASSERT_EQ(Lines(story.begin(), story.begin() + static_cast<std::ptrdiff_t>(lines.size())), lines);
        const Judge judge{story, lines.size()};
        const std::string left = LeftIn(place.data);
        judge.ExpectEditsSomewhere(ChecksumOfFile(place.file), left);
        judge.ExpectVersions(place.data, place.file);
        ExpectComesBack(place, judge, !left.empty());
    }

    /// Another window puts the edits back by its strip, or opens the file.
    static void ExpectComesBack(const KilledWindow& place, const Judge& judge, bool isLeft)
    {
        const std::string file = ChecksumOfFile(place.file);
        CMainFrame frame(place.folder / "vantor");
        ASSERT_TRUE(ShowActive(frame));
        frame.KeepIn(place.data);
        if (isLeft)
            ClickPutBack(frame);
        else if (!place.file.empty())
            frame.OpenPath(QString::fromStdString(place.file.string()));
        if (isLeft || !place.file.empty())
            judge.ExpectShown(ShownTexts(*frame.findChild<CGridCtrl*>()));
        EXPECT_EQ(ChecksumOfFile(place.file), file) << "no recipe is written unasked";
    }

    static void ClickPutBack(CMainFrame& frame)
    {
        QPushButton* button = nullptr;
        const auto isThere = [&] {
            for (auto* candidate : frame.findChildren<QPushButton*>(QStringLiteral("buttonStrip")))
                if (candidate->isVisible() && candidate->text() == QLatin1String("Put back"))
                    button = candidate;
            return button != nullptr;
        };
        ASSERT_TRUE(WaitFor(isThere));
        QTest::mouseClick(button, Qt::LeftButton);
    }

    /// The whole story, of one that is ended when nobody is about to do anything.
    Lines Story(unsigned seed, const std::vector<std::string>& environment) const
    {
        KilledWindow place(GetParam());
        place.environment = environment;
        return place.Tell(seed, kCommands + 1, [](CProgram& window) { window.Signal(SIGKILL); });
    }

    void EndOften(int runs, const std::vector<std::string>& environment, const std::function<void(CProgram&, int)>& end)
    {
        Lines story;
        unsigned seed = 0;
        for (int run = 0; run < runs && !HasFailure(); ++run) {
            if (run % kRunsOfAStory == 0) {
                seed = static_cast<unsigned>(random());
                story = Story(seed, environment);
                ASSERT_EQ(story.size(), kCommands + 1u);
            }
            EndOnce(seed, story, environment, [&](CProgram& window) { end(window, run); });
        }
        RecordProperty("ended", runs);
    }

    std::mt19937 random;
};

std::string TypeOfFile(const testing::TestParamInfo<std::string>& type)
{
    return type.param.empty() ? "New" : type.param;
}

} // namespace

TEST_P(Killed, LosesNothingThatWasDone)
{
    constexpr int kSignals[] = {SIGKILL, SIGTERM, SIGHUP};
    EndOften(FromEnvironment("VANTOR_KILLS", kRunsOfAType), {},
             [&](CProgram& window, int run) { window.Signal(kSignals[run % 3]); });
}

#ifdef VANTOR_X_SERVER

/// A display of one window's own.
class CDisplay {
public:
    CDisplay() : m_server(VANTOR_X_SERVER, {"-displayfd", "1", "-screen", "0", "1280x1024x24"})
    {
        m_server.ReadLines(1);
    }

    void End() const { m_server.Signal(SIGKILL); }
    std::vector<std::string> Environment() const { return {"QT_QPA_PLATFORM=xcb", "DISPLAY=:" + m_server.FirstLine()}; }

private:
    CProgram m_server;
};

using LostDisplay = Killed;

TEST_P(LostDisplay, LosesNothingThatWasDone)
{
    const auto seed = static_cast<unsigned>(random());
    const Lines story = Story(seed, {});
    for (int run = 0; run < FromEnvironment("VANTOR_LOST_DISPLAYS", kRunsWithADisplay) && !HasFailure(); ++run) {
        const CDisplay display;
        EndOnce(seed, story, display.Environment(), [&](CProgram&) { display.End(); });
    }
}

INSTANTIATE_TEST_SUITE_P(Types, LostDisplay, testing::Values("rcp"), TypeOfFile);

#endif

INSTANTIATE_TEST_SUITE_P(Types, Killed, testing::Values("rcp", "csv", "frp", ""), TypeOfFile);
