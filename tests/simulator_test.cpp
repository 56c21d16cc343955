#include "simulator/analog.hpp"
#include "simulator/cable.hpp"
#include "simulator/gprs.hpp"
#include "simulator/gsm.hpp"
#include "simulator/isdn.hpp"
#include "simulator/local_modem.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace telvox::simulator {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// A host at the device's line with a clock that the test turns. It wakes the device exactly when the device
/// asks for it, so a wrong `next` shows as a missing answer.
class Host {
  public:
    explicit Host(Device &device, const SerialFormat &format = factory_format) : device_(device) {
        device_.format(format, now);
        device_.open(true, now);
    }
    std::string turn(Time span) {
        const Time end = now + span;
        std::string bytes;
        while (const auto due = device_.next()) {
            if (*due > end)
                break;
            now = std::max(now, *due);
            bytes += device_.transmit(now);
        }
        now = end;
        return bytes;
    }
    /// Writes raw bytes and returns what comes back within a second.
    std::string raw(std::string_view bytes, Time span = 1000ms) {
        device_.receive(bytes, now);
        return turn(span);
    }
    std::string line(const std::string &text, Time span = 1000ms) { return raw(text + "\r", span); }
    bool carrier() { return device_.carrier(now); }

    Time now{0};

  private:
    Device &device_;
};

struct OnCable : testing::Test {
    std::shared_ptr<Gsm> gsm = std::make_shared<Gsm>(Generation::newer);
    std::shared_ptr<Analog> analog = std::make_shared<Analog>();
    std::shared_ptr<Isdn> isdn = std::make_shared<Isdn>();
    Cable gsm_cable{gsm};
    Cable analog_cable{analog};
    Cable isdn_cable{isdn};
};

TEST_F(OnCable, bytes_come_at_the_pace_of_the_line_in_small_pieces) {
    Host host{gsm_cable};
    gsm_cable.receive("AT**IMEI?\r", host.now);
    // 10 characters of 11 bits at 2400 baud, then the device thinks, then the first 8 characters.
    const Time first = 46ms + Unit::processing + 37ms;
    EXPECT_THAT(host.turn(first - 1ms), IsEmpty());
    EXPECT_EQ(host.turn(2ms), "\r\nIMEI: ");
    EXPECT_EQ(host.turn(200ms), gsm->imei + "\r\n");

    gsm->set_format({19200, 'n', 8, 1});
    Cable fast{gsm};
    Host quick{fast, {19200, 'n', 8, 1}};
    EXPECT_THAT(quick.line("AT**IMEI?", 60ms), HasSubstr(gsm->imei));
}

TEST_F(OnCable, gsm_gives_result_codes_only_when_they_are_on) {
    Host host{gsm_cable};
    EXPECT_THAT(host.line("AT**SCN=+49172"), IsEmpty());
    EXPECT_THAT(host.line("AT**NONSENSE"), IsEmpty());
    EXPECT_EQ(host.line("ATQ0"), "\r\nOK\r\n");
    EXPECT_EQ(host.line("AT**SCN=+49171"), "\r\nOK\r\n");
    EXPECT_EQ(host.line("AT**NONSENSE"), "\r\nERROR\r\n");
    EXPECT_EQ(host.line("AT+CREG?"), "\r\n+CREG: 0,1\r\n\r\nOK\r\n");
    EXPECT_THAT(host.line("ATQ1"), IsEmpty());
    EXPECT_EQ(host.line("AT+CSQ"), "\r\n+CSQ: 17,0\r\n");
    EXPECT_EQ(gsm->memory.service_number, "+49171");
}

TEST_F(OnCable, gsm_keeps_what_it_is_told_and_refuses_what_it_cannot_keep) {
    Host host{gsm_cable};
    EXPECT_THAT(host.line("ATI"), HasSubstr("KWT Telvox-A"));
    for (const char *line :
         {"AT**DST1=0171", "AT**MSG1=\"Pumpe 1\"", "AT**INPUT1=1", "AT**SMS=1", "AT**SMS=2"})
        EXPECT_THAT(host.line(line), IsEmpty());
    EXPECT_EQ(gsm->memory.alarms, 0) << "no service centre yet";
    host.line("AT**SCN=+49171");
    host.line("AT**SMS=1");
    host.line("AT**SMS=2");
    EXPECT_EQ(gsm->memory.alarms, 1) << "SMS 2 belongs to the older generation";
    for (const char *line : {"AT**DST2=0815", "AT**MSG1=Pumpe 2", "AT**MSG1=\"a\"b\"", "AT**INPUT1=7"})
        host.line(line);
    EXPECT_EQ(gsm->memory.recipient, "0171");
    EXPECT_EQ(gsm->memory.text, "Pumpe 1");
    EXPECT_TRUE(gsm->memory.input_armed);
}

TEST_F(OnCable, gsm_pin_and_sim_states) {
    Host host{gsm_cable};
    gsm->sim_pin = "4711";
    EXPECT_EQ(host.line("AT**PIN?"), "\r\nPIN: inactive\r\n");
    EXPECT_THAT(host.line("AT+CPIN?"), HasSubstr("+CPIN: SIM PIN"));
    host.line("AT**PIN=47x1");
    EXPECT_THAT(gsm->memory.pin, IsEmpty());
    host.line("AT**PIN=4711");
    EXPECT_EQ(host.line("AT**PIN?"), "\r\nPIN: active\r\n");
    EXPECT_THAT(host.line("AT+CPIN?"), HasSubstr("+CPIN: READY"));
    gsm->sim_present = false;
    EXPECT_THAT(host.line("AT+CPIN?"), IsEmpty());
}

TEST_F(OnCable, fixed_line_devices_ask_for_the_text_and_take_the_next_line) {
    struct Case {
        Cable &cable;
        Memory &memory;
        const char *service;
        const char *recipient;
        const char *test;
    };
    for (auto &[cable, memory, service, recipient, test] :
         {Case{analog_cable, analog->memory, "AT&Z0=", "AT&Z2=", "AT%A"},
          Case{isdn_cable, isdn->memory, "AT&Z1=", "AT&Z3=", "AT*X"}}) {
        Host host{cable};
        EXPECT_EQ(host.line("AT*V"), "\r\nNEW ALARM TEXT: ");
        EXPECT_EQ(host.line("AT&W"), "\r\nOK\r\n");
        EXPECT_EQ(memory.text, "AT&W") << "whatever comes is the text";
        EXPECT_FALSE(memory.saved);
        host.line("AT*M5");
        EXPECT_THAT(host.line("AT*M7"), HasSubstr("ERROR"));
        host.line(service + std::string{"0800"});
        host.line(recipient + std::string{"0171"});
        host.line(test);
        EXPECT_EQ(memory.protocol + " " + memory.service_number + " " + memory.recipient, "M5 0800 0171");
        host.line(service);
        EXPECT_THAT(host.line(test), HasSubstr("ERROR"));
        EXPECT_EQ(memory.alarms, 1) << "without a service number the alarm function is off";
        host.line("AT&W");
        EXPECT_TRUE(memory.saved);
        host.line("AT*V");
        host.line("");
        EXPECT_THAT(memory.text, IsEmpty()) << "an empty line is an empty text";
    }
}

TEST_F(OnCable, isdn_line_type_and_numbers) {
    Host host{isdn_cable};
    EXPECT_THAT(host.line("ATI1"), HasSubstr("64"));
    for (const char *line : {"AT**PTP=1", "AT**PTP=2", "AT#Z=11", "AT**MSN=12"})
        host.line(line);
    EXPECT_TRUE(isdn->memory.point_to_point);
    EXPECT_EQ(isdn->memory.data_msn + isdn->memory.msn, "1112");
}

TEST_F(OnCable, hostile_input_leaves_the_device_alive_and_bounded) {
    Host host{gsm_cable};
    host.line("ATQ0");
    EXPECT_THAT(host.line("AT**TIME?" + std::string(LineCollector::limit, '1'), 5s), IsEmpty())
        << "an overlong line is lost as a whole";
    host.line("ATQ1");
    host.raw(std::string{"\0\xff\x01+CPIN\r\r\r\n", 12});
    host.raw(std::string(1'000'000, 'A'), 60s);
    host.line("");
    EXPECT_THAT(host.line("AT**TIME?"), HasSubstr("TIME: 2000/01/01,00:01:"));

    host.line("ATQ0");
    std::string flood;
    for (int i = 0; i < 100'000; ++i)
        flood += "ATA\r";
    const std::string answers = host.raw(flood, 10min);
    EXPECT_THAT(answers, HasSubstr("ERROR"));
    const auto line_time = 5ms * Wire::capacity;
    const auto processed = static_cast<std::size_t>(line_time / Unit::processing) + Unit::backlog;
    EXPECT_LE(answers.size(), processed * std::string_view{"\r\nERROR\r\n"}.size());
    EXPECT_THAT(host.line("AT**TIME?"), HasSubstr("TIME:"));
}

TEST_F(OnCable, last_command_before_closing_arrives_and_a_silent_device_says_nothing) {
    Host host{gsm_cable};
    host.raw("AT**PIN=4711\r", 0ms);
    gsm_cable.open(false, host.now);
    EXPECT_EQ(gsm->memory.pin, "4711");
    gsm_cable.receive("AT**TIME?\r", host.now);
    EXPECT_THAT(host.turn(1s), IsEmpty()) << "nothing reaches a closed port";
    gsm_cable.open(true, host.now);
    host.raw("AT**TIME?\r", 60ms);
    gsm->silent = true;
    EXPECT_THAT(host.turn(1s), IsEmpty()) << "also what it was about to say";
}

/// What a host writes, and what it gets back within a second.
using Dialogue = std::vector<std::pair<std::string, std::string>>;

void talk(Host &host, const Dialogue &dialogue) {
    for (const auto &[line, answer] : dialogue)
        EXPECT_EQ(host.line(line, 3s), answer) << line;
}

/// A device on its cable is told a new format; behind each line it talks in the format that stands there.
struct FormatChange {
    const char *name;
    std::shared_ptr<Unit> (*make)();
    const char *check;
    const char *answer;
    std::vector<std::pair<const char *, const char *>> lines;
};

template <class Family, auto... Arguments> std::shared_ptr<Unit> make() {
    return std::make_shared<Family>(Arguments...);
}

const FormatChange format_changes[] = {
    {"GSM",
     make<Gsm, Generation::newer>,
     "AT**TIME?",
     "TIME:",
     {{"AT**BAUD=9600", "2400,e,8,1"}, {"AT**FORMAT=8n2", "2400,e,8,1"}, {"AT&W", "9600,n,8,2"}}},
    {"ISDN",
     make<Isdn>,
     "ATI1",
     "64",
     {{"AT%B1", "2400,e,8,1"},
      {"AT**PRTY=1", "2400,e,8,1"},
      {"AT**DBITS=7", "2400,e,8,1"},
      {"AT&W", "1200,o,7,1"}}},
    {"GPRS",
     make<Gprs>,
     "AT**IMEI?",
     "IMEI: ",
     {{"AT**BAUD=19200", "19200,e,8,1"}, {"AT**FORMAT=7o1", "19200,o,7,1"}, {"AT&W", "19200,o,7,1"}}},
};

TEST(Formats, device_follows_its_change_where_its_family_does_and_keeps_it_when_saved) {
    for (const auto &[name, make, check, answer, lines] : format_changes) {
        for (const bool saves : {true, false}) {
            const auto unit = make();
            Cable cable{unit};
            Host host{cable};
            auto format = factory_format;
            for (const auto &[line, then] : lines) {
                SCOPED_TRACE(std::string{name} + " " + line);
                if (!saves && line == std::string_view{"AT&W"})
                    continue;
                host.line(line);
                const auto before = std::exchange(format, *parse_format(then));
                for (const auto &spoken : {before, format}) {
                    cable.format(spoken, host.now);
                    const auto heard = host.line(check);
                    EXPECT_EQ(heard.find(answer) != std::string::npos, spoken == format) << heard;
                }
            }
            unit->restart(host.now);
            host.turn(Unit::start_time);
            cable.format(saves ? format : factory_format, host.now);
            EXPECT_THAT(host.line(check), HasSubstr(answer)) << name;
        }
    }
}

TEST(Formats, what_is_no_format_of_the_family_is_refused) {
    const std::pair<std::shared_ptr<Unit>, std::vector<const char *>> refusals[] = {
        {make<Gsm, Generation::older>(), {"AT**BAUD=", "AT**BAUD=2401", "AT**BAUD=2400,e", "AT**FORMAT=9n1"}},
        {make<Gprs>(), {"AT**FORMAT=8n", "AT**FORMAT=8x1", "AT**FORMAT=8n1 "}},
        {make<Isdn>(), {"AT%B0", "AT%B7", "AT%B", "AT**PRTY=3", "AT**DBITS=9", "AT**DBITS=78"}},
    };
    for (const auto &[unit, lines] : refusals) {
        Cable cable{unit};
        Host host{cable};
        host.line("ATQ0");
        for (const auto *line : lines)
            EXPECT_EQ(host.line(line), "\r\nERROR\r\n") << line;
        host.line("AT&W");
        EXPECT_EQ(unit->format(), factory_format);
    }
}

TEST(Formats, some_families_adapt_and_noise_is_no_command) {
    const auto analog = std::make_shared<Analog>();
    Cable cable{analog};
    Host host{cable, {9600, 'n', 8, 1}};
    EXPECT_THAT(host.line("ATI"), HasSubstr("33600"));

    Cable isdn{make<Isdn>()};
    Host two_stop_bits{isdn, {2400, 'e', 8, 2}};
    EXPECT_THAT(two_stop_bits.line("ATI1"), HasSubstr("64"));

    const auto gsm = make<Gsm, Generation::newer>();
    Cable line{gsm};
    Host wrong{line, {2400, 'n', 8, 1}};
    EXPECT_THAT(wrong.line("AT**SCN=0800"), IsEmpty());
    line.format(factory_format, wrong.now);
    line.receive("AT**TIME?\r", wrong.now);
    wrong.turn(60ms);
    line.format({1200, 'e', 8, 1}, wrong.now);
    const auto heard = wrong.turn(1s);
    EXPECT_THAT(heard, testing::AllOf(Not(IsEmpty()), testing::Each(testing::Lt('\0'))))
        << "noise to the host too";
    line.format(factory_format, wrong.now);
    EXPECT_THAT(wrong.line("AT**TIME?"), HasSubstr("TIME:")) << "behind the noise";
    EXPECT_THAT(gsm->memory.service_number, IsEmpty());
}

struct OnGprsCable : testing::Test {
    std::shared_ptr<Gprs> gprs = std::make_shared<Gprs>();
    Cable cable{gprs};
    Host host{cable};
};

TEST_F(OnGprsCable, settings_are_answered_with_their_labels_and_lost_by_a_restart_unless_saved) {
    const std::string long_name(63, 'a');
    const Dialogue writes = {{"AT**GPRSAPN=internet.OK", ""},
                             {"AT**PPPUSER=" + long_name, ""},
                             {"AT**PPPPW=", ""},
                             {"AT**PPPAUTH=1", ""},
                             {"AT**AUTOIP=10.0.0.1", ""},
                             {"AT**AUTOPORTIP=65535", ""},
                             {"AT**AUTOURL=a=b?.de", ""},
                             {"AT**AUTOPORTURL=", ""},
                             {"AT**CLIP=1", ""},
                             {"AT**CLIP1=+491", ""},
                             {"AT**CLIP2=", ""},
                             {"AT**Callback=0,3,3", ""},
                             {"AT**LL=2", ""},
                             {"AT**KEEP=255", ""},
                             {"AT**IPTUSER=u", ""},
                             {"AT**IPTPW=p w", ""},
                             {"AT**IPTCONREQ=1", ""},
                             {"AT**IPTWATCHDOG=0", ""},
                             {"AT**IPT=3", ""},
                             {"AT**IPTKEYF=1", ""},
                             {"AT**IPTKEYC=" + long_name + "2", ""}};
    const Dialogue reads = {{"AT**GPRSAPN?", "\r\nGPRSAPN: internet.OK\r\n"},
                            {"AT**PPPUSER?", "\r\nPPPUSER: " + long_name + "\r\n"},
                            {"AT**PPPPW?", "\r\nPPPPW: \r\n"},
                            {"AT**PPPAUTH?", "\r\nPPPAUTH: PAP=1\r\n"},
                            {"AT**AUTOIP?", "\r\nAUTOIP1: 10.0.0.1\r\n"},
                            {"AT**AUTOPORTIP?", "\r\nAUTOPORTIP1: 65535\r\n"},
                            {"AT**AUTOURL?", "\r\nAUTOURL1: a=b?.de\r\n"},
                            {"AT**AUTOPORTURL?", "\r\nAUTOPORTURL1: \r\n"},
                            {"AT**CLIP?", "\r\nCLIP 1: +491\r\nCLIP 2: \r\nCLIP 3: \r\n"},
                            {"AT**Callback?", "\r\nCALLBACK: 0,3,3\r\n"},
                            {"AT**LL?", "\r\nLL1: 2\r\n"},
                            {"AT**KEEP?", "\r\nKEEP: 255\r\n"},
                            {"AT**IPT?", "\r\nIPT: 3\r\nIPTUSER: u\r\nIPTPW: p w\r\nIPTKEYF: 1\r\nIPTKEYC: " +
                                             long_name + "2\r\n"},
                            {"AT**IMEI?", "\r\nIMEI: 001010000000017\r\n"}};
    const auto factory = gprs->memory.settings;
    for (const bool saves : {false, true}) {
        talk(host, writes);
        talk(host, reads);
        const auto written = gprs->memory.settings;
        host.line("ATQ0");
        talk(host, {{"AT**LL=9", "\r\nERROR\r\n"},
                    {"AT**Callback=0,3", "\r\nERROR\r\n"},
                    {"AT**KEEP=256", "\r\nERROR\r\n"},
                    {"AT**AUTOPORTIP=65536", "\r\nERROR\r\n"},
                    {"AT**IPTUSER?", "\r\nERROR\r\n"},
                    {"AT**?", "\r\nERROR\r\n"},
                    {"AT**LL?", "\r\nLL1: 2\r\n\r\nOK\r\n"},
                    {saves ? "AT**SAVE" : "AT", "\r\nOK\r\n"},
                    {"AT**RESET", ""},
                    {"AT**IMEI?", ""}}); // deaf
        host.turn(Unit::start_time);
        EXPECT_EQ(host.line("AT**IMEI?"), "\r\nIMEI: 001010000000017\r\n") << "result codes are off again";
        EXPECT_EQ(gprs->memory.settings, saves ? written : factory);
    }
}

TEST_F(OnGprsCable, alarm_message_is_stored_in_the_emptied_slot_as_text_up_to_its_end) {
    host.line("ATQ0");
    talk(host, {{"AT+CMGW=0171", "\r\nERROR\r\n"}, // not in text mode
                {"AT+CMGF=1", "\r\nOK\r\n"},
                {"AT+CMGD=1", "\r\nOK\r\n"},
                {"AT+CSCA=+49172", "\r\nOK\r\n"},
                {"AT**INPUT=1", "\r\nOK\r\n"},
                {"AT+CMGW=0171", "\r\n> "},
                {"Pumpe *1\x1a", "\r\n+CMGW: 1\r\n\r\nOK\r\n"},
                {"AT+CMGW=0172", "\r\n> "},
                {"not in the first slot\x1a", "\r\n+CMGW: 2\r\n\r\nOK\r\n"},
                {"AT+CMGW=0172", "\r\n> "},
                {std::string(161, 'x') + "\x1a", "\r\nERROR\r\n"},
                {"AT+CMGW=0172", "\r\n> "},
                {"AT**SAVE", ""}, // is text
                {"\x1b"
                 "AT**RESET",
                 ""}});
    host.turn(Unit::start_time);
    EXPECT_EQ(gprs->memory.recipient + gprs->memory.text, "0171Pumpe *1");
    EXPECT_EQ(gprs->memory.service_number, "");
    EXPECT_FALSE(gprs->memory.input_armed) << "was not saved";
}

TEST_F(OnGprsCable, data_connection_hears_only_the_escape) {
    for (const bool deaf : {false, true}) {
        gprs->go_online();
        gprs->keeps_online = deaf;
        host.turn(1s);
        talk(host, {{"AT**IMEI?", ""}, {"+++ATH", ""}, {"AT**LL=3", ""}});
        EXPECT_EQ(host.raw("+++", 3s), "");
        EXPECT_EQ(gprs->online, deaf);
        EXPECT_TRUE(gprs->connected());
        EXPECT_EQ(host.line("AT**LL?"), deaf ? "" : "\r\nLL1: 0\r\n") << "in online command mode";
        host.line("ATH");
        EXPECT_EQ(gprs->connected(), deaf);
        gprs->restart(host.now);
        host.turn(Unit::start_time);
        EXPECT_FALSE(gprs->connected() || gprs->online);
    }
}

struct OverModem : testing::Test {
    std::shared_ptr<Analog> analog = std::make_shared<Analog>();
    std::shared_ptr<Isdn> isdn = std::make_shared<Isdn>();
    std::shared_ptr<Gsm> gsm = std::make_shared<Gsm>(Generation::older);
    std::shared_ptr<Gsm> newer = std::make_shared<Gsm>(Generation::newer);
    std::shared_ptr<Gprs> gprs = std::make_shared<Gprs>();
    LocalModem modem{{{'1', analog}, {'2', isdn}, {'3', gsm}, {'4', gprs}, {'5', newer}}};
    Host host{modem, {9600, 'n', 8, 1}};

    /// Dials and enters the remote configuration of the Analog device.
    void enter_analog() {
        host.line("ATX3D5411", 5s);
        host.raw("****");
        for (const char c : std::string_view{"BRUNEX"})
            host.raw({&c, 1}, 1100ms);
        ASSERT_EQ(host.raw("\r"), "\r\n>");
    }
};

TEST_F(OverModem, answers_rings_and_reports_the_end_of_a_call) {
    EXPECT_EQ(host.line("AT"), "\r\nOK\r\n");
    EXPECT_EQ(host.line("ATNONSENSE"), "\r\nERROR\r\n");
    EXPECT_EQ(host.line("ATX3D"), "\r\nERROR\r\n");
    EXPECT_THAT(host.line("ATX3D0541-121", 2900ms), IsEmpty());
    EXPECT_FALSE(host.carrier());
    EXPECT_EQ(host.turn(1s), "\r\nCONNECT 2400\r\n");
    EXPECT_TRUE(host.carrier());
    modem.drop_carrier(host.now);
    EXPECT_FALSE(host.carrier());
    EXPECT_EQ(host.turn(1s), "\r\nNO CARRIER\r\n");

    EXPECT_THAT(host.line("ATX3D5419", 40s), IsEmpty());
    EXPECT_EQ(host.turn(10s), "\r\nNO CARRIER\r\n");
    modem.busy = true;
    EXPECT_EQ(host.line("ATX3D5411", 5s), "\r\nBUSY\r\n");
    EXPECT_FALSE(host.carrier());
}

TEST_F(OverModem, a_character_breaks_off_the_dialling_and_begins_the_next_command) {
    host.line("ATX3D5411", 1s);
    EXPECT_EQ(host.line("ATD5412e", 1400ms), "\r\nNO CARRIER\r\n");
    EXPECT_THAT(host.turn(1s), HasSubstr("CONNECT"));
    EXPECT_TRUE(host.carrier());
}

TEST_F(OverModem, escape_counts_only_with_silence_before_and_behind_it) {
    struct Case {
        const char *name;
        Time before;
        std::vector<std::pair<const char *, Time>> writes;
        bool escapes;
    };
    const Case cases[] = {
        {"whole", 1100ms, {{"+++", 1100ms}}, true},
        {"typed", 1100ms, {{"+", 400ms}, {"+", 400ms}, {"+", 1100ms}}, true},
        {"too early", 900ms, {{"+++", 1100ms}}, false},
        {"too soon behind", 1100ms, {{"+++", 900ms}, {"ATH\r", 1100ms}}, false},
        {"pause within", 1100ms, {{"++", 1100ms}, {"+", 1100ms}}, false},
        {"four", 1100ms, {{"++++", 1100ms}}, false},
        {"in one write", 1100ms, {{"+++ATH\r", 1100ms}}, false},
        {"two", 1100ms, {{"++", 1100ms}}, false},
    };
    host.line("ATX3D5411", 5s);
    for (const auto &[name, before, writes, escapes] : cases) {
        SCOPED_TRACE(name);
        host.raw("x", before);
        std::string answer;
        for (const auto &[bytes, span] : writes)
            answer += host.raw(bytes, span);
        EXPECT_EQ(answer, escapes ? "\r\nOK\r\n" : "");
        ASSERT_TRUE(host.carrier()) << "the call goes on behind an escape";
        if (escapes) {
            EXPECT_EQ(host.line("ATO"), "\r\nOK\r\n");
        }
    }
    host.turn(1s);
    host.raw("+++", 1100ms);
    EXPECT_EQ(host.line("ATH"), "\r\nOK\r\n");
    EXPECT_FALSE(host.carrier());
    EXPECT_EQ(host.raw("+++ATH\r"), "\r\nOK\r\n") << "an escape without a call is ignored";
}

TEST_F(OverModem, dtr_off_and_closing_hang_up_at_once) {
    enter_analog();
    modem.dtr(false, host.now);
    EXPECT_FALSE(host.carrier());
    modem.dtr(true, host.now);
    host.line("ATX3D5411", 5s);
    EXPECT_TRUE(host.carrier());
    EXPECT_THAT(host.line("ATI0"), IsEmpty()) << "a new call begins without the old one's rights";
    modem.open(false, host.now);
    EXPECT_FALSE(host.carrier());
    modem.open(true, host.now);
    host.line("ATX3D5411", 1s);
    modem.dtr(false, host.now);
    host.turn(5s);
    EXPECT_FALSE(host.carrier()) << "the ringing has ended too";
}

TEST_F(OverModem, echo_returns_command_lines_but_not_what_goes_to_the_device) {
    modem.echo = true;
    EXPECT_EQ(host.line("AT"), "AT\r\r\nOK\r\n");
    host.line("ATX3D5411", 5s);
    EXPECT_EQ(host.raw("****"), "\r\nONLINE\r\n");
}

TEST_F(OverModem, analog_asks_for_stars_and_password) {
    host.line("ATX3D5411", 5s);
    EXPECT_THAT(host.line("***ATI0*"), IsEmpty()) << "the stars stand together";
    EXPECT_EQ(host.raw("****"), "\r\nONLINE\r\n");
    EXPECT_THAT(host.line("WRONG"), Not(HasSubstr(">")));
    EXPECT_THAT(host.line("BRUNEX"), IsEmpty()) << "a wrong password closes the entry";
    host.raw("+++", 1s);
    modem.drop_carrier(host.now);
    enter_analog();
    EXPECT_EQ(host.line("AT*V"), "\r\nNEW ALARM TEXT: ");
    EXPECT_EQ(host.line("Pumpe"), "\r\nOK\r\n>");
    EXPECT_EQ(analog->memory.text, "Pumpe");
    EXPECT_EQ(host.line("ATZ"), "\r\nOK\r\n");
    EXPECT_TRUE(host.carrier()) << "the caller hangs up";
    EXPECT_THAT(host.line("ATI0"), IsEmpty());

    modem.drop_carrier(host.now);
    analog->password = "";
    host.line("ATX3D5411", 5s);
    EXPECT_EQ(host.raw("****"), "\r\nONLINE\r\n>");
    EXPECT_THAT(host.raw("****AT&Z0=0800\r"), HasSubstr("OK")) << "knocked again without waiting";
    EXPECT_EQ(analog->memory.service_number, "0800");
}

TEST_F(OverModem, only_the_older_gsm_device_enters_remote_configuration) {
    host.line("ATX3D5413", 5s);
    EXPECT_THAT(host.line("AT**TIME?"), IsEmpty());
    EXPECT_THAT(host.raw("***"), HasSubstr("REMOTE CONFIGURATION MODE"));
    EXPECT_THAT(host.line("ATI"), Not(HasSubstr("KWT Telvox-A")));
    host.line("AT**DST2=0171");
    EXPECT_EQ(gsm->memory.recipient, "0171");
    host.line("AT**EXIT");
    EXPECT_THAT(host.line("AT**TIME?"), IsEmpty());
    modem.drop_carrier(host.now);
    host.line("ATX3D5415", 5s);
    EXPECT_TRUE(host.carrier());
    EXPECT_THAT(host.raw("***"), IsEmpty());
}

TEST_F(OverModem, gprs_restarts_when_the_call_in_which_it_was_told_to_is_over) {
    host.line("ATX3D5414", 5s);
    EXPECT_THAT(host.raw("***"), HasSubstr("REMOTE CONFIGURATION MODE"));
    talk(host, {{"AT**LL=2", ""},
                {"AT**RESET", ""},
                {"AT**IMEI?", "\r\nIMEI: 001010000000017\r\n"},
                {"AT**EXIT", ""},
                {"AT**IMEI?", ""}});
    modem.drop_carrier(host.now);
    EXPECT_EQ(gprs->memory.settings.at("LL"), "0");
    host.line("ATX3D5414", 5s);
    EXPECT_THAT(host.raw("***"), IsEmpty());
    host.turn(Unit::start_time);
    EXPECT_THAT(host.raw("***"), HasSubstr("REMOTE CONFIGURATION MODE"));
}

TEST_F(OverModem, isdn_text_interface_answers_with_its_prompt_and_drops_the_line) {
    isdn->password = "GEHEIM";
    EXPECT_THAT(host.line("ATD5412e", 4s), HasSubstr("password:"));
    EXPECT_THAT(host.line("falsch"), Not(HasSubstr("#")));
    EXPECT_EQ(host.line("GEHEIM"), "\r\nOK\r\n#");
    for (const char *line : {"altxt=Pumpe", "aldest=3", "catab1=0171", "catab3=0172", "save"})
        EXPECT_EQ(host.line(line), "\r\nOK\r\n#") << line;
    EXPECT_TRUE(isdn->memory.saved);
    EXPECT_EQ(host.line("aldest=4"), "\r\nERROR\r\n#");
    EXPECT_EQ(host.line("AT*V"), "\r\nERROR\r\n#") << "the cable's commands do not exist here";
    EXPECT_THAT(host.line("Alarm"), testing::AllOf(HasSubstr("alarm"), HasSubstr("#")));
    EXPECT_EQ(isdn->memory.alarms, 1);
    host.line("catab1=-");
    EXPECT_THAT(isdn->memory.service_number, IsEmpty());
    EXPECT_EQ(isdn->memory.protocol + isdn->memory.text + isdn->memory.recipient, "3Pumpe0172");
    EXPECT_EQ(host.line("quit"), "\r\nNO CARRIER\r\n");
    EXPECT_FALSE(host.carrier());

    isdn->password = "";
    host.line("ATD5412e", 4s);
    EXPECT_EQ(host.line(""), "\r\nOK\r\n#") << "without a password everyone is let in";
    EXPECT_EQ(host.line("reset"), "\r\nNO CARRIER\r\n");
}

TEST(Sockets, every_port_answers_the_query_of_its_own_variant) {
    const std::pair<int, std::pair<const char *, const char *>> ports[] = {{1, {"ATI0", "Telvox-A"}},
                                                                           {2, {"ATI1", "64"}},
                                                                           {3, {"AT**TIME?", "TIME:"}},
                                                                           {4, {"AT**IMEI?", "IMEI: "}},
                                                                           {6, {"AT", "OK"}}};
    for (const auto &[number, dialogue] : ports) {
        auto device = device_on_port(number);
        ASSERT_TRUE(device) << number;
        Host host{*device};
        EXPECT_THAT(host.line(dialogue.first), HasSubstr(dialogue.second));
        EXPECT_THAT(description_of_port(number), testing::StartsWith("Simuliertes "));
    }
    EXPECT_FALSE(device_on_port(7));
    EXPECT_THAT(description_of_port(7), IsEmpty());
}

} // namespace
} // namespace telvox::simulator
