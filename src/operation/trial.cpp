#include "operation/trial.hpp"

#include "core/text.hpp"
#include "operation/backups.hpp"
#include "operation/operator.hpp"
#include "operation/plan.hpp"
#include "telvox.hpp"

namespace telvox::operation {

namespace {

class NoPort final : public SerialPort {
  public:
    void CommPort(int number) override { number_ = number; }
    [[nodiscard]] int CommPort() const override { return number_; }
    void Settings(const SerialFormat &) override {}
    std::string PortOpen(bool open) override {
        open_ = open;
        return {};
    }
    [[nodiscard]] bool PortOpen() const override { return open_; }
    void DTREnable(bool) override {}
    void Output(std::string_view) override {}
    std::string Input() override { return {}; }
    bool drain(milliseconds) override { return true; }
    void watch_carrier(bool) override {}

  private:
    int number_ = 0;
    bool open_ = false;
};

class NoTimer final : public Timer {
  public:
    void Interval(milliseconds) override {}
    void Enabled(bool) override {}
    [[nodiscard]] milliseconds now() const override { return {}; }
};

class NoTcpClient final : public TcpClient {
  public:
    void connect(const std::string &, int) override {}
    void send(std::string_view) override {}
    void close() override {}
};

class NoProcesses final : public Processes {
  public:
    [[nodiscard]] Tools tools() const override { return Tools::of_linux; }
    void run(const ShellCommand &, milliseconds) override {}
    void kill() override {}
};

class NamedPorts final : public PortScan {
  public:
    explicit NamedPorts(const std::function<bool(const std::string &)> &exists) : exists_(exists) {}
    [[nodiscard]] std::vector<PortInfo> ports() override { return {}; }
    [[nodiscard]] int number_of(const std::string &device) override { return exists_(device) ? 1 : 0; }

  private:
    const std::function<bool(const std::string &)> &exists_;
};

/// Keeps the last that was said.
class Answers final : public MessageBoxes {
  public:
    explicit Answers(bool despite) : despite_(despite) {}
    void show(const Message &message, Answered answered) override {
        last = message;
        if (answered)
            answered(!message.asks || despite_);
    }
    Message last;

  private:
    bool despite_;
};

/// The program of a trial.
struct Stage {
    Stage(const TrialWorld &world, const Values &base)
        : answers(world.despite), named(world.exists), program(ports(), world.folders) {
        at_the_form.begin_with(base);
    }

    NoPort port;
    NoTimer timer, network_timer;
    NoTcpClient tcp;
    NoProcesses processes;
    Answers answers;
    NamedPorts named;
    Telvox program;
    Operator at_the_form{program, named};

  private:
    Telvox::Ports ports() {
        return {.comSeriell = port,
                .scan = named,
                .Timer1 = timer,
                .boxes = answers,
                .Timer2 = network_timer,
                .Winsock = tcp,
                .processes = processes};
    }
};

} // namespace

Trial try_out(const Order &order, const Values &base, const TrialWorld &world) {
    Stage stage(world, base);
    Operator &at_the_form = stage.at_the_form;
    at_the_form.fill_in(order);
    const Course course = course_of(order, stage.program.desk, world.listed);
    if (!world.presses)
        return {.merges = course.merges};
    at_the_form.press({.job = &first_job(*order.job, course), .values = {}});
    const Message &said = stage.answers.last;
    if (!stage.program.busy())
        return {.refusal = joined_lines(at_the_form.by_path(said.text)) +
                           (said.asks ? " (Nein; --trotzdem bedeutet Ja)" : ""),
                .option = at_the_form.named_by_check(order)};
    const bool remote = stage.program.desk.frmModem.optFernverbindung.value;
    const char *const port = remote ? "modemanschluss" : "schnittstelle";
    const Given *given = stage.port.PortOpen() ? order.find(port) : nullptr;
    if (!given && stage.port.PortOpen())
        given = find(base, port);
    return {.port = given ? given->value : "", .remote = remote, .merges = course.merges};
}

void try_out(const Profile &profile, const Values &base, const TrialWorld &world) {
    Stage stage(world, base);
    stage.at_the_form.fill_main_window(profile.main);
    for (const auto &[section, values] : profile.dialogs) {
        section->form(stage.program.desk).load();
        stage.at_the_form.fill(section->options, values);
    }
}

namespace {

/// Everything that is wrong with a row: what is wrong is taken out, and the rest is tried.
void try_row(const DeviceList &list, std::size_t row, const ForAllRows &all, const Values &base,
             TrialWorld world, const RowTried &tried, Mistakes &mistakes) {
    const DeviceList::Row &of = list.rows[row];
    const auto at = [&](const std::string &column, const std::string &why) {
        return UsageError({.kind = Place::Kind::table, .name = column, .where = place(list.source, of.line)},
                          ": " + why);
    };
    const auto in_row = [&](const UsageError &mistake) -> std::string {
        const bool says_it = mistake.place && mistake.place->kind == Place::Kind::table;
        return says_it ? mistake.what() : at("", mistake.what()).what();
    };
    try {
        for (Order order = order_of(list, of, all, base);;) {
            try {
                const Trial trial = try_out(order, base, world);
                if (!trial.refusal.empty())
                    throw at(trial.option, trial.refusal);
                return tried(row, order, trial);
            } catch (const UsageError &mistake) {
                if (!mistake.place || is_switch(mistake.place->name) ||
                    order.values.erase(mistake.place->name) == 0)
                    throw;
                mistakes.add(in_row(mistake));
                world.presses = false; // what is missing now was there
            }
        }
    } catch (const UsageError &mistake) {
        mistakes.add(in_row(mistake));
    }
}

} // namespace

void try_out(const DeviceList &list, const ForAllRows &all, const Values &base, const TrialWorld &world,
             const std::function<bool(std::size_t row)> &is_to_do, const RowTried &tried) {
    Mistakes mistakes;
    bool can_keep = false;
    const RowTried with_copies = [&](std::size_t row, const Order &order, const Trial &trial) {
        if (trial.merges && !std::exchange(can_keep, true))
            check_backups(world.folders);
        tried(row, order, trial);
    };
    for (std::size_t row = 0; row < list.rows.size() && !mistakes.many(); ++row)
        if (is_to_do(row))
            try_row(list, row, all, base, world, with_copies, mistakes);
    mistakes.check();
}

} // namespace telvox::operation
