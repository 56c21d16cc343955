#pragma once

#include "desktop/binder.hpp"

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
        int wished = 0; ///< height of what comes and goes in it
        int given = 0;  ///< height that it got for that
    };
    Made &made(Form &form);
    void show_or_hide(Form &form);
    /// A window whose frames or panes come and go shrinks and grows with them, from the height that it had
    /// before and as far down as the screen goes; what the user added stays.
    static void follow_content(Made &made, int height);

    Telvox &program_;
    std::map<Form *, Made> made_;
    QTimer countdown_; ///< runs while a job does
};

} // namespace telvox::desktop
