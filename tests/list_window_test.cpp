// The list of devices through its real widgets.

#include "core/files/files.hpp"
#include "core/records/service_record.hpp"
#include "desktop/record_file.hpp"
#include "desktop/window_set.hpp"
#include "operation/list_pane.hpp"
#include "rig/rig.hpp"

#include <QLineEdit>
#include <QProcess>
#include <QRegularExpression>
#include <QScreen>
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

    std::ofstream(file + "2.csv") << "typ;schnittstelle;auftrag;geraet-pruefen\ngprs;3;gprs-lesen;aus\n";
    pane.open(file + "2.csv");
    QTest::keyClick(&table, Qt::Key_Return);
    QWidget &dialog = windows.window(rig.program.desk.frmGPRS);
    ASSERT_TRUE(dialog.isVisible());
    QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
    EXPECT_TRUE(rig.program.busy()) << "one Enter too many meets no button of the dialog";
    EXPECT_TRUE(rig.run_until_idle(milliseconds{60'000}));
    EXPECT_EQ(dialog.focusWidget()->objectName(), "cobAPN");
}

TEST(MainWindow, IsAsLargeAsItWasLeftButNeverLargerThanTheScreen) {
    const auto shown = [](const std::string &as_left, bool protocol) {
        Rig rig;
        rig.program.desk.frmModem.fraProtokoll.visible = protocol;
        desktop::WindowSet windows{rig.program};
        windows.as_left = as_left;
        windows.draw();
        return windows.geometry();
    };
    const std::string usual = shown("", true);
    EXPECT_EQ(shown(usual, true), usual);
    for (const char *const nonsense : {"x", "700", "-1 -1 0", "700 600"})
        EXPECT_EQ(shown(nonsense, false).substr(0, 4), shown("", false).substr(0, 4)) << nonsense;
    std::istringstream large(shown("99999 99999 0", false));
    int width = 0, height = 0;
    large >> width >> height;
    const QSize screen = QGuiApplication::primaryScreen()->availableSize();
    EXPECT_TRUE(width <= screen.width() && height <= screen.height() && height > 0);
}

#ifndef _WIN32
/// A text of the record as the PDF's reader finds it, without the blanks and line ends that the page has put
/// in.
std::string found_in(const QByteArray &text) {
    return QString::fromUtf8(text).remove(QRegularExpression("\\s")).toStdString();
}

TEST(RecordFile, TheTextOfItsPagesCanBeSearchedAndIsAllThere) {
    QTemporaryDir folder;
    const std::string file = folder.path().toStdString() + "/Süd.pdf";
    const std::string word(4000, 'Q');
    std::string words;
    for (int i = 0; i < 700; ++i)
        words += "Wort" + std::to_string(i) + " ";
    desktop::RecordFile record(file);
    const RecordFrame frame{
        .by = "Jörg <Müller>", .place = "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D 12", .made = "2026-11-23 14:05:09"};
    DoneJob job{.line = {.time = frame.made,
                         .variant = "GPRS",
                         .port = "COM 3",
                         .job = "Modem konfigurieren",
                         .message = words}};
    job.settings = {{"Alarmmeldung", word}, {"APN", ""}};
    for (const char *name : {"Pumpwerk Öd", "Pumpwerk Fließ"})
        record.add(record_page(frame, DeviceRecord{.name = name, .note = {}, .jobs = {job}}));
    ASSERT_EQ(record.end(), "");
    QProcess reader;
    reader.start("pdftotext", {"-raw", QString::fromStdString(file), "-"});
    ASSERT_TRUE(reader.waitForFinished()) << "it is in the package poppler-utils";
    const std::string text = found_in(reader.readAllStandardOutput());
    for (const std::string &piece :
         {std::string("PumpwerkÖd"), std::string("PumpwerkFließ"), std::string("Modemkonfigurieren"),
          std::string("Jörg<Müller>"), std::string("Wort699"), word.substr(0, 2000)})
        EXPECT_NE(text.find(piece), std::string::npos) << piece;
    EXPECT_EQ(std::count(text.begin(), text.end(), 'Q'), 2 * 4000) << "also where the sheet ends, once";
    EXPECT_NE(desktop::RecordFile("/dev/full/n.pdf").end(), "");
}
#endif

} // namespace
} // namespace telvox::test
