#pragma once

#include "core/messages.hpp"

#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <deque>
#include <functional>

namespace telvox::desktop {

/// Message boxes on Qt, one after the other. They never hold a handler up: the next one opens once the
/// running handler and the box before it are done.
class QtMessageBoxes final : public QObject, public MessageBoxes {
  public:
    /// The window that a box belongs to at the moment.
    std::function<QWidget *()> owner = [] { return nullptr; };

    ~QtMessageBoxes() override;
    void show(const Message &message, Answered answered) override;
    /// The box that the user reads, nullptr if none.
    [[nodiscard]] QMessageBox *current() const { return box_; }

  private:
    void open_next();

    std::deque<std::pair<Message, Answered>> waiting_;
    QPointer<QMessageBox> box_;
};

} // namespace telvox::desktop
