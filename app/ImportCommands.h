#pragma once

#include "document/TableImport.h"

#include <QObject>
#include <QString>

#include <cstdint>
#include <string>

class COfferCommands;
class CRecipeDataShowView;
class CRecipeFrame;
class QWidget;
enum class EditKind;

namespace Ui {
class CMainFrame;
}

/// Takes tables of other programs into the cells, from the clipboard or from a text file, after a dialog in which all
/// that can be read in two ways is decided.
class CImportCommands final : public QObject {
    Q_OBJECT

public:
    static constexpr std::uint64_t kMostBytes = std::uint64_t{64} << 20; ///< of a file, or of a text in UTF-16

    /// What the commands work on; all outlives the object.
    struct Parts {
        Ui::CMainFrame& ui;
        CRecipeFrame& frame;
        COfferCommands& offers;
        CRecipeDataShowView& dataPane;
        QWidget& window;
    };

    explicit CImportCommands(const Parts& parts);

    /// Brings the commands up to date with the document.
    void Follow();

private:
    void PasteWithPreview();
    void ImportTable();
    void Ask(EditKind kind, const QString& name, const QString& title, std::u16string text, ImportTarget target);
    ImportTarget FirstChosen() const;
    bool HasRows() const;

    Parts m_parts;
};
