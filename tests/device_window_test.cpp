// The dialogs of the GPRS and the Ethernet variant through their real widgets: keys and focus, locked while
// something runs, and a log to copy from.

#include "rig/window_rig.hpp"

#include <QAbstractItemView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <gmock/gmock.h>

namespace telvox::test {
namespace {

class GprsWindows : public WindowTest {
  protected:
    GprsWindows() {
        rig.program.choose(desk.frmModem.optGPRS);
        rig.choose_cable_port(3);
    }
};

TEST_F(GprsWindows, AnEntryIsPickedAndAKeepAliveLeft) {
    QWidget &window = open(desk.frmModem.mnuGPRS_konfig, desk.frmGPRS);
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
    QWidget &window = open(desk.frmModem.mnuGPRS_konfig, desk.frmGPRS);
    rig.program.choose(desk.frmGPRS.optStandleitung_IP);
    QTest::keyClick(window.focusWidget(), Qt::Key_Return);
    ASSERT_EQ(rig.boxes.back().text, "Es wurde kein APN eingetragen.\rEinstellungen trotzdem übertragen?");
    rig.answer(true);
    ASSERT_EQ(rig.boxes.back().text,
              "Es wurde keine gültige IP-Adresse eingetragen.\rEinstellungen trotzdem übertragen?");
    rig.answer(false);
    EXPECT_EQ(window.focusWidget()->objectName(), "tboIP");
    EXPECT_FALSE(rig.program.busy());
}

TEST_F(GprsWindows, AWindowThatIsReadIntoStaysUntilItIsFilled) {
    QWidget &window = open(desk.frmModem.mnuIPT_konfig, desk.frmIPT);
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

TEST_F(WindowTest, ANetworkDialogLocksWhileItsActionRunsAndKeepsTheLogForCopying) {
    rig.program.choose(desk.frmModem.optEthernet);
    QWidget &window = open(desk.frmModem.mnuGateway, desk.frmGateway);
    auto &address = *window.findChild<QLineEdit *>("tboIP");
    auto &start = *window.findChild<QPushButton *>("cbuEthernet_GW_Konfigurieren");
    auto &log = *window.findChild<QPlainTextEdit *>("tboShell");
    EXPECT_GE(address.minimumWidth(), address.fontMetrics().horizontalAdvance("192.168.100.100"));
    QTest::keyClicks(&address, "a192.168.0.100;");
    QTest::keyClick(&address, Qt::Key_Return);
    ASSERT_TRUE(rig.program.busy());
    EXPECT_FALSE(start.isEnabled());
    EXPECT_TRUE(address.isEnabled()) << "the window stays usable";
    rig.turn_by(milliseconds{1000});
    EXPECT_EQ(window.findChild<QProgressBar *>("prbFortschritt")->value(), 2);
    rig.program.process_ended({.output = "64 bytes from 192.168.0.100: ttl=64\n"});
    rig.program.Winsock_DataArrival("<b>Username: ");
    EXPECT_EQ(log.toPlainText(), "64 bytes from 192.168.0.100: ttl=64\n<b>Username: ");
    EXPECT_TRUE(log.isReadOnly());
    log.selectAll();
    log.copy();
    EXPECT_EQ(QApplication::clipboard()->text(), log.toPlainText());
    rig.turn_by(milliseconds{10'000});
    EXPECT_TRUE(start.isEnabled());
    start.click();
    ASSERT_TRUE(rig.program.busy() && QTest::qWaitForWindowActive(&window));
    EXPECT_FALSE(window.findChild<QLabel *>("lblSchritt")->isVisible()) << "an action has no steps";
    EXPECT_FALSE(window.close()) << "it is the action that ends";
    EXPECT_FALSE(rig.program.busy());
    EXPECT_EQ(rig.boxes.back().text, "Der Vorgang wurde abgebrochen.");
    EXPECT_TRUE(window.isVisible() && window.close());
}

TEST_F(WindowTest, TheModeOfANetworkDialogShowsItsOwnFields) {
    rig.program.choose(desk.frmModem.optEthernet);
    QWidget &window = open(desk.frmModem.mnuIP_over_Ethernet, desk.frmIPoEthernet);
    for (const bool first : {false, true}) {
        if (first)
            window.findChild<QRadioButton *>("optIP_Erstkonfiguration")->click();
        EXPECT_EQ(window.findChild<QLineEdit *>("tboMAC_Adresse2")->isVisible(), first);
        EXPECT_EQ(window.findChild<QLineEdit *>("tboAlte_IP")->isVisible(), !first);
        EXPECT_EQ(window.findChild<QPushButton *>("cbuVerbindung_pruefen")->text(),
                  first ? "&Verbindung prüfen (neue IP)" : "&Verbindung prüfen (momentane IP)");
    }
    QTest::keyClicks(window.findChild<QLineEdit *>("tboMAC_Adresse2"), "0g0-1c:-04");
    EXPECT_EQ(desk.frmIPoEthernet.tboMAC_Adresse2.text, "00-1c-04");
    auto &prefix = *window.findChild<QLineEdit *>("tboMAC_Adresse1");
    EXPECT_TRUE(prefix.isReadOnly());
    EXPECT_EQ(prefix.text(), "00-05-B6-");
}

} // namespace
} // namespace telvox::test
