#include "desktop/window_room.hpp"

#include <QBoxLayout>
#include <QCoreApplication>
#include <QDialog>
#include <QEvent>
#include <QMainWindow>
#include <QScreen>
#include <QScrollBar>
#include <QSplitter>
#include <QStatusBar>
#include <algorithm>
#include <utility>

namespace telvox::desktop {

namespace {

/// The main window's form and its panes, in which they stand one above the other.
QSplitter *form_and_panes(const QWidget &window) { return window.findChild<QSplitter *>("splFenster"); }
QSplitter &panes_in(const QSplitter &both) { return *both.findChild<QSplitter *>("splTafeln"); }

/// The size that a part of the main window wishes, or can do with. A splitter counts hidden parts as well.
QSize size_of(const QWidget &part, QSize (QWidget::*size)() const) {
    const auto *panes = qobject_cast<const QSplitter *>(&part);
    if (!panes)
        return (part.*size)();
    QSize all;
    for (int i = 0; i < panes->count(); ++i)
        if (const QWidget &pane = *panes->widget(i); !pane.isHidden()) {
            const QSize its = (pane.*size)();
            all = {std::max(all.width(), its.width()),
                   its.height() + (all.isValid() ? all.height() + panes->handleWidth() : 0)};
        }
    return all;
}
QSize wish_of(const QWidget &part) { return size_of(part, &QWidget::sizeHint); }
QSize least_of(const QWidget &part) { return size_of(part, &QWidget::minimumSizeHint); }

/// What the screen has for a window without its borders.
QSize room_for(const QWidget &window) {
    constexpr QSize borders{16, 48};
    return window.screen()->availableSize() - borders;
}

/// Lets what has changed in a window's fields be known to all that stands around them.
void settle(const QWidget &window) {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    for (auto *area : window.findChildren<FieldArea *>())
        area->updateGeometry();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
}

/// Size of what is shown, as far as it comes and goes: all of a dialog's fields; of the main window, whose
/// buttons must not jump away under the mouse, only the panes.
QSize wished_size(QWidget &window) {
    if (const QSplitter *both = form_and_panes(window)) {
        const QSplitter &panes = panes_in(*both);
        if (panes.isHidden())
            return {0, 0};
        if (both->orientation() == Qt::Vertical)
            return {0, wish_of(panes).height() + both->handleWidth()};
        return {std::max(wish_of(panes).width(), wish_of(*both->widget(0)).width()) + both->handleWidth(), 0};
    }
    return {0, window.layout()->sizeHint().height()};
}

/// Size of the main window without its panes.
QSize form_size(const QWidget &window) {
    const auto &main = static_cast<const QMainWindow &>(window);
    const QMargins margins = main.centralWidget()->layout()->contentsMargins();
    const QSize form = wish_of(*form_and_panes(window)->widget(0)).grownBy(margins);
    // The size that a menu bar wishes is not always the height that it gets: in the style of Windows it lacks
    // a pixel.
    const int bars =
        main.menuWidget()->heightForWidth(form.width()) + main.findChild<QStatusBar *>()->sizeHint().height();
    return form + QSize{0, bars};
}

/// Shows the panes' side of the main window if there is one to show, and puts it where there is room for it.
void place_panes(const QWidget &window) {
    QSplitter *both = form_and_panes(window);
    if (!both)
        return;
    QSplitter &panes = panes_in(*both);
    bool any = false;
    for (int i = 0; i < panes.count(); ++i)
        any |= !panes.widget(i)->isHidden();
    panes.setVisible(any);
    const QSize room = room_for(window), form = form_size(window);
    const bool high_enough = form.height() + wish_of(panes).height() + both->handleWidth() <= room.height();
    const bool wide_enough = form.width() + least_of(panes).width() + both->handleWidth() <= room.width();
    both->setOrientation(!high_enough && wide_enough ? Qt::Horizontal : Qt::Vertical);
    settle(window); // or the room that a pane had still counts as the least that the window may have
}

/// Gives the parts of a splitter the length that they wish and what is left over to the last one. What is
/// missing they go without, the last first, down to their least length; then the first does.
void share_out_along(QSplitter &parts) {
    const auto along = [&](QSize size) {
        return parts.orientation() == Qt::Vertical ? size.height() : size.width();
    };
    QList<int> lengths;
    for (int i = 0; i < parts.count(); ++i)
        lengths << (parts.widget(i)->isHidden() ? 0 : along(wish_of(*parts.widget(i))));
    const auto left = [&] {
        int room = along(parts.size()) + parts.handleWidth(); // one less than there are parts
        for (const int length : lengths)
            room -= length == 0 ? 0 : length + parts.handleWidth();
        return room;
    };
    for (int i = parts.count() - 1; i > 0 && left() < 0; --i)
        lengths[i] = std::max(lengths[i] + left(), std::min(lengths[i], along(least_of(*parts.widget(i)))));
    const auto last = std::find_if(lengths.rbegin(), lengths.rend(), [](int length) { return length != 0; });
    if (last != lengths.rend())
        (left() < 0 ? lengths.first() : *last) += left();
    parts.setSizes(lengths);
}

} // namespace

FieldArea::FieldArea(QWidget *parent) : QScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setWidgetResizable(true);
}

QSize FieldArea::sizeHint() const { return widget() ? widget()->sizeHint() : QScrollArea::sizeHint(); }

void let_fields_scroll(QDialog &dialog) {
    QLayout *fields = dialog.layout();
    auto *buttons = dialog.findChild<QLayout *>("layTasten");
    fields->removeItem(buttons);
    buttons->setParent(nullptr);
    auto *content = new QWidget(&dialog);
    content->setLayout(fields);
    const QMargins margins = fields->contentsMargins();
    fields->setContentsMargins({});
    auto *area = new FieldArea(&dialog);
    area->setWidget(content);
    auto *window = new QVBoxLayout(&dialog);
    window->setContentsMargins(margins);
    window->addWidget(area, 1);
    window->addLayout(buttons);
}

void WindowRoom::fit(QWidget &window) {
    if (!window.testAttribute(Qt::WA_WState_Created)) { // sizes are known once it has been laid out
        window.setAttribute(Qt::WA_DontShowOnScreen);
        window.show();
        window.hide();
        window.setAttribute(Qt::WA_DontShowOnScreen, false);
    }
    settle(window);
    place_panes(window);
    wished_ = given_ = wished_size(window);
    QSize size = form_and_panes(window) ? form_size(window) + wished_ : window.sizeHint();
    size = size.expandedTo(window.minimumSizeHint());
    const QSize room = room_for(window);
    if (const auto *area = window.findChild<FieldArea *>(); area && size.height() > room.height())
        size.rwidth() += area->verticalScrollBar()->sizeHint().width();
    window.resize(size.boundedTo(room));
}

void WindowRoom::share_out(QWidget &window) {
    if (QSplitter *both = form_and_panes(window)) {
        share_out_along(*both);
        share_out_along(panes_in(*both));
    }
}

std::string WindowRoom::geometry(const QWidget &window) {
    const QSize size = window.isMaximized() ? window.normalGeometry().size() : window.size();
    QList<int> numbers{size.width(), size.height(), window.isMaximized() ? 1 : 0};
    if (const QSplitter *both = form_and_panes(window); both && !panes_in(*both).isHidden())
        numbers += both->sizes() + panes_in(*both).sizes();
    QStringList texts;
    for (const int number : numbers)
        texts << QString::number(number);
    return texts.join(' ').toStdString();
}

void WindowRoom::restore(QWidget &window, const std::string &geometry) {
    QList<int> numbers;
    for (const QString &text : QString::fromStdString(geometry).split(' ')) {
        bool is_number = false;
        numbers << text.toInt(&is_number);
        if (!is_number || numbers.back() < 0)
            return;
    }
    constexpr int plain = 3;
    if (numbers.size() < plain)
        return;
    window.resize(
        QSize(numbers[0], numbers[1]).expandedTo(window.minimumSizeHint()).boundedTo(room_for(window)));
    QSplitter *both = form_and_panes(window);
    if (both && !panes_in(*both).isHidden() &&
        numbers.size() == plain + both->count() + panes_in(*both).count()) {
        settle(window);
        both->setSizes(numbers.mid(plain, both->count()));
        panes_in(*both).setSizes(numbers.mid(plain + both->count()));
    }
    if (numbers[2] == 1)
        window.showMaximized();
}

void WindowRoom::follow(QWidget &window, QSize before) {
    settle(window);
    place_panes(window);
    const QSize wished = wished_size(window);
    const QSize change = wished - std::exchange(wished_, wished);
    if (change.isNull())
        return;
    if (!window.isMaximized() && !window.isFullScreen()) {
        const QRect screen = window.screen()->availableGeometry(), frame = window.frameGeometry();
        const auto given = [](int wanted, int had, int room) {
            return std::clamp(wanted, -had, std::max(room, 0));
        };
        const QSize got{given(change.width(), given_.width(), screen.width() - frame.width()),
                        given(change.height(), given_.height(), screen.height() - frame.height())};
        given_ += got;
        window.resize(before + got);
        const QPoint beyond{std::max(frame.right() + got.width() - screen.right(), 0),
                            std::max(frame.bottom() + got.height() - screen.bottom(), 0)};
        if (got.width() > 0 || got.height() > 0)
            window.move(std::max(window.x() - beyond.x(), std::min(window.x(), screen.left())),
                        std::max(window.y() - beyond.y(), std::min(window.y(), screen.top())));
    }
    if (change.width() > 0 || change.height() > 0)
        share_out(window);
}

} // namespace telvox::desktop
