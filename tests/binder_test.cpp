// How controls and widgets are tied, one kind after the other, and the boxes.

#include "desktop/file_dialogs.hpp"
#include "desktop/message_boxes.hpp"
#include "desktop/readable_style.hpp"
#include "desktop/window_set.hpp"
#include "rig/rig.hpp"

#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QVBoxLayout>
#include <gmock/gmock.h>

namespace telvox::test {
namespace {

using desktop::QtMessageBoxes;

/// One control of each kind that the main window does not have, and a window for them.
struct Gallery : Form {
    Gallery() : Form("frmGalerie", "Galerie") {
        cobAPN.editable = true;
        cobAPN.max_length = 8;
        cobAPN.accepts = [](char32_t c) { return c != U' '; };
        cobAPN.items = {"web", "internet"};
        lstNummern.items = {"Alpha", "Beta", "Gamma"};
        tboShell.multi_line = true;
        open = true;
    }
    ComboBox cobAPN{*this, "cobAPN"};
    ListBox lstNummern{*this, "lstNummern"};
    TextBox tboShell{*this, "tboShell"};
    TextBox tboKeepAlive{*this, "tboKeepAlive"};
    Picture imgLogo{*this, "imgLogo"};
    TickEntry mnuHaken{*this, "mnuHaken", "Haken"};
    Log tboLog{*this, "tboLog"};
};

class GalleryTest : public testing::Test, private Observer {
  protected:
    GalleryTest() {
        rig.program.desk.observers.add(*this);
        binder.draw();
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    void draw() override { binder.draw(); }
    template <class Kind> Kind *add(const char *name) {
        auto *widget = new Kind(&window);
        widget->setObjectName(name);
        window.layout()->addWidget(widget);
        return widget;
    }

    Rig rig;
    Gallery form;
    QWidget window;
    QVBoxLayout layout{&window};
    QComboBox &apn = *add<QComboBox>("cobAPN");
    QListWidget &list = *add<QListWidget>("lstNummern");
    QPlainTextEdit &shell = *add<QPlainTextEdit>("tboShell");
    QLineEdit &keep_alive = *add<QLineEdit>("tboKeepAlive");
    QLabel &logo = *add<QLabel>("imgLogo");
    QPlainTextEdit &log = *add<QPlainTextEdit>("tboLog");
    QAction &tick = [this]() -> QAction & {
        form.mnuHaken.keys = "Ctrl+P";
        QAction *action = window.addAction("");
        action->setObjectName("mnuHaken");
        return *action;
    }();
    desktop::Binder binder{form, window, rig.program};
};

TEST_F(GalleryTest, AnEditableListIsTypedPickedAndWritten) {
    std::vector<std::string> heard;
    form.cobAPN.changed = [&] { heard.push_back(form.cobAPN.text); };
    apn.setFocus();
    QTest::keyClicks(&apn, "w eb1");
    EXPECT_EQ(apn.currentText(), "web1") << "no blank, and nothing completed";
    QTest::keyClick(&apn, Qt::Key_Home);
    QTest::keyClick(&apn, Qt::Key_Delete);
    EXPECT_EQ(form.cobAPN.text, "eb1");
    EXPECT_EQ(apn.lineEdit()->cursorPosition(), 0) << "drawing leaves the cursor";
    apn.lineEdit()->selectAll();
    QTest::keyClicks(&apn, "web");
    QTest::keyClick(&apn, Qt::Key_Return);
    EXPECT_THAT(heard, testing::ElementsAre("w", "we", "web", "web1", "eb1", "w", "we", "web"));
    QTest::keyClick(&apn, Qt::Key_Down);
    EXPECT_EQ(form.cobAPN.text, "internet");
    form.cobAPN.write("einwahl.de");
    binder.draw();
    EXPECT_EQ(apn.currentText(), "einwahl.");
    form.cobAPN.write("");
    binder.draw();
    EXPECT_EQ(apn.currentText(), "");
}

TEST_F(GalleryTest, AListSelectsByClickKeyAndTyping) {
    std::vector<int> before;
    int twice = 0;
    form.lstNummern.clicked = [&](int was) {
        before.push_back(was);
        if (form.lstNummern.selected == 2)
            form.lstNummern.selected = 1; // the form may refuse
    };
    form.lstNummern.double_clicked = [&] { ++twice; };
    list.setFocus();
    QTest::keyClick(&list, Qt::Key_Down);
    EXPECT_EQ(form.lstNummern.selected, 0);
    QTest::keyClicks(&list, "b");
    EXPECT_EQ(form.lstNummern.selected, 1);
    const QPoint gamma = list.visualItemRect(list.item(2)).center();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, gamma);
    QCoreApplication::processEvents();
    QTest::keyClick(&list, Qt::Key_Down);
    QCoreApplication::processEvents();
    EXPECT_THAT(before, testing::ElementsAre(-1, -1, -1, 1)) << "only a key moves from where it stands";
    EXPECT_TRUE(list.item(1)->isSelected() && !list.item(2)->isSelected());
    const QPoint alpha = list.visualItemRect(list.item(0)).center();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, alpha);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, alpha);
    EXPECT_EQ(twice, 1);
    form.lstNummern.items = {"Delta"};
    form.lstNummern.selected = -1;
    binder.draw();
    EXPECT_EQ(list.count(), 1);
    EXPECT_TRUE(list.selectedItems().isEmpty());
}

TEST_F(GalleryTest, AProtocolFollowsItsEndUnlessSomebodyReads) {
    auto &bar = *shell.verticalScrollBar();
    const auto write = [&] {
        for (int i = 0; i < 100; ++i)
            form.tboShell.text += "Antwort von 192.168.0.1\n";
        binder.draw();
    };
    write();
    EXPECT_TRUE(shell.isReadOnly());
    EXPECT_TRUE(bar.maximum() > 0 && bar.value() == bar.maximum());
    bar.setValue(3);
    write();
    EXPECT_EQ(bar.value(), 3);
    EXPECT_EQ(shell.toPlainText().toStdString(), form.tboShell.text);
}

TEST_F(GalleryTest, AFieldThatIsLeftIsDrawnAnewAndAnUnknownKindIsTold) {
    form.tboKeepAlive.lost_focus = [&] { form.tboKeepAlive.text = "255"; };
    keep_alive.setFocus();
    QTest::keyClicks(&keep_alive, "300");
    keep_alive.clearFocus();
    EXPECT_EQ(keep_alive.text(), "255");
    EXPECT_EQ(binder.mismatches(), QStringList());
    struct NewKind : Control {
        using Control::Control;
    } unknown_kind(form, "lblNeu");
    add<QLabel>("lblNeu");
    EXPECT_EQ(desktop::Binder(form, window, rig.program).mismatches(), QStringList("lblNeu"))
        << "a kind that nobody binds";
}

TEST_F(GalleryTest, ATickedEntryShowsWhatItsFormSays) {
    bool refuses = false;
    form.mnuHaken.clicked = [&] { form.mnuHaken.value = !refuses && !form.mnuHaken.value; };
    QTest::keyClick(&window, Qt::Key_P, Qt::ControlModifier);
    EXPECT_TRUE(form.mnuHaken.value && tick.isChecked());
    tick.trigger();
    EXPECT_FALSE(form.mnuHaken.value || tick.isChecked());
    refuses = true;
    tick.trigger();
    EXPECT_FALSE(tick.isChecked());
    EXPECT_EQ(tick.shortcut().toString(QKeySequence::PortableText), "Ctrl+P");
}

TEST_F(GalleryTest, ALogIsDrawnWhileItIsSeenAndNeverPullsAReaderAway) {
    std::vector<LogLine> written;
    int reads = 0;
    form.tboLog.read = [&](std::size_t &from) {
        ++reads;
        const std::size_t begin = std::exchange(from, written.size());
        return std::vector(written.begin() + static_cast<std::ptrdiff_t>(begin), written.end());
    };
    const auto write = [&](int lines) {
        for (int i = 0; i < lines; ++i) {
            written.push_back({.text = "Zeile " + std::to_string(written.size())});
            if (i >= 200) // enough to see that
                continue;
            binder.draw();
            QCoreApplication::processEvents();
        }
        const QString last = QString::fromStdString(written.back().text);
        return QTest::qWaitFor([&] { return log.document()->lastBlock().text() == last; }, 2000);
    };
    auto &bar = *log.verticalScrollBar();
    const auto line_at_top = [&] { return log.cursorForPosition({0, 0}).block().text().toStdString(); };
    ASSERT_TRUE(write(200));
    EXPECT_LT(reads, 50) << "many lines are one drawing";
    EXPECT_TRUE(bar.maximum() > 0 && bar.value() == bar.maximum());
    bar.setValue(150);
    ASSERT_TRUE(write(Log::capacity - 100));
    EXPECT_EQ(log.blockCount(), Log::capacity);
    EXPECT_EQ(line_at_top(), "Zeile 150") << "although a hundred lines above it have gone";

    QGuiApplication::clipboard()->clear();
    form.tboLog.wants_copy = true;
    binder.draw();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), log.toPlainText());
    log.moveCursor(QTextCursor::Start);
    log.moveCursor(QTextCursor::EndOfLine, QTextCursor::KeepAnchor);
    form.tboLog.wants_copy = true;
    binder.draw();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "Zeile 100");

    form.tboLog.begin = written.size();
    log.hide();
    form.tboLog.visible = false;
    reads = 0;
    written.push_back({.text = "ungesehen"});
    binder.draw();
    QTest::qWait(250);
    EXPECT_EQ(reads, 0) << "nobody sees it";
    form.tboLog.visible = true;
    ASSERT_TRUE(write(1));
    EXPECT_EQ(log.blockCount(), 2) << "what was before has been cleared";

    written.push_back({.text = "ERROR", .stands_out = true});
    for (const QColor &ground : {QColor(Qt::white), QColor(0x23, 0x23, 0x23)}) {
        log.setPalette(QPalette(ground, ground));
        ASSERT_TRUE(QTest::qWaitFor([&] { return log.blockCount() == 3; }, 2000));
        const auto color_of = [&](int block) {
            QTextCursor cursor(log.document()->findBlockByNumber(block));
            cursor.movePosition(QTextCursor::Right);
            return cursor.charFormat().foreground().color();
        };
        EXPECT_NE(color_of(2), color_of(1));
        EXPECT_GE(desktop::contrast(color_of(2), log.palette().color(QPalette::Base)), 4.5);
        EXPECT_GE(desktop::contrast(color_of(1), log.palette().color(QPalette::Base)), 4.5);
    }
}

/// A folder with a file, and the dialogs that the program asks for files in it.
class FilesTest : public testing::Test {
  protected:
    FilesTest() {
        QFile file(path("da.txt"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    }
    QString path(const char *name) { return QDir::toNativeSeparators(folder.filePath(name)); }
    /// The dialog on the screen, in the folder.
    QFileDialog *asked(const FileQuestion &question) {
        dialogs.show(question, [this](const FileAnswer &answer) { answers.push_back(answer); });
        EXPECT_EQ(dialogs.current(), nullptr) << "nothing opens inside the handler";
        if (!QTest::qWaitFor([&] { return dialogs.current() && dialogs.current()->isVisible(); }, 2000))
            return nullptr;
        dialogs.current()->setDirectory(folder.path());
        return dialogs.current();
    }
    static void enter(QFileDialog *dialog, const QString &name) {
        auto *edit = dialog->findChild<QLineEdit *>("fileNameEdit");
        edit->setText(name);
        QTest::keyClick(edit, Qt::Key_Return);
    }
    /// The box before the dialog, closed by its first button or the Escape key; its text.
    static std::string box(const QPointer<QFileDialog> &dialog, bool yes) {
        QPointer<QMessageBox> box;
        const auto is_shown = [&] {
            box = dialog->findChild<QMessageBox *>();
            return box && box->isVisible();
        };
        if (!QTest::qWaitFor(is_shown, 2000))
            return "";
        const std::string text = box->text().toStdString();
        yes ? box->buttons()[0]->click() : QTest::keyClick(box, Qt::Key_Escape);
        EXPECT_TRUE(QTest::qWaitFor([&] { return !box; }, 2000));
        return text;
    }

    QTemporaryDir folder;
    std::vector<FileAnswer> answers;
    desktop::QtFileDialogs dialogs;
};

TEST_F(FilesTest, ANameToSaveGetsItsSuffixAndReplacesOnlyWhenToldTo) {
    const FileQuestion question{.title = "Protokoll speichern",
                                .filter = "Protokoll (*.txt)",
                                .saves = true,
                                .suggested = "neu",
                                .tick = "mit PIN"};
    QFileDialog *dialog = asked(question);
    ASSERT_NE(dialog, nullptr);
    dialog->findChild<QCheckBox *>()->click();
    enter(dialog, "da");
    EXPECT_THAT(box(dialog, false), testing::HasSubstr("gibt es schon"));
    EXPECT_TRUE(answers.empty() && dialog->isVisible()) << "the user goes on choosing";
    enter(dialog, "da");
    box(dialog, true);
    ASSERT_EQ(answers.size(), 1u);
    EXPECT_EQ(answers[0].path, path("da.txt").toStdString());
    EXPECT_TRUE(answers[0].ticked);

    dialog = asked(question);
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->findChild<QLineEdit *>("fileNameEdit")->text(), "neu");
    QTest::keyClick(dialog, Qt::Key_Escape);
    ASSERT_EQ(answers.size(), 2u);
    EXPECT_EQ(answers[1].path, "");
}

TEST_F(FilesTest, AFileToOpenIsThere) {
    QFileDialog *dialog = asked({.title = "Liste öffnen", .filter = "Listen (*.csv *.txt)"});
    ASSERT_NE(dialog, nullptr);
    enter(dialog, "fehlt.txt");
    EXPECT_EQ(box(dialog, true), "Die Datei \"fehlt.txt\" gibt es nicht.");
    EXPECT_TRUE(answers.empty());
    enter(dialog, "da.txt");
    ASSERT_EQ(answers.size(), 1u);
    EXPECT_EQ(answers[0].path, path("da.txt").toStdString());
}

/// The box on the screen, once it is there.
QMessageBox *shown(const QtMessageBoxes &boxes) {
    return QTest::qWaitFor([&] { return boxes.current() && boxes.current()->isVisible(); }, 2000)
               ? boxes.current()
               : nullptr;
}

TEST(Boxes, OpenOneAfterTheOtherAndHoldNothingUp) {
    QtMessageBoxes boxes;
    boxes.show({.text = "Erste Zeile\rzweite <b>Zeile</b>"}, {});
    boxes.show({.text = "Zweite Box", .title = port_error_title, .icon = Icon::exclamation}, {});
    EXPECT_EQ(boxes.current(), nullptr) << "nothing opens inside the handler";

    QMessageBox *first = shown(boxes);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->text(), "Erste Zeile\nzweite <b>Zeile</b>");
    EXPECT_EQ(first->textFormat(), Qt::PlainText);
    EXPECT_EQ(first->windowTitle(), "Telvox-A Konfiguration");
    EXPECT_EQ(first->icon(), QMessageBox::NoIcon);
    ASSERT_EQ(first->buttons().size(), 1);
    EXPECT_EQ(first->buttons()[0]->text(), "&OK");
    QTest::keyClick(first, Qt::Key_Escape);

    ASSERT_TRUE(
        QTest::qWaitFor([&] { return boxes.current() && boxes.current()->text() == "Zweite Box"; }, 2000));
    EXPECT_EQ(boxes.current()->windowTitle(), "Laufzeitfehler Schnittstelle");
    EXPECT_EQ(boxes.current()->icon(), QMessageBox::Warning);
}

TEST(Boxes, ABoxThatGoesWithItsWindowLetsTheNextOneOpen) {
    QtMessageBoxes boxes;
    auto owner = std::make_unique<QWidget>();
    owner->show();
    boxes.owner = [&] { return owner.get(); };
    boxes.show({.text = "eins"}, {});
    boxes.show({.text = "zwei"}, {});
    ASSERT_NE(shown(boxes), nullptr);
    owner.reset();
    QMessageBox *second = shown(boxes);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(second->text(), "zwei");
}

TEST(Boxes, AQuestionIsDeniedUnlessJaIsPressedAndSomeCanBeLeftOpen) {
    const struct {
        bool can_go_back;
        int key; ///< none: the first button
        std::vector<bool> answers;
    } cases[] = {{false, Qt::Key_Escape, {false}},
                 {false, 0, {true}},
                 {true, Qt::Key_Return, {true}},
                 {true, Qt::Key_Escape, {}}};
    QtMessageBoxes boxes;
    for (const auto &[can_go_back, key, expected] : cases) {
        std::vector<bool> answers;
        boxes.show({.text = "Trotzdem?", .asks = true, .can_go_back = can_go_back},
                   [&](bool answer) { answers.push_back(answer); });
        QMessageBox *box = shown(boxes);
        ASSERT_NE(box, nullptr);
        EXPECT_EQ(box->buttons().size(), can_go_back ? 3 : 2);
        EXPECT_EQ(box->defaultButton()->text(), can_go_back ? "&Ja" : "&Nein");
        key == 0 ? box->buttons()[0]->click() : QTest::keyClick(box, static_cast<Qt::Key>(key));
        ASSERT_TRUE(QTest::qWaitFor([&] { return !boxes.current(); }, 2000));
        EXPECT_EQ(answers, expected);
    }
}

} // namespace
} // namespace telvox::test
