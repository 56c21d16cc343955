#include "desktop/message_boxes.hpp"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <algorithm>

namespace telvox::desktop {

namespace {

/// The text breaks where it says so, and elsewhere only where it is longer than can be read well or than the
/// screen is wide; left to itself the box breaks it at a width of its own. A short one must not cut the title
/// off; beside that stand the window's own buttons.
void leave_room(QMessageBox &box) {
    if (auto *text = box.findChild<QLabel *>("qt_msgbox_label")) {
        const int widest = std::min(text->fontMetrics().averageCharWidth() * 120,
                                    box.screen()->availableSize().width() * 3 / 4);
        text->setWordWrap(true);
        text->setMinimumWidth(
            std::min(text->fontMetrics().size(Qt::TextExpandTabs, text->text()).width() + 2, widest));
    }
    if (auto *grid = qobject_cast<QGridLayout *>(box.layout())) {
        const int width = box.fontMetrics().horizontalAdvance(box.windowTitle()) * 5 / 4 + 120;
        grid->addItem(new QSpacerItem(width, 0), grid->rowCount(), 0, 1, grid->columnCount());
    }
}

QMessageBox::Icon icon_of(const Message &message) {
    switch (message.tone) {
    case Tone::success:
        return QMessageBox::Information;
    case Tone::refusal:
        return QMessageBox::Warning;
    case Tone::failure:
        return QMessageBox::Critical;
    case Tone::plain:
        break;
    }
    return message.asks                        ? QMessageBox::Question
           : message.icon == Icon::exclamation ? QMessageBox::Warning
                                               : QMessageBox::NoIcon;
}

} // namespace

QtMessageBoxes::~QtMessageBoxes() { delete box_; }

void QtMessageBoxes::show(const Message &message, Answered answered) {
    waiting_.emplace_back(message, std::move(answered));
    QMetaObject::invokeMethod(
        this, [this] { open_next(); }, Qt::QueuedConnection);
}

void QtMessageBoxes::open_next() {
    if (box_ || waiting_.empty())
        return;
    const auto [message, answered] = std::move(waiting_.front());
    waiting_.pop_front();
    box_ = new QMessageBox(owner());
    box_->setAttribute(Qt::WA_DeleteOnClose);
    box_->setWindowTitle(QString::fromStdString(message.title));
    box_->setIcon(icon_of(message));
    box_->setTextFormat(Qt::PlainText);
    // Where somebody works at several devices the list does what is left to do.
    const std::string text = message.about.empty()
                                 ? message.text + (message.advice.empty() ? "" : "\r") + message.advice
                                 : message.about + "\r\r" + message.text;
    box_->setText(QString::fromStdString(text).replace('\r', '\n'));
    QPushButton *yes = box_->addButton(message.asks ? "&Ja" : "&OK", QMessageBox::AcceptRole);
    QPushButton *no = message.asks ? box_->addButton("&Nein", QMessageBox::DestructiveRole) : yes;
    QPushButton *back = message.can_go_back ? box_->addButton("&Zurück", QMessageBox::RejectRole) : nullptr;
    box_->setDefaultButton(back ? yes : no);
    box_->setEscapeButton(back ? back : no);
    leave_room(*box_);
    if (answered)
        connect(box_, &QMessageBox::finished, this, [box = box_, yes, back, hear = answered] {
            if (!back || box->clickedButton() != back)
                hear(box->clickedButton() == yes);
        });
    // However it goes, also with the window that it belongs to: the next one is due.
    connect(
        box_, &QObject::destroyed, this, [this] { open_next(); }, Qt::QueuedConnection);
    box_->open();
}

} // namespace telvox::desktop
