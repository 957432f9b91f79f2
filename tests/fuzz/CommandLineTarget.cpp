#include "changes/ChangeLines.h"
#include "changes/LayoutFile.h"
#include "cli/CommandLine.h"
#include "library/FormatLibrary.h"
#include "tests/fuzz/Property.h"
#include "tests/fuzz/Scratch.h"
#include "tests/fuzz/Targets.h"
#include "tests/support/Formats.h"
#include "tests/support/Variable.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

using Arguments = std::vector<std::string>;
using Files = std::map<std::string, Bytes>;

constexpr std::size_t kMostArguments = 16;
constexpr std::int64_t kMostWords = 20000; ///< of all rows: more take long and show nothing new

struct Invocation {
    Arguments arguments;
    FuzzBytes content; ///< of each file but the library "L.Dat"
};

struct Answer {
    int code = 0;
    std::string out;
    std::string error;
};

/// What is written to a stream, as a text.
class CMemoryStream {
public:
    CMemoryStream() : m_stream(open_memstream(&m_text, &m_length)) {}
    ~CMemoryStream()
    {
        std::fclose(m_stream);
        std::free(m_text);
    }
    CMemoryStream(const CMemoryStream&) = delete;
    CMemoryStream& operator=(const CMemoryStream&) = delete;

    std::FILE* Stream() { return m_stream; }

    std::string Text()
    {
        std::fflush(m_stream);
        return {m_text, m_length};
    }

private:
    char* m_text = nullptr;
    std::size_t m_length = 0;
    std::FILE* m_stream;
};

/// The process works in `folder` while the object lives.
class CWorkingFolder {
public:
    explicit CWorkingFolder(const fs::path& folder) : m_before(fs::current_path()) { fs::current_path(folder); }
    ~CWorkingFolder() { fs::current_path(m_before); }
    CWorkingFolder(const CWorkingFolder&) = delete;
    CWorkingFolder& operator=(const CWorkingFolder&) = delete;

private:
    fs::path m_before;
};

/// The lines up to an empty one are the arguments. None of them leads out of the working folder, or to the library
/// beside this program.
Invocation TakeInvocation(FuzzBytes bytes)
{
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    Invocation invocation;
    std::size_t begin = 0;
    while (begin < text.size() && text[begin] != '\n' && invocation.arguments.size() < kMostArguments) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        std::string argument(text.substr(begin, end - begin));
        argument.erase(std::min(argument.find('\0'), argument.size()));
        std::replace(argument.begin(), argument.end(), '/', '_');
        invocation.arguments.push_back(argument);
        begin = std::min(end + 1, text.size());
    }
    invocation.content = bytes.subspan(std::min(begin + 1, text.size()));
    return invocation;
}

bool IsAmong(const Arguments& arguments, std::string_view text)
{
    return std::any_of(arguments.begin(), arguments.end(),
                       [text](const std::string& argument) { return argument.find(text) != std::string::npos; });
}

/// A library of every type.
Bytes SampleLibrary()
{
    FormatLibrary library;
    library.startAddress = 1;
    library.rowCount = 3;
    DataItem name = MakeItem(u"Name", DataType::String, 2, 4);
    name.unicode = 1;
    library.formats.push_back(std::make_unique<DataFormat>(MakeFormat(
        u"All", {MakeItem(u"A", DataType::Signed16, 1, 4), ArrayOf(MakeItem(u"B", DataType::Unsigned32, 2, 8, 2), 2),
                 MakeItem(u"C", DataType::Hex16, 1, 4), MakeItem(u"D", DataType::Float, 2, 5, 3),
                 MakeItem(u"E", DataType::Double, 4, 9, 4), MakeItem(u"F", DataType::String, 2, 4), name})));
    library.formats.push_back(
        std::make_unique<DataFormat>(MakeFormat(u"One", {MakeItem(u"Word", DataType::Unsigned16, 1, 5)})));
    const fs::path path = ScratchFolder() / "sample.Dat";
    Require(library.save(path) == 0, "the sample library can be saved");
    return FileContent(path);
}

/// The largest row of any format that the library in `content` holds, in words and columns.
std::int64_t LargestRow(const FormatLibrary& library)
{
    std::int64_t largest = 18; // of the sample library
    for (const auto& format : library.formats)
        largest = std::max({largest, format->totalLength(), format->elementCount()});
    return largest;
}

/// The largest number among the arguments; digits within any text count.
std::int64_t LargestNumber(const Arguments& arguments)
{
    constexpr std::int64_t kEnough = 1000000000;
    std::int64_t largest = 0;
    for (const std::string& argument : arguments) {
        std::int64_t number = 0;
        for (const char c : argument) {
            number = c >= '0' && c <= '9' ? std::min(number * 10 + (c - '0'), kEnough) : 0;
            largest = std::max(largest, number);
        }
    }
    return largest;
}

/// Whether the command is done in no time, whatever it is.
bool IsSmall(const Invocation& invocation)
{
    const fs::path path = ScratchFolder() / "measured.Dat";
    PutFile(path, invocation.content);
    FormatLibrary library;
    library.loadReadOnly(path);
    Layout layout;
    const std::string text(reinterpret_cast<const char*>(invocation.content.data()), invocation.content.size());
    if (IsAmong(invocation.arguments, "--layout") && !LayoutFromJson(text, layout) &&
        std::any_of(layout.tables.begin(), layout.tables.end(),
                    [](const LayoutTable& table) { return table.rows.value_or(0) > 1000; }))
        return false;
    const bool hasRows = IsAmong(invocation.arguments, "--rows");
    const std::int64_t rows =
        std::max<std::int64_t>(hasRows ? LargestNumber(invocation.arguments) : 0, library.rowCount);
    const std::int64_t row = LargestRow(library);
    return row <= kMostWords && rows <= kMostWords && rows * row <= kMostWords;
}

Files FilesIn(const fs::path& folder)
{
    Files files;
    for (const auto& entry : fs::directory_iterator(folder))
        files[entry.path().filename().string()] = FileContent(entry.path());
    return files;
}

fs::path FreshFolder(FuzzBytes content)
{
    static const Bytes library = SampleLibrary();
    const fs::path folder = ScratchFolder() / "work";
    fs::remove_all(folder);
    fs::create_directory(folder);
    PutFile(folder / "L.Dat", library);
    for (const char* name : {"M.Dat", "a.json", "a.rcp", "a.csv", "a.erp", "a.frp"})
        PutFile(folder / name, content);
    return folder;
}

Answer Run(const Arguments& arguments)
{
    CMemoryStream out;
    CMemoryStream error;
    const int code = RunCommandLine(arguments, out.Stream(), error.Stream());
    return {code, out.Text(), error.Text()};
}

/// Of a damaged library what can be read is read, and that is told.
bool IsAboutDamagedLibrary(const std::string& error)
{
    return error.starts_with("The format library ") && error.ends_with("is left out!\n") &&
           std::count(error.begin(), error.end(), '\n') == 1;
}

/// The rest of what is told after the message on a damaged library, if that is there.
std::string WithoutLibraryMessage(const std::string& error)
{
    const std::size_t end = error.find('\n') + 1;
    return IsAboutDamagedLibrary(error.substr(0, end)) ? error.substr(end) : error;
}

/// Of values that nobody set `set` tells how many change, once.
bool IsAboutStoredAsShown(const std::string& error)
{
    static const std::regex sentence(
        "[^\n]*: (1 value that (was not set was|is not set will be)|[0-9]+ values that (were not set were|are not set "
        "will be)) stored as shown( or dropped)?[.]( With --only-edited (it stays as it is|they stay as they "
        "are)[.])?\n");
    return std::regex_match(error, sentence);
}

void CheckAnswer(const std::string& command, const Answer& answer)
{
    Require(answer.code >= 0 && answer.code <= 2, "the exit code is 0, 1 or 2");
    const bool isFinding = command == "check" && answer.code == 1;
    Require(answer.code == 0 || !(isFinding ? answer.out : answer.error).empty(), "a failure says why");
    const bool hasManyFiles = command == "check" || command == "values"; // and prints what it can of them
    Require(answer.code != 2 || answer.out.empty() || hasManyFiles, "nothing is done for arguments that make no sense");
    const bool isQuiet = answer.error.empty() || IsAboutDamagedLibrary(answer.error) ||
                         (command == "set" && IsAboutStoredAsShown(WithoutLibraryMessage(answer.error)));
    Require(answer.code != 0 || isQuiet, "what is done is not complained of");
}

bool AreChanges(const std::string& lines)
{
    std::istringstream input(lines);
    CChangeReader reader(input);
    if (!std::holds_alternative<ChangeHeader>(reader.ReadHeader()))
        return false;
    auto next = reader.Next();
    while (std::holds_alternative<ChangeRecord>(next))
        next = reader.Next();
    return std::holds_alternative<EndOfChanges>(next);
}

bool AreJsonLines(const std::string& lines)
{
    std::istringstream input(lines);
    for (std::string line; std::getline(input, line);)
        if (!nlohmann::json::accept(line))
            return false;
    return lines.ends_with('\n');
}

/// What begins as JSON goes on as JSON; help is asked for in many ways, and begins otherwise.
void CheckOutput(const std::string& command, const Answer& answer)
{
    if (answer.code == 0 && command == "show" && answer.out.starts_with('{'))
        Require(nlohmann::json::accept(answer.out), "JSON output is JSON");
    if (command == "values" && answer.out.starts_with("{\"file\""))
        Require(AreJsonLines(answer.out), "values are lines of JSON");
    if (command == "check" && answer.out.starts_with("{\"file\""))
        Require(AreJsonLines(answer.out), "findings are lines of JSON");
    if (answer.code == 0 && command == "set" && answer.out.starts_with('{'))
        Require(AreChanges(answer.out), "changes that are printed can be read");
}

} // namespace

void FuzzCommandLine(FuzzBytes bytes)
{
    Invocation invocation = TakeInvocation(bytes);
    if (!IsSmall(invocation))
        return;
    if (!IsAmong(invocation.arguments, "--library"))
        invocation.arguments.push_back("--library=L.Dat");

    const CVariable dataHome("XDG_DATA_HOME", ScratchFolder().c_str()); // never that of the user
    const CWorkingFolder folder(FreshFolder(invocation.content));
    const std::string command = invocation.arguments.front();
    const Files before = FilesIn(".");
    const Answer answer = Run(invocation.arguments);
    const Files after = FilesIn(".");
    CheckAnswer(command, answer);
    CheckOutput(command, answer);
    if (answer.code == 2)
        Require(before == after, "arguments that make no sense change nothing");
    if (answer.code == 1 && command != "merge") // which leaves what it wrote
        Require(before == after, "a command that fails changes nothing");
    if (command == "set" && !answer.out.empty())
        Require(before == after, "telling what would change changes nothing");
    if (command == "show" || command == "check" || command == "values") {
        Require(before == after, "showing changes nothing");
        const Answer again = Run(invocation.arguments);
        Require(again.code == answer.code && again.out == answer.out, "showing twice shows the same");
    }
}
