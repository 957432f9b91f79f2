#include "app/SaveQuestion.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>

namespace {

QString Translated(const char* text)
{
    return QCoreApplication::translate("SaveQuestion", text);
}

QPushButton& AddButton(QMessageBox& box, const char* text, QMessageBox::ButtonRole role, const char* name)
{
    QPushButton& button = *box.addButton(Translated(text), role);
    button.setObjectName(QLatin1String(name));
    return button;
}

} // namespace

HowToSave AskHowToSave(QWidget& window, const QString& path, bool canSaveEdited)
{
    QMessageBox box(QMessageBox::Warning, QStringLiteral("Vantor"),
                    Translated("%1 was changed by another program since it was read.").arg(QFileInfo(path).fileName()),
                    QMessageBox::NoButton, &window);
    box.setObjectName(QStringLiteral("saveQuestion"));
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(Translated("\"Save edited only\" stores the values that you edited and leaves all others as "
                                      "the other program wrote them. \"Save all\" stores every value as it is shown "
                                      "here."));
    QPushButton& edited = AddButton(box, "Save edited only", QMessageBox::AcceptRole, "buttonSaveEditedOnly");
    QPushButton& all = AddButton(box, "Save all", QMessageBox::DestructiveRole, "buttonSaveAll");
    QPushButton& cancel = AddButton(box, "Cancel", QMessageBox::RejectRole, "buttonCancelSave");
    edited.setEnabled(canSaveEdited);
    box.setDefaultButton(canSaveEdited ? &edited : &cancel);
    box.setEscapeButton(&cancel);
    box.exec();
    if (box.clickedButton() == &edited)
        return HowToSave::EditedOnly;
    return box.clickedButton() == &all ? HowToSave::All : HowToSave::NotAtAll;
}
