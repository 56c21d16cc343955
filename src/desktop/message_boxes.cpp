#include "desktop/message_boxes.hpp"

#include <QGridLayout>
#include <QPushButton>

namespace telvox::desktop {

namespace {

/// A short text must not cut the title off; beside it stand the window's own buttons.
void leave_room_for_title(QMessageBox &box) {
    if (auto *grid = qobject_cast<QGridLayout *>(box.layout())) {
        const int width = box.fontMetrics().horizontalAdvance(box.windowTitle()) * 5 / 4 + 120;
        grid->addItem(new QSpacerItem(width, 0), grid->rowCount(), 0, 1, grid->columnCount());
    }
}

} // namespace

namespace {

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
    const std::string text = message.about + (message.about.empty() ? "" : "\r\r") + message.text;
    box_->setText(QString::fromStdString(text).replace('\r', '\n'));
    QPushButton *yes = box_->addButton(message.asks ? "&Ja" : "OK", QMessageBox::AcceptRole);
    box_->setDefaultButton(message.asks ? box_->addButton("&Nein", QMessageBox::RejectRole) : yes);
    box_->setEscapeButton(box_->defaultButton());
    leave_room_for_title(*box_);
    if (answered)
        connect(box_, &QMessageBox::finished, this,
                [box = box_, yes, hear = answered] { hear(box && box->clickedButton() == yes); });
    // However it goes, also with the window that it belongs to: the next one is due.
    connect(
        box_, &QObject::destroyed, this, [this] { open_next(); }, Qt::QueuedConnection);
    box_->open();
}

} // namespace telvox::desktop
