#include "cli/TableOptions.h"

#include "cli/Arguments.h"
#include "text/PathText.h"

namespace {

/// What the parser gives for a flag without a value. A layout file of this name is "./true".
constexpr const char* kNoValue = "true";

void AddLayout(CLI::App& command, std::optional<std::filesystem::path>& layout)
{
    const auto take = [&layout](const CLI::results_t& values) {
        layout = values.back() == kNoValue ? std::filesystem::path() : PathOfUtf8(values.back());
        return true;
    };
    command.add_option("--layout", take, "Take the tables from the nearest .vantor.json, or with =PATH from that file")
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast)
        ->expected(0);
}

} // namespace

void AddLibrary(CLI::App& command, std::optional<std::filesystem::path>& library)
{
    AddPath(command, "--library", library,
            "Format library, or its JSON export (default: the RecipeFile.Dat of this program)")
        ->type_name("PATH");
}

void AddTableOptions(CLI::App& command, ReadOptions& options)
{
    AddLibrary(command, options.library);
    AddText(command, "--format", options.formatName, "Format that lays out the rows (default: the library's first)")
        ->type_name("NAME");
    AddNumber(command, "--start", options.startAddress, "Word address of the first row (default: the library's)")
        ->type_name("S");
    AddNumber(command, "--rows", options.rowCount, "Number of rows (default: the library's)");
    AddLayout(command, options.layout);
}
