#include "changes/Patch.h"

#include "changes/ChangeLines.h"

#include <utility>

std::variant<Patch, ChangeFault> ReadPatch(std::istream& input)
{
    CChangeReader reader(input);
    auto header = reader.ReadHeader();
    if (auto* fault = std::get_if<ChangeFault>(&header))
        return std::move(*fault);
    Patch patch{std::get<ChangeHeader>(std::move(header)), {}};
    for (;;) {
        auto next = reader.Next();
        if (auto* fault = std::get_if<ChangeFault>(&next))
            return std::move(*fault);
        if (std::holds_alternative<EndOfChanges>(next))
            return patch;
        patch.entries.push_back({std::get<ChangeRecord>(std::move(next)), reader.Line()});
    }
}

void Reverse(ChangeHeader& header)
{
    std::swap(header.bytes, header.newBytes);
}

void Reverse(ChangeRecord& record)
{
    if (record.reads && record.newWords.empty())
        record.newText = record.reads; // that is what the file shows
    record.reads.reset();
    std::swap(record.oldText, record.newText);
    std::swap(record.oldWords, record.newWords);
    record.zeros = -record.zeros;
}

void Reverse(Patch& patch)
{
    Reverse(patch.header);
    for (Patch::Entry& entry : patch.entries)
        Reverse(entry.record);
}

std::unique_ptr<CFilePatch> MakeFilePatch(const Patch& patch, const PatchedFile& file)
{
    return file.type == FileType::Csv ? MakeTablePatch(patch, file) : MakeWordPatch(patch, file);
}
