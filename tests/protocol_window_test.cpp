// The pane "Protokoll" of the main window through its real widgets.

#include "desktop/window_set.hpp"
#include "rig/rig.hpp"

#include <QAction>
#include <QGroupBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QSplitter>
#include <QTemporaryDir>
#include <QTest>
#include <fstream>
#include <gmock/gmock.h>

namespace telvox::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class ProtocolTest : public testing::Test {
  protected:
    /// A program with its main window; the folder is the same from start to start.
    struct Started {
        explicit Started(const QTemporaryDir &folder) : rig({folder.path().toStdString(), {}}) {
            windows.draw();
            EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        }
        void toggle() {
            QTest::keyClick(&window, Qt::Key_P, Qt::ControlModifier);
            QCoreApplication::processEvents();
        }
        void click(const char *name) { window.findChild<QPushButton *>(name)->click(); }
        std::string shown() {
            QTest::qWait(150);
            QCoreApplication::processEvents(); // what has fallen due, however late
            return window.findChild<QPlainTextEdit *>("tboProtokoll")->toPlainText().toStdString();
        }
        /// A PIN is set on a device that says nothing else but that it is there.
        void set_pin(const char *pin) {
            Desk &desk = rig.program.desk;
            rig.program.choose(desk.frmModem.optGSM);
            rig.choose_cable_port(3);
            rig.program.click(desk.frmModem.mnuPin_festlegen);
            rig.program.enter(desk.frmPin.tboPin, pin);
            rig.program.click(desk.frmPin.cbuPin_Eingabe);
            rig.turn_by(milliseconds{100});
            rig.arrive("TIME: 1\r\nERROR\r\n");
            EXPECT_TRUE(rig.run_until_idle(milliseconds{60'000}));
        }

        Rig rig;
        desktop::WindowSet windows{rig.program};
        QWidget &window = windows.window(rig.program.desk.frmModem);
        QWidget &pane = *window.findChild<QGroupBox *>("fraProtokoll");
    };

    QTemporaryDir folder;
};

TEST_F(ProtocolTest, IsHiddenAtFirstAndThenAsItWasLeft) {
    {
        Started first(folder);
        EXPECT_FALSE(first.pane.isVisible());
        const int height = first.window.height();
        const QRect screen = first.window.screen()->availableGeometry();
        first.window.move(0, screen.bottom() - first.window.frameGeometry().height());
        const QWidget &button = *first.window.findChild<QPushButton *>("cbuBeenden");
        const QPoint place = button.mapTo(&first.window, QPoint());
        first.toggle();
        EXPECT_TRUE(first.pane.isVisible() && first.pane.height() > 100);
        EXPECT_GT(first.window.height(), height);
        EXPECT_TRUE(screen.contains(first.window.frameGeometry()))
            << "it goes up where there is no room below";
        EXPECT_LE(std::abs(button.mapTo(&first.window, QPoint()).y() - place.y()), 1)
            << "the pane comes below";
        first.toggle();
        EXPECT_EQ(first.window.height(), height);
        first.toggle();
    }
    Started second(folder);
    EXPECT_TRUE(second.pane.isVisible() && second.window.findChild<QAction *>("mnuProtokoll")->isChecked());
    EXPECT_GT(second.pane.height(), 100);
    second.window.resize(1024, 560);
    QCoreApplication::processEvents();
    EXPECT_EQ(second.window.height(), 560);
    EXPECT_GT(second.window.findChild<QSplitter *>()->sizes()[0], 300) << "most of it is the form's";
}

TEST_F(ProtocolTest, LeavesTheListAboveItsRows) {
    Started started(folder);
    started.window.resize(1024, 1050);
    started.rig.program.desk.frmModem.fraListe.visible = true;
    started.windows.draw();
    started.toggle();
    const auto &list = *started.window.findChild<QGroupBox *>("fraListe");
    EXPECT_LT(started.pane.height(), started.pane.sizeHint().height()) << "there is not room for all";
    EXPECT_GE(list.height(), list.sizeHint().height());
}

TEST_F(ProtocolTest, ShowsEachJobFromItsStartAndNoSecret) {
    Started started(folder);
    started.toggle();
    started.set_pin("4711");
    const std::string first = started.shown();
    EXPECT_THAT(first,
                AllOf(HasSubstr("      0 | open COM 3\n"), HasSubstr("\n    100 | -> AT**TIME?\\r\n"),
                      HasSubstr("\n    100 <- ERROR\\r\\n\n"), HasSubstr("***"), Not(HasSubstr("4711"))));
    started.set_pin("0815");
    const std::string both = started.shown();
    EXPECT_THAT(both, testing::StartsWith(first + "\n\n      0 | format"));
    started.window.resize(1024, 520);
    started.set_pin("0815");
    started.shown();
    const QScrollBar &bar = *started.window.findChild<QPlainTextEdit *>("tboProtokoll")->verticalScrollBar();
    EXPECT_TRUE(bar.maximum() > 0 && bar.value() == bar.maximum())
        << "the last line is seen in less room, too";
    started.click("cbuProtokoll_leeren");
    EXPECT_EQ(started.shown(), "");

    started.click("cbuProtokoll_speichern");
    ASSERT_EQ(started.rig.asked_files.size(), 1u);
    EXPECT_EQ(started.rig.asked_files[0].question.filter, "Protokoll (*.txt)");
    for (const char *refused : {"", "/fehlt"}) {
        started.rig.boxes.clear();
        const std::string path = *refused ? folder.path().toStdString() + "/Fenster.ini" + refused : "";
        started.rig.asked_files[0].answered({.path = path});
        ASSERT_EQ(started.rig.boxes.size(), *refused ? 1u : 0u);
    }
    EXPECT_EQ(started.rig.boxes[0].text,
              "Das Protokoll konnte nicht gespeichert werden.\rDer Ordner ist nicht vorhanden.");
    const std::string path = folder.filePath("pin.txt").toStdString();
    started.rig.asked_files[0].answered({.path = path});
    std::ifstream file(path);
    const std::string saved{std::istreambuf_iterator<char>(file), {}};
    EXPECT_THAT(saved, AllOf(HasSubstr("enter frmPin.tboPin ***\n"), HasSubstr("-> AT**TIME?\\r"),
                             Not(HasSubstr("4711")), Not(HasSubstr("Protokoll"))));
}

} // namespace
} // namespace telvox::test
