#include "desktop/log_view.hpp"

#include "desktop/readable_style.hpp"

#include <QClipboard>
#include <QEvent>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextBlock>
#include <utility>

namespace telvox::desktop {

LogView::LogView(Log &log, QPlainTextEdit &edit) : QObject(&edit), log_(log), edit_(edit) {
    edit_.setReadOnly(true);
    edit_.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    edit_.setUndoRedoEnabled(false);
    edit_.setLineWrapMode(QPlainTextEdit::NoWrap);
    edit_.setMaximumBlockCount(Log::capacity);
    edit_.setTabChangesFocus(true);
    edit_.installEventFilter(this);
    // Whoever reads the newest line goes on doing so when the pane's height changes.
    connect(edit_.verticalScrollBar(), &QScrollBar::rangeChanged, this,
            [this, end = 0](int, int maximum) mutable {
                QScrollBar &bar = *edit_.verticalScrollBar();
                if (bar.value() >= std::exchange(end, maximum))
                    bar.setValue(maximum);
            });
    pause_.setSingleShot(true);
    pause_.setInterval(100);
    connect(&pause_, &QTimer::timeout, this, &LogView::catch_up);
}

void LogView::draw() {
    if (begin_ != log_.begin) {
        begin_ = next_ = log_.begin;
        edit_.clear();
    }
    if (std::exchange(log_.wants_copy, false))
        copy();
    if (log_.usable() && !pause_.isActive())
        pause_.start();
}

bool LogView::eventFilter(QObject *, QEvent *event) {
    if (event->type() == QEvent::PaletteChange) { // all is read anew, in colours that fit
        next_ = begin_;
        edit_.clear();
        draw();
    }
    return false;
}

void LogView::catch_up() {
    const auto lines = log_.usable() ? log_.read(next_) : std::vector<LogLine>{};
    if (lines.empty())
        return;
    QScrollBar &bar = *edit_.verticalScrollBar();
    const int reads_at = bar.value();
    const bool follows = reads_at == bar.maximum();
    const int before = edit_.blockCount();
    const bool was_empty = edit_.document()->isEmpty();
    if (was_empty) // not before it is needed: another font to read makes the program start later
        edit_.setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    insert(lines);
    const int gone = before - was_empty + static_cast<int>(lines.size()) - edit_.blockCount();
    bar.setValue(follows ? bar.maximum() : std::max(reads_at - gone, 0));
}

void LogView::insert(const std::vector<LogLine> &lines) {
    const QColor text = edit_.palette().color(QPalette::Text),
                 red = red_on(edit_.palette().color(QPalette::Base));
    QTextCursor end(edit_.document());
    end.movePosition(QTextCursor::End);
    end.beginEditBlock();
    for (const LogLine &line : lines) {
        if (!edit_.document()->isEmpty())
            end.insertBlock();
        QTextCharFormat format;
        format.setForeground(line.stands_out ? red : text);
        end.insertText(QString::fromStdString(line.text), format);
    }
    end.endEditBlock();
}

void LogView::copy() {
    catch_up();
    if (edit_.textCursor().hasSelection())
        edit_.copy();
    else if (!edit_.document()->isEmpty())
        QGuiApplication::clipboard()->setText(edit_.toPlainText());
}

} // namespace telvox::desktop
