#pragma once

#include <QObject>

namespace telvox::desktop {

/// A key that is held down writes and moves on, but presses nothing a second time: no button, no menu entry,
/// no box that has only just come up under it. Holds for every window of the application, boxes and file
/// dialogs too, as long as this lives.
class HeldKeys final : public QObject {
  public:
    HeldKeys();

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    int key_ = 0;       ///< the last one that came
    quint64 at_ = 0;    ///< when, in the clock of the events
    bool anew_ = false; ///< it was pressed, though it came as one that is held
};

} // namespace telvox::desktop
