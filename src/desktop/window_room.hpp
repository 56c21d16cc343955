#pragma once

#include <QScrollArea>
#include <QSize>

class QDialog;
class QSplitter;

namespace telvox::desktop {

/// A window's fields. Where the screen has too little room for them they scroll, and the buttons below them
/// stay in sight.
class FieldArea final : public QScrollArea {
  public:
    explicit FieldArea(QWidget *parent);
    [[nodiscard]] QSize sizeHint() const override;
};

/// Puts a dialog's fields, all but its buttons, into such an area.
void let_fields_scroll(QDialog &dialog);

/// How much of the screen a window takes. One whose frames or panes come and go grows and shrinks with them,
/// as far as the screen goes; what the user added stays. The main window's panes stand below the form, or at
/// its right where the screen is wide but not high enough.
class WindowRoom {
  public:
    /// Before the window is shown: as large as what it holds. Afterwards `share_out` is due.
    void fit(QWidget &window);
    /// Something in it may have come or gone; `before` is the size that it had.
    void follow(QWidget &window, QSize before);
    static void share_out(QWidget &window);
    /// The main window's size and the shares of its panes as a line of numbers, and back; what is no such
    /// line changes nothing, and no window gets larger than its screen.
    [[nodiscard]] static std::string geometry(const QWidget &window);
    static void restore(QWidget &window, const std::string &geometry);

  private:
    QSize wished_; ///< of what comes and goes
    QSize given_;  ///< what it got for that
};

} // namespace telvox::desktop
