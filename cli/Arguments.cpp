#include "cli/Arguments.h"

#include "text/PathText.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <system_error>

namespace {

/// False unless all of `text` is a decimal integer that fits.
template <typename Number, typename Target>
bool ReadNumber(const std::string& text, Target& target)
{
    Number number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, fault] = std::from_chars(text.data(), end, number);
    if (fault != std::errc() || stop != end)
        return false;
    target = number;
    return true;
}

template <typename Target>
CLI::Option* AddInt32(CLI::App& command, const std::string& name, Target& number, const std::string& description)
{
    const auto take = [&number](const CLI::results_t& texts) {
        return ReadNumber<std::int32_t>(texts.front(), number);
    };
    return command.add_option(name, take, description)->type_name("N");
}

template <typename Target>
CLI::Option* AddOnePath(CLI::App& command, const std::string& name, Target& path, const std::string& description)
{
    const auto take = [&path](const CLI::results_t& texts) {
        path = PathOfUtf8(texts.front());
        return true;
    };
    return command.add_option(name, take, description);
}

} // namespace

CLI::Option* AddPath(CLI::App& command, const std::string& name, std::filesystem::path& path,
                     const std::string& description)
{
    return AddOnePath(command, name, path, description);
}

CLI::Option* AddPath(CLI::App& command, const std::string& name, std::optional<std::filesystem::path>& path,
                     const std::string& description)
{
    return AddOnePath(command, name, path, description);
}

CLI::Option* AddPaths(CLI::App& command, const std::string& name, std::vector<std::filesystem::path>& paths,
                      const std::string& description)
{
    const auto take = [&paths](const std::vector<std::string>& texts) {
        paths.clear();
        std::transform(texts.begin(), texts.end(), std::back_inserter(paths), PathOfUtf8);
    };
    return command.add_option_function<std::vector<std::string>>(name, take, description);
}

CLI::Option* AddText(CLI::App& command, const std::string& name, std::optional<std::string>& text,
                     const std::string& description)
{
    const auto take = [&text](const CLI::results_t& texts) {
        text = texts.front();
        return true;
    };
    return command.add_option(name, take, description);
}

CLI::Option* AddNumber(CLI::App& command, const std::string& name, std::optional<std::int32_t>& number,
                       const std::string& description)
{
    return AddInt32(command, name, number, description);
}

CLI::Option* AddNumber(CLI::App& command, const std::string& name, std::int32_t& number, const std::string& description)
{
    return AddInt32(command, name, number, description);
}

CLI::Option* AddMergedSize(CLI::App& command, const std::string& name, MergedSize& size, const std::string& description)
{
    const auto take = [&size](const CLI::results_t& texts) {
        size = texts.front() == "256K" ? MergedSize::Words256K : MergedSize::Words128K;
        return texts.front() == "128K" || texts.front() == "256K";
    };
    return command.add_option(name, take, description)->type_name("128K|256K");
}

CLI::Option* AddChoice(CLI::App& command, const std::string& name, bool& isSecond,
                       const std::array<std::string, 2>& words, const std::string& description)
{
    const auto take = [&isSecond, words](const CLI::results_t& texts) {
        isSecond = texts.front() == words[1];
        return isSecond || texts.front() == words[0];
    };
    return command.add_option(name, take, description)->type_name(words[0] + '|' + words[1]);
}
