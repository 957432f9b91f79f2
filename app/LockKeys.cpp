#include "app/LockKeys.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QSocketNotifier>

#include <functional>

#if defined(VANTOR_X11)
// Last, because its macros (None, KeyPress, Bool …) take names that the toolkit uses.
#include <X11/XKBlib.h>
#undef None
#undef Bool
#undef KeyPress
#undef KeyRelease
#elif defined(_WIN32)
#include <windows.h>
#endif

#if defined(VANTOR_X11)

/// A connection of its own to the X server that hears when a keyboard light goes on or off. The toolkit's connection is
/// not used, so nothing of its event handling is touched.
class CLockKeys::CKeyboardLights {
public:
    static std::unique_ptr<CKeyboardLights> Open(std::function<void(const States&)> changed)
    {
        if (QGuiApplication::platformName() != QLatin1String("xcb"))
            return nullptr;
        auto lights = std::unique_ptr<CKeyboardLights>(new CKeyboardLights(std::move(changed)));
        return lights->m_pDisplay ? std::move(lights) : nullptr;
    }

    ~CKeyboardLights()
    {
        m_pNotifier.reset(); // before the connection that it watches
        if (m_pDisplay)
            XCloseDisplay(m_pDisplay);
    }

    CKeyboardLights(const CKeyboardLights&) = delete;
    CKeyboardLights& operator=(const CKeyboardLights&) = delete;

    States Current() const { return {IsLit("Caps Lock"), IsLit("Num Lock"), IsLit("Scroll Lock")}; }

private:
    explicit CKeyboardLights(std::function<void(const States&)> changed) : m_changed(std::move(changed))
    {
        int reason = 0;
        m_pDisplay = XkbOpenDisplay(nullptr, &m_nEventBase, nullptr, nullptr, nullptr, &reason);
        if (!m_pDisplay)
            return;
        XkbSelectEvents(m_pDisplay, XkbUseCoreKbd, XkbIndicatorStateNotifyMask, XkbIndicatorStateNotifyMask);
        XFlush(m_pDisplay);
        m_pNotifier = std::make_unique<QSocketNotifier>(ConnectionNumber(m_pDisplay), QSocketNotifier::Read);
        QObject::connect(m_pNotifier.get(), &QSocketNotifier::activated, m_pNotifier.get(), [this] { Drain(); });
    }

    bool IsLit(const char* name) const
    {
        int lit = 0;
        XkbGetNamedIndicator(m_pDisplay, XInternAtom(m_pDisplay, name, 0), nullptr, &lit, nullptr, nullptr);
        return lit != 0;
    }

    void Drain()
    {
        while (XPending(m_pDisplay) > 0) {
            XEvent event;
            XNextEvent(m_pDisplay, &event);
        }
        m_changed(Current());
    }

    std::function<void(const States&)> m_changed;
    Display* m_pDisplay = nullptr;
    int m_nEventBase = 0;
    std::unique_ptr<QSocketNotifier> m_pNotifier;
};

#elif defined(_WIN32)

/// Nothing tells when a light goes on or off, so it is asked at every occasion: at the keys that the program gets, and
/// when it becomes the active one, for the keys before were another's.
class CLockKeys::CKeyboardLights final : public QObject {
public:
    static std::unique_ptr<CKeyboardLights> Open(std::function<void(const States&)> changed)
    {
        if (QGuiApplication::platformName() != QLatin1String("windows"))
            return nullptr;
        return std::unique_ptr<CKeyboardLights>(new CKeyboardLights(std::move(changed)));
    }

    States Current() const { return {IsLit(VK_CAPITAL), IsLit(VK_NUMLOCK), IsLit(VK_SCROLL)}; }

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease)
            m_changed(Current());
        return false;
    }

private:
    explicit CKeyboardLights(std::function<void(const States&)> changed) : m_changed(std::move(changed))
    {
        QCoreApplication::instance()->installEventFilter(this);
        connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
            if (state == Qt::ApplicationActive)
                m_changed(Current());
        });
    }

    static bool IsLit(int key) { return (GetKeyState(key) & 1) != 0; }

    std::function<void(const States&)> m_changed;
};

#else

class CLockKeys::CKeyboardLights {
public:
    static std::unique_ptr<CKeyboardLights> Open(const std::function<void(const States&)>&) { return nullptr; }
    States Current() const { return {}; }
};

#endif

namespace {

constexpr quint32 kCapsLockMask = 0x02; // LockMask of the X protocol
constexpr quint32 kNumLockMask = 0x10;  // Mod2Mask, which Num Lock is bound to everywhere

std::array<bool, CLockKeys::KeyCount> StatesAt(const QKeyEvent& key,
                                               const std::array<bool, CLockKeys::KeyCount>& before)
{
    const quint32 modifiers = key.nativeModifiers();
    return {(modifiers & kCapsLockMask) != 0, (modifiers & kNumLockMask) != 0, before[CLockKeys::Scroll]};
}

} // namespace

CLockKeys::CLockKeys(QObject* parent) : QObject(parent)
{
    m_pLights = CKeyboardLights::Open([this](const States& states) { SetStates(states); });
    if (m_pLights)
        m_on = m_pLights->Current();
    else
        QCoreApplication::instance()->installEventFilter(this);
}

CLockKeys::~CLockKeys() = default;

bool CLockKeys::eventFilter(QObject*, QEvent* event)
{
    if (event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease)
        SetStates(StatesAt(*static_cast<QKeyEvent*>(event), m_on));
    return false;
}

void CLockKeys::SetStates(const States& states)
{
    if (states == m_on)
        return;
    m_on = states;
    emit Changed();
}
