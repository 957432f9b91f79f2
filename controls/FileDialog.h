#pragma once

#include <QFileDialog>

/// The toolkit's own file dialog, not the desktop's: with room for its columns, and leaving the window below it active.
class CFileDialog final : public QFileDialog {
    Q_OBJECT

public:
    CFileDialog(QWidget* parent, const QString& title, const QString& folder);

    void done(int result) override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void FitColumns();
    void FitNames();
};
