#include "sheet/SheetHtml.h"

#include "text/Utf8Text.h"

#include <cstddef>
#include <string_view>
#include <utility>

namespace {

constexpr std::string_view kStyle = R"(
:root { color-scheme: light; }
body { font: 10pt/1.35 "DejaVu Sans", "Liberation Sans", Arial, sans-serif; color: #000; background: #fff; margin: 2em auto; max-width: 60em; padding: 0 1em; }
h1 { font-size: 1.6em; margin: 0 0 .6em; overflow-wrap: anywhere; }
h2 { font-size: 1.15em; margin: 1.4em 0 .4em; }
table { border-collapse: collapse; width: 100%; }
caption { text-align: left; font-weight: bold; padding: .3em 0; }
th, td { border-bottom: 1px solid #888; padding: .2em .5em; text-align: left; vertical-align: top; overflow-wrap: anywhere; }
thead th { border-bottom: 2px solid #000; }
tbody th { font-weight: normal; }
table.head th { font-weight: bold; width: 9em; }
th.item { width: 24%; }
th.value { width: 18%; }
th.unit { width: 10%; }
th.range { width: 20%; }
td.warned { font-weight: bold; }
div.block { break-inside: avoid-page; margin: 1em 0; }
div.signatures { break-inside: avoid; display: flex; flex-wrap: wrap; gap: 3em; margin-top: 4em; }
div.signatures p { border-top: 1px solid #000; flex: 1 1 16em; margin: 0; padding-top: .3em; }
@media print {
  @page { margin: 15mm; }
  body { margin: 0; max-width: none; padding: 0; }
  thead { display: table-header-group; }
  tr { break-inside: avoid; }
  h2, caption { break-after: avoid; }
}
)";

/// Writes elements and texts, none of which can become an element.
class CHtml {
public:
    void Raw(std::string_view markup) { m_html += markup; }

    void Text(std::u16string_view text)
    {
        while (!text.empty())
            AppendCharacter(TakeCharacter(text));
    }

    /// `tag` with its attributes.
    void Element(std::string_view tag, std::u16string_view text)
    {
        m_html += '<';
        m_html += tag;
        m_html += '>';
        Text(text);
        m_html += "</";
        m_html += tag.substr(0, tag.find(' '));
        m_html += ">\n";
    }

    std::string Take() { return std::move(m_html); }

private:
    void AppendCharacter(char32_t character)
    {
        constexpr char32_t kReplacement = 0xFFFD;
        switch (character) {
        case U'&':
            m_html += "&amp;";
            return;
        case U'<':
            m_html += "&lt;";
            return;
        case U'>':
            m_html += "&gt;";
            return;
        case U'"':
            m_html += "&quot;";
            return;
        default:
            AppendUtf8(IsNoCharacter(character) ? kReplacement : character, m_html);
        }
    }

    /// What no document may hold. The last two of each plane.
    static bool IsNoCharacter(char32_t character)
    {
        return (character & 0xFFFE) == 0xFFFE || (character >= 0xFDD0 && character <= 0xFDEF);
    }

    std::string m_html;
};

void AppendHead(const RecipeSheet& sheet, CHtml& html)
{
    html.Raw("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
             "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
             "<meta name=\"generator\" content=\"Vantor\">\n");
    html.Element("title", sheet.title);
    html.Raw("<style>");
    html.Raw(kStyle);
    html.Raw("</style>\n</head>\n<body>\n<main>\n");
    html.Element("h1 dir=\"auto\"", sheet.title);
    html.Raw("<table class=\"head\">\n<caption>Recipe file</caption>\n<tbody>\n");
    for (const SheetFact& fact : sheet.facts) {
        html.Raw("<tr>");
        html.Element("th scope=\"row\"", fact.label);
        html.Element("td dir=\"auto\"", fact.text);
        html.Raw("</tr>\n");
    }
    html.Raw("</tbody>\n</table>\n<h2>Values</h2>\n");
}

void AppendTitles(const SheetColumns& columns, CHtml& html)
{
    html.Raw("<thead>\n<tr>");
    html.Element("th scope=\"col\" class=\"item\"", kSheetItemTitle);
    html.Element("th scope=\"col\" class=\"value\"", kSheetValueTitle);
    if (columns.hasUnits)
        html.Element("th scope=\"col\" class=\"unit\"", kSheetUnitTitle);
    if (columns.hasRanges)
        html.Element("th scope=\"col\" class=\"range\"", kSheetRangeTitle);
    if (columns.hasRemarks)
        html.Element("th scope=\"col\"", kSheetRemarkTitle);
    html.Raw("</tr>\n</thead>\n");
}

void AppendBlock(const RecipeSheet& sheet, const SheetBlock& block, const SheetColumns& columns, CHtml& html)
{
    html.Raw("<div class=\"block\">\n<table>\n");
    html.Element("caption", block.title);
    AppendTitles(columns, html);
    html.Raw("<tbody>\n");
    for (std::size_t i = 0; i < block.values.size(); ++i) {
        const SheetItem& item = sheet.items[i];
        const SheetValue& value = block.values[i];
        html.Raw("<tr>");
        html.Element("th scope=\"row\" dir=\"auto\"", item.title);
        const std::string_view tag = value.warning.empty() ? "td dir=\"auto\"" : "td class=\"warned\" dir=\"auto\"";
        html.Element(tag, value.text);
        if (columns.hasUnits)
            html.Element("td dir=\"auto\"", item.unit);
        if (columns.hasRanges)
            html.Element("td", item.range);
        if (columns.hasRemarks)
            html.Element(tag, RemarkOn(value));
        html.Raw("</tr>\n");
    }
    html.Raw("</tbody>\n</table>\n</div>\n");
}

void AppendChanges(const SheetChanges& changes, CHtml& html)
{
    html.Element("h2 dir=\"auto\"", ChangesTitle(changes));
    if (changes.changes.empty()) {
        html.Element("p", kSheetNoChanges);
    } else {
        html.Raw("<table>\n<caption>What changed</caption>\n<thead>\n<tr>");
        for (const std::u16string_view title : {kSheetRowTitle, kSheetItemTitle, kSheetOldTitle, kSheetNewTitle})
            html.Element("th scope=\"col\"", title);
        html.Raw("</tr>\n</thead>\n<tbody>\n");
        for (const SheetChange& change : changes.changes) {
            html.Raw("<tr>");
            html.Element("td", change.row);
            html.Element("th scope=\"row\" dir=\"auto\"", change.item);
            html.Element("td dir=\"auto\"", change.oldText);
            html.Element("td dir=\"auto\"", change.newText);
            html.Raw("</tr>\n");
        }
        html.Raw("</tbody>\n</table>\n");
    }
    if (!changes.further.empty())
        html.Element("p", changes.further);
}

void AppendSignature(std::u16string_view who, CHtml& html)
{
    html.Raw("<p>");
    html.Text(who);
    html.Raw("<br>");
    html.Text(kSheetSignature);
    html.Raw("</p>\n");
}

} // namespace

std::string SheetHtml(const RecipeSheet& sheet)
{
    CHtml html;
    AppendHead(sheet, html);
    const SheetColumns columns = ColumnsOf(sheet);
    for (const SheetBlock& block : sheet.blocks)
        AppendBlock(sheet, block, columns, html);
    if (sheet.blocks.empty())
        html.Element("p", kSheetNoRows);
    if (sheet.changes)
        AppendChanges(*sheet.changes, html);
    html.Raw("<div class=\"signatures\">\n");
    AppendSignature(kSheetIssued, html);
    AppendSignature(kSheetApproved, html);
    html.Raw("</div>\n</main>\n</body>\n</html>\n");
    return html.Take();
}
