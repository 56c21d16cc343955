#include "cli/run_list.hpp"

#include "cli/follow.hpp"
#include "cli/interrupt.hpp"
#include "cli/record.hpp"
#include "core/files/files.hpp"
#include "core/port_choice.hpp"
#include "core/text.hpp"
#include "core/usage_error.hpp"
#include "operation/record_pages.hpp"
#include "operation/side_by_side.hpp"
#include "operation/trial.hpp"
#include "operation/work_log.hpp"
#include "ports/os.hpp"
#include "ports/qt_ports.hpp"

#include <array>

namespace telvox::cli {

namespace {

std::string now() { return local_time(std::time(nullptr)); }

class ListCommand {
  public:
    ListCommand(const Call &call, Outputs &out)
        : call_(call),
          out_(out),
          numbers_(std::make_shared<PortMap>(call.common)),
          all_{call.values, call.profile} {}

    int run(QCoreApplication &application);

  private:
    void prepare();
    [[nodiscard]] bool is_to_do(std::size_t row) const;
    Way way_of(const Trial &trial);
    void check_cable(std::size_t row, const Order &order, const Trial &trial);
    void follow_row(std::size_t row, RowProgram &program);
    [[nodiscard]] bool is_mine(std::size_t row) const {
        return row % call_.share.of + 1 == call_.share.number;
    }
    void tell(std::size_t row, const Attempt &attempt);
    void tell_event(const char *what, std::size_t row, const Attempt &attempt);
    void tell_done(std::size_t row);
    [[nodiscard]] std::vector<std::size_t> mine() const;
    int sum_up();
    int record(int code);
    [[nodiscard]] std::string label(std::size_t row) const { return label_of(list_.rows[row]); }

    const Call &call_;
    Outputs &out_;
    const DataFolders folders_ = data_folders(call_.common);
    std::shared_ptr<PortMap> numbers_; ///< of ports that the list names by number
    const MakePorts make_ports_ = ports_beside(numbers_);
    ForAllRows all_;
    DeviceList list_;
    std::filesystem::path results_path_;
    std::optional<ResultFile> results_;
    std::vector<Way> ways_;
    std::map<std::pair<std::string, const JobCommand *>, std::size_t>
        at_cables_; ///< row, by resource and job
    const Remembered remembered_ = read_remembered(folders_.settings);
    WorkLog log_{folders_.settings};
    bool unwritten_ = false;
};

int ListCommand::run(QCoreApplication &application) {
    prepare();
    for (std::size_t row = 0; row < list_.rows.size(); ++row)
        if (is_mine(row) && !is_to_do(row))
            tell_done(row);
    QtTimer later;
    SideBySide work({.list = list_,
                     .results = *results_,
                     .ways = ways_,
                     .is_to_do = [this](std::size_t row) { return is_to_do(row); },
                     .order = [this](std::size_t row) { return order_of(list_, list_.rows[row], all_); },
                     .make = make_ports_,
                     .folders = folders_,
                     .despite = call_.despite,
                     .now = now,
                     .port_name = [this](const std::string &entry) { return numbers_->told(entry); }},
                    later);
    later.tick = [&] { work.tick(); };
    work.starts = [this](std::size_t row, RowProgram &program) { follow_row(row, program); };
    work.ended = [this](std::size_t row, const Attempt &attempt) { tell(row, attempt); };
    work.done = [this](std::vector<DoneJob> jobs) {
        if (const std::string why = log_.add(std::move(jobs), remembered_.history); !why.empty())
            out_.remarks.line("telvox-cli: " + why);
    };
    work.unwritten = [this](const std::string &why) {
        out_.remarks.line("telvox-cli: " + why);
        unwritten_ = true;
    };
    work.over = [] { QCoreApplication::quit(); };
    int interrupted = 0;
    on_interrupt([&](int code) {
        interrupted = code;
        work.cancel();
    });
    work.begin();
    if (work.running())
        application.exec();
    const int code = record(sum_up());
    return interrupted != 0 ? interrupted : code;
}

void ListCommand::prepare() {
    const std::filesystem::path file = path_of(call_.list);
    list_ = read_list(file);
    check_taken(all_, list_);
    // A list that is refused leaves no result file behind; one that was begun is only looked at where it goes
    // on.
    results_path_ = result_path(file);
    if (call_.share.of > 1) // of its own, or several computers would wait for each other
        results_path_.replace_filename(text_of(results_path_.stem()) + "-" +
                                       std::to_string(call_.share.number) + "von" +
                                       std::to_string(call_.share.of) + ".csv");
    std::error_code error;
    if (std::filesystem::exists(results_path_, error))
        results_.emplace(results_path_, list_);
    ways_.resize(list_.rows.size());
    try_out(
        list_, all_, {},
        {.folders = folders_, .exists = os::exists, .despite = call_.despite, .listed = true},
        [&](std::size_t row) { return is_to_do(row); },
        [&](std::size_t row, const Order &order, const Trial &trial) {
            ways_[row] = way_of(trial);
            check_cable(row, order, trial);
        });
    if (!results_)
        results_.emplace(results_path_, list_);
}

bool ListCommand::is_to_do(std::size_t row) const {
    return is_mine(row) && (!results_ || operation::is_to_do(results_->last(row), call_.repeat));
}

Way ListCommand::way_of(const Trial &trial) {
    if (trial.port.empty())
        return {.label = numbers_->told("Netzwerk"), .resource = "Netzwerk", .device = {}};
    if (const auto number = parse_port_number(trial.port))
        return {.label = numbers_->told(port_entry(*number)),
                .resource = numbers_->identity(*number),
                .device = {}};
    return {.label = trial.port, .resource = PortMap::identity(trial.port), .device = trial.port};
}

/// Nobody changes the device at a cable while the list runs: the second row would configure the first one's.
void ListCommand::check_cable(std::size_t row, const Order &order, const Trial &trial) {
    if (trial.port.empty() || trial.remote || call_.despite)
        return;
    const auto [first, is_new] = at_cables_.emplace(std::pair(ways_[row].resource, order.job), row);
    if (!is_new)
        throw UsageError("an " + ways_[row].label + " hängt schon das Gerät von Zeile " +
                         std::to_string(list_.rows[first->second].line) +
                         " (nacheinander nur mit --trotzdem)");
}

void ListCommand::follow_row(std::size_t row, RowProgram &program) {
    follow(program, label(row), call_, out_);
    if (!call_.json)
        return;
    tell_event("begonnen", row, *results_->last(row));
    program.step = [this, row](std::string_view text) {
        tell_event("schritt", row, {.time = now(), .port = ways_[row].label, .message = std::string(text)});
    };
}

void ListCommand::tell_event(const char *what, std::size_t row, const Attempt &attempt) {
    out_.results.line(json_line({{"ereignis", what},
                                 {"zeile", std::to_string(list_.rows[row].line)},
                                 {"name", list_.rows[row].name},
                                 {"auftrag", list_.rows[row].job},
                                 {"zeit", attempt.time},
                                 {"schnittstelle", attempt.port},
                                 {"ergebnis", std::string(what) == "schritt" ? "" : word_of(attempt.outcome)},
                                 {"meldung", joined_lines(attempt.message)},
                                 {"imei", attempt.imei}}));
}

void ListCommand::tell_done(std::size_t row) {
    const Attempt &last = *results_->last(row);
    if (call_.json)
        return tell_event("ausgelassen", row, last);
    out_.results.line(label(row) + ": " +
                      (is_done(last.outcome)
                           ? "schon erledigt (" + std::string(word_of(last.outcome))
                           : std::string(word_of(last.outcome)) + " (noch einmal nur mit --wiederholen") +
                      ", " + last.time + ")");
}

void ListCommand::tell(std::size_t row, const Attempt &attempt) {
    if (call_.json)
        return tell_event("beendet", row, attempt);
    const bool worth_telling =
        attempt.outcome != RowOutcome::succeeded || find_job(list_.rows[row].job)->result;
    out_.results.line(label(row) + ", " + attempt.port + ": " + word_of(attempt.outcome) +
                      (worth_telling && !attempt.message.empty() ? ": " + one_line(attempt.message) : ""));
}

std::vector<std::size_t> ListCommand::mine() const {
    std::vector<std::size_t> rows = all_rows(list_);
    std::erase_if(rows, [this](std::size_t row) { return !is_mine(row); });
    return rows;
}

/// Counts the rows by how they stand now, and says what that means for the exit code.
int ListCommand::sum_up() {
    const std::vector<std::size_t> rows = mine();
    int code = job_succeeded;
    for (const std::size_t row : rows) {
        const auto &last = results_->last(row);
        if (last && last->outcome == RowOutcome::differs)
            code = code == job_failed ? job_failed : device_differs;
        else if (!results_->done(row))
            code = job_failed;
        else if (last->outcome == RowOutcome::objected && code == job_succeeded)
            code = device_objected;
    }
    std::string counts;
    for (const auto &[word, count] : results_->counts(rows))
        counts += (counts.empty() ? "" : ", ") + std::to_string(count) + " " + word;
    if (call_.json)
        out_.results.line(json_line({{"ereignis", "ende"},
                                     {"zeilen", std::to_string(rows.size())},
                                     {"meldung", counts},
                                     {"ergebnisse", text_of(results_path_)}}));
    else
        out_.results.line(std::to_string(rows.size()) + (rows.size() == 1 ? " Zeile: " : " Zeilen: ") +
                          counts + ". Ergebnisse: " + text_of(results_path_));
    return unwritten_ ? job_failed : code;
}

int ListCommand::record(int code) {
    if (call_.record.empty())
        return code;
    const std::string why = write_record(
        call_, record_of({list_, *results_, mine()}, log_.jobs(), record_frame(call_, remembered_)));
    if (!why.empty())
        out_.remarks.line("telvox-cli: " + why);
    return why.empty() || code != job_succeeded ? code : job_failed;
}

} // namespace

int run_list(QCoreApplication &application, const Call &call, Outputs &out) {
    return ListCommand(call, out).run(application);
}

} // namespace telvox::cli
