#pragma once

#include "ui/form.hpp"

#include <QTimer>

class QPlainTextEdit;

namespace telvox::desktop {

/// Shows a log in a text edit, which owns it. However much is written, it is drawn some ten times a second,
/// and only while it can be seen. Who reads further up is left there; who follows the end goes on following
/// it.
class LogView final : public QObject {
  public:
    LogView(Log &log, QPlainTextEdit &edit);
    void draw();

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    void catch_up();
    void insert(const std::vector<LogLine> &lines);
    void copy();

    Log &log_;
    QPlainTextEdit &edit_;
    QTimer pause_;
    std::size_t begin_ = 0, next_ = 0; ///< numbers of the lines that it shows
};

} // namespace telvox::desktop
