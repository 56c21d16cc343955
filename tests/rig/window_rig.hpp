#pragma once

#include "desktop/window_set.hpp"
#include "rig/rig.hpp"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QTest>
#include <gtest/gtest.h>

#include <stdexcept>

namespace telvox::test {

/// The windows of a program with a turned clock.
class WindowTest : public testing::Test {
  protected:
    explicit WindowTest(DataFolders folders = {"/dev/null/none", {}}) : rig(std::move(folders)) {
        windows.ended = [this] {
            rig.program.Form_Unload();
            ++ended;
        };
        windows.draw();
        // The platform activates the window in its own time.
        EXPECT_TRUE(QTest::qWaitForWindowActive(&main_window()));
    }

    QWidget &main_window() { return windows.window(desk.frmModem); }

    template <class Widget> Widget &find(const char *name) {
        for (Form *form : desk.forms)
            if (auto *widget = windows.window(*form).findChild<Widget *>(name))
                return *widget;
        throw std::runtime_error(std::string("no widget ") + name);
    }
    /// Opens a dialog by its menu entry or button.
    template <class Entry> QWidget &open(Entry &entry, Form &form) {
        rig.program.click(entry);
        QWidget &window = windows.window(form);
        window.activateWindow(); // as a window manager does
        EXPECT_TRUE(QTest::qWaitFor([&] { return QApplication::activeWindow() == &window; }, 2000));
        return window;
    }
    void click(const char *name) { find<QAbstractButton>(name).click(); }
    void type(const char *name, const QString &keys) { QTest::keyClicks(&find<QLineEdit>(name), keys); }
    std::string text(const char *name) { return find<QLineEdit>(name).text().toStdString(); }
    void paste(const char *name, const QString &text, int cursor) {
        auto &edit = find<QLineEdit>(name);
        edit.deselect();
        edit.setCursorPosition(cursor);
        QGuiApplication::clipboard()->setText(text);
        edit.paste();
    }
    void focus(const char *name, Qt::FocusReason reason) {
        main_window().setFocus();
        find<QWidget>(name).setFocus(reason);
    }
    void choose_port(const char *list, const char *entry) {
        focus(list, Qt::TabFocusReason);
        auto &combo = find<QComboBox>(list);
        combo.setCurrentIndex(combo.findText(entry));
        emit combo.textActivated(entry);
    }
    void fill_in_gsm() {
        click("optGSM");
        choose_port("cobSchnittstelle", "COM 3");
        type("tboRufnummer_Empfaenger", "0171");
        type("tboService_Center", "+491710760000");
        type("tboAlarmmeldung", "Pumpe 7");
    }

    Rig rig;
    Desk &desk = rig.program.desk;
    desktop::WindowSet windows{rig.program};
    int ended = 0;
};

} // namespace telvox::test
