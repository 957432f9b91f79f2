#pragma once

#include <QObject>

#include <array>
#include <memory>

/// The state of the keyboard's lock keys, as far as the platform tells it.
///
/// On an X server it follows the keyboard's lights at once. On Windows it asks for them at the start, whenever the
/// program becomes the active one, and at the key events that the program gets. Elsewhere Caps and Num follow those
/// key events, and Scroll Lock has no source and stays off.
class CLockKeys final : public QObject {
    Q_OBJECT

public:
    enum Key { Caps, Num, Scroll, KeyCount };

    explicit CLockKeys(QObject* parent = nullptr);
    ~CLockKeys() override;

    bool IsOn(Key key) const { return m_on[key]; }

signals:
    void Changed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    class CKeyboardLights;
    using States = std::array<bool, KeyCount>;

    void SetStates(const States& states);

    States m_on{};
    std::unique_ptr<CKeyboardLights> m_pLights;
};
