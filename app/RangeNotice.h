#pragma once

#include "document/OutsideRange.h"

#include <QObject>
#include <QTimer>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

class CEditCommands;
class CRecipeDataShowView;
class CRecipeFrame;
class CSaveCommands;
struct StripMessage;

/// Tells at once, in the strip, of values that were just given to cells, in whatever way, and lie outside their
/// sensible range. They are taken all the same; Undo takes that very edit back, and is offered until another one
/// follows, or the ranges are others. Several are counted, and can be listed. Many values are looked at in idle time.
class CRangeNotice final : public QObject {
    Q_OBJECT

public:
    /// What it works on; all outlives the object.
    struct Parts {
        CRecipeFrame& frame;
        CEditCommands& editCommands;
        CSaveCommands& saveCommands;
        CRecipeDataShowView& dataPane;
    };

    explicit CRangeNotice(const Parts& parts, QObject* parent = nullptr);

    /// The edit that was made last gave these cells values.
    void Look(const std::vector<CellPlace>& places);

    /// Brings what it tells up to date with the document.
    void Follow();

private:
    void LookOn();
    void Tell();
    StripMessage Message();
    void Undo();
    void List();
    void Withdraw();

    Parts m_parts;
    QTimer m_timer;
    std::vector<CellPlace> m_places; ///< to look at
    std::size_t m_next = 0;
    std::vector<CellPlace> m_outside;
    bool m_isToldOf = false;                       ///< the edit: its cells are looked at, or the strip speaks of them
    std::uint64_t m_edition = 0;                   ///< of the history, just after it
    std::shared_ptr<const COutsideRange> m_listed; ///< that the panel was given last; null for none
    CRecipeRows m_layout;                          ///< of the listed cells
    std::filesystem::path m_path;                  ///< of their file
    std::uint64_t m_cellsEdition = 0;              ///< that the list was last shown for
};
