#include "tests/support/DialogSteps.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QFileDialog>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QTest>
#include <gtest/gtest.h>

#include <algorithm>

namespace {

bool IsOnTheKeyboard(const QString& text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u' ' && c <= u'~'; });
}

void TypeInto(QLineEdit& field, const QString& text)
{
    field.setFocus();
    QTest::keyClick(&field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&field, Qt::Key_Delete);
    if (IsOnTheKeyboard(text)) {
        QTest::keyClicks(&field, text);
        return;
    }
    QInputMethodEvent commit;
    commit.setCommitString(text);
    QCoreApplication::sendEvent(&field, &commit);
}

} // namespace

std::string TextIn(const QWidget& root, const QString& name)
{
    return FindIn<QLineEdit>(root, name).text().toStdString();
}

void TypeInto(const QWidget& root, const QString& name, const QString& text)
{
    TypeInto(FindIn<QLineEdit>(root, name), text);
}

void PasteInto(const QWidget& root, const QString& name, const QString& text)
{
    auto& field = FindIn<QLineEdit>(root, name);
    field.setFocus();
    QGuiApplication::clipboard()->setText(text);
    QTest::keyClick(&field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&field, Qt::Key_V, Qt::ControlModifier);
}

void ClickOn(const QWidget& root, const QString& name)
{
    auto& button = FindIn<QAbstractButton>(root, name);
    EXPECT_TRUE(button.isVisible() && button.isEnabled()) << name.toStdString();
    const int middle = button.height() / 2;
    const bool hasMark = qobject_cast<QCheckBox*>(&button) != nullptr; // which may be all that a click counts on
    QTest::mouseClick(&button, Qt::LeftButton, {}, hasMark ? QPoint(middle, middle) : button.rect().center());
}

CModalAnswer::Action ChoosePath(const QString& path)
{
    return [path](QWidget& dialog) {
        auto* edit = dialog.findChild<QLineEdit*>("fileNameEdit");
        if (edit == nullptr) {
            const auto* box = qobject_cast<QMessageBox*>(&dialog);
            ADD_FAILURE() << "no file dialog but " << (box ? box->text() : dialog.windowTitle()).toStdString();
            dialog.close(); // else it would be tried again for ever
            return;
        }
        TypeInto(*edit, path);
        if (QWidget* completions = QApplication::activePopupWidget()) // which would take the key for itself
            QTest::keyClick(completions, Qt::Key_Escape);
        QTest::keyClick(edit, Qt::Key_Return);
    };
}

CModalAnswer::Action CancelDialog()
{
    return [](QWidget& dialog) {
        ASSERT_NE(qobject_cast<QFileDialog*>(&dialog), nullptr);
        QTest::keyClick(&dialog, Qt::Key_Escape);
    };
}
