// "Erkennen" against the simulated devices: every variant in every format in which one is left, and what is
// no Telvox-A. Whatever it is, it stays as it was.

#include "operation/search_window.hpp"
#include "rig/beside.hpp"

#include "dialogues/families.hpp"
#include "simulator/analog.hpp"
#include "simulator/cable.hpp"
#include "simulator/ethernet.hpp"
#include "simulator/gprs.hpp"
#include "simulator/gsm.hpp"
#include "simulator/isdn.hpp"

#include <gmock/gmock.h>
#include <random>
#include <set>

namespace telvox::test {
namespace {

using simulator::Generation;
using testing::HasSubstr;
using testing::IsSubsetOf;

/// Commands that ask and change nothing, and the escape of a module in its data mode.
const std::set<std::string> questions = {"AT**TIME?\r", "AT**IMEI?\r", "ATI\r", "ATI0\r",
                                         "ATI1\r",      "+++",         "ATO\r"};

/// One search at a far end.
struct Search {
    explicit Search(simulator::Device &far, const std::string &format = {}) : bench(far) {
        Rig &rig = bench.rig;
        Telvox &p = rig.program;
        rig.free_ports = {2};
        rig.choose_cable_port(2);
        if (!format.empty())
            p.desk.session.strCOMparameter_direkt = format;
        rig.on_output = [this, on = rig.on_output](std::string_view bytes) {
            sent.emplace(bytes);
            on(bytes);
        };
        rig.turn_to(milliseconds{60'000}); // the device has started
        p.click(bench.f.cbuErkennen);
        int last = 0;
        for (; p.busy() && rig.now < milliseconds{360'000}; bench.run(milliseconds{100})) {
            const Progress progress = p.progress();
            EXPECT_TRUE(progress.step >= last && progress.step <= progress.steps) << progress.step;
            last = progress.step;
        }
        took = rig.now - milliseconds{60'000};
        EXPECT_FALSE(p.busy() || rig.port.is_open);
        EXPECT_EQ(rig.boxes.size(), 1u);
        box = rig.boxes.empty() ? "" : rig.boxes[0].text;
        EXPECT_THAT(sent, IsSubsetOf(questions));
    }

    Bench bench;
    std::set<std::string> sent;
    std::string box;
    milliseconds took{0};
};

TEST(Recognition, FindsEveryVariantInEveryUsualFormatAndChangesNothing) {
    struct Kind {
        const char *name;
        OptionButton FrmModem::*option;
        std::shared_ptr<simulator::Unit> (*unit)();
        bool adapts = false; ///< answers in whatever format it is asked
    };
    const Kind kinds[] = {
        {"Analog", &FrmModem::optAnalog,
         []() -> std::shared_ptr<simulator::Unit> { return std::make_shared<simulator::Analog>(); }, true},
        {"ISDN", &FrmModem::optISDN,
         []() -> std::shared_ptr<simulator::Unit> { return std::make_shared<simulator::Isdn>(); }},
        {"GSM", &FrmModem::optGSM,
         []() -> std::shared_ptr<simulator::Unit> {
             return std::make_shared<simulator::Gsm>(Generation::newer);
         }},
        {"GSM", &FrmModem::optGSM,
         []() -> std::shared_ptr<simulator::Unit> {
             return std::make_shared<simulator::Gsm>(Generation::older);
         }},
        {"GPRS", &FrmModem::optGPRS,
         []() -> std::shared_ptr<simulator::Unit> { return std::make_shared<simulator::Gprs>(); }},
        {"GPRS", &FrmModem::optGPRS,
         []() -> std::shared_ptr<simulator::Unit> {
             auto unit = std::make_shared<simulator::Gprs>();
             unit->go_online();
             return unit;
         }},
        {"Ethernet", &FrmModem::optEthernet,
         []() -> std::shared_ptr<simulator::Unit> {
             return std::make_shared<simulator::Ethernet>("00-05-B6-00-1C-04");
         }},
    };
    const char *formats[] = {"2400,e,8,1", "9600,n,8,1", "19200,n,8,1", "38400,n,8,1",
                             "9600,e,8,1", "4800,e,8,1", "1200,e,8,1"};
    for (const Kind &kind : kinds)
        for (const std::string format : formats)
            for (const bool direct : {true, false}) {
                const auto unit = kind.unit();
                unit->set_format(*parse_format(format));
                unit->memory.recipient = "01711234567";
                const simulator::Memory before = unit->memory;
                const bool online = unit->online;
                simulator::Cable cable(unit);
                const std::string asked = direct ? format : "300,o,7,1";
                const Search search(cable, asked);
                const std::string case_name = std::string(kind.name) + " " + format;
                EXPECT_EQ(search.box, std::string("Telvox-A ") + kind.name + " an COM 2, " +
                                          (kind.adapts ? asked : format))
                    << case_name;
                EXPECT_TRUE((search.bench.f.*kind.option).value) << case_name;
                EXPECT_EQ(unit->memory, before) << case_name;
                EXPECT_EQ(unit->online, online && kind.option != &FrmModem::optEthernet) << case_name;
                EXPECT_LE(search.took, milliseconds{direct ? 10'000 : 80'000}) << case_name;
                EXPECT_EQ(search.bench.rig.program.desk.session.strCOMparameter_direkt,
                          kind.adapts ? asked : format);
            }
}

/// A far end of the test's own: answers at once what it hears, or talks without being asked.
struct Stranger final : simulator::Device {
    using Time = simulator::Time;
    using Answer = std::function<std::string(std::string_view)>;
    explicit Stranger(Answer answer_to, bool always = false) : answer(std::move(answer_to)), talks(always) {}

    void open(bool, Time) override {}
    void format(const SerialFormat &, Time) override {}
    void dtr(bool, Time) override {}
    void receive(std::string_view bytes, Time now) override {
        pending += answer(bytes);
        due = now;
    }
    std::string transmit(Time now) override {
        if (talks && now >= due) {
            pending += answer({});
            due = now + Time{100};
        }
        return std::exchange(pending, {});
    }
    bool carrier(Time) override { return false; }
    [[nodiscard]] std::optional<Time> next() const override {
        return talks || !pending.empty() ? std::optional{due} : std::nullopt;
    }

    Answer answer;
    bool talks;
    Time due{0};
    std::string pending;
};

constexpr const char *nobody = "Es konnte keine Verbindung zum Telvox-A hergestellt werden.\r"
                               "Bitte Prüfen Sie die Leitungsverbindung und stellen Sie sicher, dass das "
                               "Gerät mit Spannung versorgt wird.";

TEST(Recognition, SaysOfAStrangerWhatItIs) {
    const auto echo = [](std::string_view bytes) { return std::string(bytes); };
    struct Case {
        Stranger far;
        const char *box;
        int seconds;
    };
    Case cases[] = {
        {Stranger([](std::string_view) { return std::string(); }), nobody, 70},
        {Stranger(echo), nobody, 70},
        {Stranger([&](std::string_view bytes) { return echo(bytes) + "\r\nOK\r\n"; }),
         "Es hat ein Gerät geantwortet, aber nicht wie ein Telvox-A.", 10},
    };
    for (Case &c : cases) {
        const Search search(c.far);
        EXPECT_EQ(search.box, c.box);
        EXPECT_LE(search.took, std::chrono::seconds{c.seconds}) << c.box;
        EXPECT_TRUE(search.bench.f.optAnalog.value) << "the choice stays";
    }
}

/// Both mobile devices answer "ATI" alike; which it is says a second question, also where the first answer
/// that tells them apart was lost.
TEST(Recognition, AsksASecondTimeWhichMobileDeviceItIs) {
    for (const std::string own : {"AT**IMEI?\r", "AT**TIME?\r"}) {
        int asked = 0;
        Stranger far([&](std::string_view bytes) -> std::string {
            if (bytes == "ATI\r")
                return "KWT Telvox-A V2.0\r\nOK\r\n";
            if (bytes != own || ++asked == 1)
                return "";
            return own == "AT**TIME?\r" ? "TIME: 12:00\r\n" : "IMEI: 123456789012345\r\n";
        });
        const Search search(far);
        EXPECT_EQ(search.box, std::string("Telvox-A ") + (own == "AT**TIME?\r" ? "GSM" : "GPRS") +
                                  " an COM 2, 2400,e,8,1");
    }
}

TEST(Recognition, SeesNoDeviceInNoise) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        std::mt19937 random(seed);
        Stranger far(
            [&](std::string_view) {
                std::string bytes(24, 0); // 100 ms at full speed
                std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<char>(random()); });
                return bytes;
            },
            true);
        EXPECT_EQ(Search(far).box, nobody) << seed;
    }
}

/// Without a chosen port all are asked at once, each by a program of its own.
TEST(Recognition, AsksAllPortsAtTheSameTime) {
    const auto unit = std::make_shared<simulator::Gprs>();
    unit->set_format(*parse_format("9600,n,8,1"));
    simulator::Cable gprs(unit), isdn(std::make_shared<simulator::Isdn>());
    Stranger silent([](std::string_view) { return ""; });
    for (const bool cancels : {false, true}) {
        Beside beside({&isdn, &silent, &gprs});
        Rig rig;
        FrmModem &main = rig.program.desk.frmModem;
        FrmSuche &form = rig.program.desk.frmSuche;
        operation::SearchWindow search(rig.program, rig.scan, beside.make());
        std::string history;
        search.search().done = [&](const std::vector<DoneJob> &jobs) {
            history += jobs.at(0).line.variant + " " + jobs[0].line.port + "\n";
        };
        const auto searching = [&] { return rig.program.busy(); };
        rig.free_ports = {2, 3, 5};
        rig.busy_ports = {{.number = 4, .refusal = "Die Schnittstelle wird schon benutzt."}};
        rig.program.choose(main.optFernverbindung);
        rig.program.click(main.cbuErkennen);
        EXPECT_TRUE(form.open && !main.cbuParametrieren.usable() && main.optDirektverbindung.value);
        rig.program.click(main.mnuEinstellungen);
        rig.program.choose(main.optISDN);
        beside.run(searching, milliseconds{20'000});
        EXPECT_THAT(form.tblSuche.cell(0, 1) + form.tblSuche.cell(1, 1), "Telvox-A ISDNwird gefragt…");
        EXPECT_EQ(form.tblSuche.selected, 0u) << "Enter takes it, the rest need not be waited for";
        EXPECT_GT(main.pzbSchritt.value, 1);
        if (cancels)
            rig.program.click(main.cbuAbbrechen);
        EXPECT_NEAR(static_cast<double>(beside.run(searching).count()), cancels ? 0 : 47'000, 5'000)
            << "as long as the slowest";
        EXPECT_FALSE(searching() || beside.any_port_open());
        EXPECT_TRUE(main.fraModemart.enabled);
        EXPECT_THAT(form.lblSuche.caption,
                    HasSubstr(cancels ? "abgebrochen. 2 Geräte" : "2 Geräte an 3 Schnittstellen gefunden."));
        rig.program.choose(form.tblSuche, 1);
        EXPECT_FALSE(form.cbuUebernehmen.usable());
        rig.program.choose(form.tblSuche, 2);
        rig.program.click(form.cbuUebernehmen);
        EXPECT_TRUE(main.optGPRS.value && !form.open);
        EXPECT_EQ(main.cobSchnittstelle.text + rig.program.desk.session.strCOMparameter_direkt,
                  "COM 59600,n,8,1");
        EXPECT_TRUE(rig.boxes.empty());
        EXPECT_EQ(history, "ISDN COM 2\nGPRS COM 5\n");
    }
    Beside nobody_there({&silent, &silent});
    std::string history;
    operation::Search search(nobody_there.make(), {});
    search.done = [&](const std::vector<DoneJob> &jobs) { history += jobs.at(0).line.message; };
    search.begin({{.number = 2}, {.number = 3}}, {});
    nobody_there.run([&] { return search.running(); });
    EXPECT_EQ(history, operation::nobody_found) << "once, not for each port";
}

TEST(Recognition, AsksTheOnlyPortThatThereIsAndSaysIfThereIsNone) {
    Stranger gsm([](std::string_view bytes) { return bytes == "AT**TIME?\r" ? "TIME: 12:00\r\n" : ""; });
    Bench bench(gsm);
    Beside beside({});
    const operation::SearchWindow search(bench.rig.program, bench.rig.scan, beside.make());
    bench.rig.free_ports = {};
    bench.rig.program.click(bench.f.cbuErkennen);
    EXPECT_THAT(bench.rig.boxes.at(0).text, HasSubstr("Kein COM-Port verfügbar"));
    EXPECT_FALSE(bench.rig.program.busy() || bench.rig.program.desk.frmSuche.open);
    bench.rig.free_ports = {7};
    bench.rig.program.click(bench.f.cbuErkennen);
    bench.run(milliseconds{60'000});
    EXPECT_THAT(bench.rig.boxes.at(1).text, HasSubstr("Telvox-A GSM an COM 7"));
}

TEST(Recognition, IsAdvisedWhereADeviceAnswersAnotherVariantsFirstCheck) {
    constexpr OptionButton FrmModem::*variants[] = {&FrmModem::optAnalog, &FrmModem::optISDN,
                                                    &FrmModem::optGSM, &FrmModem::optGPRS,
                                                    &FrmModem::optEthernet};
    for (const auto variant : variants)
        for (const bool answers : {true, false}) {
            Stranger far([&](std::string_view) { return std::string(answers ? "\r\nERROR\r\n" : ""); });
            Bench bench(far);
            Telvox &p = bench.rig.program;
            bench.fill_in(bench.f.*variant, false, "1");
            p.click(bench.f.cbuParametrieren);
            p.click(bench.f.mnuIPuPort);
            p.enter(p.desk.frmEthernet.tboIP, "192.168.0.7");
            if (!p.busy())
                p.click(p.desk.frmEthernet.cbuEthernet_Konfigurieren);
            bench.run(milliseconds{60'000});
            ASSERT_EQ(bench.rig.boxes.size(), 1u);
            EXPECT_EQ(bench.rig.boxes[0].text.ends_with(
                          std::string("\r\rEs hat ein Gerät geantwortet, aber nicht wie ein Telvox-A ") +
                          family_of(bench.f.modem_type()).name + ". 'Erkennen' stellt den Typ fest."),
                      answers)
                << bench.rig.boxes[0].text;
        }
}

} // namespace
} // namespace telvox::test
