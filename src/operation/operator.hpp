#pragma once

#include "core/port_scan.hpp"
#include "operation/order.hpp"
#include "telvox.hpp"

namespace telvox::operation {

/// Works the program's form like a person at the window: fills it in and presses the job's button. What the
/// form would not take is refused by name.
class Operator {
  public:
    Operator(Telvox &program, PortScan &ports) : program_(program), ports_(ports) {}

    /// Fills the form in and starts the job. Throws UsageError for a value or control that the form refuses.
    /// Returns false when something else failed on the way, which a message has told.
    bool work(const Order &order);
    /// Of that, the main window and the formats: what comes before the job's own window.
    bool begin(const Order &order);
    /// All of it but pressing the button.
    void fill_in(const Order &order);
    /// Fills the main window in: variant and way, then its fields. Throws UsageError.
    void fill_main_window(const Values &values);
    /// The main window as at the start, filled with what it once held; nothing of what it has held meanwhile
    /// is left. `Profile` and list begin so.
    void begin_with(const Values &base);
    /// Opens the dialog that the job's button is in, where it is in one that is not open, and fills its
    /// fields in. Throws UsageError.
    void open_dialog(const Order &order);
    /// Presses the job's button. Throws UsageError where nobody could.
    void press(const Order &order);
    /// Fills the fields of a window that is open. Throws UsageError.
    void fill(std::span<const Option> options, const Values &values);
    /// Has what a job has brought kept, where it is one that brings something. Returns false if that failed.
    bool keep(const Order &order);

    /// The job's button was pressed: what the program says from now on is about the job.
    [[nodiscard]] bool pressed() const { return pressed_; }
    /// A message in which devices that the call named by path have that name.
    [[nodiscard]] std::string by_path(std::string message) const;
    /// The option whose field the program has named in a check that failed; empty if there is none.
    [[nodiscard]] std::string named_by_check(const Order &order) const;

  private:
    [[nodiscard]] Values with_variant(const Order &order);
    void put(const Option &option, const Given &given);
    void put_again(const Option &option, const Given &given);
    void put_back(const Option &option, const Given &given);
    void choose(const Option &option, const Given &given);
    void enter(const Option &option, Control &field, const Given &given);
    void choose_port(const Option &option, ComboBox &list, const Given &given);
    void set_format(const Option &option, const Given &given);
    void set_combos(const Option &option, const Given &given);
    void pick(const Pick &pick, const Given &given);
    bool save_formats(const Order &order);
    void check_formats_shown(const Order &order) const;
    void unlock(const Option &option, const Control &field, const Given &given);
    void require_usable(const std::string &job, const Control &control) const;
    [[nodiscard]] std::string not_with(const Place &from) const;
    int port_number(const Given &given);

    Telvox &program_;
    PortScan &ports_;
    std::map<std::string, std::string> paths_; ///< by entry of the port lists
    bool pressed_ = false;
};

} // namespace telvox::operation
