#include "desktop/window_set.hpp"

#include "ui_frm_about.h"
#include "ui_frm_anschlussart.h"
#include "ui_frm_einstellungen.h"
#include "ui_frm_ethernet.h"
#include "ui_frm_gateway.h"
#include "ui_frm_gprs.h"
#include "ui_frm_gsm_status.h"
#include "ui_frm_ip_over_ethernet.h"
#include "ui_frm_ipt.h"
#include "ui_frm_modem.h"
#include "ui_frm_msn.h"
#include "ui_frm_pin.h"
#include "ui_frm_service_center.h"
#include "ui_frm_servicenummer.h"

#include <QApplication>
#include <QDialog>
#include <QGridLayout>
#include <QIcon>
#include <QLabel>
#include <QMainWindow>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>
#include <QSplitter>
#include <QStatusBar>
#include <algorithm>
#include <string_view>
#include <utility>

/// A static library's pictures are there only once they are asked for, outside of any namespace.
static void init_pictures() { Q_INIT_RESOURCE(bilder); }

namespace telvox::desktop {

namespace {

/// Makes a window as its design says.
template <class Design, class Window> QWidget *make(QWidget *parent) {
    auto *window = new Window(parent);
    Design().setupUi(window);
    return window;
}

/// A status bar has the running job's progress at its right, and the button that ends it, which a design
/// cannot place there. Their place stays free while no job runs, so that no window grows when one begins.
void add_progress(QStatusBar &bar) {
    const auto add = [&bar](QWidget *widget, const char *name, int width) {
        widget->setObjectName(name);
        widget->setMinimumWidth(width);
        QSizePolicy policy(QSizePolicy::Fixed, QSizePolicy::Fixed);
        policy.setRetainSizeWhenHidden(true);
        widget->setSizePolicy(policy);
        bar.addPermanentWidget(widget);
    };
    const auto width_of = [&bar](const char *text) { return bar.fontMetrics().horizontalAdvance(text); };
    auto *step = new QLabel(&bar);
    step->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    add(step, "lblSchritt", width_of("Schritt 00 von 00, noch 00 s"));
    auto *progress = new QProgressBar(&bar);
    progress->setTextVisible(false);
    progress->setMaximumWidth(width_of("0000000000"));
    add(progress, "pzbSchritt", 0);
    auto *cancel = new QPushButton(&bar);
    // A shortcut of the button itself would go with the next text that it gets.
    auto *escape = new QShortcut(Qt::Key_Escape, cancel, [cancel] { cancel->click(); });
    escape->setAutoRepeat(false);
    cancel->setFocusPolicy(Qt::NoFocus); // it comes and goes; the focus stays where the user left it
    add(cancel, "cbuAbbrechen", 0);
}

QWidget *make_main(QWidget *parent) {
    QWidget *window = make<Ui::frmModem, QMainWindow>(parent);
    add_progress(*static_cast<QMainWindow *>(window)->statusBar());
    return window;
}

/// A dialog over which a job can run. While it is open no other window takes clicks and keys, so it has a
/// status bar of its own.
template <class Design> QWidget *make_with_status(QWidget *parent) {
    QWidget *window = make<Design, QDialog>(parent);
    auto *bar = new QStatusBar(window);
    bar->setObjectName("StatusBar");
    bar->setSizeGripEnabled(false);
    add_progress(*bar);
    if (auto *grid = qobject_cast<QGridLayout *>(window->layout()))
        grid->addWidget(bar, grid->rowCount(), 0, 1, -1);
    else
        window->layout()->addWidget(bar);
    return window;
}

struct Maker {
    std::string_view form;
    QWidget *(*make)(QWidget *parent);
};
constexpr Maker makers[] = {
    {"frmModem", make_main},
    {"frmPin", make_with_status<Ui::frmPin>},
    {"frmMSN", make_with_status<Ui::frmMSN>},
    {"frmAnschlussart", make_with_status<Ui::frmAnschlussart>},
    {"frmGSM_Status", make_with_status<Ui::frmGSM_Status>},
    {"frmEthernet", make_with_status<Ui::frmEthernet>},
    {"frmGateway", make_with_status<Ui::frmGateway>},
    {"frmEinstellungen", make_with_status<Ui::frmEinstellungen>},
    {"frmIPoEthernet", make_with_status<Ui::frmIPoEthernet>},
    {"frmService_Center", make<Ui::frmService_Center, QDialog>},
    {"frmServicenummer", make<Ui::frmServicenummer, QDialog>},
    {"frmAbout", make<Ui::frmAbout, QDialog>},
    {"frmGPRS", make_with_status<Ui::frmGPRS>},
    {"frmIPT", make_with_status<Ui::frmIPT>},
};

/// The main window's form and the panes below it.
QSplitter *panes_of(const QWidget &window) { return window.findChild<QSplitter *>("splFenster"); }

/// Heights that form and panes would like to have; a pane that is not shown none.
QList<int> wished_heights(const QSplitter &panes) {
    QList<int> heights;
    for (int i = 0; i < panes.count(); ++i)
        heights << (panes.widget(i)->isHidden() ? 0 : panes.widget(i)->sizeHint().height());
    const auto *fields = panes.findChild<QScrollArea *>(); // asks for less than all of them need
    heights[0] += fields->widget()->sizeHint().height() - fields->sizeHint().height();
    return heights;
}

/// Height of what is shown, as far as it comes and goes: all of a dialog's fields; of the main window, whose
/// buttons must not jump away under the mouse, only the panes.
int content_height(QWidget &window) {
    if (const QSplitter *panes = panes_of(window)) {
        int height = 0;
        for (const int pane : wished_heights(*panes).mid(1))
            height += pane == 0 ? 0 : pane + panes->handleWidth();
        return height;
    }
    window.layout()->activate(); // or the window would not get below its old smallest size
    return window.layout()->sizeHint().height();
}

/// Gives the panes the height they wish and what is left over to the lowest one. What is missing they go
/// without, the lowest first, down to their least height; then the form scrolls.
void share_out(QSplitter &panes) {
    QList<int> heights = wished_heights(panes);
    const auto left = [&] {
        int room = panes.height() + panes.handleWidth(); // one less than there are parts
        for (const int height : heights)
            room -= height == 0 ? 0 : height + panes.handleWidth();
        return room;
    };
    for (int i = panes.count() - 1; i > 0 && left() < 0; --i)
        heights[i] =
            std::max(heights[i] + left(), std::min(heights[i], panes.widget(i)->minimumSizeHint().height()));
    const auto lowest =
        std::find_if(heights.rbegin(), heights.rend(), [](int height) { return height != 0; });
    (left() < 0 ? heights.first() : *lowest) += left();
    panes.setSizes(heights);
}

/// Gives the main window room for its form and panes, as far as the screen goes; there the fields scroll.
void fit_to_screen(QWidget &window) {
    constexpr QSize borders{16, 48};
    const QSize screen = window.screen()->availableSize() - borders;
    window.setAttribute(Qt::WA_DontShowOnScreen); // sizes are known once it has been laid out
    window.show();
    window.hide();
    window.setAttribute(Qt::WA_DontShowOnScreen, false);
    const QSplitter &panes = *panes_of(window);
    const auto &fields = *panes.findChild<QScrollArea *>();
    const int missing = fields.widget()->sizeHint().width() - fields.viewport()->width();
    QSize size(window.width() + missing,
               window.height() - panes.height() + wished_heights(panes).first() + content_height(window));
    size = size.expandedTo(window.minimumSizeHint());
    if (size.height() > screen.height())
        size.rwidth() += fields.verticalScrollBar()->sizeHint().width();
    window.resize(size.boundedTo(screen));
}

} // namespace

WindowSet::WindowSet(Telvox &program) : program_(program) {
    init_pictures();
    QIcon icon;
    for (const char *size : {"16", "32", "48", "128"})
        icon.addFile(QString(":/bilder/telvox-%1.png").arg(size));
    QApplication::setWindowIcon(icon);
    program_.desk.observers.add(*this);
    countdown_.setInterval(500);
    connect(&countdown_, &QTimer::timeout, this, [this] { program_.refresh(); });
}

WindowSet::~WindowSet() {
    program_.desk.observers.remove(*this);
    const auto main = made_.find(&program_.desk.frmModem);
    QWidget *window = main == made_.end() ? nullptr : main->second.window;
    made_.clear();
    delete window;
}

void WindowSet::draw() {
    for (Form *form : program_.desk.forms)
        show_or_hide(*form);
    if (program_.busy() != countdown_.isActive())
        program_.busy() ? countdown_.start() : countdown_.stop();
}

QWidget *WindowSet::front() const {
    QWidget *front = nullptr;
    for (Form *form : program_.desk.forms)
        if (const auto found = made_.find(form); found != made_.end() && found->second.window->isVisible())
            front = found->second.window;
    return front;
}

WindowSet::Made &WindowSet::made(Form &form) {
    if (const auto found = made_.find(&form); found != made_.end())
        return found->second;
    Form &main = program_.desk.frmModem;
    QWidget *parent = &form == &main ? nullptr : made(main).window;
    Made made;
    for (const Maker &maker : makers)
        if (maker.form == form.name)
            made.window = maker.make(parent);
    made.binder = new Binder(form, *made.window, program_);
    made.binder->setParent(made.window);
    if (parent && made.window->findChild<QStatusBar *>())
        for (Control *control : program_.desk.frmModem.status_controls())
            made.binder->share(*control);
    made.binder->draw();
    return made_[&form] = made;
}

void WindowSet::show_or_hide(Form &form) {
    const auto found = made_.find(&form);
    const bool visible = found != made_.end() && found->second.window->isVisible();
    if (!form.open) {
        if (!visible)
            return;
        found->second.window->hide();
        if (&form == &program_.desk.frmModem)
            ended();
        return;
    }
    QWidget &window = this->window(form);
    const int height = window.height();
    binder(form).draw();
    if (visible) {
        if (std::exchange(form.wants_front, false)) {
            window.raise();
            window.activateWindow();
        }
        return follow_content(made_[&form], height);
    }
    if (auto *dialog = qobject_cast<QDialog *>(&window)) {
        if (QWidget *focus = dialog->focusWidget())
            focus->clearFocus(); // each time it opens it begins at its first field
        dialog->open();
    } else {
        fit_to_screen(window);
        window.show();
        share_out(*panes_of(window));
    }
    made_[&form].wished = made_[&form].given = content_height(window);
}

void WindowSet::follow_content(Made &made, int height) {
    QWidget &window = *made.window;
    const int wished = content_height(window);
    const int change = wished - std::exchange(made.wished, wished);
    if (change == 0)
        return;
    if (!window.isMaximized() && !window.isFullScreen()) {
        const QRect screen = window.screen()->availableGeometry(), frame = window.frameGeometry();
        const int room = screen.height() - frame.height();
        const int given = std::clamp(change, -made.given, std::max(room, 0));
        made.given += given;
        window.resize(window.width(), height + given);
        if (const int below = frame.bottom() + given - screen.bottom(); given > 0 && below > 0)
            window.move(window.x(), std::max(window.y() - below, screen.top()));
    }
    if (QSplitter *panes = panes_of(window); panes && change > 0)
        share_out(*panes);
}

} // namespace telvox::desktop
