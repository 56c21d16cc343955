// The windows through their real widgets, found by name as a user's script would: what is typed and clicked
// reaches the form, what the form says is shown.

#include "desktop/message_boxes.hpp"
#include "desktop/readable_style.hpp"
#include "rig/window_rig.hpp"

#include <QAbstractItemView>
#include <QAccessible>
#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QStatusBar>
#include <QToolTip>
#include <QWheelEvent>
#include <gmock/gmock.h>

namespace telvox::test {
namespace {

using desktop::QtMessageBoxes;
using testing::Contains;
using testing::EndsWith;

TEST_F(WindowTest, EveryControlHasAWidgetAndEveryWidgetAControl) {
    for (Form *form : desk.forms) {
        const QStringList mismatches = windows.binder(*form).mismatches();
        EXPECT_TRUE(mismatches.isEmpty()) << form->name << ": " << mismatches.join(", ").toStdString();
    }
    // The check itself notices a name that differs.
    QWidget &window = windows.window(desk.frmPin);
    window.findChild<QLineEdit *>("tboPin")->setObjectName("tboPIN");
    desktop::Binder other(desk.frmPin, window, rig.program);
    for (Control *control : desk.frmModem.status_controls())
        other.share(*control);
    EXPECT_EQ(other.mismatches(), QStringList({"tboPin", "tboPIN"}));
}

TEST_F(WindowTest, TypingKeepsWhatTheFieldTakes) {
    type("tboRufnummer_Empfaenger", "0a1+7 1");
    EXPECT_EQ(text("tboRufnummer_Empfaenger"), "0171");
    EXPECT_EQ(desk.frmModem.tboRufnummer_Empfaenger.text, "0171");

    auto &edit = find<QLineEdit>("tboRufnummer_Empfaenger");
    edit.selectAll();
    type("tboRufnummer_Empfaenger", "x");
    EXPECT_EQ(edit.selectedText(), "0171") << "a refused key does nothing, not even to a selection";
    paste("tboRufnummer_Empfaenger", "abc", 2);
    EXPECT_EQ(text("tboRufnummer_Empfaenger"), "0171");
    edit.undo();
    EXPECT_EQ(text("tboRufnummer_Empfaenger"), "") << "and what was typed before can be undone";
    EXPECT_EQ(desk.frmModem.tboRufnummer_Empfaenger.text, "");
}

TEST_F(WindowTest, PastingIsFilteredAndNeverCutsTheOldText) {
    paste("tboService_Center", "", 0);
    find<QLineEdit>("tboService_Center").clear();
    click("optGSM");
    paste("tboService_Center", "+49 (171) 076\n0000", 0);
    EXPECT_EQ(text("tboService_Center"), "+491710760000");

    type("tboAlarmmeldung", QString(68, 'a') + "z");
    paste("tboAlarmmeldung", "1\n2\t3", 1);
    auto &edit = find<QLineEdit>("tboAlarmmeldung");
    EXPECT_EQ(edit.text(), "a1" + QString(67, 'a') + "z") << "one character was left, behind it nothing goes";
    EXPECT_EQ(edit.cursorPosition(), 2);
    EXPECT_EQ(find<QLabel>("lblZeichen_frei").text(), "noch 0");
    type("tboAlarmmeldung", "b");
    EXPECT_EQ(edit.text(), "a1" + QString(67, 'a') + "z");
    EXPECT_EQ(desk.frmModem.tboAlarmmeldung.text, edit.text().toStdString());
}

TEST_F(WindowTest, ACharacterOutsideTheBasicPlaneCountsAsOne) {
    click("optGSM");
    const QString bell = QString::fromUcs4(U"\U0001F514", 1);
    paste("tboAlarmmeldung", bell.repeated(80), 0);
    EXPECT_EQ(find<QLineEdit>("tboAlarmmeldung").text(), bell.repeated(70));
    windows.draw();
    EXPECT_EQ(find<QLineEdit>("tboAlarmmeldung").text(), bell.repeated(70));
}

TEST_F(WindowTest, VariantsShowAndHideWhatTheyUse) {
    const auto place_of_buttons = [&] { return find<QPushButton>("cbuBeenden").mapToGlobal(QPoint()); };
    const QPoint place = place_of_buttons();
    EXPECT_TRUE(find<QWidget>("fraPasswort").isVisible());
    EXPECT_EQ(text("tboPasswort"), "BRUNEX");
    click("optFernverbindung");
    click("optGSM");
    EXPECT_FALSE(find<QWidget>("fraPasswort").isVisible());
    EXPECT_FALSE(find<QWidget>("fraAlarm_Ziel").isVisible());
    EXPECT_TRUE(find<QRadioButton>("optDirektverbindung").isChecked()) << "the form set it";
    EXPECT_FALSE(find<QRadioButton>("optFernverbindung").isChecked());
    EXPECT_FALSE(find<QRadioButton>("optAnalog").isChecked());
    desk.frmModem.optSMS.value = false;
    windows.draw();
    EXPECT_FALSE(find<QRadioButton>("optSMS").isChecked()) << "also none, if the form says so";
    desk.frmModem.optSMS.value = true;
    EXPECT_EQ(place_of_buttons(), place) << "nothing jumps under the mouse";
    EXPECT_TRUE(find<QMenu>("mnuGSM").menuAction()->isEnabled());
    EXPECT_FALSE(find<QAction>("mnuGPRS_konfig").isVisible());
    click("optEthernet");
    EXPECT_FALSE(find<QPushButton>("cbuParametrieren").isEnabled());
    EXPECT_EQ(find<QRadioButton>("optFernverbindung").text(), "Verbindung über das Netzwerk");
}

TEST_F(WindowTest, PortListsAreScannedWhenTheUserComesToThem) {
    auto &list = find<QComboBox>("cobSchnittstelle");
    EXPECT_EQ(list.count(), 0) << "not by itself at the start";
    rig.free_ports = {1, 3};
    for (const auto reason : {Qt::ActiveWindowFocusReason, Qt::PopupFocusReason, Qt::MenuBarFocusReason}) {
        focus("cobSchnittstelle", reason);
        EXPECT_EQ(list.count(), 0) << "focus that only comes back";
    }
    choose_port("cobSchnittstelle", "COM 3");
    EXPECT_EQ(list.count(), 2);
    EXPECT_EQ(list.itemText(1), "COM 3");
    EXPECT_FALSE(list.isEditable());

    rig.free_ports = {2, 3, 13};
    QTest::mouseClick(&list, Qt::LeftButton);
    EXPECT_TRUE(list.view()->isVisible());
    EXPECT_EQ(list.count(), 3) << "opened again, and the adapter plugged in meanwhile is there";
    EXPECT_EQ(list.currentText(), "COM 3") << "the choice is still there";
    list.hidePopup();
    QTest::keyClicks(&list, "13");
    EXPECT_EQ(desk.frmModem.cobSchnittstelle.text, "COM 13");
    const QPointF middle = QRectF(list.rect()).center();
    QWheelEvent turn(middle, list.mapToGlobal(middle), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                     Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&list, &turn);
    EXPECT_EQ(desk.frmModem.cobSchnittstelle.text, "COM 13") << "the wheel scrolls the window";
    rig.free_ports = {2};
    focus("cobSchnittstelle", Qt::ShortcutFocusReason);
    EXPECT_EQ(list.currentIndex(), -1);
    EXPECT_EQ(desk.frmModem.cobSchnittstelle.text, "");
}

TEST_F(WindowTest, AGsmDeviceIsConfiguredFromTheWindow) {
    fill_in_gsm();
    auto &start = find<QPushButton>("cbuParametrieren");
    start.setFocus();
    start.click();
    EXPECT_FALSE(find<QWidget>("fraModemart").isEnabled());
    EXPECT_FALSE(start.isEnabled());
    EXPECT_FALSE(find<QPushButton>("cbuBeenden").hasFocus()) << "a second press must not end the program";
    rig.turn_by(milliseconds(100));
    auto *panel = find<QStatusBar>("StatusBar").findChild<QLabel *>(QLatin1String(""));
    EXPECT_EQ(panel->text(), "Verbindungsprüfung");
    rig.arrive("TIME: 2000/01/01,00:00:00\r\n");
    EXPECT_TRUE(rig.run_until_idle(milliseconds{60'000}));
    EXPECT_THAT(rig.journal, Contains(EndsWith("-> AT**DST2=0171\\r")));
    EXPECT_THAT(rig.journal, Contains(EndsWith("-> AT**MSG2=\"Pumpe 7\"\\r")));
    EXPECT_TRUE(start.isEnabled());
    EXPECT_TRUE(start.hasFocus()) << "back where the user left it";
    EXPECT_EQ(panel->text(), "Bereit");
}

TEST_F(WindowTest, ClosingInMidJobAsksClosesThePortAndEndsOnce) {
    fill_in_gsm();
    click("cbuParametrieren");
    rig.turn_by(milliseconds(100));
    EXPECT_FALSE(main_window().close());
    EXPECT_TRUE(rig.program.busy() && main_window().isVisible());
    rig.answer(true);
    EXPECT_FALSE(rig.port.PortOpen());
    EXPECT_FALSE(rig.timer.on);
    EXPECT_EQ(ended, 1);
    windows.draw();
    EXPECT_EQ(ended, 1);
}

TEST_F(WindowTest, TheEnterKeyPressesTheButtonThatIsMeant) {
    QtMessageBoxes boxes;
    boxes.owner = [&] { return windows.front(); };
    auto &text = find<QLineEdit>("tboAlarmmeldung");
    text.setFocus();
    QTest::keyClick(&text, Qt::Key_Return); // a refused check names the field, and a box stands before it
    ASSERT_EQ(rig.boxes.size(), 1u);
    boxes.show(rig.boxes[0], {});
    ASSERT_TRUE(QTest::qWaitFor([&] { return boxes.current() && boxes.current()->isVisible(); }, 2000));
    QTest::keyClick(boxes.current(), Qt::Key_Return);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !boxes.current(); }, 2000));
    main_window().activateWindow(); // as a window manager does
    ASSERT_TRUE(QTest::qWaitForWindowActive(&main_window()));
    EXPECT_TRUE(find<QLineEdit>("tboRufnummer_Empfaenger").hasFocus());
    EXPECT_EQ(rig.boxes.size(), 1u);
    auto &end = find<QPushButton>("cbuBeenden");
    end.setFocus();
    QTest::keyClick(&end, Qt::Key_Enter);
    EXPECT_TRUE(ended == 1 && !main_window().isVisible());
}

TEST_F(WindowTest, ASwallowedKeySaysWhy) {
    const auto hint_of = [&](const char *field, const char *key) {
        QToolTip::hideText();
        type(field, key);
        return QToolTip::text().toStdString();
    };
    type("tboRufnummer_Empfaenger", "+4");
    EXPECT_EQ(text("tboRufnummer_Empfaenger"), "004") << "as it is dialled";
    EXPECT_EQ(hint_of("tboRufnummer_Empfaenger", "+"), "Nur Ziffern; + als 00 eingeben");
    find<QLineEdit>("tboRufnummer_Empfaenger").selectAll();
    type("tboRufnummer_Empfaenger", "+");
    EXPECT_EQ(text("tboRufnummer_Empfaenger"), "00");
    find<QLineEdit>("tboRufnummer_Empfaenger").selectAll();
    QTest::keyClick(&find<QLineEdit>("tboRufnummer_Empfaenger"), Qt::Key_Delete);
    EXPECT_EQ(hint_of("tboRufnummer_Empfaenger", "a"), "Nur Ziffern");
    EXPECT_EQ(hint_of("tboService_Center", "*"), "Nur Ziffern und +");
    paste("tboAlarmmeldung", QString(200, 'a'), 0);
    EXPECT_EQ(hint_of("tboAlarmmeldung", "b"), "Mehr als 160 Zeichen passen nicht");
    paste("tboRufnummer_Empfaenger", "+49 171 12", 0);
    EXPECT_EQ(text("tboRufnummer_Empfaenger"), "004917112");
}

TEST_F(WindowTest, EveryFieldHasANameToReadOut) {
    for (Form *form : desk.forms)
        for (const Control *control : form->controls())
            if (dynamic_cast<const TextField *>(control) || dynamic_cast<const ProgressBar *>(control)) {
                auto *widget = windows.window(*form).findChild<QWidget *>(control->name);
                const QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(widget);
                EXPECT_FALSE(spoken->text(QAccessible::Name).isEmpty()) << form->name << "." << control->name;
            }
}

/// The strongest contrast in a picture of a widget: of its text, or of its outline.
double strongest_contrast(QWidget &widget) {
    const QImage picture = widget.grab().toImage();
    const QColor ground = widget.palette().color(widget.backgroundRole());
    double strongest = 1;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            strongest = std::max(strongest, desktop::contrast(picture.pixelColor(x, y), ground));
    return strongest;
}

TEST(Style, LockedFieldsStayReadableInLightAndDark) {
    auto *style = new desktop::ReadableStyle("fusion");
    const QPalette before = QApplication::palette();
    QApplication::setStyle(style);
    for (const QColor &ground : {QColor(0xEF, 0xEF, 0xEF), QColor(0x2D, 0x2D, 0x2D)}) {
        QPalette palette(ground, ground);
        style->polish(palette);
        QApplication::setPalette(palette);
        QLabel label("Empfänger");
        QPushButton button("Test");
        QLineEdit value("0171"), shown("0171");
        QCheckBox box;
        QRadioButton circle;
        shown.setReadOnly(true);
        for (QWidget *locked : {static_cast<QWidget *>(&label), static_cast<QWidget *>(&button)}) {
            locked->setEnabled(false);
            EXPECT_GE(strongest_contrast(*locked), 3) << ground.name().toStdString();
        }
        value.setEnabled(false);
        EXPECT_GE(strongest_contrast(value), 4.5) << ground.name().toStdString();
        EXPECT_EQ(shown.grab().toImage().pixelColor(shown.width() - 6, shown.height() / 2), ground);
        if (ground.lightness() < 128) {
            EXPECT_GE(strongest_contrast(box), 3);
            EXPECT_GE(strongest_contrast(circle), 3);
        }
    }
    QApplication::setPalette(before);
}

TEST_F(WindowTest, TheUserBeginsAtTheVariant) {
    EXPECT_TRUE(find<QRadioButton>("optAnalog").hasFocus());
    EXPECT_EQ(find<QLabel>("lblAlarmmeldung").buddy(), &find<QLineEdit>("tboAlarmmeldung"));
    EXPECT_EQ(find<QLabel>("lblAlarmmeldung").text(), "Alarm&meldung (max. 160 Zeichen):");
    rig.program.choose(desk.frmModem.optGPRS);
    EXPECT_TRUE(find<QRadioButton>("optGPRS").hasFocus()) << "a profile, or what was recognised, chooses too";
}

} // namespace
} // namespace telvox::test
