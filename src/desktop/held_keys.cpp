#include "desktop/held_keys.hpp"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>
#include <utility>

namespace telvox::desktop {

namespace {

/// A key that is held comes again in less time than this (ms), however slowly it is set.
constexpr quint64 longest_pause = 2000;

/// Whether a key only types here, so that it may go on as long as it is held.
bool types(const QKeyEvent &key) {
    switch (key.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Escape:
        return false;
    case Qt::Key_Space: {
        const QWidget *focus = QApplication::focusWidget();
        return focus && focus->testAttribute(Qt::WA_InputMethodEnabled);
    }
    default:
        // AltGr, which types, is another modifier, or comes with Ctrl.
        return (key.modifiers() & (Qt::AltModifier | Qt::ControlModifier)) != Qt::AltModifier;
    }
}

} // namespace

HeldKeys::HeldKeys() { qApp->installEventFilter(this); }

bool HeldKeys::eventFilter(QObject *, QEvent *event) {
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride)
        return false;
    const auto &key = *static_cast<QKeyEvent *>(event);
    const int before = std::exchange(key_, key.key());
    const quint64 last = std::exchange(at_, key.timestamp());
    // On Windows a key counts as held until its end is seen, which a window that has just closed does not.
    if (key_ != before || at_ > last + longest_pause)
        anew_ = key.isAutoRepeat();
    else if (at_ != last || !key.isAutoRepeat()) // not the same event in another guise
        anew_ = false;
    if (!key.isAutoRepeat() || anew_)
        return false;
    if (event->type() == QEvent::KeyPress)
        return !types(key);
    event->accept(); // no short cut: the key goes where it would be typed
    return true;
}

} // namespace telvox::desktop
