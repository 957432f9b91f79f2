#include "views/MessageBoxReporter.h"

#include "views/TextCrossing.h"

#include <QApplication>
#include <QMessageBox>

namespace {

int RunBox(QWidget& parent, QMessageBox::Icon icon, std::u16string_view text, QMessageBox::StandardButtons buttons)
{
    QWidget* dialog = QApplication::activeModalWidget(); // a box below it could not be answered
    QMessageBox box(icon, QApplication::applicationName(), ToQString(text), buttons, dialog ? dialog : &parent);
    box.setTextFormat(Qt::PlainText); // a path may hold "<" and "&"
    return box.exec();
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
