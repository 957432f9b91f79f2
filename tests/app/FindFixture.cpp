#include "tests/app/FindFixture.h"

#include <QApplication>
#include <QComboBox>
#include <QTableView>
#include <QTest>

#include <iostream>

void FindFixture::Look(const QString& text)
{
    auto& field = Find<QLineEdit>("editFind");
    if (!Bar().isVisible())
        Key(Qt::Key_F, Qt::ControlModifier);
    field.setFocus();
    QTest::keyClicks(&field, text);
}

bool FindFixture::Told(const QString& text)
{
    if (WaitFor([&] { return Bar().Told() == text; }))
        return true;
    std::cerr << "told: " << Bar().Told().toStdString() << '\n';
    return false;
}

void FindFixture::ChooseIn(const char* list, int entry)
{
    if (!Bar().isVisible())
        Key(Qt::Key_F, Qt::ControlModifier);
    auto& combo = Find<QComboBox>(list);
    combo.setFocus();
    QTest::keyClick(&combo, Qt::Key_Home);
    for (int i = 0; i < entry; ++i)
        QTest::keyClick(&combo, Qt::Key_Down);
    EXPECT_EQ(combo.currentIndex(), entry);
    Find<QLineEdit>("editFind").setFocus();
}

void FindFixture::ClickButton(const char* name)
{
    auto& button = Find<QPushButton>(name);
    ASSERT_TRUE(button.isVisible() && button.isEnabled());
    QTest::mouseClick(&button, Qt::LeftButton);
}

QStringList FindFixture::Lines()
{
    const auto& table = Find<QTableView>("tableChanges");
    QStringList lines;
    for (int row = 0; row < table.model()->rowCount(); ++row) {
        QStringList texts;
        for (int column = 0; column < table.model()->columnCount(); ++column)
            texts << table.model()->index(row, column).data().toString();
        lines << texts.join(u'|');
    }
    return lines;
}
