#include "desktop/binder.hpp"

#include "desktop/field_filter.hpp"

#include <QAction>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QStatusBar>
#include <QToolTip>
#include <utility>

namespace telvox::desktop {

namespace {

QString text_of(const std::string &utf8) { return QString::fromStdString(utf8); }

/// Changes a widget only if it shows something else.
template <class Widget, class Get, class Set, class Value>
void show(Widget &widget, Get get, Set set, const Value &value) {
    if ((widget.*get)() != value)
        (widget.*set)(value);
}

/// Focus that the user did not put there: it comes back from a list, a menu, a box or another program.
bool returns(Qt::FocusReason reason) {
    return reason == Qt::PopupFocusReason || reason == Qt::ActiveWindowFocusReason ||
           reason == Qt::MenuBarFocusReason;
}

/// A key that types only characters that the box refuses. It must not even replace a selection.
bool types_nothing(const TextBox &box, const QKeyEvent &key) {
    const QString text = key.text();
    return !text.isEmpty() && text.at(0).isPrint() && !key.modifiers().testFlag(Qt::AltModifier) &&
           box.filtered(text.toStdString()).empty();
}

} // namespace

Binder::Binder(Form &form, QWidget &window, Telvox &program)
    : form_(form), window_(window), program_(program) {
    window_.setWindowTitle(form_.caption);
    window_.installEventFilter(this);
    for (Control *control : form_.controls()) {
        if (auto *entry = dynamic_cast<MenuEntry *>(control)) {
            if (QAction *action = action_of(*control))
                bind(*entry, *action);
            else
                without_widget_ << control->name;
            continue;
        }
        bind_as<Frame, QGroupBox>(*control) || bind_as<Label, QLabel>(*control) ||
            bind_as<Button, QPushButton>(*control) || bind_as<OptionButton, QRadioButton>(*control) ||
            bind_as<CheckBox, QCheckBox>(*control) || bind_as<TextBox, QLineEdit>(*control) ||
            bind_as<ComboBox, QComboBox>(*control) || bind_as<ProgressBar, QProgressBar>(*control) ||
            bind_as<StatusPanel, QStatusBar>(*control);
    }
}

template <class Kind, class Widget> bool Binder::bind_as(Control &control) {
    auto *kind = dynamic_cast<Kind *>(&control);
    if (!kind)
        return false;
    auto *widget = window_.findChild<Widget *>(QString::fromUtf8(control.name));
    if (!widget) {
        without_widget_ << control.name;
        return true;
    }
    widget->installEventFilter(this);
    bind(*kind, *widget);
    drawers_.emplace_back([this, &control, widget] { draw_common(control, *widget); });
    return true;
}

void Binder::bind(Frame &control, QGroupBox &widget) {
    drawers_.emplace_back(
        [&] { show(widget, &QGroupBox::title, &QGroupBox::setTitle, text_of(control.caption)); });
}

void Binder::bind(Label &control, QLabel &widget) {
    widget.setTextFormat(Qt::PlainText);
    drawers_.emplace_back([&] { show(widget, &QLabel::text, &QLabel::setText, text_of(control.caption)); });
}

void Binder::bind(Button &control, QPushButton &widget) {
    connect(&widget, &QPushButton::clicked, this, [&] { program_.click(control); });
    drawers_.emplace_back(
        [&] { show(widget, &QPushButton::text, &QPushButton::setText, text_of(control.caption)); });
}

void Binder::bind(OptionButton &control, QRadioButton &widget) {
    connect(&widget, &QRadioButton::clicked, this, [&] { program_.choose(control); });
    drawers_.emplace_back([&] {
        show(widget, &QRadioButton::text, &QRadioButton::setText, text_of(control.caption));
        if (widget.isChecked() == control.value)
            return;
        // Which one of a group is set is the form's business; left to itself, a group keeps one set.
        widget.setAutoExclusive(false);
        widget.setChecked(control.value);
        widget.setAutoExclusive(true);
    });
}

void Binder::bind(CheckBox &control, QCheckBox &widget) {
    connect(&widget, &QCheckBox::clicked, this, [&](bool on) { program_.set(control, on); });
    drawers_.emplace_back([&] {
        show(widget, &QCheckBox::text, &QCheckBox::setText, text_of(control.caption));
        show(widget, &QCheckBox::isChecked, &QCheckBox::setChecked, control.value);
    });
}

void Binder::bind(TextBox &control, QLineEdit &widget) {
    // Wide enough for an international number, or for what a device answers.
    const int shown_characters = control.read_only ? 30 : 16;
    widget.setMinimumWidth(shown_characters * widget.fontMetrics().horizontalAdvance('0'));
    widget.setReadOnly(control.read_only);
    if (!control.read_only)
        widget.setValidator(new FieldFilter(control, widget));
    connect(&widget, &QLineEdit::textEdited, this,
            [&](const QString &text) { program_.enter(control, text.toStdString()); });
    drawers_.emplace_back(
        [&] { show(widget, &QLineEdit::text, &QLineEdit::setText, text_of(control.text)); });
}

void Binder::bind(ComboBox &control, QComboBox &widget) {
    connect(&widget, &QComboBox::textActivated, this,
            [&](const QString &entry) { program_.select(control, entry.toStdString()); });
    drawers_.emplace_back([&] { draw_entries(control, widget); });
}

void Binder::bind(ProgressBar &control, QProgressBar &widget) {
    drawers_.emplace_back([&] {
        show(widget, &QProgressBar::maximum, &QProgressBar::setMaximum, control.maximum);
        show(widget, &QProgressBar::value, &QProgressBar::setValue, control.value);
    });
}

void Binder::bind(StatusPanel &control, QStatusBar &widget) {
    auto *panel = new QLabel(&widget);
    panel->setTextFormat(Qt::PlainText);
    widget.addWidget(panel, 1);
    drawers_.emplace_back([&control, panel] {
        show(*panel, &QLabel::text, &QLabel::setText, text_of(control.text));
        show(*panel, &QLabel::accessibleName, &QLabel::setAccessibleName, text_of(control.text));
    });
}

void Binder::bind(MenuEntry &control, QAction &action) {
    connect(&action, &QAction::triggered, this, [&] { program_.click(control); });
    drawers_.emplace_back([&] {
        show(action, &QAction::text, &QAction::setText, text_of(control.caption));
        action.setEnabled(control.enabled);
        action.setVisible(control.visible);
    });
}

QAction *Binder::action_of(const Control &control) const {
    const QString name = QString::fromUtf8(control.name);
    if (auto *menu = window_.findChild<QMenu *>(name))
        return menu->menuAction();
    return window_.findChild<QAction *>(name);
}

void Binder::draw_entries(const ComboBox &control, QComboBox &widget) {
    QStringList entries;
    for (const std::string &item : control.items)
        entries << text_of(item);
    QStringList shown;
    for (int i = 0; i < widget.count(); ++i)
        shown << widget.itemText(i);
    if (entries != shown) {
        widget.clear();
        widget.addItems(entries);
    }
    const auto tool_tip = [&](int i) {
        const auto at = static_cast<std::size_t>(i);
        return at < control.item_tool_tips.size() ? text_of(control.item_tool_tips[at]) : QString();
    };
    for (int i = 0; i < widget.count(); ++i)
        widget.setItemData(i, tool_tip(i), Qt::ToolTipRole);
    const int chosen = static_cast<int>(entries.indexOf(text_of(control.text)));
    show(widget, &QComboBox::currentIndex, &QComboBox::setCurrentIndex, chosen);
    widget.setToolTip(chosen < 0 ? QString() : tool_tip(chosen));
}

void Binder::draw_common(const Control &control, QWidget &widget) {
    widget.setEnabled(control.enabled);
    widget.setVisible(control.visible);
    if (!control.tool_tip.empty())
        show(widget, &QWidget::toolTip, &QWidget::setToolTip, text_of(control.tool_tip));
}

void Binder::draw() {
    drawing_ = true;
    // A locked widget would pass its focus on to the next one, so that a second key press would meet a button
    // that nobody aimed at ("Beenden"). It waits for the unlocking instead.
    if (QWidget *focus = window_.focusWidget(); focus && focus != &window_ && !usable(focus)) {
        locked_focus_ = focus;
        focus->clearFocus();
    }
    for (const auto &draw_one : drawers_)
        draw_one();
    if (locked_focus_ && usable(locked_focus_)) {
        if (!window_.focusWidget() || window_.focusWidget() == &window_)
            locked_focus_->setFocus();
        locked_focus_ = nullptr;
    }
    if (const Control *wanted = std::exchange(form_.wants_focus, nullptr))
        if (auto *widget = window_.findChild<QWidget *>(QString::fromUtf8(wanted->name)))
            widget->setFocus();
    drawing_ = false;
}

bool Binder::usable(const QWidget *widget) const {
    const Control *control = form_.find(widget->objectName().toStdString());
    return !control || control->usable();
}

bool Binder::eventFilter(QObject *watched, QEvent *event) {
    switch (event->type()) {
    case QEvent::Close:
        if (watched == &window_) {
            event->setAccepted(close_window());
            return true;
        }
        break;
    case QEvent::KeyPress: {
        const auto &key = *static_cast<QKeyEvent *>(event);
        if (watched == &window_ && key.matches(QKeySequence::Cancel) && qobject_cast<QDialog *>(&window_)) {
            close_window();
            return true;
        }
        if (const auto *edit = qobject_cast<QLineEdit *>(watched); edit && !edit->isReadOnly())
            if (const auto *box = form_.find<TextBox>(edit->objectName().toStdString()))
                return types_nothing(*box, key);
        break;
    }
    case QEvent::FocusIn:
        if (!drawing_ && !returns(static_cast<QFocusEvent *>(event)->reason()))
            if (auto *list = form_.find<ComboBox>(watched->objectName().toStdString()))
                program_.focus(*list);
        break;
    case QEvent::ToolTip:
        // Plain text would be one line as long as it takes; marked as rich text it is wrapped.
        if (const auto *widget = qobject_cast<QWidget *>(watched); widget && !widget->toolTip().isEmpty()) {
            QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(),
                               "<qt>" + widget->toolTip().toHtmlEscaped().replace('\n', "<br>") + "</qt>");
            return true;
        }
        break;
    default:
        break;
    }
    return false;
}

bool Binder::close_window() {
    program_.close(form_);
    return !form_.open;
}

QStringList Binder::mismatches() const {
    QStringList names = without_widget_;
    const auto check = [&](const QObject *object) {
        const QString name = object->objectName();
        if (!name.isEmpty() && !name.startsWith("qt_") && !form_.find(name.toStdString()))
            names << name;
    };
    for (const QWidget *widget : window_.findChildren<QWidget *>())
        if (widget->inherits("QAbstractButton") || widget->inherits("QLabel") ||
            widget->inherits("QLineEdit") || widget->inherits("QComboBox") || widget->inherits("QGroupBox") ||
            widget->inherits("QProgressBar") || widget->inherits("QMenu"))
            check(widget);
    for (const QAction *action : window_.findChildren<QAction *>())
        check(action);
    return names;
}

} // namespace telvox::desktop
