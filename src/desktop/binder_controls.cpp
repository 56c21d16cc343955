#include "desktop/binder.hpp"
#include "desktop/field_filter.hpp"
#include "desktop/log_view.hpp"
#include "desktop/table_view.hpp"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QFontDatabase>
#include <QGroupBox>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QScrollBar>
#include <QStatusBar>
#include <QStylePainter>
#include <QStyledItemDelegate>
#include <QToolTip>

/// How each kind of control and its widget are tied.
namespace telvox::desktop {

namespace {

QStringList texts_of(const std::vector<std::string> &utf8) {
    QStringList texts;
    for (const std::string &text : utf8)
        texts << text_of(text);
    return texts;
}

/// Wide enough for what is usual, where the screen is small; elsewhere the layout gives more.
void give_width(QWidget &widget, int characters) {
    widget.setMinimumWidth(characters * widget.fontMetrics().horizontalAdvance('0'));
}

int selected_row(const QListWidget &list) {
    const auto selected = list.selectionModel()->selectedRows();
    return selected.isEmpty() ? -1 : selected.front().row();
}

/// Shows beside an entry of an open list what is known of it.
class EntryDelegate final : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

  protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        if (const QString known = index.data(Qt::ToolTipRole).toString(); !known.isEmpty())
            option->text += "    " + QString(known).replace('\n', ", ");
    }
};

/// Of the option buttons that stand together.
const OptionButton *chosen_or_first(const OptionButton &one) {
    const OptionButton *first = nullptr;
    for (const Control *control : one.form->controls())
        if (const auto *option = dynamic_cast<const OptionButton *>(control);
            option && option->within == one.within && (!first || option->value))
            first = option;
    return first;
}

/// Takes the width that there is: a longer text ends in "…", so that no window grows with it.
class ElidedLabel final : public QLabel {
  public:
    explicit ElidedLabel(QWidget *parent) : QLabel(parent) {
        setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        give_width(*this, 8);
    }

  protected:
    void paintEvent(QPaintEvent *) override {
        QStylePainter painter(this);
        painter.drawItemText(rect(), static_cast<int>(alignment()), palette(), isEnabled(),
                             fontMetrics().elidedText(text(), Qt::ElideRight, width()), foregroundRole());
    }
};

} // namespace

void Binder::bind(Frame &control, QGroupBox &widget) {
    drawers_.emplace_back(
        [&] { show(widget, &QGroupBox::title, &QGroupBox::setTitle, text_of(control.caption)); });
}

void Binder::bind(Frame &, QWidget &) {}

void Binder::bind(Label &control, QLabel &widget) {
    widget.setTextFormat(Qt::PlainText);
    drawers_.emplace_back([&] { show(widget, &QLabel::text, &QLabel::setText, text_of(control.caption)); });
}

void Binder::bind(Picture &control, QLabel &widget) {
    drawers_.emplace_back([&, shown = std::string()]() mutable {
        if (shown != control.file)
            widget.setPixmap(QPixmap(text_of(shown = control.file)));
    });
}

void Binder::bind(Button &control, QPushButton &widget) {
    widget.setAutoDefault(true); // whichever has the focus is the one that Enter presses
    connect(&widget, &QPushButton::clicked, this, [&] { program_.click(control); });
    drawers_.emplace_back(
        [&] { show(widget, &QPushButton::text, &QPushButton::setText, text_of(control.caption)); });
}

void Binder::bind(OptionButton &control, QRadioButton &widget) {
    connect(&widget, &QRadioButton::clicked, this, [&] { program_.choose(control); });
    drawers_.emplace_back([&] {
        show(widget, &QRadioButton::text, &QRadioButton::setText, text_of(control.caption));
        // Tab comes to the chosen one of a group, or if none is chosen to the first; the focus goes along
        // where the program chooses another.
        const OptionButton *in = chosen_or_first(control);
        widget.setFocusPolicy(in == &control ? Qt::StrongFocus : Qt::ClickFocus);
        if (in != &control && window_.focusWidget() == &widget)
            window_.findChild<QWidget *>(QString::fromUtf8(in->name))->setFocus();
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

void Binder::filter(TextField &control, QLineEdit &edit) {
    edit.setValidator(new FieldFilter(control, edit));
    connect(&edit, &QLineEdit::inputRejected, this, [&] {
        const bool full = control.max_length != 0 && control.counted(control.text) >= control.max_length;
        show_hint(edit, control.refusal(full ? control.text : ""));
    });
    connect(&edit, &QLineEdit::textEdited, this, [] { QToolTip::hideText(); });
}

void Binder::bind(TextBox &control, QLineEdit &widget) {
    const int usual = control.read_only ? 30 : control.accepts == digits_dot ? 16 : 11;
    const int most = static_cast<int>(control.max_length);
    give_width(widget, most != 0 && most < usual - 2 ? most + 2 : usual);
    widget.setReadOnly(control.read_only);
    if (!control.read_only)
        filter(control, widget);
    connect(&widget, &QLineEdit::textEdited, this,
            [&](const QString &text) { program_.enter(control, text.toStdString()); });
    drawers_.emplace_back(
        [&] { show(widget, &QLineEdit::text, &QLineEdit::setText, text_of(control.text)); });
}

void Binder::bind(TextBox &control, QPlainTextEdit &widget) {
    widget.setReadOnly(true);
    widget.setTabChangesFocus(true);
    widget.viewport()->setBackgroundRole(QPalette::Window);
    drawers_.emplace_back([&] {
        const QString text = text_of(control.text);
        const QString shown = widget.toPlainText();
        if (text == shown)
            return;
        // Who reads further up is left there; who follows the end goes on following it.
        QScrollBar &bar = *widget.verticalScrollBar();
        const int reads_at = bar.value();
        const bool follows = reads_at == bar.maximum();
        if (!shown.isEmpty() && text.startsWith(shown)) {
            QTextCursor end(widget.document());
            end.movePosition(QTextCursor::End);
            end.insertText(text.mid(shown.size()));
        } else {
            widget.setPlainText(text);
        }
        bar.setValue(follows ? bar.maximum() : reads_at);
    });
}

void Binder::bind(ComboBox &control, QComboBox &widget) {
    connect(&widget, &QComboBox::textActivated, this, [&](const QString &entry) {
        program_.select(control, entry.toStdString());
        if (QLineEdit *edit = widget.lineEdit())
            edit->setCursorPosition(0); // an entry is recognised by its beginning
    });
    widget.view()->installEventFilter(this);
    widget.setItemDelegate(new EntryDelegate(&widget));
    if (control.editable) {
        widget.setEditable(true);
        widget.setInsertPolicy(QComboBox::NoInsert);
        widget.setCompleter(nullptr); // it would add what nobody typed
        // Leaving it, or Enter, would "pick" what was typed once more.
        for (const auto done : {&QLineEdit::returnPressed, &QLineEdit::editingFinished})
            disconnect(widget.lineEdit(), done, &widget, nullptr);
        filter(control, *widget.lineEdit());
        give_width(widget, 20);
        connect(widget.lineEdit(), &QLineEdit::textEdited, this,
                [&](const QString &text) { program_.select(control, text.toStdString()); });
    }
    drawers_.emplace_back([&] { draw_list(control, widget); });
}

void Binder::draw_list(const ComboBox &control, QComboBox &widget) {
    const QStringList entries = texts_of(control.items);
    QStringList tool_tips = texts_of(control.item_tool_tips);
    tool_tips.resize(entries.size());
    QStringList shown, tips_shown;
    for (int i = 0; i < widget.count(); ++i) {
        shown << widget.itemText(i);
        tips_shown << widget.itemData(i, Qt::ToolTipRole).toString();
    }
    if (entries != shown || tool_tips != tips_shown) {
        widget.clear();
        widget.addItems(entries);
        for (int i = 0; i < widget.count(); ++i)
            widget.setItemData(i, tool_tips[i], Qt::ToolTipRole);
        QAbstractItemView &view = *widget.view(); // opens as wide as its entries, as far as the screen goes
        view.setMinimumWidth(
            std::min(view.sizeHintForColumn(0) + view.verticalScrollBar()->sizeHint().width(),
                     widget.screen()->availableSize().width()));
    }
    const QString text = text_of(control.text);
    const int chosen = static_cast<int>(entries.indexOf(text));
    const QLineEdit *edit = widget.lineEdit();
    const int cursor = edit && edit->text() == text ? edit->cursorPosition() : -1;
    if (!edit || chosen >= 0)
        show(widget, &QComboBox::currentIndex, &QComboBox::setCurrentIndex, chosen);
    if (edit && edit->text() != text)
        widget.setEditText(text);
    if (cursor >= 0)
        widget.lineEdit()->setCursorPosition(cursor);
    QStringList tips;
    if (chosen >= 0 && !tool_tips[chosen].isEmpty())
        tips << tool_tips[chosen];
    if (!control.tool_tip.empty())
        tips << text_of(control.tool_tip);
    show(widget, &QWidget::toolTip, &QWidget::setToolTip, tips.join('\n'));
}

void Binder::bind(ListBox &control, QListWidget &widget) {
    widget.setSelectionMode(QAbstractItemView::SingleSelection);
    // The entries stand in columns, padded with blanks.
    widget.setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    connect(&widget, &QListWidget::itemSelectionChanged, this, [&] {
        const int row = selected_row(widget);
        if (drawing_ || row < 0 || row == control.selected)
            return;
        const bool clicked = QGuiApplication::mouseButtons() != Qt::NoButton;
        choosing_ = &widget;
        clicked ? program_.click(control, row) : program_.select(control, row);
        choosing_ = nullptr;
    });
    // Once the widget is through with its key or click: the form may have chosen another entry, or none.
    const auto draw_it = [this, &control, &widget] {
        drawing_ = true;
        draw_list(control, widget);
        drawing_ = false;
    };
    connect(&widget, &QListWidget::itemSelectionChanged, this, draw_it, Qt::QueuedConnection);
    // Where the form has chosen another entry, this one cannot be chosen.
    connect(&widget, &QListWidget::itemDoubleClicked, this, [&](const QListWidgetItem *item) {
        if (widget.row(item) == control.selected)
            program_.double_click(control);
    });
    drawers_.emplace_back([this, &control, &widget] {
        if (choosing_ != &widget)
            draw_list(control, widget);
    });
}

void Binder::draw_list(const ListBox &control, QListWidget &widget) {
    const QStringList entries = texts_of(control.items);
    QStringList shown;
    for (int i = 0; i < widget.count(); ++i)
        shown << widget.item(i)->text();
    if (entries != shown) {
        widget.clear();
        widget.addItems(entries);
    }
    // The current row is where the next key goes on from.
    if (control.selected < 0 && selected_row(widget) >= 0)
        widget.clearSelection();
    else if (control.selected >= 0 &&
             (control.selected != selected_row(widget) || control.selected != widget.currentRow()))
        widget.setCurrentRow(control.selected);
}

void Binder::bind(Log &control, QPlainTextEdit &widget) {
    drawers_.emplace_back([view = new LogView(control, widget)] { view->draw(); });
}

void Binder::bind(RowTable &control, QTableView &widget) {
    drawers_.emplace_back([view = new TableView(control, widget, program_)] { view->draw(); });
}

void Binder::bind(ProgressBar &control, QProgressBar &widget) {
    drawers_.emplace_back([&] {
        show(widget, &QProgressBar::maximum, &QProgressBar::setMaximum, control.maximum);
        show(widget, &QProgressBar::value, &QProgressBar::setValue, control.value);
    });
}

void Binder::bind(StatusPanel &control, QStatusBar &widget) {
    auto *panel = new ElidedLabel(&widget);
    widget.addWidget(panel, 1);
    drawers_.emplace_back([&control, panel] {
        show(*panel, &QLabel::text, &QLabel::setText, text_of(control.text));
        show(*panel, &QLabel::toolTip, &QLabel::setToolTip, text_of(control.text));
        show(*panel, &QLabel::accessibleName, &QLabel::setAccessibleName, text_of(control.text));
    });
}

void Binder::bind(MenuEntry &control, QAction &action) {
    action.setShortcut(QKeySequence(QString::fromLatin1(control.keys), QKeySequence::PortableText));
    connect(&action, &QAction::triggered, this, [&] { program_.click(control); });
    drawers_.emplace_back([&] {
        show(action, &QAction::text, &QAction::setText, text_of(control.caption));
        action.setEnabled(control.enabled);
        action.setVisible(control.visible);
    });
    if (const auto *tick = dynamic_cast<const TickEntry *>(&control)) {
        action.setCheckable(true);
        drawers_.emplace_back(
            [&action, tick] { show(action, &QAction::isChecked, &QAction::setChecked, tick->value); });
    }
}

} // namespace telvox::desktop
