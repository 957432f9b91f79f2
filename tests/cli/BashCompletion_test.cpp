#include "recovery/VersionStore.h"
#include "tests/cli/CliTest.h"
#include "tests/cli/HelpTexts.h"
#include "tests/support/Variable.h"

#include <sstream>

namespace fs = std::filesystem;

namespace {

/// Asks bash for what follows the words of a command line, the last of which is begun.
std::vector<std::string> Completions(const std::vector<std::string>& words, const fs::path& folder)
{
    const std::string script = R"(source "$1/packaging/share/bash-completion/completions/vantor-cli"
        export LC_ALL=C.UTF-8
        cd "$2"
        shift 2
        COMP_WORDS=("$cli" "$@")
        COMP_CWORD=$#
        _vantor_cli "$cli" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"
        printf '%s\n' "${COMPREPLY[@]}" | sort)";
    std::vector<std::string> arguments = {VANTOR_SOURCE_DIR, folder.string()};
    arguments.insert(arguments.end(), words.begin(), words.end());
    std::istringstream lines(RunScript(script, arguments).out);
    std::vector<std::string> completions;
    for (std::string line; std::getline(lines, line);)
        if (!line.empty())
            completions.push_back(line);
    return completions;
}

using Texts = std::vector<std::string>;

struct BashCompletion : CliTest {
    BashCompletion()
    {
        SetText(library.formats[0]->name, u"Shift log");
        SaveLibrary();
        for (const char* name : {"b.CSV", "c.erp", "d.frp", "e.txt", "f.json", "g h.rcp"})
            WriteAll(folder / name, {});
        fs::create_directory(folder / "sub");
    }
    Texts Complete(const Texts& words) const { return Completions(words, folder.Path()); }
};

TEST_F(BashCompletion, HasEveryCommandAndOption)
{
    for (const auto& command : AllCommands()) {
        const std::string help = HelpOf(command);
        Texts words = command;
        words.emplace_back("");
        const std::set<std::string> commands = CommandsIn(help);
        if (!commands.empty()) {
            EXPECT_EQ(Complete(words), Texts(commands.begin(), commands.end()));
        }
        words.back() = "--";
        const std::set<std::string> options = OptionsIn(help);
        EXPECT_EQ(Complete(words), Texts(options.begin(), options.end())) << help;
    }
}

TEST_F(BashCompletion, GoesOnWithWhatWasBegun)
{
    EXPECT_EQ(Complete({"s"}), (Texts{"set", "sheet", "show"}));
    EXPECT_EQ(Complete({"merge", "--first-l"}), Texts{"--first-length"});
    EXPECT_EQ(Complete({"merge", "--size", "2"}), Texts{"256K"});
    EXPECT_EQ(Complete({"sheet", "--paper", "l"}), Texts{"letter"});
}

TEST_F(BashCompletion, OffersTheFilesThatACommandTakes)
{
    EXPECT_EQ(Complete({"show", ""}), (Texts{"a.rcp", "b.CSV", "c.erp", "d.frp", "g h.rcp", "sub"}));
    EXPECT_EQ(Complete({"merge", ""}), (Texts{"a.rcp", "g h.rcp", "sub"}));
    EXPECT_EQ(Complete({"formats", "import", ""}), (Texts{"f.json", "sub"}));
    EXPECT_EQ(Complete({"show", "a.rcp", "--library", "A"}), Texts{"Any.Dat"});
    EXPECT_EQ(Complete({"sheet", "--since", "a"}), Texts{"a.rcp"});
    EXPECT_EQ(Complete({"sheet", "a.rcp", "-o", ""}), Texts{"sub"});
}

TEST_F(BashCompletion, OffersTheFormatsOfTheLibraryInUse)
{
    EXPECT_EQ(Complete({"show", "--library", "Any.Dat", "--format", ""}), (Texts{"Shift\\ log", "W\xC3\xB6rter"}));
    EXPECT_EQ(Complete({"show", "--library", "Any.Dat", "--format", "Shift\\ l"}), Texts{"Shift\\ log"});
    EXPECT_EQ(Complete({"show", "--library", "Any.Dat", "--format", "\"Sh"}), Texts{"Shift log"});
    EXPECT_EQ(Complete({"show", "--library", "missing", "--format", ""}), Texts{});
}

TEST_F(BashCompletion, OffersTheVersionsOfTheFile)
{
    const CVariable dataHome("XDG_DATA_HOME", folder.Path().c_str());
    const CVariable variable("VANTOR_VERSIONS", nullptr);
    const std::string stamp = CVersionStore(folder / "vantor").Keep(folder / "g h.rcp", u"Save").stamp;
    fs::remove_all(folder / "sub");
    EXPECT_EQ(Complete({"versions", "restore", "g h.rcp", ""}), Texts{stamp});
    EXPECT_EQ(Complete({"versions", "show", "-o", "x.rcp", "g\\ h.rcp", stamp.substr(0, 4)}), Texts{stamp});
    EXPECT_EQ(Complete({"versions", "show", "g h.rcp", "1"}), Texts{});
    EXPECT_EQ(Complete({"versions", "list", "a"}), Texts{"a.rcp"});
    EXPECT_EQ(Complete({"versions", "show", "-o", "a"}), Texts{"a.rcp"});
    EXPECT_EQ(Complete({"versions", "restore", "a"}), Texts{"a.rcp"});
}

TEST_F(BashCompletion, OffersTheJournalsThatThereAre)
{
    const CVariable home("XDG_DATA_HOME", folder.Path().c_str());
    const std::string id = "20261101T000000.000Z-00000000";
    fs::create_directories(folder / "vantor" / "unsaved");
    WriteAll(folder / "vantor" / "unsaved" / (id + ".jsonl"), {});
    EXPECT_EQ(Complete({"unsaved", "show", ""}), Texts{id});
    EXPECT_EQ(Complete({"unsaved", "drop", "2"}), Texts{id});
    EXPECT_EQ(Complete({"unsaved", "drop", "3"}), Texts{});
}

TEST_F(BashCompletion, OffersNothingForNumbersAndTexts)
{
    EXPECT_EQ(Complete({"show", "--start", ""}), Texts{});
    EXPECT_EQ(Complete({"sheet", "a.rcp", "--title", ""}), Texts{});
    EXPECT_EQ(Complete({"sheet", "a.rcp", "--only-rows", ""}), Texts{});
    EXPECT_EQ(Complete({"set", "a.rcp", "--cell", "1", "2", ""}), Texts{});
    EXPECT_EQ(Complete({"set", "--cell", "1", "2", "3", "a"}), Texts{"a.rcp"});
    EXPECT_EQ(Complete({"set", "a.rcp", "--value", ""}), Texts{});
    EXPECT_EQ(Complete({"set", "a.rcp", "--change", "*", "Level", ""}), Texts{});
    EXPECT_EQ(Complete({"set", "a.rcp", "--change", "*", "Level", "-"}), Texts{});
    EXPECT_EQ(Complete({"set", "--value", "1", "Level", "3", "a"}), Texts{"a.rcp"});
    EXPECT_EQ(Complete({"set", "a.rcp", "--where", "Level", ""}), Texts{});
    EXPECT_EQ(Complete({"set", "--where", "Level", "3", "a"}), Texts{"a.rcp"});
}

} // namespace
