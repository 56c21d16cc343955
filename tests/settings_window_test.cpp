// The dialogs of the serial settings and of the number lists, the about box and the help, through their real
// widgets.

#include "desktop/help_window.hpp"
#include "rig/window_rig.hpp"

#include <QListWidget>
#include <QPushButton>
#include <QScreen>
#include <QTextBrowser>
#include <gmock/gmock.h>

namespace telvox::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

class SettingsWindows : public WindowTest {
  protected:
    SettingsWindows() : WindowTest({SHARE, {SHARE}}) { rig.choose_cable_port(3); }
};

TEST_F(SettingsWindows, TheSettingsGrowByTheNewFormatAndLockWhileItIsSet) {
    QWidget &window = open(desk.frmModem.mnuEinstellungen, desk.frmEinstellungen);
    const int before = window.height();
    auto *box = window.findChild<QAbstractButton *>("cboSchnittstelle_aendern");
    box->click();
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.height() > before; }, 2000));
    EXPECT_LE(window.height(), 560);
    window.findChild<QPushButton *>("cmdUART_Einstellung_aendern")->click();
    ASSERT_TRUE(rig.program.busy());
    EXPECT_FALSE(window.findChild<QWidget *>("cobSchnittstelle_Baud")->isEnabled());
    window.close();
    EXPECT_TRUE(window.isVisible());
    ASSERT_TRUE(rig.run_until_idle(milliseconds{60'000}));
    box->click();
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.height() == before; }, 2000)) << window.height();
    window.close();
    EXPECT_FALSE(window.isVisible());
}

TEST_F(SettingsWindows, AListIsSearchedByTypingAndPassesItsHeadings) {
    rig.program.choose(desk.frmModem.optGSM);
    open(desk.frmModem.cbuSC_Uebersicht, desk.frmService_Center);
    auto &list = *windows.window(desk.frmService_Center).findChild<QListWidget *>("lstSCNummer");
    const auto label = [&] { return list.currentItem()->text().simplified().toStdString(); };
    const auto at = [&](int row) { return list.visualItemRect(list.item(row)).center(); };
    list.setFocus();
    QTest::keyClicks(&list, "o2");
    EXPECT_THAT(label(), HasSubstr("O2 +49"));
    QTest::keyClick(&list, Qt::Key_Home);
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, at(2));
    QTest::qWait(0);
    EXPECT_THAT(label(), HasSubstr("Vodafone D2")) << "below the heading";
    QTest::keyClick(&list, Qt::Key_Up);
    QTest::qWait(0);
    EXPECT_THAT(label(), HasSubstr("Telekom D1")) << "above it";
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, at(2));
    EXPECT_TRUE(desk.frmService_Center.open) << "a heading chooses nothing";
    QTest::qWait(0);
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, at(3));
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, at(3));
    EXPECT_FALSE(desk.frmService_Center.open);
    EXPECT_EQ(desk.frmModem.tboService_Center.text, "+491722270333");
}

TEST_F(SettingsWindows, F1AsksForTheFieldInEveryWindow) {
    for (Form *form : desk.forms) {
        form->load();
        windows.draw();
        QWidget &window = windows.window(*form);
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        rig.help_topics.clear();
        QWidget *focus = window.focusWidget() ? window.focusWidget() : &window;
        QTest::keyClick(focus, Qt::Key_F1);
        EXPECT_EQ(rig.help_topics.size(), 1u) << form->name;
        if (form != &desk.frmModem)
            rig.program.close(*form);
    }
    auto &field = *windows.window(desk.frmModem).findChild<QLineEdit *>("tboRufnummer_Empfaenger");
    field.setFocus();
    QTest::keyClick(&field, Qt::Key_F1);
    rig.help_failure = "fehlt";
    rig.program.click(desk.frmModem.mnuHilfe);
    EXPECT_THAT(std::vector(rig.help_topics.end() - 2, rig.help_topics.end()),
                ElementsAre("frmModem.tboRufnummer_Empfaenger", ""));
    ASSERT_EQ(rig.boxes.size(), 1u);
    EXPECT_EQ(rig.boxes[0].text, "fehlt");
}

TEST(HelpWindow, ShowsFindsAndGoesBack) {
    desktop::HelpWindow help({"/nonexistent", SHARE});
    auto &page = *help.findChild<QTextBrowser *>("tboSeite");
    auto &contents = *help.findChild<QListWidget *>("lstInhalt");
    EXPECT_EQ(help.show("frmPin.tboPin"), "");
    EXPECT_TRUE(QTest::qWaitForWindowActive(&help) && !help.isModal());
    EXPECT_FALSE(
        page.loadResource(QTextDocument::StyleSheetResource, QUrl("hilfe.css")).toByteArray().isEmpty());
    for (const char *outside :
         {"file:///etc/passwd", "../../../etc/passwd", "http://127.0.0.1/x", "/etc", ".."})
        EXPECT_TRUE(page.loadResource(QTextDocument::ImageResource, QUrl(outside)).toByteArray().isEmpty())
            << outside;
    EXPECT_LE(help.frameGeometry().width(), help.screen()->availableSize().width());
    EXPECT_EQ(page.source().fileName(), "pin.html");
    EXPECT_EQ(contents.currentItem()->text(), "PIN einstellen");
    EXPECT_FALSE(page.isBackwardAvailable());
    EXPECT_EQ(help.show(""), "");
    EXPECT_EQ(page.source().fileName(), "index.html");

    const int all = contents.count();
    QTest::keyClicks(help.findChild<QLineEdit *>("tboSuche"), "kommunikationsfehler 74");
    EXPECT_TRUE(contents.count() > 0 && contents.count() < all);
    QTest::keyClick(help.findChild<QLineEdit *>("tboSuche"), Qt::Key_Return);
    EXPECT_NE(page.source().fileName(), "index.html");
    QTest::keyClick(&help, Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(page.source().fileName(), "index.html");
    for (const char *elsewhere : {"https://example.com/", "../SCN.dat", "gibt-es-nicht.html"}) {
        emit page.anchorClicked(QUrl(elsewhere));
        EXPECT_EQ(page.source().fileName(), "index.html") << elsewhere;
    }
    QTest::keyClick(&help, Qt::Key_Escape);
    EXPECT_FALSE(help.isVisible());

    EXPECT_THAT(desktop::HelpWindow({"/nonexistent"}).show(""), HasSubstr("\"inhalt.txt\" fehlt"));
}

} // namespace
} // namespace telvox::test
