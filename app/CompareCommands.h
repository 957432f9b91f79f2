#pragma once

#include "changes/ChangeList.h"
#include "controls/Strip.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <cstdint>
#include <memory>

class CRecipeDataShowView;
class CRecipeFrame;
class CSaveCommands;
class CTableComparison;
class QWidget;
struct ComparedWith;

namespace Ui {
class CMainFrame;
}

/// Compares the table with another file or with an earlier version: marks the cells that differ, lists them with the
/// words outside the table, and says in the strip how many there are, as long as the document compares.
class CCompareCommands final : public QObject {
    Q_OBJECT

public:
    /// What the commands work on; all outlives the object.
    struct Parts {
        Ui::CMainFrame& ui;
        CRecipeFrame& frame;
        CSaveCommands& saveCommands;
        CRecipeDataShowView& dataPane;
        QWidget& window;
    };

    explicit CCompareCommands(const Parts& parts);

    /// Brings command, strip and list up to date with the document.
    void Follow();

    /// Compares with something that is no file of its own.
    void CompareWith(ComparedWith other);

    /// The comparison ends.
    void End();

private:
    void AskAndCompare();
    void Begun();
    void CountOn();
    void Tell();
    StripMessage Message();
    void List();
    void Withdraw();
    QString Text() const;
    QString Title() const;
    QString Counts() const;

    Parts m_parts;
    std::shared_ptr<CTableComparison> m_comparison; ///< that is told of
    std::shared_ptr<const CChangeList> m_list;      ///< of it
    std::uint64_t m_edition = 0;
    QString m_strTold; ///< in the strip
    QTimer m_counting;
};
