// vantor-kept-work COMMAND FILE DATA opens FILE in a document that keeps its edits and versions in DATA, and
//
//   edit   gives four cells texts, one after the other, and leaves them there
//   drop   does the same, and begins a new document
//   save   does the same, and saves
//   claim  puts back what another one left
//   merge  takes FILE for a format library: saves a format after another program saved one. DATA is not used
//
// The disk breaks from the first edit on, or from the claim or the save of the library on. Prints "kept" or "lost" and
// the number of edits after each, as the document says it, and "saved" or "failed"; on standard error what a user would
// be told. Ends with 1 when something failed, with 3 when an edit did.

#include "disk/File.h"
#include "document/RecipeDocument.h"
#include "library/FormatStore.h"
#include "recovery/UnsavedStore.h"
#include "tests/faults/SoundDisk.h"
#include "tests/support/Formats.h"

#include <cstdio>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr std::int32_t kEdits = 4;

class CWork {
public:
    CWork(fs::path path, const fs::path& data) : m_data(data), m_versions(data)
    {
        const CSoundDisk sound;
        m_document.KeepUnsavedIn(data);
        m_document.KeepVersionsIn(m_versions);
        m_document.StartOpen(path, FileType::Rcp);
        m_document.TakeSettings({MakeFormat(u"Row", {MakeItem(u"Word", DataType::Unsigned16, 1, 4)}), 0, 2 * kEdits});
        m_document.ReadOnly(m_printer, m_progress);
    }

    int Edit()
    {
        for (std::int32_t row = 0; row < kEdits; ++row) {
            std::vector<TextForCell> texts;
            texts.push_back({{row, 0}, std::u16string(3, static_cast<char16_t>(u'1' + row))});
            if (m_document.SetTexts(EditKind::Typing, std::move(texts)) != EditOutcome::Made)
                return 3;
            Tell(row + 1);
        }
        m_document.Unsaved().Flush();
        Tell(kEdits);
        return 0;
    }

    int Drop()
    {
        const int result = Edit();
        m_document.StartNew();
        return result;
    }

    int Save()
    {
        if (const int result = Edit(); result != 0)
            return result;
        if (!m_document.Write(FileType::Rcp, m_document.Path(), m_printer, m_progress))
            return 1;
        m_document.MarkSaved();
        std::puts("saved");
        const auto& version = m_document.LastSave().version;
        if (const auto text = version ? NotKeptText(*version, m_document.Path()) : u"no version"; !text.empty())
            m_printer.ShowError(text);
        return 0;
    }

    /// The journal that was left goes once the document's own has the edits.
    int Claim()
    {
        auto work = CUnsavedStore(m_data).ClaimOldest();
        if (!work)
            return 0;
        EditOutcome outcome = EditOutcome::Nothing;
        const auto others = m_document.PutBackUnsaved(work->Work(), outcome);
        if (outcome != EditOutcome::Made)
            return 3;
        if (others.empty() && m_document.Unsaved().Flush())
            work->Remove();
        else
            work->Drop();
        return 0;
    }

private:
    void Tell(std::int32_t edits)
    {
        std::printf("%s %d\n", m_document.Unsaved().LastFault() ? "lost" : "kept", static_cast<int>(edits));
        std::fflush(stdout);
    }

    fs::path m_data;
    CVersionStore m_versions;
    CErrorPrinter m_printer;
    CNoProgress m_progress;
    CRecipeDocument m_document;
};

int Merge(const fs::path& path)
{
    CFormatStore* store = nullptr;
    {
        const CSoundDisk sound;
        store = new CFormatStore(path);
        CFormatStore others(path);
        others.AppendFormat(MakeFormat(u"Theirs", {}));
        others.Save();
    }
    store->AppendFormat(MakeFormat(u"Ours", {}));
    const bool isSaved = store->Save();
    delete store;
    std::puts(isSaved ? "saved" : "failed");
    return isSaved ? 0 : 1;
}

int Run(const std::string& command, const fs::path& path, const fs::path& data)
{
    if (command == "merge")
        return Merge(path);
    CWork work(path, data);
    if (command == "edit")
        return work.Edit();
    if (command == "drop")
        return work.Drop();
    return command == "save" ? work.Save() : work.Claim();
}

} // namespace

int main(int argc, char* argv[])
{
    SurviveFailedWrites();
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    return arguments.size() == 3 ? Run(arguments[0], arguments[1], arguments[2]) : 2;
}
