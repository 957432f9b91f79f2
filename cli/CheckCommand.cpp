#include "cli/CheckCommand.h"

#include "changes/Findings.h"
#include "changes/WordsText.h"
#include "cli/RecipeTables.h"
#include "files/RecipeMessages.h"
#include "library/JsonText.h"
#include "text/EscapedText.h"
#include "text/MessageText.h"
#include "text/PathText.h"
#include "text/Utf8Text.h"

#include <cstdint>
#include <map>
#include <optional>
#include <utility>

namespace {

/// Prints findings of one file after the other.
class CFindingPrinter : public CFindingTaker {
public:
    explicit CFindingPrinter(CStandardOutput& output) : m_output(output) {}

    void BeginFile(const std::filesystem::path& file) { m_file = PathText(file); }

    bool Take(const Finding& finding) override
    {
        m_hasErrors = m_hasErrors || IsError(finding.kind);
        m_hasWarnings = m_hasWarnings || !IsError(finding.kind);
        Print(finding);
        return !m_output.HasFailed();
    }

    /// There are no further findings in the file.
    virtual void EndFile() {}

    bool HasErrors() const { return m_hasErrors; }
    bool HasWarnings() const { return m_hasWarnings; }

protected:
    virtual void Print(const Finding& finding) = 0;

    const std::u16string& File() const { return m_file; }
    CStandardOutput& Output() { return m_output; }

private:
    CStandardOutput& m_output;
    std::u16string m_file;
    bool m_hasErrors = false;
    bool m_hasWarnings = false;
};

std::u16string PlaceText(const Finding& finding)
{
    std::u16string place;
    if (finding.address)
        place += FillMessage(u" RW%d", {finding.address->number});
    if (finding.row)
        place += FillMessage(u" row %d", {*finding.row});
    return place;
}

/// For people.
class CTextPrinter final : public CFindingPrinter {
public:
    using CFindingPrinter::CFindingPrinter;

    void EndFile() override { PrintRewritten(); }

private:
    /// What a save would rewrite in a column.
    struct Rewritten {
        std::u16string item;
        std::u16string first; ///< where
        std::int64_t count = 0;
    };

    void Print(const Finding& finding) override
    {
        if (finding.table != m_table)
            PrintRewritten();
        m_table = finding.table;
        if (finding.kind == FindingKind::Rewritten)
            return Count(finding);
        std::u16string place = PlaceText(finding);
        if (finding.item)
            place += u' ' + EscapedText(*finding.item);
        PrintLine(place, finding.message, finding.kind);
    }

    void Count(const Finding& finding)
    {
        Rewritten& column = m_rewritten[finding.column.value_or(0)];
        if (column.count++ == 0) {
            column.item = finding.item.value_or(u"");
            column.first = PlaceText(finding);
        }
    }

    /// A line a column of the table that was checked.
    void PrintRewritten()
    {
        for (const auto& [number, column] : m_rewritten) {
            const std::u16string_view pattern =
                column.count == 1 ? u"a save would change %d value,%s" : u"a save would change %d values, the first%s";
            PrintLine(u' ' + EscapedText(column.item), FillMessage(pattern, {column.count, column.first}),
                      FindingKind::Rewritten);
        }
        m_rewritten.clear();
    }

    void PrintLine(std::u16string_view place, std::u16string_view message, FindingKind kind)
    {
        std::u16string line = EscapedText(File()).append(u":").append(place);
        if (!place.empty())
            line += u':';
        line.append(u" ").append(EscapedText(message)).append(u" [").append(WordOf(kind)).append(u"]\n");
        Output().Write(ToUtf8(line));
    }

    std::optional<std::size_t> m_table;
    std::map<std::int32_t, Rewritten> m_rewritten; ///< by column
};

/// For programs: JSON, a line a finding.
class CLinePrinter final : public CFindingPrinter {
public:
    using CFindingPrinter::CFindingPrinter;

private:
    void Print(const Finding& finding) override
    {
        m_line.clear();
        AppendText("file", File());
        if (finding.table)
            AppendNumber("table", static_cast<std::int64_t>(*finding.table));
        if (finding.row)
            AppendNumber("row", *finding.row);
        if (finding.column)
            AppendNumber("column", *finding.column);
        if (finding.item)
            AppendText("item", *finding.item);
        if (finding.address)
            AppendNumber("address", finding.address->number);
        if (finding.text)
            AppendText("text", *finding.text);
        if (!finding.words.empty()) {
            AppendKey("words");
            m_line += '"';
            AppendWordsText(finding.words, m_line);
            m_line += '"';
        }
        AppendText("kind", WordOf(finding.kind));
        AppendText("level", IsError(finding.kind) ? u"error" : u"warning");
        AppendText("message", finding.message);
        m_line += "}\n";
        Output().Write(m_line);
    }

    void AppendKey(std::string_view key)
    {
        m_line += m_line.empty() ? '{' : ',';
        m_line.append("\"").append(key).append("\":");
    }

    void AppendText(std::string_view key, std::u16string_view text)
    {
        AppendKey(key);
        AppendJsonText(text, m_line);
    }

    void AppendNumber(std::string_view key, std::int64_t number)
    {
        AppendKey(key);
        m_line += std::to_string(number);
    }

    std::string m_line;
};

/// Makes findings of what is told of a file that cannot be read.
class CUnreadable final : public CReporter {
public:
    explicit CUnreadable(CFindingTaker& taker) : m_taker(taker) {}

    void ShowError(std::u16string_view text) override
    {
        m_wasTold = true;
        Finding finding;
        finding.kind = FindingKind::Unreadable;
        finding.message = text;
        m_taker.Take(finding);
    }

    bool AskYesNo(std::u16string_view text) override
    {
        ShowError(text);
        return false;
    }

    bool WasTold() const { return m_wasTold; }

private:
    CFindingTaker& m_taker;
    bool m_wasTold = false;
};

/// False, and then reported, when it cannot be told how the file is to be read.
bool CheckFile(const std::filesystem::path& file, CTableFinder& finder, CFindingPrinter& printer, CReporter& reporter,
               CProgress& progress)
{
    printer.BeginFile(file);
    CUnreadable unreadable(printer);
    const auto tables = finder.TablesOf({file}, unreadable, reporter);
    if (!tables)
        return unreadable.WasTold();
    const Outcome outcome = FindIn(tables->type, tables->path, tables->tables, printer, progress);
    printer.EndFile();
    if (HasFailed(outcome))
        ShowFileError(unreadable, OpenErrorOf(tables->type), tables->path);
    return true;
}

ExitCode CheckAll(const CheckOptions& options, CFindingPrinter& printer, CStandardOutput& output, CReporter& reporter,
                  CProgress& progress)
{
    CTableFinder finder(options.read);
    bool isWell = true;
    for (const std::filesystem::path& file : options.files) {
        if (output.HasFailed())
            break;
        isWell = CheckFile(file, finder, printer, reporter, progress) && isWell;
    }
    if (!output.Finish(reporter) || !isWell)
        return kTrouble;
    return printer.HasErrors() || (options.failOnWarning && printer.HasWarnings()) ? kFailed : kDone;
}

} // namespace

ExitCode CheckRecipes(const CheckOptions& options, CStandardOutput& output, CReporter& reporter, CProgress& progress)
{
    if (options.asLines) {
        CLinePrinter printer(output);
        return CheckAll(options, printer, output, reporter, progress);
    }
    CTextPrinter printer(output);
    return CheckAll(options, printer, output, reporter, progress);
}
