// The network dialogs through their real widgets: locked while an action runs, with a log to copy from.

#include "desktop/window_set.hpp"
#include "rig/rig.hpp"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <gmock/gmock.h>

namespace telvox::test {
namespace {

TEST(NetworkWindows, LockWhileAnActionRunsAndKeepTheLogForCopying) {
    Rig rig;
    Desk &desk = rig.program.desk;
    desktop::WindowSet windows(rig.program);
    windows.draw();
    rig.program.choose(desk.frmModem.optEthernet);
    rig.program.click(desk.frmModem.mnuGateway);
    QWidget &window = windows.window(desk.frmGateway);
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

TEST(NetworkWindows, TheModeShowsItsOwnFields) {
    Rig rig;
    Desk &desk = rig.program.desk;
    desktop::WindowSet windows(rig.program);
    windows.draw();
    rig.program.choose(desk.frmModem.optEthernet);
    rig.program.click(desk.frmModem.mnuIP_over_Ethernet);
    QWidget &window = windows.window(desk.frmIPoEthernet);
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
