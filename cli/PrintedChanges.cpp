#include "cli/PrintedChanges.h"

#include "changes/ChangeLines.h"

#include <cstddef>
#include <string>

void PrintChanges(const CChangeList& changes, CStandardOutput& output)
{
    std::string line;
    AppendLine(changes.Header(), line);
    output.Write(line);
    const std::size_t count = changes.Count();
    for (std::size_t i = 0; i < count; ++i) {
        line.clear();
        AppendLine(changes.At(i), line);
        output.Write(line);
    }
}
