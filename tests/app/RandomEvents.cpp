#include "tests/app/RandomEvents.h"

#include "app/MainFrame.h"
#include "tests/support/DialogSteps.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QEventLoop>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPixmapCache>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>
#include <gtest/gtest.h>

#include <array>
#include <iterator>
#include <malloc.h>

namespace fs = std::filesystem;

// The address sanitizer's own count; absent without it.
extern "C" [[gnu::weak]] std::size_t __sanitizer_get_current_allocated_bytes();

namespace {

constexpr int kEventsPerWindow = 400;
constexpr int kMostDismissals = 500;
constexpr std::size_t kNotesKept = 40;

constexpr std::array kNames{"bakery-oven.rcp", "recipe.csv", "recipe.erp", "recipe.frp", "new.rcp",
                            "new.csv",         "new.frp",    "notes.txt",  "absent.rcp", "folder"};

constexpr Qt::Key kKeys[]{
    Qt::Key_0,         Qt::Key_1,        Qt::Key_2,     Qt::Key_5,      Qt::Key_9,   Qt::Key_Period,   Qt::Key_Minus,
    Qt::Key_A,         Qt::Key_F,        Qt::Key_Z,     Qt::Key_Space,  Qt::Key_Tab, Qt::Key_Tab,      Qt::Key_Backtab,
    Qt::Key_Return,    Qt::Key_Return,   Qt::Key_Enter, Qt::Key_Escape, Qt::Key_Up,  Qt::Key_Down,     Qt::Key_Left,
    Qt::Key_Right,     Qt::Key_PageUp,   Qt::Key_Home,  Qt::Key_End,    Qt::Key_F2,  Qt::Key_F4,       Qt::Key_F6,
    Qt::Key_Backspace, Qt::Key_PageDown, Qt::Key_Menu,  Qt::Key_Delete, Qt::Key_F10, Qt::Key_F1,       Qt::Key_Insert,
    Qt::Key_C,         Qt::Key_V,        Qt::Key_X,     Qt::Key_S,      Qt::Key_N,   Qt::Key_CapsLock, Qt::Key_E,
    Qt::Key_Y,         Qt::Key_Z,        Qt::Key_Z,     Qt::Key_F8,     Qt::Key_F9,  Qt::Key_K,        Qt::Key_G,
    Qt::Key_H,         Qt::Key_F3,       Qt::Key_F3,    Qt::Key_D,      Qt::Key_I,
};

constexpr Qt::KeyboardModifiers kModifiers[]{{},
                                             {},
                                             {},
                                             {},
                                             {},
                                             Qt::ShiftModifier,
                                             Qt::ControlModifier,
                                             Qt::AltModifier,
                                             Qt::ControlModifier | Qt::ShiftModifier,
                                             Qt::ControlModifier | Qt::AltModifier};

std::size_t HeapInUse()
{
    if (__sanitizer_get_current_allocated_bytes != nullptr)
        return __sanitizer_get_current_allocated_bytes();
    const auto heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

/// The window that a user could act on: a menu or list that hangs open, else the dialog on top, else the main window.
QWidget* TargetWindow(QWidget* frame)
{
    if (QWidget* popup = QApplication::activePopupWidget())
        return popup;
    QWidget* modal = QApplication::activeModalWidget();
    return modal != nullptr ? modal : frame;
}

void SendMouse(QPointer<QWidget> widget, QEvent::Type type, QPoint at, Qt::MouseButtons buttons)
{
    if (widget == nullptr)
        return;
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, at, widget->mapToGlobal(at), button, buttons, Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
}

std::string NameOf(const QWidget& widget)
{
    return std::string(widget.metaObject()->className()) + ' ' + widget.objectName().toStdString();
}

} // namespace

CRandomEvents::CRandomEvents(unsigned seed) : m_seed(seed), m_random(seed) {}

CRandomEvents::~CRandomEvents() = default;

void CRandomEvents::Run(int events)
{
    m_left = events;
    StartWindow();
    QEventLoop loop;
    m_pLoop = &loop;
    ScheduleStep();
    loop.exec();
    m_pLoop = nullptr;
}

std::string CRandomEvents::Recent() const
{
    std::string text = "seed " + std::to_string(m_seed) + ", event " + std::to_string(m_done);
    for (const std::string& note : m_recent)
        text += "\n  " + note;
    return text;
}

void CRandomEvents::Note(const std::string& event)
{
    m_recent.push_back(std::to_string(m_done) + ' ' + event);
    if (m_recent.size() > kNotesKept)
        m_recent.pop_front();
    if (qEnvironmentVariableIsSet("VANTOR_RANDOM_LOG"))
        std::fprintf(stderr, "%s\n", m_recent.back().c_str());
}

/// Not a timer of its own that repeats: it would not fire in the dialogs that a step brings up.
void CRandomEvents::ScheduleStep()
{
    QTimer::singleShot(std::chrono::milliseconds(1), Qt::PreciseTimer, this, &CRandomEvents::Step);
}

void CRandomEvents::Step()
{
    ++m_done;
    bool isWindowDone = m_leftInWindow == 0 || m_left == 0 || !m_pFrame->isVisible();
    if (isWindowDone && m_depth == 0 && TargetWindow(nullptr) == nullptr) {
        CloseWindow();
        if (m_left == 0)
            return m_pLoop->quit();
        StartWindow();
        isWindowDone = false;
    }
    ScheduleStep(); // first: what follows may bring up a dialog, which lives from the steps inside it
    ++m_depth;
    if (isWindowDone)
        Dismiss();
    else
        Act();
    --m_depth;
}

/// Closes the dialog or menu on top, as Escape or its close button would.
void CRandomEvents::Dismiss()
{
    QWidget* window = TargetWindow(nullptr);
    if (window == nullptr)
        return;
    Note("dismiss " + NameOf(*window));
    if (++m_dismissals > kMostDismissals) {
        ADD_FAILURE() << "does not close: " << NameOf(*window) << '\n' << Recent();
        std::abort(); // the nested event loops cannot be left in another way
    }
    if (auto* box = qobject_cast<QMessageBox*>(window); box != nullptr && Below(2) == 0)
        PressButton(*box);
    else if (qobject_cast<QFileDialog*>(window) == nullptr && Below(3) == 0)
        window->close();
    else
        QTest::keyClick(window, Qt::Key_Escape);
}

void CRandomEvents::StartWindow()
{
    WriteFiles();
    m_leftInWindow = kEventsPerWindow;
    m_dismissals = 0;
    Note("new window");
    m_pFrame = std::make_unique<CMainFrame>(m_folder / "vantor");
    m_pFrame->show();
    m_pFrame->activateWindow();
}

void CRandomEvents::CloseWindow()
{
    m_pFrame.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QApplication::clipboard()->clear();
    QPixmapCache::clear();
    m_heap = HeapInUse();
    Note("window closed, heap " + std::to_string(m_heap / 1024) + " KiB");
}

/// The sample library and recipes, whatever became of those before.
void CRandomEvents::WriteFiles()
{
    for (const auto& entry : fs::directory_iterator(m_folder.Path()))
        fs::remove_all(entry.path());
    const fs::path examples(VANTOR_EXAMPLES);
    fs::copy_file(examples / "RecipeFile.Dat", m_folder / "RecipeFile.Dat");
    fs::copy_file(examples / "bakery-oven.rcp", m_folder / "bakery-oven.rcp");
    WriteAll(m_folder / "recipe.csv", BytesOf({'1', ',', '2', ',', 'x', '\r', '\n', '3', '\r', '\n'}));
    WriteAll(m_folder / "recipe.frp", Bytes(65536));
    WriteAll(m_folder / "recipe.erp", Bytes(131072));
    WriteAll(m_folder / "notes.txt", Bytes(10));
    fs::create_directory(m_folder / "folder");
}

void CRandomEvents::Act()
{
    --m_left;
    --m_leftInWindow;
    QPointer<QWidget> window = TargetWindow(m_pFrame.get());
    if (QApplication::activePopupWidget() == nullptr && QApplication::activeWindow() != window)
        window->activateWindow(); // as a window system does once a dialog above it is gone
    if (auto* dialog = qobject_cast<QFileDialog*>(window))
        return AnswerFileDialog(*dialog);
    if (window->inherits("QAbstractPrintDialog")) { // else it prints, into a file that is nobody's
        Note("cancel print dialog");
        window->close();
        return;
    }
    const int choice = Below(100);
    const bool isDialog = window != m_pFrame.get();
    if (isDialog && choice < 25)
        PressButton(*window);
    else if (choice < 40)
        PressKey(*window);
    else if (choice < 75)
        Click(*window);
    else if (choice < 82)
        Drag(*window);
    else if (choice < 88)
        Wheel(*window);
    else if (choice < 91)
        Resize(*window);
    else if (isDialog && choice < 93) {
        Note("close " + NameOf(*window));
        window->close();
    } else if (!isDialog && choice < 98)
        TriggerCommand();
    else if (!isDialog)
        DropFile();
}

QString CRandomEvents::PathToChoose()
{
    return QString::fromStdString((m_folder / kNames[static_cast<std::size_t>(Below(kNames.size()))]).string());
}

void CRandomEvents::AnswerFileDialog(QFileDialog& dialog)
{
    if (Below(4) == 0) {
        Note("cancel file dialog");
        QTest::keyClick(&dialog, Qt::Key_Escape);
        return;
    }
    const QString path = PathToChoose();
    // A name alone, so that the dialog does not list the folders above: other programs may change those all the time.
    const bool isAtHome = dialog.directory().absolutePath() == QString::fromStdString(m_folder.Path().string());
    Note("choose " + path.toStdString());
    ChoosePath(isAtHome ? QFileInfo(path).fileName() : path)(dialog);
}

void CRandomEvents::PressKey(QWidget& window)
{
    const Qt::Key key = kKeys[static_cast<std::size_t>(Below(std::size(kKeys)))];
    const Qt::KeyboardModifiers modifiers = kModifiers[static_cast<std::size_t>(Below(std::size(kModifiers)))];
    QWidget* focus = window.focusWidget();
    QWidget& target = focus != nullptr ? *focus : window;
    Note("key " + QKeySequence(key | modifiers).toString().toStdString() + " in " + NameOf(target));
    QTest::keyClick(&target, key, modifiers);
}

/// The innermost widget at the point `at` of `window`, which is then the point within it. Null where it takes no mouse.
QWidget* CRandomEvents::ChildAt(QWidget& window, QPoint& at)
{
    at = {Below(std::max(window.width(), 1)), Below(std::max(window.height(), 1))};
    QWidget* child = window.childAt(at);
    if (child == nullptr)
        child = &window;
    at = child->mapFrom(&window, at);
    return child->isEnabled() ? child : nullptr;
}

void CRandomEvents::Click(QWidget& window)
{
    QPoint at;
    const QPointer<QWidget> child = ChildAt(window, at);
    if (child == nullptr)
        return;
    const Qt::MouseButton button = Below(12) == 0 ? Qt::RightButton : Qt::LeftButton;
    const Qt::KeyboardModifiers modifiers = kModifiers[static_cast<std::size_t>(Below(std::size(kModifiers)))];
    Note("click " + std::to_string(at.x()) + ' ' + std::to_string(at.y()) + " in " + NameOf(*child));
    const bool isDouble = Below(4) == 0;
    QTest::mouseClick(child, button, modifiers, at);
    if (isDouble && child != nullptr && child->isVisible())
        QTest::mouseDClick(child, button, modifiers, at);
}

void CRandomEvents::Drag(QWidget& window)
{
    QPoint from;
    const QPointer<QWidget> child = ChildAt(window, from);
    if (child == nullptr)
        return;
    const QPoint to = from + QPoint(Below(400) - 200, Below(200) - 100);
    Note("drag in " + NameOf(*child));
    SendMouse(child, QEvent::MouseButtonPress, from, Qt::LeftButton);
    SendMouse(child, QEvent::MouseMove, (from + to) / 2, Qt::LeftButton);
    SendMouse(child, QEvent::MouseMove, to, Qt::LeftButton);
    SendMouse(child, QEvent::MouseButtonRelease, to, Qt::NoButton);
}

void CRandomEvents::Wheel(QWidget& window)
{
    QPoint at;
    QWidget* child = ChildAt(window, at);
    if (child == nullptr)
        return;
    const QPoint steps(Below(5) == 0 ? 120 * (Below(7) - 3) : 0, 120 * (Below(7) - 3));
    Note("wheel in " + NameOf(*child));
    QWheelEvent event(at, child->mapToGlobal(at), {}, steps, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(child, &event);
}

void CRandomEvents::TriggerCommand()
{
    QList<QAction*> commands;
    for (QAction* action : m_pFrame->findChildren<QAction*>())
        if (action->isEnabled() && !action->isSeparator() && action->menu() == nullptr)
            commands.append(action);
    QAction* command = commands.at(Below(static_cast<int>(commands.size())));
    Note("command " + command->objectName().toStdString());
    command->trigger();
}

void CRandomEvents::DropFile()
{
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(PathToChoose())});
    Note("drop " + data.urls().front().toString().toStdString());
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_pFrame.get(), &enter);
    if (!enter.isAccepted())
        return;
    QDropEvent drop({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_pFrame.get(), &drop);
}

void CRandomEvents::Resize(QWidget& window)
{
    const QSize size(200 + Below(1400), 150 + Below(900));
    Note("resize " + NameOf(window));
    window.resize(size);
}

void CRandomEvents::PressButton(QWidget& window)
{
    QList<QAbstractButton*> buttons;
    for (auto* button : window.findChildren<QAbstractButton*>())
        if (button->isEnabled() && button->isVisible())
            buttons.append(button);
    if (buttons.isEmpty())
        return;
    QAbstractButton* button = buttons.at(Below(static_cast<int>(buttons.size())));
    Note("button " + button->text().toStdString() + " in " + NameOf(window));
    QTest::mouseClick(button, Qt::LeftButton);
}
