#pragma once

#include "controls/Strip.h"
#include "model/DataFormat.h"
#include "recovery/LastReadings.h"

#include <QObject>
#include <QString>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

class CRecipeDataShowView;
class CRecipeFormatEditView;
class CRecipeFrame;
class QWidget;

/// By what a recipe is read: the window remembers it, offers it in the strip when the recipe is opened with something
/// else, and says so when the words look unlike the format. It also offers the tables that a layout file names for a
/// recipe.
///
/// A reading is remembered when the user asks for it ("Use dataformat", "RefreshData", Enter in the fields beside them,
/// "Use" in the strip), and when the recipe is saved.
class CReadingCommands final : public QObject {
    Q_OBJECT

public:
    /// What the commands work on; all outlives the object.
    struct Parts {
        CRecipeFrame& frame;
        CRecipeFormatEditView& formatPane;
        CRecipeDataShowView& dataPane;
        QWidget& window;
    };

    explicit CReadingCommands(const Parts& parts);

    /// Remembers in `dataFolder` from now on. Looks whether there is something to offer for a file that is open.
    void Start(const std::filesystem::path& dataFolder);

    /// A file was opened: offers how it was read the last time.
    void Offer();

    /// The rows are what the user wants: remembers by what they were read.
    void Remember();

    /// The rows were read: says whether they look right.
    void Judge();

    /// The document may have another file, or other rows.
    void Follow();

private:
    enum class Source { LastTime, Layout };

    struct Offered {
        LastReading reading;
        Source source = Source::LastTime;
    };

    /// Rows as far as their words and layout go.
    struct Judged {
        const void* words = nullptr;
        std::int32_t start = 0;
        std::int32_t rows = 0;
        DataFormat format;
    };

    std::vector<Offered> ReadingsFor(const std::filesystem::path& file) const;
    void AddLayoutTables(const std::filesystem::path& file, std::vector<Offered>& readings) const;
    std::optional<LastReading> Current() const;
    std::optional<std::size_t> FormatOf(const LastReading& reading) const;
    bool IsUsable(const LastReading& reading) const;
    bool AreJudged() const;
    void Tell();
    void Withdraw();
    StripMessage Message();
    void ChooseAndUse();
    void Use(const LastReading& reading);
    void Forget();

    Parts m_parts;
    CLastReadings m_readings{{}};
    std::vector<Offered> m_offered;
    std::filesystem::path m_offeredFor;
    std::optional<Judged> m_judged;
    QString m_strDoubt; ///< what the strip says of the words; empty for nothing
};
