// What the windows have in common, through their real widgets: how they are worked by keys alone, how dialogs
// close, and how they show and end a job that runs while they are open.

#include "rig/window_rig.hpp"

#include <QAction>
#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QSplitter>
#include <QStatusBar>

#include <set>

namespace telvox::test {
namespace {

/// Whether the Tab key goes on from one place to the other as eyes do: down, or to the right.
bool goes_on(const QRect &from, const QRect &to) {
    constexpr int within_a_line = 8;
    return to.top() > from.bottom() - within_a_line || to.left() > from.right() - within_a_line;
}

class KeysTest : public WindowTest {
  protected:
    KeysTest() {
        rig.program.choose(desk.frmModem.optGPRS);
        choose_port("cobSchnittstelle", "COM 3");
        desk.frmModem.fraListe.visible = desk.frmModem.fraProtokoll.visible = true;
        desk.frmModem.tblListe.columns = {"Zeile"};
        desk.frmModem.tblListe.rows = 2;
        for (Form *form : desk.forms)
            for (Control *control : form->controls())
                if (auto *button = dynamic_cast<Button *>(control))
                    button->clicked = [this, button] { pressed.push_back(button); };
    }
    /// Opens a window with all that it can have switched on.
    QWidget &open(Form &form) {
        form.load();
        for (CheckBox *box : {&desk.frmIPT.chkIPT_Betrieb, &desk.frmEinstellungen.cboSchnittstelle_aendern})
            box->form == &form ? rig.program.set(*box, true) : void();
        for (OptionButton *option : {&desk.frmIPT.optScrambled, &desk.frmGPRS.optPPP_PAP})
            rig.program.choose(*option);
        windows.draw();
        QWidget &window = windows.window(form);
        EXPECT_TRUE(QTest::qWaitFor([&] { return QApplication::activeWindow() == &window; }, 2000));
        return window;
    }
    /// What a key presses, and nothing while it is held.
    std::vector<const Button *> press(QWidget &at, int key, const char *text) {
        pressed.clear();
        QTest::keyClick(&at, static_cast<Qt::Key>(key));
        if (auto *list = qobject_cast<QComboBox *>(&at))
            list->hidePopup();
        const auto by_key = pressed;
        for (int i = 0; i < 3; ++i)
            QTest::simulateEvent(&at, true, key, Qt::NoModifier, text, true);
        EXPECT_EQ(pressed, by_key) << at.objectName().toStdString();
        return by_key;
    }
    std::vector<const Button *> pressed;
};

TEST_F(KeysTest, ReachEveryControlInItsOrderAndPressTheOneWithTheFocus) {
    for (Form *form : desk.forms) {
        QWidget &window = open(*form);
        const auto *dialog = qobject_cast<QDialog *>(&window);
        if (!dialog)
            find<QWidget>("optGPRS").setFocus();
        QWidget *const first = window.focusWidget();
        ASSERT_TRUE(first && first != &window) << form->name;
        std::set<const Control *> reached;
        QWidget *at = first;
        do {
            const auto *control = form->find(at->objectName().toStdString());
            ASSERT_NE(control, nullptr) << form->name << " " << at->objectName().toStdString();
            reached.insert(control);
            const auto by_enter = press(*at, Qt::Key_Return, "\r"), by_space = press(*at, Qt::Key_Space, " ");
            const auto *button = dynamic_cast<const Button *>(control);
            const auto itself = button ? std::vector{button} : std::vector<const Button *>{};
            EXPECT_EQ(by_space, itself) << form->name << " " << control->name;
            EXPECT_TRUE(!button || by_enter == itself) << form->name << " " << control->name;
            EXPECT_LE(by_enter.size(), 1u) << form->name << " " << control->name;
            QKeyEvent late(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r", true);
            late.setTimestamp(60'000);
            pressed.clear();
            QApplication::sendEvent(at, &late);
            EXPECT_EQ(pressed, by_enter) << "the end of the key before went to another window";
            if (dynamic_cast<const CheckBox *>(control))
                press(*at, Qt::Key_Space, " "); // as it was
            const QRect place(at->mapTo(&window, QPoint()), at->size());
            QTest::keyClick(at, Qt::Key_Tab);
            at = window.focusWidget();
            const QRect next(at->mapTo(&window, QPoint()), at->size());
            EXPECT_TRUE(at == first || goes_on(place, next))
                << form->name << ": " << control->name << " to " << at->objectName().toStdString();
        } while (at != first && reached.size() < 100);
        for (const Control *control : form->controls()) {
            const auto *option = dynamic_cast<const OptionButton *>(control);
            const bool for_keys =
                dynamic_cast<const TextField *>(control) || (option && option->value) ||
                dynamic_cast<const Button *>(control) || dynamic_cast<const CheckBox *>(control) ||
                dynamic_cast<const ListBox *>(control) || dynamic_cast<const RowTable *>(control) ||
                dynamic_cast<const Log *>(control);
            EXPECT_TRUE(!for_keys || !control->usable() || reached.contains(control))
                << form->name << "." << control->name;
        }
        if (dialog)
            form->unload();
        windows.draw();
    }
}

/// The characters of the short cuts of what stands in a window, by the menu that they are in.
TEST_F(WindowTest, EveryButtonHasAShortCutOfItsOwnThatAnyKeyboardHas) {
    for (Form *form : desk.forms) {
        std::vector<const Control *> shown(form->controls().begin(), form->controls().end());
        if (form != &desk.frmModem && windows.window(*form).findChild<QStatusBar *>())
            shown.push_back(&desk.frmModem.cbuAbbrechen);
        form->load();
        windows.draw();
        std::set<std::pair<const Control *, char>> taken;
        for (const Control *control : shown) {
            const std::string &caption = control->caption;
            const auto at = caption.find('&');
            const std::string where = std::string(form->name) + "." + control->name + " " + caption;
            EXPECT_TRUE(at != std::string::npos || !dynamic_cast<const Button *>(control)) << where;
            if (at == std::string::npos)
                continue;
            const char key = static_cast<char>(std::tolower(static_cast<unsigned char>(caption[at + 1])));
            EXPECT_TRUE((key >= 'a' && key <= 'z') || (key >= '0' && key <= '9')) << where;
            const Control *menu = dynamic_cast<const MenuEntry *>(control) ? control->within : nullptr;
            EXPECT_TRUE(taken.emplace(menu, key).second) << where;
        }
        std::set<QString> groups;
        for (const auto *group : windows.window(*form).findChildren<QGroupBox *>())
            EXPECT_TRUE(groups.insert(group->accessibleName() + group->title()).second) << form->name;
        if (form != &desk.frmModem)
            form->unload();
    }
}

TEST(Screens, EveryWindowFitsASmallOneAndItsButtonsAreSeen) {
    for (QScreen *screen : QGuiApplication::screens().mid(1)) {
        Rig rig;
        Desk &desk = rig.program.desk;
        rig.choose_cable_port(3);
        desktop::WindowSet windows(rig.program);
        const QSize room = screen->availableSize();
        for (Form *form : desk.forms) {
            QWidget &window = windows.window(*form);
            window.setScreen(screen);
            window.move(screen->availableGeometry().topLeft());
            form->load();
            windows.draw();
            desk.frmModem.fraListe.visible = desk.frmModem.fraProtokoll.visible = true;
            rig.program.set(desk.frmEinstellungen.cboSchnittstelle_aendern, true);
            windows.draw();
            QTest::qWait(0);
            const std::string where = std::string(form->name) + " " + std::to_string(room.width());
            const QSize taken = window.frameGeometry().size();
            EXPECT_EQ(taken.boundedTo(room), taken) << where;
            for (const auto *button : window.findChildren<QPushButton *>()) {
                const QRect place(button->mapTo(&window, QPoint()), button->size());
                bool scrolls = false;
                for (const QWidget *in = button->parentWidget(); in; in = in->parentWidget())
                    scrolls |= qobject_cast<const QScrollArea *>(in) != nullptr;
                EXPECT_TRUE(scrolls || !button->isVisible() || window.rect().contains(place))
                    << where << " " << button->objectName().toStdString();
            }
            if (form != &desk.frmModem)
                form->unload();
            windows.draw();
        }
        const bool beside =
            windows.window(desk.frmModem).findChild<QSplitter *>("splFenster")->orientation() ==
            Qt::Horizontal;
        EXPECT_EQ(beside, room.width() >= 1024) << "where there is the width for it";
    }
}

TEST_F(WindowTest, DialogsCloseByTheirCancelButtonTheTitleBarAndEscape) {
    click("optISDN");
    auto &dialog = windows.window(desk.frmMSN);
    const auto open = [&] { find<QAction>("mnuMSN_festlegen").trigger(); };
    const std::function<void()> ways[] = {
        [&] { click("cbuMSN_Abbruch"); }, [&] { dialog.close(); },
        [&] { QTest::keyClick(&find<QLineEdit>("tboMSN"), Qt::Key_Escape); }};
    for (const auto &close : ways) {
        open();
        ASSERT_TRUE(dialog.isVisible());
        EXPECT_TRUE(dialog.isModal());
        EXPECT_EQ(text("tboMSN"), "");
        type("tboMSN", "12a*");
        EXPECT_EQ(text("tboMSN"), "12*");
        close();
        EXPECT_FALSE(dialog.isVisible());
        EXPECT_FALSE(desk.frmMSN.open);
    }
    // A window manager gives the keys back to the window that one belongs to.
    for (const bool over_another : {true, false}) {
        desk.frmVerlauf.open = over_another;
        windows.draw();
        desk.frmNachweis.open = true;
        windows.draw();
        EXPECT_EQ(windows.window(desk.frmNachweis).parentWidget(),
                  over_another ? &windows.window(desk.frmVerlauf) : &main_window());
        desk.frmNachweis.open = false;
    }
}

TEST_F(WindowTest, EnterInADialogPressesItsButton) {
    click("optISDN");
    choose_port("cobSchnittstelle", "COM 3");
    find<QAction>("mnuMSN_festlegen").trigger();
    type("tboMSN", "4711");
    QTest::keyClick(&find<QLineEdit>("tboMSN"), Qt::Key_Return);
    EXPECT_TRUE(rig.program.busy());
    EXPECT_EQ(desk.job_values.strMSN, "4711");
    EXPECT_FALSE(windows.window(desk.frmMSN).isVisible());
    ASSERT_TRUE(QTest::qWaitForWindowActive(&main_window()));
    QTest::keyClick(&main_window(), Qt::Key_Escape);
    EXPECT_FALSE(rig.program.busy());
}

TEST_F(WindowTest, AQueryKeepsItsDialogOpenWhereItCanBeEnded) {
    click("optGSM");
    choose_port("cobSchnittstelle", "COM 3");
    QWidget &dialog = open(desk.frmModem.mnuStatus_abfragen, desk.frmGSM_Status);
    auto &end = *dialog.findChild<QPushButton *>("cbuAbbrechen");
    for (const bool by_key : {false, true}) {
        click("cbuSignalstaerke");
        ASSERT_TRUE(rig.program.busy());
        EXPECT_FALSE(find<QPushButton>("cbuSchließen").isEnabled());
        EXPECT_FALSE(dialog.close());
        EXPECT_EQ(windows.front(), &dialog) << "boxes stand before it";
        rig.turn_by(milliseconds(1000));
        rig.program.refresh();
        EXPECT_EQ(dialog.findChild<QLabel *>("lblSchritt")->text(), "Schritt 1 von 2, noch 6 s");
        by_key ? QTest::keyClick(&dialog, Qt::Key_Escape) : end.click();
        EXPECT_FALSE(rig.program.busy() || end.isVisible());
        EXPECT_EQ(rig.boxes.back().text, "Der Vorgang wurde abgebrochen.");
        EXPECT_TRUE(dialog.isVisible());
    }
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(windows.front(), &main_window());
}

TEST_F(WindowTest, NoDialogMovesWhenAJobBeginsAndTheyFitASmallScreen) {
    choose_port("cobSchnittstelle", "COM 3");
    for (Form *form : desk.forms) {
        QWidget &window = windows.window(*form);
        form->load();
        windows.draw();
        const auto places = [&] {
            std::vector<QRect> all{window.geometry()};
            for (const auto *widget : window.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly))
                all.push_back(widget->geometry());
            return all;
        };
        const auto before = places();
        rig.program.click(desk.frmModem.cbuErkennen);
        rig.turn_by(milliseconds(1000));
        desk.frmModem.lblSchritt.caption = "Schritt 88 von 88, noch 88 s";
        windows.draw();
        window.layout()->activate();
        EXPECT_EQ(places(), before) << form->name;
        EXPECT_TRUE(window.width() <= 1024 && window.height() <= 560) << form->name;
        rig.program.cancel();
        if (form != &desk.frmModem)
            form->unload();
    }
}

} // namespace
} // namespace telvox::test
