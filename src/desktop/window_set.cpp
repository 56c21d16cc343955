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
#include "ui_frm_nachweis.h"
#include "ui_frm_pin.h"
#include "ui_frm_service_center.h"
#include "ui_frm_servicenummer.h"
#include "ui_frm_sicherungen.h"
#include "ui_frm_suche.h"
#include "ui_frm_vergleich.h"
#include "ui_frm_verlauf.h"

#include <QApplication>
#include <QDialog>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QProgressBar>
#include <QPushButton>
#include <QShortcut>
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
/// cannot place there. No window is narrower than that, so none grows when a job begins; while none runs the
/// status text has their place.
void add_progress(QStatusBar &bar) {
    const auto add = [&bar](QWidget *widget, const char *name, int width) {
        widget->setObjectName(name);
        widget->setMinimumWidth(width);
        widget->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
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
    new QShortcut(Qt::Key_Escape, cancel, [cancel] { cancel->click(); });
    cancel->setFocusPolicy(Qt::NoFocus); // it comes and goes; the focus stays where the user left it
    cancel->setText("Abbrechen");
    add(cancel, "cbuAbbrechen", 0);
    bar.setMinimumWidth(step->minimumWidth() + progress->maximumWidth() + cancel->sizeHint().width() +
                        width_of("Verbindungsprüfung"));
}

QWidget *make_main(QWidget *parent) {
    QWidget *window = make<Ui::frmModem, QMainWindow>(parent);
    add_progress(*static_cast<QMainWindow *>(window)->statusBar());
    return window;
}

template <class Design> QWidget *make_dialog(QWidget *parent) {
    QWidget *window = make<Design, QDialog>(parent);
    let_fields_scroll(*static_cast<QDialog *>(window));
    return window;
}

/// A dialog over which a job can run. While it is open no other window takes clicks and keys, so it has a
/// status bar of its own.
template <class Design> QWidget *make_with_status(QWidget *parent) {
    QWidget *window = make_dialog<Design>(parent);
    auto *bar = new QStatusBar(window);
    bar->setObjectName("StatusBar");
    bar->setSizeGripEnabled(false);
    add_progress(*bar);
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
    {"frmService_Center", make_dialog<Ui::frmService_Center>},
    {"frmServicenummer", make_dialog<Ui::frmServicenummer>},
    {"frmVergleich", make_dialog<Ui::frmVergleich>},
    {"frmSicherungen", make_dialog<Ui::frmSicherungen>},
    {"frmVerlauf", make<Ui::frmVerlauf, QDialog>},
    {"frmNachweis", make_dialog<Ui::frmNachweis>},
    {"frmAbout", make_dialog<Ui::frmAbout>},
    {"frmSuche", make_with_status<Ui::frmSuche>},
    {"frmGPRS", make_with_status<Ui::frmGPRS>},
    {"frmIPT", make_with_status<Ui::frmIPT>},
};

/// Each time a window opens it begins at the first thing that can be filled in or pressed, in the order of
/// the Tab key; where a running job has locked that, as soon as it is over.
void begin_at_first_field(QWidget &window, Binder &binder, bool may_be_locked) {
    for (QWidget *next = window.nextInFocusChain(); next != &window; next = next->nextInFocusChain()) {
        const auto *edit = qobject_cast<QLineEdit *>(next);
        if ((next->focusPolicy() & Qt::TabFocus) != 0 && (may_be_locked || next->isEnabledTo(&window)) &&
            next->isVisibleTo(&window) && !(edit && edit->isReadOnly()))
            return binder.focus(*next);
    }
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
    const QSize before = window.size();
    const bool has_focus_to_give = form.wants_focus != nullptr;
    binder(form).draw();
    if (visible) {
        if (std::exchange(form.wants_front, false)) {
            window.raise();
            window.activateWindow();
        }
        return made_[&form].room.follow(window, before);
    }
    if (QWidget *over = front(); over != window.parentWidget())
        window.setParent(over, window.windowFlags()); // when it closes, the keys go back there
    made_[&form].room.fit(window);
    if (!has_focus_to_give)
        begin_at_first_field(window, binder(form), program_.busy());
    if (auto *dialog = qobject_cast<QDialog *>(&window))
        return dialog->open();
    window.show();
    WindowRoom::share_out(window);
    WindowRoom::restore(window, as_left);
}

std::string WindowSet::geometry() const {
    const auto main = made_.find(&program_.desk.frmModem);
    return main == made_.end() ? "" : WindowRoom::geometry(*main->second.window);
}

} // namespace telvox::desktop
