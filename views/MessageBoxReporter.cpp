#include "views/MessageBoxReporter.h"

#include "views/TextCrossing.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QTextBoundaryFinder>

namespace {

constexpr int kLongestPiece = 48; // characters of a word that a line of a box takes in any font
constexpr QChar kBreak(0x200B);   // a place where a line may end

/// `text` with places to break its lines within words that are longer than a line, as names of files may be: the
/// toolkit cuts such a word off.
QString Breakable(const QString& text)
{
    QString broken;
    QTextBoundaryFinder lines(QTextBoundaryFinder::Line, text);
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text);
    int length = 0;
    for (qsizetype at = 0; at < text.size();) {
        const qsizetype next = characters.toNextBoundary();
        lines.setPosition(at);
        if (lines.isAtBoundary())
            length = 0;
        if (length == kLongestPiece) {
            broken += kBreak;
            length = 0;
        }
        broken += QStringView(text).sliced(at, next - at);
        ++length;
        at = next;
    }
    return broken;
}

/// Copies its text, when asked to, as it was given.
class CMessageBox final : public QMessageBox {
public:
    CMessageBox(Icon icon, const QString& text, StandardButtons buttons, QWidget* parent)
        : QMessageBox(icon, QApplication::applicationName(), Breakable(text), buttons, parent),
          m_strText(text)
    {
        setTextFormat(Qt::PlainText); // a path may hold "<" and "&"
        if (auto* sign = findChild<QLabel*>(QStringLiteral("qt_msgboxex_icon_label")))
            sign->setAccessibleName(icon == Question ? tr("Question") : tr("Warning"));
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
    QString m_strText;
};

int RunBox(QWidget& parent, QMessageBox::Icon icon, std::u16string_view text, QMessageBox::StandardButtons buttons)
{
    QWidget* dialog = QApplication::activeModalWidget(); // a box below it could not be answered
    return CMessageBox(icon, ToQString(text), buttons, dialog ? dialog : &parent).exec();
}

} // namespace

void CMessageBoxReporter::ShowError(std::u16string_view text)
{
    RunBox(m_parent, QMessageBox::Warning, text, QMessageBox::Ok);
}

bool CMessageBoxReporter::AskYesNo(std::u16string_view text)
{
    return RunBox(m_parent, QMessageBox::Question, text, QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
}
