#pragma once

#include "core/lists/result_file.hpp"
#include "operation/compared.hpp"
#include "operation/course.hpp"
#include "operation/operator.hpp"

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace telvox::operation {

/// How the work for an order came out, told once however many jobs it took.
struct WorkEnd : JobEnd {
    std::string imei;               ///< of the device that it was done at, where it told it
    std::vector<Compared> compared; ///< settings that were read, beside what was wanted
};

/// What the result file says of it.
[[nodiscard]] Attempt attempt_of(const WorkEnd &work, const JobCommand &job, Desk &desk);

/// Does an order by several jobs, one after the other: it presses the next button when the last job has ended
/// well. What fails, or is cancelled, ends the order, and nothing more is sent. A job that somebody else
/// starts is told like an order of that one job; one that reads or writes a dialog is an order for what the
/// dialog shows.
class Plan : private Observer {
  public:
    using Now = std::function<std::time_t()>;

    Plan(
        Telvox &program, Operator &at_the_form, Now now = [] { return std::time(nullptr); });
    ~Plan() { program_.desk.observers.remove(*this); }
    Plan(const Plan &) = delete;
    Plan &operator=(const Plan &) = delete;

    /// Begins with an order whose main window is filled in. A dialog that is open stays as it is; the values
    /// that the order names are taken from it then. Throws UsageError for what the form refuses.
    void start(const Order &order, bool listed);
    /// An order is under way, also while it waits for an answer.
    [[nodiscard]] bool busy() const { return work_.has_value(); }

    /// The first job has begun, nothing has been sent. `by` is the button of the order's own job.
    std::function<void(const Button &by)> begun = [](const Button &) {};
    /// All is over; `refused` if a check let nothing begin.
    std::function<void(const WorkEnd &)> over = [](const WorkEnd &) {};
    /// A dialog was opened for the order.
    std::function<void(Form &)> opened = [](Form &) {};
    /// Whose device it was that has this IMEI, if it must not be done again unasked: "Zeile 2 (Süd)".
    std::function<std::string(const std::string &imei)> done_before = [](const std::string &) {
        return std::string();
    };

  private:
    enum class Step { identify, read, work, verify };
    struct Work {
        Order order;
        Course course;
        const Button *by;                   ///< of the order's own job
        std::deque<Step> steps;             ///< that are not done; the first is under way
        const Button *pressed = {};         ///< by the step under way
        bool begun = false;                 ///< any job has
        bool running = false;               ///< the step's job has
        std::optional<Outcome> done = {};   ///< of a step that is not the last
        bool asks = false;                  ///< the user whether to go on
        std::string expected = {};          ///< the IMEI that it must be, or that it was at first
        std::string imei = {};              ///< as the device has told it last
        bool status_was_open = false;       ///< the window of the question for the IMEI
        Values wanted = {};                 ///< what the dialog shows when it is read over, or written
        int tries = 0;                      ///< to reach a device that starts anew
        std::optional<JobEnd> written = {}; ///< how the job ended, where the device is read once more
        bool by_user = false;               ///< somebody has pressed the job's own button
        std::vector<Compared> compared = {};
        std::vector<Message> last_said = {};

        [[nodiscard]] bool swapped() const { return !imei.empty() && imei != expected; }
    };

    void started(const Button &by) override;
    void ended(const JobEnd &end) override;
    void happened() override;
    void settled() override;
    void adopt(const Button &by);
    void press();
    void press_step();
    void next();
    void identified();
    void was_read(Outcome outcome);
    void compared(Outcome outcome);
    void verified(Outcome outcome);
    void restore();
    std::string read_back();
    void show_compared(const std::string &result);
    [[nodiscard]] std::string keep_copy(const std::string &imei, const Values &values);
    void look_for_imei();
    void end_with(Outcome outcome, Message message);
    void end(const JobEnd &end);

    Telvox &program_;
    Desk &desk_;
    Operator &operator_;
    Now now_;
    std::optional<Work> work_;
    /// What the user has read in a dialog, which he may write next.
    struct Read {
        std::string imei;
        Values values;
    };
    std::map<const Section *, Read> read_;
};

} // namespace telvox::operation
