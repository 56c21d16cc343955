#pragma once

#include "telvox.hpp"

#include <QElapsedTimer>
#include <QPointer>
#include <QStringList>
#include <QWidget>
#include <functional>
#include <optional>
#include <vector>

class QAbstractItemModel;
class QAction;
class QCheckBox;
class QComboBox;
class QGroupBox;
class QKeyEvent;
class QLabel;
class QLineEdit;
class QListWidget;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;
class QRadioButton;
class QStatusBar;
class QTableView;

namespace telvox::desktop {

[[nodiscard]] inline QString text_of(const std::string &utf8) { return QString::fromStdString(utf8); }

/// Changes a widget only if it shows something else.
template <class Widget, class Get, class Set, class Value>
void show(Widget &widget, Get get, Set set, const Value &value) {
    if ((widget.*get)() != value)
        (widget.*set)(value);
}

/// Says at a widget, for a moment, why it did not take something.
void show_hint(QWidget &widget, const std::string &text);

/// Ties a form to the window that shows it. A control and its widget carry the same name: what the user does
/// to the widget goes to the program as an event, and the control's values go to the widget.
class Binder final : public QObject {
  public:
    Binder(Form &form, QWidget &window, Telvox &program);

    /// Shows a control of another form in this window as well.
    void share(Control &control);

    /// Gives every widget its control's values. What has not changed is not touched, so a cursor, a
    /// selection, or a text that is being composed stays.
    void draw();

    /// Gives a widget the focus, once it is usable; the window itself has it until then.
    void focus(QWidget &widget);

    /// Names of controls that have no widget of their kind, and of widgets that have no control.
    [[nodiscard]] QStringList mismatches() const;

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    void bind_by_name(Control &control);
    bool bind_to_action(Control &control);
    bool bind_to_widget(Control &control);
    template <class Kind, class Widget> bool bind_as(Control &control);
    void bind(Frame &control, QGroupBox &widget);
    void bind(Frame &control, QWidget &widget); ///< one that only holds together what stands in it
    void bind(Label &control, QLabel &widget);
    void bind(Picture &control, QLabel &widget);
    void bind(Button &control, QPushButton &widget);
    void bind(OptionButton &control, QRadioButton &widget);
    void bind(CheckBox &control, QCheckBox &widget);
    void bind(TextBox &control, QLineEdit &widget);
    void bind(TextBox &control, QPlainTextEdit &widget);
    void bind(ComboBox &control, QComboBox &widget);
    void bind(ListBox &control, QListWidget &widget);
    void bind(Log &control, QPlainTextEdit &widget);
    void bind(RowTable &control, QTableView &widget);
    void bind(ProgressBar &control, QProgressBar &widget);
    void bind(StatusPanel &control, QStatusBar &widget);
    void bind(MenuEntry &control, QAction &action);
    QAction *action_of(const Control &control) const;
    static void draw_list(const ComboBox &control, QComboBox &widget);
    static void draw_list(const ListBox &control, QListWidget &widget);
    void draw_common(const Control &control, QWidget &widget);
    [[nodiscard]] bool usable(const QWidget *widget) const;
    bool key_pressed(QObject &watched, const QKeyEvent &key);
    /// Typing and pasting as the field takes it; what does not get in says why.
    void filter(TextField &control, QLineEdit &edit);
    /// Finds the entry of a drop-down list by the beginning of one of its words: "3" is "COM 3".
    bool search(QComboBox &list, const QKeyEvent &key);
    bool search(QListWidget &list, const QKeyEvent &key);
    /// The entry behind `at` that a typed key finds, -1 for none; nothing if the key types no search.
    std::optional<int> search(QWidget &list, const QAbstractItemModel &entries, int at, const QKeyEvent &key);
    /// The control that has the focus.
    [[nodiscard]] const Control *focused() const;
    bool close_window();

    Form &form_;
    QWidget &window_;
    Telvox &program_;
    std::vector<std::function<void()>> drawers_;
    std::vector<const Control *> shared_;
    QStringList without_widget_;
    bool drawing_ = false;
    const QListWidget *choosing_ = nullptr; ///< the user chooses in it; it is drawn when that is through
    /// Had the focus until its control was locked.
    QPointer<QWidget> locked_focus_;
    // The search by typing: in which list, for what, and when it was last typed at.
    QPointer<QWidget> searched_;
    QString search_;
    QElapsedTimer search_pause_;
};

} // namespace telvox::desktop
