#pragma once

#include "document/OfferedEdits.h"
#include "document/RecipeDocument.h"

#include <QObject>
#include <QString>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

class CRecipeDataShowView;
class CRecipeFrame;
class CSaveCommands;
class QWidget;

/// Carries out the commands on many cells: shows first what one would do, in the panel of changes and with an offer in
/// the strip, or does it at once. Either way all that is not refused becomes one edit, and how many cells were refused
/// is told in one message.
///
/// An offer is for the table and its file as they are: when a cell becomes another, other rows are shown, or the file
/// is saved, it is withdrawn, and the strip says so.
class COfferCommands final : public QObject {
    Q_OBJECT

public:
    /// What the commands work on; all outlives the object.
    struct Parts {
        CRecipeFrame& frame;
        CSaveCommands& saveCommands;
        CRecipeDataShowView& dataPane;
        QWidget& window;
    };

    /// A command on many cells of the rows as they are.
    struct Order {
        EditKind kind = EditKind::Fill;
        QString name; ///< at the beginning of a sentence
        std::shared_ptr<const CCellsCommand> command;
        QString remark = {};     ///< further sentences on what it leaves out; empty for none
        bool showsCells = false; ///< the cells that it changed are to be selected
    };

    explicit COfferCommands(const Parts& parts) : m_parts(parts) {}

    // Both end a cell's edit that is open first; a refused text, which was reported then, stops the command.

    void Preview(Order order);
    void Do(Order order);

    /// Brings the offer up to date with the document.
    void Follow();

    /// What is offered, or was refused, is spoken of no more.
    void Withdraw();

private:
    bool Begin(Order order);
    Outcome WorkOut(COfferedEdits& offered, std::vector<CellEdit>* edits);
    void Offer();
    void Apply();
    void Make(std::vector<CellEdit> edits, std::size_t refused);
    void TellDone(std::size_t changed, std::size_t refused);
    void List(const QString& title, const QString& summary);
    void WithdrawByButton();
    bool IsForTable() const;
    QString WithRemark(const QString& sentence) const;

    Parts m_parts;
    Order m_order;                            ///< the last one
    std::shared_ptr<COfferedEdits> m_offered; ///< that the strip speaks of; null for none
    bool m_isToBeApplied = false;             ///< it is an offer
    bool m_isToldOfEnd = false;               ///< the strip says that an offer was withdrawn
    std::uint64_t m_edition = 0;              ///< of the cells that it is about
    std::uint64_t m_storedEdition = 0;        ///< of what the file held of them
    std::filesystem::path m_path;             ///< of the file that was open then
    FileType m_type = FileType::Rcp;
};
