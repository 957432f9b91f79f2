#pragma once

#include "changes/ChangeRecord.h"
#include "files/CellState.h"

#include <cstddef>
#include <optional>

/// Changes in the order of their places, of which there may be millions: each is made when it is asked for.
class CChangeList {
public:
    virtual ~CChangeList() = default;

    virtual std::size_t Count() const = 0;

    /// The change at `index`, made when it is asked for.
    virtual ChangeRecord At(std::size_t index) const = 0;

    virtual ChangeHeader Header() const = 0;

    /// Whether all changes are known; else more may come (counting goes on in idle time).
    virtual bool IsComplete() const = 0;

    /// Where a change's cell is in the table, without making the record; nothing for a change outside the rows.
    virtual std::optional<CellPlace> PlaceOf(std::size_t index) const = 0;
};
