#pragma once

#include "core/lists/result_file.hpp"
#include "operation/all_rows.hpp"
#include "operation/cable_watch.hpp"
#include "operation/profiles.hpp"
#include "operation/record_pages.hpp"

#include <ctime>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace telvox::operation {

/// The window's list of devices: the chosen row fills the form, its job is started with one key, and what
/// became of it is in the result file before the next device is begun.
class ListPane : private Observer {
  public:
    using Now = std::function<std::time_t()>;

    /// What the profile in force says of dialogs holds for each row's too.
    ListPane(
        Telvox &program, PortScan &ports, Profiles &profiles, Now now = [] { return std::time(nullptr); });

    /// Has "Alle starten" do what needs nobody.
    void with(AllRows &all);
    /// Has the device at the cable watched where the next row needs another one that tells no number.
    void with(CableWatch &watch);

    /// The name of a port, by its entry in the port lists, for the result file.
    std::function<std::string(const std::string &entry)> port_name = [](const std::string &entry) {
        return entry;
    };

    /// Opens a list where it was left, in place of the one that is open; a box says why it could not be. Not
    /// while a job runs.
    void open(const std::string &path);

    /// Says in the status bar what is not about a row; with a list open beside the row, until the next one
    /// begins.
    void hint(const std::string &text);
    /// The row whose job runs, empty if none does.
    [[nodiscard]] std::string running() const;
    /// The open list, for a record of it.
    [[nodiscard]] std::optional<ListRecord> record() const;

  private:
    struct Work {
        DeviceList list;
        std::vector<Order> orders;  ///< by row
        std::filesystem::path path; ///< of the results
        ResultFile results;
    };
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    void ask_to_open();
    [[nodiscard]] std::vector<Order> checked(const DeviceList &list, const Values &base) const;
    void choose(std::size_t row);
    bool fill(std::size_t row);
    void start();
    [[nodiscard]] std::string question_about_device() const;
    void start_row();
    void start_all();
    void begin_all();
    void all_over();
    void skip();
    void close();
    [[nodiscard]] bool busy() const { return program_.busy() || plan_.busy(); }
    [[nodiscard]] bool runs(std::size_t row) const { return row == running_ || (all_ && all_->running(row)); }
    [[nodiscard]] bool of_row(const Button &by) const;
    void begun(const Button &by);
    void over(const WorkEnd &end);
    void watch_cable(const JobCommand &job);
    void wants_ports() override;
    void settings_saved() override;
    void happened() override;
    bool keep(std::size_t row, Attempt attempt);
    [[nodiscard]] std::string port() const;
    void go_on();
    [[nodiscard]] std::size_t next_open() const;
    [[nodiscard]] Button &button_of(const Order &order) const;
    // What is seen of it, in a file of its own.
    void show_columns();
    [[nodiscard]] std::string cell(std::size_t row, std::size_t column) const;
    void show();

    Telvox &program_;
    Desk &desk_;
    FrmModem &main_;
    PortScan &ports_;
    Profiles &profiles_;
    Operator operator_;
    Now now_;
    Plan plan_{program_, operator_, now_};
    std::unique_ptr<Work> work_;
    /// What the form holds without a row: each row is filled in on it, so that none gets what is another's.
    Values base_;
    std::size_t current_ = none;
    bool filled_ = false;    ///< the form holds the current row
    Form *dialog_ = nullptr; ///< that was opened for the current row
    std::size_t running_ = none;
    std::size_t last_at_cable_ = none; ///< row that went well last in this session
    AllRows *all_ = nullptr;
    CableWatch *watch_ = nullptr;
    std::string hint_;
    std::string told_; ///< how the last row that ended came out, for the status bar
};

} // namespace telvox::operation
