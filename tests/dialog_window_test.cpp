// What the dialogs have in common, through their real widgets: how they close, and how they show and end a
// job that runs while they are open.

#include "rig/window_rig.hpp"

#include <QAction>
#include <QDialog>
#include <QLabel>
#include <QLayout>
#include <QPushButton>

namespace telvox::test {
namespace {

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
    find<QAction>("mnuStatus_abfragen").trigger();
    auto &dialog = windows.window(desk.frmGSM_Status);
    dialog.activateWindow(); // as a window manager does
    ASSERT_TRUE(QTest::qWaitFor([&] { return QApplication::activeWindow() == &dialog; }, 2000));
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
