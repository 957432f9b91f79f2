#pragma once

#include "files/CellState.h"

#include <QObject>
#include <QTimer>

#include <functional>
#include <vector>

class CRecipeFrame;

/// Tells at once, in the strip, of values that were just typed or pasted and would not be stored, or read again, as
/// they stand: "1.15 will be stored as 1.14." It offers to store them exactly, where that is possible. Many values are
/// looked at in idle time.
class CTypedValues final : public QObject {
    Q_OBJECT

public:
    /// `frame` outlives the object.
    explicit CTypedValues(CRecipeFrame& frame, QObject* parent = nullptr);

    /// These cells got texts from the user: what was told of earlier ones is withdrawn.
    void Look(std::vector<CellPlace> places);

    /// The cells may be others, or be saved: what is told is made true again.
    void LookAgain();

signals:
    void Show(const std::vector<CellPlace>& places);         ///< asked for by a button of the strip
    void StoreExactly(const std::vector<CellPlace>& places); ///< likewise

private:
    void LookOn();
    void Finish();

    CRecipeFrame& m_frame;
    QTimer m_timer;
    std::vector<CellPlace> m_places; ///< to look at
    std::size_t m_next = 0;
    std::vector<CellPlace> m_told;
    bool m_canStoreExactly = false;
};
