#pragma once

#include "core/messages.hpp"
#include "core/observer.hpp"
#include "core/session.hpp"
#include "core/timer.hpp"
#include "link/link.hpp"
#include "link/receiver.hpp"
#include "sequencer/error_reports.hpp"
#include "sequencer/launch.hpp"
#include "sequencer/panel.hpp"
#include "sequencer/progress.hpp"
#include "sequencer/step.hpp"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace telvox {

/// Runs the one job: its start, its ticks, the error reports, the hang-up of the local modem, and its end.
class Sequencer {
  public:
    /// Everything that the sequencer works on; all of it outlives the sequencer.
    struct Context {
        Desk &desk; ///< for the checks of a launch and what it prepares
        Panel &panel;
        JobState &jobs;
        Session &session;
        JobValues &values;
        Findings &findings;
        Link &link;
        Timer &timer;
        Outbox &outbox;
        Families families;
        const Reports &reports;
        /// Something else is at the ports, so no job may begin.
        std::function<bool()> blocked = [] { return false; };
        /// Take the beginning of each job, and the end of each that began.
        std::function<void(const Button &)> started;
        std::function<void(JobEnd)> ended;
    };

    explicit Sequencer(const Context &context)
        : c_(context),
          job_{context.jobs, context.session, context.values, context.findings},
          receiver_(job_, context.link, context.timer) {}

    /// A counter, job flag, armed flag, read step or hang-up is active.
    [[nodiscard]] bool busy() const { return c_.jobs != JobState{}; }

    /// Whether a job could start: none runs, and its checks hold. Otherwise a box says why not.
    bool ready(const Launch &launch);

    /// The one start of every job, by this button. If it is ready: the port opened if it is closed, its
    /// format applied, DTR raised, the windows' values copied, flag and counter set, the inputs locked, the
    /// timer on. Returns whether the job runs; if not, nothing has changed. A port that cannot be opened ends
    /// it.
    bool start(const Launch &launch, const Button &by);

    /// One period of `Timer1`: empties the receive buffer, reports an armed flag that is still set, runs the
    /// step of each running counter, and last the hang-up. A job that has nothing to wait for, or goes round
    /// in circles, ends.
    void Timer1_Timer();

    /// The serial port's event: replies move the running job on; a lost port ends it.
    void comSeriell_OnComm(CommEvent event);

    /// Resets the session: counters and flags, the timer's period to 100 ms, inputs usable, status "Bereit".
    void prz_Initialisieren();

    /// Ends the running job at the user's wish, a call with its hang-up, and says what that may mean for the
    /// device. While a hang-up runs there is nothing left to end.
    void cancel();
    /// The same without a message, for a program that ends.
    void abandon();

    [[nodiscard]] Progress progress() const;

    /// Leaves the line in order when the program ends: DTR off drops a call that is still up.
    /// Returns whether all that was written has left.
    bool close_port();

  private:
    static constexpr milliseconds idle_period{100};
    /// More than a second of silence before and after "+++", or the local modem takes it as data.
    static constexpr milliseconds escape_guard{1100};
    static constexpr milliseconds drain_limit{1000};
    /// A job may take this many times the waits of its tables, whatever the device answers.
    static constexpr int patience = 5;

    bool open_port(const JobValues &values, const Button &by);
    void run_jobs();
    void run(const Step &step, const Job &job);
    bool send(const Step &step, const Job &job);
    void note_progress(const Step &step, const Job &job);
    void end(const Step &step);
    void allow_time_for(const Job &job);
    void note_rejection();
    [[nodiscard]] bool stalled() const;
    [[nodiscard]] std::string hint_at_wrong_device() const;
    void hang_up_step();
    void start_hang_up();
    void fail(LineEnd line, Message message);
    bool finish(LineEnd line);
    [[nodiscard]] std::string not_all_sent() const;
    void tell_end();

    Context c_;
    const JobContext job_;
    Receiver receiver_;
    milliseconds started_{0};
    milliseconds allowed_{0};      ///< waits of the tables that have run so far
    std::vector<CounterOf> timed_; ///< the counters of those tables
    std::string under_;            ///< what the last command is called, should the device reject it
    std::vector<std::string> rejected_;
    JobEnd end_{}; ///< of the job that runs, or hangs up; told when the line is down
    const char *advice_ = "";
    bool changed_device_ = false;
    bool heard_ = false; ///< the device has sent something
    Progress progress_;
    CounterOf counted_ = nullptr; ///< the table that stands in it,
    Counter counted_step_ = 0;    ///< its step,
    int steps_of_counted_ = 0;    ///< how many it has,
    int steps_before_ = 0;        ///< and what came before
    milliseconds step_began_{0};
};

} // namespace telvox
