#pragma once

#include <QFileDialog>

/// The toolkit's own file dialog, not the desktop's: with room for its columns, and leaving the window below it active.
class CFileDialog final : public QFileDialog {
    Q_OBJECT

public:
    CFileDialog(QWidget* parent, const QString& title, const QString& folder);

    /// Asks, and waits for the answer: the path chosen, in the platform's own form; empty when the user cancelled.
    QString AskPath();

    void done(int result) override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void FitColumns();
    void FitNames();
};
