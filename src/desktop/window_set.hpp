#pragma once

#include "desktop/binder.hpp"
#include "desktop/held_keys.hpp"
#include "desktop/window_room.hpp"

#include <QTimer>
#include <functional>
#include <map>

namespace telvox::desktop {

/// The program's windows: each is made when its form opens for the first time, shown while it is open, and
/// drawn again after every event.
class WindowSet final : public QObject, public Observer {
  public:
    explicit WindowSet(Telvox &program);
    ~WindowSet() override;

    /// Called once, when the main window's form has closed.
    std::function<void()> ended = [] {};

    /// Size of the main window and shares of its panes, and what they were, for its first showing: a line of
    /// numbers; anything else means nothing.
    [[nodiscard]] std::string geometry() const;
    std::string as_left;

    void draw() override;
    [[nodiscard]] QWidget &window(Form &form) { return *made(form).window; }
    [[nodiscard]] Binder &binder(Form &form) { return *made(form).binder; }
    /// The window that the user works in: a dialog if one is open.
    [[nodiscard]] QWidget *front() const;

  private:
    /// Both belong to the main window.
    struct Made {
        QWidget *window = nullptr;
        Binder *binder = nullptr;
        WindowRoom room = {};
    };
    Made &made(Form &form);
    void show_or_hide(Form &form);

    Telvox &program_;
    HeldKeys held_keys_;
    std::map<Form *, Made> made_;
    QTimer countdown_; ///< runs while a job does
};

} // namespace telvox::desktop
