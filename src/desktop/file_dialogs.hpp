#pragma once

#include "core/file_dialogs.hpp"

#include <QFileDialog>
#include <QObject>
#include <QPointer>
#include <functional>

namespace telvox::desktop {

/// File dialogs on Qt. They hold no handler up: one opens once the running handler has ended. It begins in
/// the folder of the last one, the first in the user's documents.
class QtFileDialogs final : public QObject, public FileDialogs {
  public:
    /// The window that a dialog belongs to at the moment.
    std::function<QWidget *()> owner = [] { return nullptr; };

    ~QtFileDialogs() override;
    void show(const FileQuestion &question, FileAnswered answered) override;
    /// The dialog that the user is in, nullptr if none.
    [[nodiscard]] QFileDialog *current() const { return dialog_; }

  private:
    void open(const FileQuestion &question, const FileAnswered &answered);

    QString folder_;
    QPointer<QFileDialog> dialog_;
};

} // namespace telvox::desktop
