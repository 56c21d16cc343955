#pragma once

#include "telvox.hpp"

#include <QPointer>
#include <QStringList>
#include <QWidget>
#include <functional>
#include <vector>

class QAction;
class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QRadioButton;
class QStatusBar;

namespace telvox::desktop {

/// Ties a form to the window that shows it. A control and its widget carry the same name: what the user does
/// to the widget goes to the program as an event, and the control's values go to the widget.
class Binder final : public QObject {
  public:
    Binder(Form &form, QWidget &window, Telvox &program);

    /// Gives every widget its control's values. What has not changed is not touched, so a cursor, a
    /// selection, or a text that is being composed stays.
    void draw();

    /// Names of controls that have no widget of their kind, and of widgets that have no control.
    [[nodiscard]] QStringList mismatches() const;

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    template <class Kind, class Widget> bool bind_as(Control &control);
    void bind(Frame &control, QGroupBox &widget);
    void bind(Label &control, QLabel &widget);
    void bind(Button &control, QPushButton &widget);
    void bind(OptionButton &control, QRadioButton &widget);
    void bind(CheckBox &control, QCheckBox &widget);
    void bind(TextBox &control, QLineEdit &widget);
    void bind(ComboBox &control, QComboBox &widget);
    void bind(ProgressBar &control, QProgressBar &widget);
    void bind(StatusPanel &control, QStatusBar &widget);
    void bind(MenuEntry &control, QAction &action);
    QAction *action_of(const Control &control) const;
    void draw_entries(const ComboBox &control, QComboBox &widget);
    void draw_common(const Control &control, QWidget &widget);
    [[nodiscard]] bool usable(const QWidget *widget) const;
    bool close_window();

    Form &form_;
    QWidget &window_;
    Telvox &program_;
    std::vector<std::function<void()>> drawers_;
    QStringList without_widget_;
    bool drawing_ = false;
    /// Had the focus until its control was locked.
    QPointer<QWidget> locked_focus_;
};

} // namespace telvox::desktop
