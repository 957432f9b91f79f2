#include "changes/ChangeLines.h"
#include "tests/fuzz/Property.h"
#include "tests/fuzz/Targets.h"

#include <sstream>
#include <string>

namespace {

/// What lines hold, up to the first fault.
struct ReadLines {
    std::string written; ///< what was read, written again
    bool hasFault = false;
};

void RequireFault(CChangeReader& reader, const ChangeFault& fault)
{
    Require(fault.line >= 1 && !fault.text.empty(), "a fault has a line and a text");
    const auto next = reader.Next();
    const auto* again = std::get_if<ChangeFault>(&next);
    Require(again != nullptr && again->line == fault.line && again->key == fault.key && again->text == fault.text,
            "a fault ends the reading");
}

ReadLines Read(const std::string& lines)
{
    std::istringstream input(lines);
    CChangeReader reader(input);
    ReadLines read;
    const auto header = reader.ReadHeader();
    if (const auto* fault = std::get_if<ChangeFault>(&header)) {
        RequireFault(reader, *fault);
        return {"", true};
    }
    AppendLine(std::get<ChangeHeader>(header), read.written);
    for (;;) {
        const auto next = reader.Next();
        if (const auto* fault = std::get_if<ChangeFault>(&next)) {
            RequireFault(reader, *fault);
            read.hasFault = true;
            return read;
        }
        if (std::holds_alternative<EndOfChanges>(next))
            return read;
        AppendLine(std::get<ChangeRecord>(next), read.written);
    }
}

/// What is read of one line alone comes back when it is written.
template <class Value, class Parse>
void RequireSameValue(const std::string& line, Parse parse)
{
    Value value;
    if (parse(line, value))
        return;
    std::string written;
    AppendLine(value, written);
    Value again;
    Require(!parse(written, again), "a line that was written is read");
    Require(again == value, "and holds what was written");
}

} // namespace

void FuzzChanges(FuzzBytes bytes)
{
    const std::string lines(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const std::string written = Read(lines).written;
    if (!written.empty()) {
        const ReadLines again = Read(written);
        Require(!again.hasFault, "lines that were written are read");
        Require(again.written == written, "and are written once more as they are");
    }
    RequireSameValue<ChangeHeader>(lines, HeaderFromLine);
    RequireSameValue<ChangeRecord>(lines, ChangeFromLine);
}
