#include "app/CloseQuestion.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QMessageBox>

namespace {

/// The toolkit takes a lone No for the answer to Escape and to the window's close button.
class CTwoAnswerBox final : public QMessageBox {
public:
    using QMessageBox::QMessageBox;

protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        if (!event->matches(QKeySequence::Cancel))
            QMessageBox::keyPressEvent(event);
    }

    void closeEvent(QCloseEvent* event) override { event->ignore(); }
};

} // namespace

bool AskToSave(QWidget& window)
{
    CTwoAnswerBox box(QMessageBox::Question, QStringLiteral("Notify of Vantor"),
                      QStringLiteral("Editing the recipe file,Do you want to save it?"),
                      QMessageBox::Yes | QMessageBox::No, &window);
    box.setWindowFlag(Qt::WindowCloseButtonHint, false);
    box.setDefaultButton(QMessageBox::Yes);
    return box.exec() == QMessageBox::Yes;
}
