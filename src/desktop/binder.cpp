#include "desktop/binder.hpp"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QStatusBar>
#include <QTableView>
#include <QToolTip>
#include <utility>

namespace telvox::desktop {

namespace {

/// Focus that the user did not put there: it comes back from a list, a menu, a box or another program.
bool returns(Qt::FocusReason reason) {
    return reason == Qt::PopupFocusReason || reason == Qt::ActiveWindowFocusReason ||
           reason == Qt::MenuBarFocusReason;
}

/// A key that types only characters that the field refuses. It must not even replace a selection.
bool types_nothing(const TextField &field, const QKeyEvent &key) {
    const QString text = key.text();
    return !text.isEmpty() && text.at(0).isPrint() && !key.modifiers().testFlag(Qt::AltModifier) &&
           field.filtered(text.toStdString()).empty();
}

/// Whether the field is spared this key; the user hears why.
bool swallowed(const TextField &field, QObject &widget, const QKeyEvent &key) {
    if (!types_nothing(field, key))
        return false;
    show_hint(static_cast<QWidget &>(widget), field.refusal(key.text().toStdString()));
    return true;
}

/// Whether what is typed becomes the first of a line, a "+" then what is dialled for it.
bool at_the_beginning(const QObject &widget) {
    const auto *edit = qobject_cast<const QLineEdit *>(&widget);
    return edit && (edit->hasSelectedText() ? edit->selectionStart() : edit->cursorPosition()) == 0;
}

/// A key that opens a drop-down list.
bool opens_list(const QComboBox &list, const QKeyEvent &key) {
    const bool up_or_down = key.key() == Qt::Key_Up || key.key() == Qt::Key_Down;
    return key.key() == Qt::Key_F4 || (up_or_down && key.modifiers().testFlag(Qt::AltModifier)) ||
           (key.key() == Qt::Key_Space && !list.isEditable());
}

} // namespace

void show_hint(QWidget &widget, const std::string &text) {
    constexpr int shown_for_ms = 4000;
    QToolTip::showText(widget.mapToGlobal(QPoint(0, widget.height() / 2)), text_of(text), &widget, {},
                       shown_for_ms);
}

Binder::Binder(Form &form, QWidget &window, Telvox &program)
    : form_(form), window_(window), program_(program) {
    window_.installEventFilter(this);
    for (Control *control : form_.controls())
        bind_by_name(*control);
}

void Binder::share(Control &control) {
    shared_.push_back(&control);
    bind_by_name(control);
}

void Binder::bind_by_name(Control &control) {
    if (!bind_to_action(control) && !bind_to_widget(control))
        without_widget_ << control.name;
}

bool Binder::bind_to_action(Control &control) {
    auto *entry = dynamic_cast<MenuEntry *>(&control);
    QAction *action = entry ? action_of(control) : nullptr;
    if (action)
        bind(*entry, *action);
    return action != nullptr;
}

bool Binder::bind_to_widget(Control &control) {
    return bind_as<Frame, QGroupBox>(control) || bind_as<Frame, QWidget>(control) ||
           bind_as<Label, QLabel>(control) || bind_as<Picture, QLabel>(control) ||
           bind_as<Button, QPushButton>(control) || bind_as<OptionButton, QRadioButton>(control) ||
           bind_as<CheckBox, QCheckBox>(control) || bind_as<TextBox, QLineEdit>(control) ||
           bind_as<TextBox, QPlainTextEdit>(control) || bind_as<ComboBox, QComboBox>(control) ||
           bind_as<ListBox, QListWidget>(control) || bind_as<Log, QPlainTextEdit>(control) ||
           bind_as<RowTable, QTableView>(control) || bind_as<ProgressBar, QProgressBar>(control) ||
           bind_as<StatusPanel, QStatusBar>(control);
}

template <class Kind, class Widget> bool Binder::bind_as(Control &control) {
    auto *kind = dynamic_cast<Kind *>(&control);
    auto *widget = kind ? window_.findChild<Widget *>(QString::fromUtf8(control.name)) : nullptr;
    if (!widget)
        return false;
    if constexpr (std::is_same_v<Kind, TextBox>)
        if (kind->multi_line != std::is_same_v<Widget, QPlainTextEdit>)
            return false;
    widget->installEventFilter(this);
    bind(*kind, *widget);
    if (!control.spoken_name.empty())
        widget->setAccessibleName(text_of(control.spoken_name));
    drawers_.emplace_back([this, &control, widget] { draw_common(control, *widget); });
    return true;
}

QAction *Binder::action_of(const Control &control) const {
    const QString name = QString::fromUtf8(control.name);
    if (auto *menu = window_.findChild<QMenu *>(name))
        return menu->menuAction();
    return window_.findChild<QAction *>(name);
}

void Binder::draw_common(const Control &control, QWidget &widget) {
    widget.setEnabled(control.enabled);
    widget.setVisible(control.visible);
    if (!control.tool_tip.empty() && !widget.inherits("QComboBox")) // those have their entries' as well
        show(widget, &QWidget::toolTip, &QWidget::setToolTip, text_of(control.tool_tip));
}

void Binder::focus(QWidget &widget) {
    const bool now = widget.isEnabledTo(&window_);
    locked_focus_ = now ? nullptr : &widget;
    (now ? widget : window_).setFocus(Qt::TabFocusReason);
}

void Binder::draw() {
    show(window_, &QWidget::windowTitle, &QWidget::setWindowTitle, text_of(form_.caption));
    drawing_ = true;
    // A locked widget would pass its focus on to the next one, so that a second key press would meet a button
    // that nobody aimed at ("Beenden"). It waits for the unlocking instead, and meanwhile the window has the
    // focus: one without any would be given its first usable widget as soon as it comes to the front.
    if (QWidget *focus = window_.focusWidget(); focus && focus != &window_ && !usable(focus)) {
        locked_focus_ = focus;
        window_.setFocus();
    }
    for (const auto &draw_one : drawers_)
        draw_one();
    if (locked_focus_ && usable(locked_focus_)) {
        if (window_.focusWidget() == &window_)
            locked_focus_->setFocus();
        locked_focus_ = nullptr;
    }
    if (const Control *wanted = std::exchange(form_.wants_focus, nullptr))
        if (auto *widget = window_.findChild<QWidget *>(QString::fromUtf8(wanted->name))) {
            widget->setFocus();
            for (auto *area : window_.findChildren<QScrollArea *>())
                if (area->isAncestorOf(widget))
                    area->ensureWidgetVisible(widget);
        }
    drawing_ = false;
}

bool Binder::usable(const QWidget *widget) const {
    const Control *control = form_.find(widget->objectName().toStdString());
    return !control || control->usable();
}

bool Binder::eventFilter(QObject *watched, QEvent *event) {
    const std::string name = watched->objectName().toStdString();
    switch (event->type()) {
    case QEvent::Close:
        if (watched == &window_) {
            event->setAccepted(close_window());
            return true;
        }
        break;
    case QEvent::KeyPress:
        return key_pressed(*watched, *static_cast<QKeyEvent *>(event));
    case QEvent::FocusIn: {
        const auto reason = static_cast<QFocusEvent *>(event)->reason();
        auto *list = form_.find<ComboBox>(name);
        // A click gives the focus and opens the list; one look is enough.
        const bool opens_too = list && !list->editable && reason == Qt::MouseFocusReason;
        if (list && !drawing_ && !returns(reason) && !opens_too)
            program_.focus(*list);
        break;
    }
    case QEvent::FocusOut:
        if (!drawing_ && !returns(static_cast<QFocusEvent *>(event)->reason()))
            if (auto *box = form_.find<TextBox>(name))
                program_.leave(*box);
        break;
    case QEvent::MouseButtonPress:
        if (static_cast<QMouseEvent *>(event)->button() == Qt::LeftButton)
            if (auto *list = form_.find<ComboBox>(name))
                program_.focus(*list);
        break;
    case QEvent::Wheel:
        // Over a closed list it scrolls what the list stands in.
        if (qobject_cast<QComboBox *>(watched)) {
            event->ignore();
            return true;
        }
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

bool Binder::key_pressed(QObject &watched, const QKeyEvent &key) {
    if (&watched == &window_ && key.matches(QKeySequence::Cancel) && qobject_cast<QDialog *>(&window_)) {
        close_window();
        return true;
    }
    if (&watched == &window_ && key.key() == Qt::Key_F1) {
        program_.help(form_, focused());
        return true;
    }
    const std::string name = watched.objectName().toStdString();
    const bool enter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
    if (const auto *box = form_.find<TextBox>(name)) {
        if (box->phone_number && key.text() == "+" && at_the_beginning(watched)) {
            static_cast<QLineEdit &>(watched).insert("00");
            return true;
        }
        if (enter && box->enter)
            program_.click(*box->enter);
        return !box->read_only && swallowed(*box, watched, key);
    }
    if (const auto *table = form_.find<RowTable>(name); table && enter && table->enter) {
        program_.click(*table->enter);
        return true;
    }
    if (auto *list = qobject_cast<QComboBox *>(&watched)) {
        auto *control = form_.find<ComboBox>(name);
        if (control && opens_list(*list, key))
            program_.focus(*control);
        return control && control->editable ? swallowed(*control, watched, key) : search(*list, key);
    }
    if (const auto *view = qobject_cast<QAbstractItemView *>(&watched)) {
        for (QWidget *above = view->parentWidget(); above; above = above->parentWidget())
            if (auto *list = qobject_cast<QComboBox *>(above))
                return search(*list, key);
        // The first entry has the focus before it is selected; without this the first step would skip it.
        if (auto *list = qobject_cast<QListWidget *>(&watched);
            list && key.key() == Qt::Key_Down && list->selectedItems().isEmpty()) {
            list->setCurrentRow(0);
            return true;
        }
        if (auto *list = qobject_cast<QListWidget *>(&watched))
            return search(*list, key);
    }
    return false;
}

const Control *Binder::focused() const {
    for (const QWidget *widget = window_.focusWidget(); widget; widget = widget->parentWidget())
        if (const Control *control = form_.find(widget->objectName().toStdString()))
            return control;
    return nullptr;
}

bool Binder::search(QComboBox &list, const QKeyEvent &key) {
    QAbstractItemView &view = *list.view();
    const bool is_open = view.isVisible();
    const auto row =
        search(list, *list.model(), is_open ? view.currentIndex().row() : list.currentIndex(), key);
    if (!row || *row < 0)
        return row.has_value();
    if (is_open)
        view.setCurrentIndex(list.model()->index(*row, list.modelColumn(), list.rootModelIndex()));
    else if (auto *control = form_.find<ComboBox>(list.objectName().toStdString()))
        program_.select(*control, list.itemText(*row).toStdString());
    return true;
}

bool Binder::search(QListWidget &list, const QKeyEvent &key) {
    const auto row = search(list, *list.model(), list.currentRow(), key);
    auto *control = form_.find<ListBox>(list.objectName().toStdString());
    if (row && *row >= 0 && control)
        program_.click(*control, *row);
    return row.has_value();
}

std::optional<int> Binder::search(QWidget &list, const QAbstractItemModel &entries, int at,
                                  const QKeyEvent &key) {
    const QString typed = key.text();
    const bool goes_on = searched_ == &list && search_pause_.isValid() &&
                         search_pause_.elapsed() < QApplication::keyboardInputInterval();
    const bool blank_within = goes_on && typed == " ";
    if (typed.isEmpty() || !(typed.at(0).isLetterOrNumber() || blank_within) ||
        key.modifiers().testFlag(Qt::AltModifier))
        return std::nullopt;
    searched_ = &list;
    search_pause_.start();
    const int count = entries.rowCount();
    const auto find = [&](const QString &text, int from) {
        for (int i = 0; i < count; ++i) {
            const int row = (std::max(from, 0) + i) % count;
            const QString entry = ' ' + entries.index(row, 0).data().toString();
            if (entry.contains(' ' + text, Qt::CaseInsensitive))
                return row;
        }
        return -1;
    };
    search_ = goes_on ? search_ + typed : typed;
    const int row = find(search_, goes_on ? at : at + 1);
    return row < 0 && goes_on ? find(search_ = typed, at + 1) : row;
}

bool Binder::close_window() {
    program_.close(form_);
    return !form_.open;
}

QStringList Binder::mismatches() const {
    QStringList names = without_widget_;
    const auto shared = [this](const QString &name) {
        return std::any_of(shared_.begin(), shared_.end(),
                           [&](auto *control) { return name == control->name; });
    };
    const auto check = [&](const QObject *object) {
        const QString name = object->objectName();
        const bool within_a_widget =
            name.startsWith("qt_") || (object->parent() && object->parent()->objectName().startsWith("qt_"));
        if (!name.isEmpty() && !within_a_widget && !form_.find(name.toStdString()) && !shared(name))
            names << name;
    };
    constexpr const char *kinds[] = {"QAbstractButton", "QLabel",       "QLineEdit", "QComboBox",
                                     "QGroupBox",       "QProgressBar", "QMenu",     "QListWidget",
                                     "QPlainTextEdit",  "QTableView"};
    for (const QWidget *widget : window_.findChildren<QWidget *>())
        if (std::any_of(std::begin(kinds), std::end(kinds),
                        [&](auto kind) { return widget->inherits(kind); }))
            check(widget);
    for (const QAction *action : window_.findChildren<QAction *>())
        check(action);
    return names;
}

} // namespace telvox::desktop
