// The GPRS and IP-telemetry dialogs through their real widgets: keys, focus, short cuts and size.

#include "desktop/window_set.hpp"
#include "rig/rig.hpp"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <gmock/gmock.h>

namespace telvox::test {
namespace {

class GprsWindows : public testing::Test {
  protected:
    GprsWindows() {
        windows.draw();
        rig.program.choose(desk.frmModem.optGPRS);
        rig.choose_cable_port(3);
    }
    QWidget &open(MenuEntry &menu, Form &form) {
        rig.program.click(menu);
        EXPECT_TRUE(QTest::qWaitForWindowActive(&windows.window(form)));
        return windows.window(form);
    }
    QWidget &open_gprs() { return open(desk.frmModem.mnuGPRS_konfig, desk.frmGPRS); }
    QWidget &open_ipt() { return open(desk.frmModem.mnuIPT_konfig, desk.frmIPT); }
    static std::string focus_in(const QWidget &window) {
        return window.focusWidget() ? window.focusWidget()->objectName().toStdString() : "";
    }

    Rig rig;
    Desk &desk = rig.program.desk;
    desktop::WindowSet windows{rig.program};
};

TEST_F(GprsWindows, AnEntryIsPickedAndAKeepAliveLeft) {
    QWidget &window = open_gprs();
    desk.frmGPRS.cobAPN.items = {"Netz: web (user:me pw:you)"};
    windows.draw();
    auto &list = *window.findChild<QComboBox *>("cobAPN");
    list.setCurrentIndex(0);
    emit list.textActivated(list.currentText());
    EXPECT_EQ(list.lineEdit()->cursorPosition(), 0) << "its provider can be read";
    EXPECT_EQ(window.findChild<QLineEdit *>("tboPasswort")->text(), "you");
    EXPECT_TRUE(window.findChild<QLineEdit *>("tboPasswort")->isEnabled());
    EXPECT_THAT(rig.program.record().transcript(), testing::HasSubstr("Netz: web (user:me pw:***)"));
    QTest::keyClicks(window.findChild<QLineEdit *>("tboPasswort"), "x");
    list.showPopup();
    EXPECT_GT(list.view()->width(), list.view()->sizeHintForColumn(0)) << "the whole entry can be read";
    QTest::keyClick(list.view(), Qt::Key_Return);
    EXPECT_EQ(window.findChild<QLineEdit *>("tboPasswort")->text(), "you") << "picked anew";
    list.lineEdit()->selectAll();
    QTest::keyClicks(list.lineEdit(), "bare");
    EXPECT_EQ(desk.session.strGRPS_APN, "bare");

    auto &keep_alive = *window.findChild<QLineEdit *>("tboKeepAlive");
    keep_alive.setFocus();
    keep_alive.selectAll();
    QTest::keyClicks(&keep_alive, "9x99");
    EXPECT_EQ(keep_alive.text(), "999");
    QTest::keyClick(&keep_alive, Qt::Key_Tab);
    EXPECT_EQ(keep_alive.text(), "255");
}

TEST_F(GprsWindows, ADeniedQuestionEndsInItsField) {
    QWidget &window = open_gprs();
    rig.program.choose(desk.frmGPRS.optStandleitung_IP);
    QTest::keyClick(window.focusWidget(), Qt::Key_Return);
    ASSERT_EQ(rig.boxes.back().text, "Es wurde kein APN eingetragen.\rEinstellungen trotzdem übertragen?");
    rig.answer(true);
    ASSERT_EQ(rig.boxes.back().text,
              "Es wurde keine gültige IP-Adresse eingetragen.\rEinstellungen trotzdem übertragen?");
    rig.answer(false);
    EXPECT_EQ(focus_in(window), "tboIP");
    EXPECT_FALSE(rig.program.busy());
}

TEST_F(GprsWindows, AWindowThatIsReadIntoStaysUntilItIsFilled) {
    QWidget &window = open_ipt();
    const auto &login = *window.findChild<QLineEdit *>("tboBenutzer");
    EXPECT_FALSE(login.isEnabled());
    rig.program.set(desk.frmIPT.chkIPT_Betrieb, true);
    EXPECT_TRUE(login.isEnabled());
    window.findChild<QPushButton *>("cbuIPT_lesen")->click();
    ASSERT_TRUE(rig.program.busy());
    EXPECT_FALSE(login.isEnabled());
    window.close();
    EXPECT_TRUE(window.isVisible() && !rig.program.busy()) << "its end is that of the job";
    EXPECT_TRUE(login.isEnabled());
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
    EXPECT_FALSE(desk.frmIPT.open);
}

} // namespace
} // namespace telvox::test
