#include "views/MessageBoxReporter.h"

#include "views/MessageLabel.h"
#include "views/TextCrossing.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QMessageBox>
#include <QScreen>

#include <algorithm>

namespace {

constexpr int kLineLength = 60; // average characters of a line at most

/// The room for a text on the screen of `window`. The toolkit's box cuts what is wider than its own limits.
QSize MostRoom(const QWidget& window)
{
    const QSize screen = window.screen()->availableSize();
    return {std::min(kLineLength * window.fontMetrics().averageCharWidth(), screen.width() * 2 / 5),
            screen.height() * 3 / 5};
}

/// The toolkit's box with a text of our own in the place of its text: the toolkit's is cut off where a word is longer
/// than a line. Copies its text, when asked to, as it was given.
class CMessageBox final : public QMessageBox {
public:
    CMessageBox(Icon icon, const QString& text, const QString& further, StandardButtons buttons, QWidget* parent)
        : QMessageBox(icon, QApplication::applicationName(), text, buttons, parent),
          m_strText(further.isEmpty() ? text : text + QLatin1Char('\n') + further)
    {
        setTextFormat(Qt::PlainText); // a path may hold "<" and "&"
        if (auto* sign = findChild<QLabel*>(QStringLiteral("qt_msgboxex_icon_label")))
            sign->setAccessibleName(icon == Question ? tr("Question") : tr("Warning"));
        setInformativeText(further); // lays the box out anew
        ReplaceLabel(text);
    }

protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        if (event->matches(QKeySequence::Copy))
            QApplication::clipboard()->setText(m_strText);
        else
            QMessageBox::keyPressEvent(event);
    }

private:
    void ReplaceLabel(const QString& text)
    {
        auto* label = findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
        if (label == nullptr) // another version of the toolkit shows it in its own way
            return;
        auto* own = new CMessageLabel(text, MostRoom(*parentWidget()), this);
        delete layout()->replaceWidget(label, own);
        layout()->setAlignment(own, Qt::AlignLeft | Qt::AlignVCenter);
        label->hide();
    }

    QString m_strText; ///< that is copied
};

int RunBox(QWidget& parent, QMessageBox::Icon icon, std::u16string_view text, QMessageBox::StandardButtons buttons,
           std::u16string_view further = {})
{
    QWidget* dialog = QApplication::activeModalWidget(); // a box below it could not be answered
    return CMessageBox(icon, ToQString(text), ToQString(further), buttons, dialog ? dialog : &parent).exec();
}

} // namespace

void CMessageBoxReporter::ShowError(std::u16string_view text)
{
    RunBox(m_parent, QMessageBox::Warning, text, QMessageBox::Ok);
}

void CMessageBoxReporter::ShowErrorWith(std::u16string_view text, std::u16string_view further)
{
    RunBox(m_parent, QMessageBox::Warning, text, QMessageBox::Ok, further);
}

bool CMessageBoxReporter::AskYesNo(std::u16string_view text)
{
    return RunBox(m_parent, QMessageBox::Question, text, QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
}
