#include "changes/ChangeLines.h"
#include "changes/FileDifferences.h"
#include "changes/Patch.h"
#include "tests/fuzz/Property.h"
#include "tests/fuzz/Scratch.h"
#include "tests/fuzz/Targets.h"
#include "tests/support/Formats.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"

#include <algorithm>
#include <sstream>
#include <string>

namespace {

constexpr std::uint64_t kMostGrowth = 1 << 20; // larger results are looked at, and not written

std::vector<FileTable> Tables()
{
    DataItem name = MakeItem(u"Name", DataType::String, 2, 4);
    name.unicode = 1;
    const DataFormat oven = MakeFormat(u"Oven", {MakeItem(u"Level", DataType::Signed16, 1, 4),
                                                 ArrayOf(MakeItem(u"Temp", DataType::Signed16, 1, 4, 1), 2), name});
    return {MakeTable(oven, 1, 2)};
}

class CNobody final : public CChangeTaker {
public:
    bool Take(const ChangeRecord&) override { return true; }
};

/// What is refused leaves the file alone; what is taken can be told, and written.
void Apply(const Patch& patch, const PatchedFile& file)
{
    const Bytes before = FileContent(file.path);
    const auto filePatch = MakeFilePatch(patch, file);
    if (filePatch->Look()) {
        Require(FileContent(file.path) == before, "a look writes nothing");
        return;
    }
    CNobody nobody;
    filePatch->HandTo(nobody);
    const ChangeHeader header = filePatch->Header();
    if (filePatch->ChangesNothing() ||
        header.newBytes.value_or(0) > static_cast<std::int64_t>(before.size() + kMostGrowth))
        return;
    CRecordingReporter reporter;
    Require(static_cast<bool>(filePatch->Write(file.path, reporter)), "what fits is written");
    if (file.type != FileType::Frp) {
        const auto size = static_cast<std::int64_t>(FileContent(file.path).size());
        Require(header.newBytes == size, "the size is the one that was told");
    }
}

} // namespace

void FuzzPatch(FuzzBytes bytes)
{
    static constexpr const char* kNames[] = {"patch.rcp", "patch.csv", "patch.frp"};
    static constexpr FileType kTypes[] = {FileType::Rcp, FileType::Csv, FileType::Frp};
    const std::size_t kind = bytes.empty() ? 0 : std::to_integer<std::size_t>(bytes[0]) % 3;
    bytes = bytes.empty() ? bytes : bytes.subspan(1);
    const auto end = std::search_n(bytes.begin(), bytes.end(), 2, std::byte{'\n'}); // the patch, then the file
    std::string lines(reinterpret_cast<const char*>(bytes.data()), static_cast<std::size_t>(end - bytes.begin()));
    const auto rest = bytes.subspan(std::min(lines.size() + 2, bytes.size()));

    const PatchedFile file{ScratchFolder() / kNames[kind], kTypes[kind], Tables()};
    PutFile(file.path, rest);
    std::istringstream input(lines);
    auto patch = ReadPatch(input);
    if (auto* whole = std::get_if<Patch>(&patch)) {
        Apply(*whole, file);
        Reverse(*whole);
        Apply(*whole, file);
    }
}
