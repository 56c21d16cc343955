// Time of every job on a real clock over the sum of the waits that its tables prescribe. The far end answers
// at once, so whatever is above 1 is the program's own. The sum is the same job on a turned clock. All jobs,
// or as many as the argument says, run at the same time, each with a timer of its own. Exit 1 if a ratio is
// above the limit.

#include "rig/rig.hpp"

#include "ports/network_ports.hpp"
#include "ports/qt_timer.hpp"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace telvox {
namespace {

#ifdef Q_OS_WINDOWS
constexpr double limit = 1.05;
#else
constexpr double limit = 1.02;
#endif

/// What the far end answers to bytes of the host; `carrier` if the call is taken.
struct Answer {
    std::string_view to;
    std::string_view bytes;
    bool carrier = false;
};
constexpr Answer answers[] = {
    {"ATX3D", "", true},
    {"ATD", "password:"},
    {"****", "ONLINE"},
    {"***", "REMOTE CONFIGURATION MODE"},
    {"\r", "> OK #"},
    {"AT**TIME?", "TIME: 1"},
    {"AT**PIN?", "active"},
    {"AT+CPIN?", "+CPIN: READY"},
    {"AT+CREG?", "+CREG: 0,1"},
    {"AT+CSQ", "+CSQ: 17,0"},
    {"AT**IMEI?", "IMEI: 350123451234560"},
    {"AT+CMGW=", "> "},
    {"ATQ0", "OK"},
    {"AT**GPRSAPN?", "GPRSAPN: a\r\nOK"},
    {"AT**PPPUSER?", "PPPUSER: \r\nOK"},
    {"AT**PPPPW?", "PPPPW: \r\nOK"},
    {"AT**PPPAUTH?", "PPPAUTH: PAP=0\r\nOK"},
    {"AT**AUTOIP?", "AUTOIP1: \r\nOK"},
    {"AT**AUTOPORTIP?", "AUTOPORTIP1: 1\r\nOK"},
    {"AT**AUTOURL?", "AUTOURL1: \r\nOK"},
    {"AT**AUTOPORTURL?", "AUTOPORTURL1: 1\r\nOK"},
    {"AT**CLIP?", "CLIP 1: \r\nCLIP 2: \r\nCLIP 3: \r\nOK"},
    {"AT**Callback?", "CALLBACK: 0,0,3\r\nOK"},
    {"AT**KEEP?", "KEEP: 0\r\nOK"},
    {"AT**LL?", "LL1: 0\r\nOK"},
    {"AT**IPT?", "IPT: 0\r\nIPTUSER: \r\nIPTPW: \r\nIPTKEYF: 7\r\nIPTKEYC: 7\r\nOK"},
    {"AT*V", "NEW ALARM TEXT: "},
    {"ATI", "64"},
    {"altxt=", "#"},
    {"aldest=", "#"},
    {"catab", "#"},
    {"save", "#"},
    {"Alarm", "#"},
    {"quit", "#"},
};

const Answer *answer_to(std::string_view bytes) {
    for (const Answer &answer : answers)
        if (bytes.starts_with(answer.to))
            return &answer;
    return nullptr;
}

struct JobCase {
    const char *name;
    OptionButton FrmModem::*type;
    bool remote;
    void (*press)(Telvox &);
};

template <auto Button> void press_main(Telvox &p) { p.click(p.desk.frmModem.*Button); }
template <auto Dialog, auto Button> void press_dialog(Telvox &p) {
    (p.desk.*Dialog).load();
    p.click((p.desk.*Dialog).*Button);
}

constexpr auto parametrieren = press_main<&FrmModem::cbuParametrieren>;
constexpr auto test_alarm = press_main<&FrmModem::cbuTest>;
constexpr auto alarm_off = press_main<&FrmModem::cbuAlarm_aus>;

/// With an access point, so that nothing is asked.
void gprs_write(Telvox &p) {
    p.desk.frmGPRS.load();
    p.select(p.desk.frmGPRS.cobAPN, "internet");
    p.click(p.desk.frmGPRS.cbuGPRS_schreiben);
}

const JobCase cases[] = {
    {"Analog, cable: configure", &FrmModem::optAnalog, false, parametrieren},
    {"Analog, cable: test alarm", &FrmModem::optAnalog, false, test_alarm},
    {"Analog, cable: alarm off", &FrmModem::optAnalog, false, alarm_off},
    {"Analog, remote: configure", &FrmModem::optAnalog, true, parametrieren},
    {"Analog, remote: test alarm", &FrmModem::optAnalog, true, test_alarm},
    {"Analog, remote: alarm off", &FrmModem::optAnalog, true, alarm_off},
    {"ISDN, cable: configure", &FrmModem::optISDN, false, parametrieren},
    {"ISDN, cable: test alarm", &FrmModem::optISDN, false, test_alarm},
    {"ISDN, cable: alarm off", &FrmModem::optISDN, false, alarm_off},
    {"ISDN, cable: MSN", &FrmModem::optISDN, false, press_dialog<&Desk::frmMSN, &FrmMSN::cbuMSN_einstellen>},
    {"ISDN, cable: line type", &FrmModem::optISDN, false,
     press_dialog<&Desk::frmAnschlussart, &FrmAnschlussart::cmdAnschlussart_einstellen>},
    {"ISDN, remote: configure", &FrmModem::optISDN, true, parametrieren},
    {"ISDN, remote: test alarm", &FrmModem::optISDN, true, test_alarm},
    {"ISDN, remote: alarm off", &FrmModem::optISDN, true, alarm_off},
    {"GSM, cable: configure", &FrmModem::optGSM, false, parametrieren},
    {"GSM, cable: test alarm", &FrmModem::optGSM, false, test_alarm},
    {"GSM, cable: alarm off", &FrmModem::optGSM, false, alarm_off},
    {"GSM, cable: PIN", &FrmModem::optGSM, false, press_dialog<&Desk::frmPin, &FrmPin::cbuPin_Eingabe>},
    {"GSM, cable: PIN status", &FrmModem::optGSM, false,
     press_dialog<&Desk::frmGSM_Status, &FrmGSM_Status::cbuPIN_Status>},
    {"GSM, cable: registration", &FrmModem::optGSM, false,
     press_dialog<&Desk::frmGSM_Status, &FrmGSM_Status::cbuReg_zustand>},
    {"GSM, cable: signal", &FrmModem::optGSM, false,
     press_dialog<&Desk::frmGSM_Status, &FrmGSM_Status::cbuSignalstaerke>},
    {"GSM, cable: IMEI", &FrmModem::optGSM, false,
     press_dialog<&Desk::frmGSM_Status, &FrmGSM_Status::cbuIMEI>},
    {"GSM, remote: configure", &FrmModem::optGSM, true, parametrieren},
    {"GSM, remote: test alarm", &FrmModem::optGSM, true, test_alarm},
    {"GSM, remote: alarm off", &FrmModem::optGSM, true, alarm_off},
    {"GPRS, cable: configure", &FrmModem::optGPRS, false, parametrieren},
    {"GPRS, cable: alarm off", &FrmModem::optGPRS, false, alarm_off},
    {"GPRS, cable: write", &FrmModem::optGPRS, false, gprs_write},
    {"GPRS, cable: read", &FrmModem::optGPRS, false, press_dialog<&Desk::frmGPRS, &FrmGPRS::cbuGPRS_lesen>},
    {"GPRS, cable: IPT write", &FrmModem::optGPRS, false,
     press_dialog<&Desk::frmIPT, &FrmIPT::cbuIPT_schreiben>},
    {"GPRS, cable: IPT read", &FrmModem::optGPRS, false, press_dialog<&Desk::frmIPT, &FrmIPT::cbuIPT_lesen>},
    {"GPRS, cable: PIN", &FrmModem::optGPRS, false, press_dialog<&Desk::frmPin, &FrmPin::cbuPin_Eingabe>},
    {"GPRS, cable: PIN status", &FrmModem::optGPRS, false,
     press_dialog<&Desk::frmGSM_Status, &FrmGSM_Status::cbuPIN_Status>},
    {"GPRS, cable: registration", &FrmModem::optGPRS, false,
     press_dialog<&Desk::frmGSM_Status, &FrmGSM_Status::cbuReg_zustand>},
    {"GPRS, cable: signal", &FrmModem::optGPRS, false,
     press_dialog<&Desk::frmGSM_Status, &FrmGSM_Status::cbuSignalstaerke>},
    {"GPRS, cable: IMEI", &FrmModem::optGPRS, false,
     press_dialog<&Desk::frmGSM_Status, &FrmGSM_Status::cbuIMEI>},
    {"GPRS, remote: alarm off", &FrmModem::optGPRS, true, alarm_off},
    {"GPRS, remote: write", &FrmModem::optGPRS, true, gprs_write},
    {"GPRS, remote: IPT write", &FrmModem::optGPRS, true,
     press_dialog<&Desk::frmIPT, &FrmIPT::cbuIPT_schreiben>},
};

/// Chooses and fills in what a job needs, and starts it.
void launch(Telvox &p, const JobCase &job) {
    FrmModem &f = p.desk.frmModem;
    if (job.remote)
        p.choose(f.optFernverbindung);
    p.choose(f.*job.type);
    if (job.remote && !f.optFernverbindung.value)
        p.choose(f.optFernverbindung);
    p.offer_port(3);
    p.select(f.cobSchnittstelle, "COM 3");
    p.select(f.cobModem_Port, "COM 3");
    p.enter(f.tboRufnummer_Modem, "1");
    p.enter(f.tboRufnummer_Empfaenger, "1");
    p.enter(f.tboService_Center, "1");
    p.enter(f.tboAlarmmeldung, "x");
    job.press(p);
}

/// The sum of the job's waits.
milliseconds on_turned_clock(const JobCase &job) {
    test::Rig rig;
    const Answer *answer = nullptr;
    rig.on_output = [&](std::string_view bytes) { answer = answer_to(bytes); };
    launch(rig.program, job);
    while (!rig.answers.empty())
        rig.answer(true);
    while (rig.program.busy()) {
        rig.turn_to(rig.timer.due);
        if (const Answer *due = std::exchange(answer, nullptr); due && rig.port.is_open) {
            if (due->carrier)
                rig.program.comSeriell_OnComm(CommEvent::carrier_rise);
            rig.arrive(due->bytes);
        }
    }
    return rig.now;
}

/// A port that answers as soon as the running handler has ended.
class AnsweringPort final : public QObject, public SerialPort {
  public:
    std::function<void(CommEvent)> event;

    void CommPort(int value) override { number_ = value; }
    [[nodiscard]] int CommPort() const override { return number_; }
    void Settings(const SerialFormat &) override {}
    std::string PortOpen(bool open) override {
        open_ = open && number_ == 3;
        return open && !open_ ? "not there" : "";
    }
    [[nodiscard]] bool PortOpen() const override { return open_; }
    void DTREnable(bool) override {}
    void Output(std::string_view bytes) override {
        const Answer *answer = answer_to(bytes);
        if (!answer)
            return;
        QTimer::singleShot(0, this, [this, answer] {
            if (!open_)
                return;
            pending_ += answer->bytes;
            event(answer->carrier ? CommEvent::carrier_rise : CommEvent::data);
        });
    }
    std::string Input() override { return std::exchange(pending_, {}); }
    bool drain(milliseconds) override { return true; }
    void watch_carrier(bool) override {}

  private:
    int number_ = 0;
    bool open_ = false;
    std::string pending_;
};

struct NoScan final : PortScan {
    std::vector<PortInfo> ports() override { return {}; }
    int number_of(const std::string &) override { return 0; }
};

struct RealJob final : MessageBoxes, Observer {
    explicit RealJob(const JobCase &what) : job(what) {
        timer.tick = [this] { program.Timer1_Timer(); };
        program.desk.observers.add(*this);
        port.event = [this](CommEvent reason) { program.comSeriell_OnComm(reason); };
    }
    void show(const Message &, Answered answered) override {
        if (answered) // an empty PIN is asked about
            answered(true);
    }
    void ended(const JobEnd &end) override {
        outcome = end.outcome;
        took = clock.elapsed();
        over();
    }
    void start() {
        clock.start();
        launch(program, job);
    }

    const JobCase &job;
    std::function<void()> over = [] {};
    AnsweringPort port;
    NoScan scan;
    QtTimer timer, timer2;
    std::unique_ptr<ReportingTcpClient> tcp = make_qt_tcp_client();
    std::unique_ptr<ReportingProcesses> processes = make_qt_processes();
    Telvox program{{.comSeriell = port,
                    .scan = scan,
                    .Timer1 = timer,
                    .boxes = *this,
                    .Timer2 = timer2,
                    .Winsock = *tcp,
                    .processes = *processes},
                   {"/nonexistent", {}}};
    QElapsedTimer clock;
    qint64 took = -1;
    Outcome outcome = Outcome::refused;
};

int measure(int argc, char **argv) {
    QCoreApplication application(argc, argv);
    const std::size_t all = std::size(cases);
    const std::size_t at_once =
        argc > 1 ? std::clamp<std::size_t>(std::strtoul(argv[1], nullptr, 10), 1, all) : all;
    std::vector<std::unique_ptr<RealJob>> jobs;
    const auto unfinished = [&] {
        return std::any_of(jobs.begin(), jobs.end(), [](const auto &job) { return job->took < 0; });
    };
    QEventLoop waiting;
    QTimer in_time;
    QObject::connect(&in_time, &QTimer::timeout, &waiting, &QEventLoop::quit);
    while (jobs.size() < all) {
        const std::size_t first = jobs.size();
        for (std::size_t i = first; i < std::min(first + at_once, all); ++i)
            jobs.push_back(std::make_unique<RealJob>(cases[i]));
        std::for_each(jobs.begin() + static_cast<std::ptrdiff_t>(first), jobs.end(), [&](const auto &job) {
            job->over = [&] {
                if (!unfinished())
                    waiting.quit();
            };
            job->start();
        });
        in_time.start(std::chrono::minutes{1});
        waiting.exec();
    }

    double worst = 0;
    std::printf("%-30s %10s %10s %8s\n", "job", "waits ms", "took ms", "ratio");
    for (const auto &job : jobs) {
        const auto waits = static_cast<double>(on_turned_clock(job->job).count());
        const double ratio = static_cast<double>(job->took) / waits;
        const bool well = job->outcome == Outcome::succeeded && job->took >= 0;
        worst = std::max(worst, well ? ratio : 99);
        std::printf("%-30s %10.0f %10lld %8.4f%s\n", job->job.name, waits, static_cast<long long>(job->took),
                    ratio, well ? "" : "  FAILED");
    }
    std::printf("worst ratio %.4f, limit %.2f\n", worst, limit);
    return worst <= limit ? 0 : 1;
}

} // namespace
} // namespace telvox

int main(int argc, char **argv) { return telvox::measure(argc, argv); }
