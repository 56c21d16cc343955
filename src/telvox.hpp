#pragma once

#include "core/file_dialogs.hpp"
#include "core/files/settings_file.hpp"
#include "core/help_viewer.hpp"
#include "core/messages.hpp"
#include "core/network.hpp"
#include "core/port_scan.hpp"
#include "core/timer.hpp"
#include "link/link.hpp"
#include "link/recorder.hpp"
#include "link/serial_port.hpp"
#include "net/network_tools.hpp"
#include "sequencer/sequencer.hpp"
#include "ui/desk.hpp"

#include <functional>
#include <optional>
#include <string_view>

namespace telvox {

/// Work that is no job of the program's own, or more than one: it is busy, shown and ended like a job.
class LongWork {
  public:
    [[nodiscard]] virtual bool running() const = 0;
    [[nodiscard]] virtual Progress progress() const = 0;
    /// The user wants it to end; it may take a while.
    virtual void cancel() = 0;
    /// Other programs do it, so no job of this one may begin meanwhile.
    [[nodiscard]] virtual bool by_others() const { return true; }

  protected:
    ~LongWork() = default;
};

/// The program put together. Everything that happens to it is an event: a click, a key, a tick, received
/// bytes. One event runs one handler to its end; then every window is drawn again and waiting boxes are
/// shown. All of it runs on one thread.
class Telvox : private Observer {
  public:
    /// The outside that the program was given; all of it outlives the program.
    struct Ports {
        SerialPort &comSeriell;
        PortScan &scan;
        Timer &Timer1;
        MessageBoxes &boxes;
        Timer &Timer2; ///< of the actions on the network
        TcpClient &Winsock;
        Processes &processes;
        HelpViewer *help = nullptr;   ///< none where nobody reads it
        FileDialogs *files = nullptr; ///< none where nobody chooses files
    };

    /// Starts the session: reset, and the settings read from the folder.
    Telvox(const Ports &ports, DataFolders folders);

    // Events. A control that is not usable takes none of them.
    /// Gives a control a value as its user would, and leaves it.
    void put(Control &control, std::string_view value);
    void click(Button &button);
    void click(MenuEntry &entry);
    void choose(OptionButton &option);
    void set(CheckBox &box, bool on);
    /// Replaces the text of a box by what its filter and limit leave of the input.
    void enter(TextBox &box, std::string_view input);
    /// Chooses an entry of the list; one that it does not hold is ignored, unless the list is editable: then
    /// it is typed.
    void select(ComboBox &list, std::string_view entry);
    /// Moves the selection to the entry at a position, from where it stands or by a click on the entry; one
    /// that is not there is ignored.
    void select(ListBox &list, int position);
    void click(ListBox &list, int position);
    void double_click(ListBox &list);
    /// Chooses a row; one that is not there is ignored.
    void choose(RowTable &table, std::size_t row);
    /// The list has got the focus, or is opened.
    void focus(ComboBox &list);
    void leave(TextBox &box);
    /// The title bar's close button: what the window's cancel button does, or for the main window the end.
    void close(Form &form);
    /// The user asks what a window, or the control that has its focus, is about.
    void help(const Form &form, const Control *control = nullptr);
    void Timer1_Timer();
    void comSeriell_OnComm(CommEvent event);
    void Timer2_Timer();
    void Winsock_DataArrival(std::string_view bytes);
    void process_ended(const ProcessEnd &end);
    /// The user wants the running job to end: it ends with its hang-up, and a box says so. Without one, the
    /// action on the network.
    void cancel();
    /// Nothing has happened but that time has passed: what counts down is shown anew.
    void refresh();
    /// Several events as one: drawn, and what they say is shown, when all have happened.
    void together(const std::function<void()> &events);
    /// Sets a format of the session, `strCOMparameter_direkt` or `strCOMparameter_fern`.
    void set_format(std::string Session::*format, const std::string &value);
    /// Says in the status bar what stands around the jobs: which profile, which device of a list.
    void tell(const std::string &text);
    /// The main window is as at the start but for its ports and formats, and is filled in anew; nothing that
    /// the filling says is shown. `what` is it filled with, for the record.
    void begin_again(const std::string &what, const std::function<void()> &fill);
    /// A dialog that was opened for its job goes without a question.
    void dismiss(Form &form);
    /// All that the windows hold stands in a profile too; from now on what is changed in them belongs there.
    void saved();
    /// The user has changed something since.
    [[nodiscard]] bool changed_since_saved() const { return changed_; }
    /// Adds a port to the port lists that its user named, so that nobody has to try all others for it.
    void offer_port(int number);
    /// Adds such work, which outlives the events.
    void add(LongWork &work) { works_.push_back(&work); }
    /// The main window goes: the port is closed, a call that is up is dropped with DTR, a program or
    /// connection on the network ends. No event does
    /// anything from then on.
    void Form_Unload();

    /// A job runs, an action on the network, or longer work.
    [[nodiscard]] bool busy() const { return sequencer_.busy() || network_.busy() || long_work(); }
    /// What the line has said since the last tick.
    [[nodiscard]] std::string_view received() const { return link_.strCOM_Eingang.text(); }
    [[nodiscard]] Progress progress() const {
        return long_work() ? long_work()->progress() : sequencer_.progress();
    }

    Desk desk;
    /// What went over the line since the program started.
    [[nodiscard]] Recorder &record() { return recorder_; }

  private:
    /// Runs a handler; then, when it is the outermost, draws and shows.
    template <class Handler> void event(Handler &&handler);
    void tell_observers();
    void status(std::string_view text) override;
    void ended(const JobEnd &end) override;
    void note_change(bool typed);
    void after_event();
    void record_format(std::string Session::*format);
    void record(const Control &control);
    void connect_the_end();
    /// What runs of it, nullptr if nothing does.
    [[nodiscard]] LongWork *long_work() const;
    void end_running();
    /// What a window's cancel button does while a job or an action runs that was started from there. Returns
    /// whether one did.
    bool end_own_job(const Button &button);
    void show_help(std::string_view topic);
    void leave();

    Ports ports_;
    Recorder recorder_;
    Link link_;
    Sequencer sequencer_;
    NetworkTools network_;
    const Button *job_by_ = nullptr, *action_by_ = nullptr; ///< that started the last ones
    std::vector<LongWork *> works_;
    int depth_ = 0; ///< events that are happening, one within the other
    // Of the event that happens, not yet told.
    std::vector<const Button *> starts_;
    std::vector<JobEnd> ends_;
    bool changed_ = false; ///< what a profile holds, since it was opened or saved
    bool unsaved_ = false; ///< what the user typed is neither sent nor in a file
    bool of_profile_ =
        false; ///< a profile was opened or saved, and what was changed since would be lost with it
    bool leaving_ = false; ///< the program ends as soon as the session is idle
    bool gone_ = false;
};

} // namespace telvox
