#pragma once

#include "document/Replacement.h"

#include <QObject>
#include <QString>

#include <memory>

class CChangeList;
class CFindCommands;
class CRecipeDataShowView;
class CRecipeFrame;
class CSaveCommands;
class QWidget;

/// Replaces what the bar finds, one cell or all of them: through the cells' check, as one edit. The bar tells how many
/// were replaced; those that were refused are listed with the reason.
class CReplaceCommands final : public QObject {
    Q_OBJECT

public:
    /// What the commands work on; all outlives the object.
    struct Parts {
        CFindCommands& findCommands;
        CRecipeFrame& frame;
        CSaveCommands& saveCommands;
        CRecipeDataShowView& dataPane;
        QWidget& window;
    };

    explicit CReplaceCommands(const Parts& parts);

private:
    void ReplaceOne();
    QString ReplaceAt(CellPlace place, const CCellSearch& search);
    void ReplaceAll();
    void TellReplaced(std::size_t replaced, const ReplacementPlan& plan);
    void ListRefused(const ReplacementPlan& plan);

    Parts m_parts;
    std::shared_ptr<const CChangeList> m_refused; ///< as listed
};
