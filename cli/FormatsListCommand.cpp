#include "cli/FormatsListCommand.h"

#include "library/LibraryFile.h"
#include "text/PrintableText.h"

namespace {

std::string LineOf(const DataFormat& format)
{
    std::string line;
    AppendPrintable(TextOf(format.name), line);
    line += '\t' + std::to_string(format.itemCount);
    line += '\t' + std::to_string(format.totalLength()) + '\n';
    return line;
}

} // namespace

bool ListFormats(const FormatsListOptions& options, CStandardOutput& output, CReporter& reporter)
{
    FormatLibrary library;
    if (!LoadLibrary(LibraryToRead(options.library, reporter), library, reporter))
        return false;
    for (const auto& format : library.formats)
        output.Write(LineOf(*format));
    return output.Finish(reporter);
}
