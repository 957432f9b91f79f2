// Random edits of the window, by keys and clicks, compared with a plain model that keeps whole copies.

#include "controls/GridCtrl.h"
#include "controls/GridModel.h"
#include "library/FormatLibrary.h"
#include "tests/app/EditFixture.h"

#include <QApplication>
#include <QClipboard>
#include <QTest>

#include <random>

namespace {

constexpr int kRows = 5;
constexpr int kColumns = 3;

struct Edit {
    QString name;
    QStringList before, after; ///< all shown texts
    int stateBefore, stateAfter;
    bool isReading, flag; ///< whether it was modified when other rows took its place
};

struct UndoModel : EditFixture, testing::WithParamInterface<unsigned> {
    void SetUp() override
    {
        FormatLibrary library;
        DataFormat format(u"Words");
        for (const auto* name : {u"A", u"B", u"C"})
            format.insertItem(format.items.size(),
                              std::make_unique<DataItem>(MakeItem(name, DataType::Signed16, 1, 5)));
        format.itemCount = kColumns;
        library.formats.push_back(std::make_unique<DataFormat>(format));
        library.rowCount = kRows;
        library.save(folder / "RecipeFile.Dat");
        MakeFile("a.rcp", kRows * kColumns);
        Start();
        OpenThroughDialog("a.rcp");
        m_shown = m_saved = QStringList(kRows * kColumns, "0");
    }

    int Below(int count) { return static_cast<int>(m_random() % static_cast<unsigned>(count)); }
    QString AnyNumber() { return QString::number(Below(30)); }

    void Step()
    {
        const int what = Below(100);
        if (what < 25)
            Type(Below(kRows), Below(kColumns), AnyNumber());
        else if (what < 40)
            PasteBlock(Below(kRows), Below(kColumns));
        else if (what < 48)
            Delete(Below(kRows), Below(kColumns));
        else if (what < 70)
            UndoOne();
        else if (what < 90)
            RedoOne();
        else if (what < 95)
            Refresh();
        else
            SaveAll();
    }

    void Type(int row, int column, const QString& text)
    {
        TypeIntoCell(row + 1, column + 2, text);
        QStringList after = m_shown;
        after[row * kColumns + column] = text;
        if (after != m_shown) // a text that the cell has is none
            Take("Typing", after);
    }

    void PasteBlock(int row, int column)
    {
        const int rows = 1 + Below(3);
        const int columns = 1 + Below(2);
        QStringList after = m_shown;
        QStringList lines;
        for (int i = 0; i < rows; ++i) {
            QStringList fields;
            for (int j = 0; j < columns; ++j) {
                fields << AnyNumber();
                if (row + i < kRows && column + j < kColumns) // what has no cell is left out
                    after[(row + i) * kColumns + column + j] = fields.back();
            }
            lines << fields.join(u'\t');
        }
        PasteAt(row + 1, column + 2, lines.join(u'\n'));
        TakeMany("Paste", after);
    }

    void Delete(int row, int column)
    {
        const int lastRow = row + Below(kRows - row);
        ChooseCells(row + 1, column + 2, lastRow + 1, kColumns + 1);
        Key(Qt::Key_Delete);
        QStringList after = m_shown;
        for (int i = row; i <= lastRow; ++i)
            for (int j = column; j < kColumns; ++j)
                after[i * kColumns + j] = QString();
        TakeMany("Clear", after);
    }

    void Refresh()
    {
        ClickOn(*frame, "buttonRefreshData");
        Edit edit{"Reading again", m_shown, m_saved, m_state, ++m_lastState, true, m_isModified};
        m_shown = edit.after;
        m_state = edit.stateAfter;
        Push(edit);
    }

    void SaveAll()
    {
        Save();
        for (int i = 0; i < m_shown.size(); ++i)
            m_saved[i] = m_shown[i].isEmpty() ? "0" : m_shown[i]; // as they are read again
        m_isModified = false;
        m_savedState = m_state;
    }

    void UndoOne()
    {
        Undo();
        if (m_made.empty())
            return;
        Edit edit = m_made.back();
        m_made.pop_back();
        Show(edit, edit.before, edit.stateBefore);
        m_undone.push_back(edit);
    }

    void RedoOne()
    {
        Redo();
        if (m_undone.empty())
            return;
        Edit edit = m_undone.back();
        m_undone.pop_back();
        Show(edit, edit.after, edit.stateAfter);
        m_made.push_back(edit);
    }

    void Compare()
    {
        ASSERT_EQ(Shown(), m_shown);
        ASSERT_EQ(IsModified(), m_isModified);
        ASSERT_EQ(NextUndo(), m_made.empty() ? QString() : m_made.back().name);
        ASSERT_EQ(NextRedo(), m_undone.empty() ? QString() : m_undone.back().name);
    }

    int undone = 0;

private:
    void TakeMany(const QString& name, const QStringList& after)
    {
        int cells = 0;
        for (int i = 0; i < after.size(); ++i)
            cells += after[i] != m_shown[i] ? 1 : 0;
        if (cells > 0)
            Take(cells == 1 ? name : QStringLiteral("%1 (%2 cells)").arg(name).arg(cells), after);
    }

    void Take(const QString& name, const QStringList& after)
    {
        Push({name, m_shown, after, m_state, ++m_lastState, false, false});
        m_shown = after;
        m_state = m_lastState;
        m_isModified = true;
    }

    void Push(const Edit& edit)
    {
        m_made.push_back(edit);
        m_undone.clear();
    }

    void Show(Edit& edit, const QStringList& shown, int state)
    {
        ++undone;
        m_shown = shown;
        m_state = state;
        if (edit.isReading)
            std::swap(m_isModified, edit.flag);
        if (m_state == m_savedState)
            m_isModified = false;
        else if (!edit.isReading || m_state < m_savedState)
            m_isModified = true;
    }

    std::mt19937 m_random{GetParam()};
    QStringList m_shown, m_saved;
    bool m_isModified = false;
    int m_state = 0;
    int m_lastState = 0;
    int m_savedState = 0;
    std::vector<Edit> m_made, m_undone;
};

INSTANTIATE_TEST_SUITE_P(Seeds, UndoModel, testing::Values(1u, 2u, 3u));

} // namespace

TEST_P(UndoModel, RandomEditsLeaveWhatThePlainModelSays)
{
    for (int step = 0; step < 1000; ++step) {
        Step();
        Compare();
        if (HasFatalFailure()) {
            ADD_FAILURE() << "step " << step << ", seed " << GetParam();
            return;
        }
    }
    EXPECT_GT(undone, 200);
}
