#include "tests/views/ChangesPanelFixture.h"

#include "views/ChosenChanges.h"

#include <QAction>

namespace {

std::string NameOf(CellPlace place)
{
    return std::to_string(place.row) + "," + std::to_string(place.column);
}

} // namespace

CChangesPanelFixture::CChangesPanelFixture() : grid(new QLineEdit), panel(new CChangesPanel(reporter, &window))
{
    window.setCentralWidget(grid);
    window.addDockWidget(Qt::BottomDockWidgetArea, panel);
    window.resize(900, 500);
    for (const QKeySequence& key : {QKeySequence(Qt::Key_F8), QKeySequence(Qt::SHIFT | Qt::Key_F8),
                                    QKeySequence(QKeySequence::Copy), QKeySequence(Qt::CTRL | Qt::Key_K)}) {
        auto* action = new QAction(&window);
        action->setShortcut(key);
        window.addAction(action);
        QObject::connect(action, &QAction::triggered,
                         [this, key] { log.push_back("window's " + key.toString().toStdString()); });
    }
    QObject::connect(panel, &CChangesPanel::GoToCell, [this](CellPlace place) {
        log.push_back("go " + NameOf(place));
        grid->setFocus();
    });
    QObject::connect(panel, &CChangesPanel::ShowCell,
                     [this](CellPlace place) { log.push_back("show " + NameOf(place)); });
    QObject::connect(panel, &CChangesPanel::KeepStored, [this](const std::vector<CellPlace>& cells) {
        std::string names;
        for (const CellPlace place : cells)
            names += " " + NameOf(place);
        log.push_back("keep" + names);
    });
    QObject::connect(panel, &CChangesPanel::Left, [this] {
        log.emplace_back("left");
        grid->setFocus();
    });
    EXPECT_TRUE(ShowActive(window));
    grid->setFocus();
}

std::shared_ptr<CFakeChanges> CChangesPanelFixture::AllKinds()
{
    auto list = std::make_shared<CFakeChanges>();
    list->header = {.file = u"oven.rcp", .type = FileType::Rcp, .bytes = 1440, .newBytes = 1442};
    list->records = {{.address = WordAddress(169),
                      .row = 2,
                      .column = 11,
                      .item = u"Belt m/min",
                      .oldText = u"0.75",
                      .newText = u"1.15",
                      .reads = u"1.14",
                      .oldWords = WordBytes({0x4B}),
                      .newWords = WordBytes({0x72}),
                      .why = ChangeReason::Edited},
                     {.address = WordAddress(129),
                      .row = 3,
                      .column = 11,
                      .item = u"Belt m/min",
                      .oldText = u"1.50",
                      .newText = u"1.50",
                      .oldWords = WordBytes({0x69}),
                      .newWords = WordBytes({0x96}),
                      .why = ChangeReason::Decimals},
                     {.address = WordAddress(700), .oldWords = WordBytes({1, 2}), .newWords = WordBytes({3, 2})},
                     {.address = WordAddress(720), .zeros = 1000},
                     {.address = WordAddress(730),
                      .row = 4,
                      .column = 3,
                      .item = u"Name",
                      .oldText = u"a\tb\n\u0007",
                      .newText = u"ab",
                      .oldWords = WordBytes({0x61, 0x0962}),
                      .newWords = WordBytes({0x6261, 0}),
                      .why = ChangeReason::Text},
                     {.address = WordAddress(1720),
                      .row = 5,
                      .column = 2,
                      .item = u"No.",
                      .newText = u"0",
                      .newWords = WordBytes({0}),
                      .why = ChangeReason::End}};
    return list;
}

ChangeRecord CChangesPanelFixture::ChangeOfRow(int row)
{
    return {.address = WordAddress(100 + row),
            .row = row + 1,
            .column = 2,
            .item = u"No.",
            .oldText = u"1",
            .newText = u"2",
            .oldWords = WordBytes({1}),
            .newWords = WordBytes({2}),
            .why = ChangeReason::Decimals};
}

QString CChangesPanelFixture::Cell(int row, int column) const
{
    return Table().model()->index(row, column).data().toString();
}

std::string CChangesPanelFixture::Line(int row) const
{
    QStringList cells;
    for (int column = 0; column < Table().model()->columnCount(); ++column)
        if (!Table().isColumnHidden(column))
            cells += Cell(row, column);
    return cells.join(QLatin1Char('|')).toStdString();
}

std::string CChangesPanelFixture::Chosen() const
{
    std::string rows;
    for (const RowStretch& stretch : ChosenRows(*Table().selectionModel()))
        for (int row = stretch.first; row <= stretch.last; ++row)
            rows += (rows.empty() ? "" : " ") + std::to_string(row);
    return rows;
}

void CChangesPanelFixture::ClickRow(int row, Qt::KeyboardModifiers modifiers)
{
    const QRect cell = Table().visualRect(Table().model()->index(row, 2));
    QTest::mouseClick(Table().viewport(), Qt::LeftButton, modifiers, cell.center());
}

void CChangesPanelFixture::Press(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(window.focusWidget(), key, modifiers);
}
