// The list of devices through its real widgets.

#include "core/files/files.hpp"
#include "desktop/window_set.hpp"
#include "operation/list_pane.hpp"
#include "rig/rig.hpp"

#include <QLineEdit>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <fstream>
#include <gtest/gtest.h>

namespace telvox::test {
namespace {

TEST(ListWindow, RowsAreChosenAndStartedByKeys) {
    QTemporaryDir folder;
    Rig rig{{folder.path().toStdString(), {}}};
    operation::Profiles profiles(rig.program, rig.scan);
    operation::ListPane pane(rig.program, rig.scan, profiles);
    desktop::WindowSet windows{rig.program};
    windows.draw();
    QWidget &window = windows.window(rig.program.desk.frmModem);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    auto &table = *window.findChild<QTableView *>("tblListe");
    EXPECT_FALSE(table.isVisible());

    const std::string file = folder.path().toStdString() + "/pumpen.csv";
    std::ofstream rows(file);
    rows << "name;typ;schnittstelle;empfaenger;passwort\n";
    for (int i = 1; i <= 10'000; ++i)
        rows << "Gerät " << i << ";isdn;3;" << i << ";geheim\n";
    rows.close();
    pane.open(file);
    EXPECT_TRUE(table.isVisible());
    EXPECT_TRUE(table.hasFocus());
    ASSERT_EQ(table.model()->rowCount(), 10'000);
    const auto cell = [&](int row, int column) {
        return table.model()->index(row, column).data().toString();
    };
    EXPECT_EQ(cell(0, 1), "Gerät 1");
    EXPECT_EQ(cell(0, 10), "***");

    // Getting the focus chooses nothing.
    rig.program.desk.frmModem.tblListe.selected = RowTable::none;
    windows.draw();
    window.setFocus();
    table.setFocus();
    EXPECT_EQ(rig.program.desk.frmModem.tblListe.selected, RowTable::none);
    rig.program.choose(rig.program.desk.frmModem.tblListe, 0);

    QTest::keyClick(&table, Qt::Key_Down);
    EXPECT_EQ(window.findChild<QLineEdit *>("tboRufnummer_Empfaenger")->text(), "2");
    table.selectRow(9'999);
    EXPECT_EQ(window.findChild<QLineEdit *>("tboRufnummer_Empfaenger")->text(), "10000");
    EXPECT_FALSE(table.visualRect(table.model()->index(9'999, 0)).isEmpty());

    QTest::keyClick(&table, Qt::Key_Return);
    ASSERT_EQ(rig.boxes.size(), 1U) << "the alarm text is missing";
    rig.program.enter(rig.program.desk.frmModem.tboAlarmmeldung, "Pumpe");
    table.setFocus();
    QTest::keyClick(&table, Qt::Key_Return);
    EXPECT_TRUE(rig.program.busy());
    EXPECT_EQ(cell(9'999, 2), "läuft");
    EXPECT_FALSE(table.isEnabled());
    EXPECT_TRUE(rig.run_until_idle(milliseconds{60'000}));
    EXPECT_EQ(cell(9'999, 2), "✗ fehlgeschlagen");
    EXPECT_EQ(table.currentIndex().row(), 9'999);
    EXPECT_TRUE(table.hasFocus()) << "Enter repeats it";
}

} // namespace
} // namespace telvox::test
