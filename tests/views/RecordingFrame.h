#pragma once

#include "tests/support/RecordingReporter.h"
#include "views/RecipeFrame.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

/// A frame without a window: it keeps what the panes ask of it, in order.
class CRecordingFrame final : public CRecipeFrame {
public:
    CRecipeDocument& Document() override { return document; }
    const CRecipeDocument& Document() const override { return document; }
    void ShowRecipeData(FileType type) override { calls.push_back("show " + std::to_string(static_cast<int>(type))); }
    SaveResult RefreshRecipeData(FileType type, const QString& path, ForeignRule) override
    {
        calls.push_back("refresh " + std::to_string(static_cast<int>(type)) + ' ' + path.toStdString());
        return {.isSaved = true};
    }
    bool SaveRecipeDataAs(FileType type, const QString& path) override
    {
        calls.push_back("save as " + std::to_string(static_cast<int>(type)) + ' ' + path.toStdString());
        return true;
    }
    SaveResult SaveEditedRecipeData(ForeignRule) override
    {
        calls.emplace_back("save edited");
        return {.isSaved = true};
    }
    bool SaveRecipeDataCopy(FileType type, const QString& path) override
    {
        calls.push_back("save copy " + std::to_string(static_cast<int>(type)) + ' ' + path.toStdString());
        return true;
    }
    void ClearRecipeData() override { calls.emplace_back("clear"); }
    bool ValidateCellValue(int gridColumn, const QString& text) const override
    {
        return acceptsValue(gridColumn, text);
    }
    void SetTitle(const QString& title) override { calls.push_back("title " + title.toStdString()); }
    void UpdateCommands() override {}
    void TellEdit(const QString& text) override { editsTold.push_back(text); }
    void WithdrawEdit() override { editsTold.clear(); }
    void ShowStrip(StripSubject subject, const StripMessage& message) override { strip[subject] = message; }
    void AnswerInStrip(StripSubject subject, const StripMessage& message) override { strip[subject] = message; }
    void WithdrawStrip(StripSubject subject) override { strip.erase(subject); }
    void TellLibraryTrouble(const QString& trouble) override { libraryTroubles.push_back(trouble); }
    CReporter& Reporter() override { return reporter; }

    CRecipeDocument document;
    std::vector<std::string> calls;
    std::vector<QString> editsTold;             ///< in order
    std::map<StripSubject, StripMessage> strip; ///< what it says
    std::vector<QString> libraryTroubles;       ///< all that were told, in order
    CRecordingReporter reporter;
    std::function<bool(int gridColumn, const QString& text)> acceptsValue = [](int, const QString&) { return true; };
};
