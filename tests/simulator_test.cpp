#include "simulator/cable.hpp"
#include "simulator/world.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

namespace telvox::simulator {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::IsEmpty;

/// A host at one end of a line or connection, with a clock that the test turns. It wakes the far end exactly
/// when that asks for it, so a wrong `next` shows as a missing answer.
template <class Far> class Host {
  public:
    explicit Host(Far &far, const SerialFormat &format = factory_format) : far_(far) {
        far_.format(format, now);
        far_.open(true, now);
    }
    Host(Far &far, Time begin) : now(begin), far_(far) {}

    std::string turn(Time span) {
        const Time end = now + span;
        std::string bytes;
        while (const auto due = far_.next()) {
            if (*due > end)
                break;
            now = std::max(now, *due);
            bytes += far_.transmit(now);
        }
        now = end;
        return bytes;
    }
    std::string raw(std::string_view bytes, Time span = 1s) {
        far_.receive(bytes, now);
        return turn(span);
    }
    std::string line(const std::string &text, Time span = 1s) { return raw(text + "\r", span); }

    /// Plays a transcript of lines "sent -> answer" and "wait -> answer", and "raw bytes -> answer" without a
    /// carriage return, one to a line or with " ; " between them. "~" stands for a line's end in the answer,
    /// "_" for a blank before one, "^" with a letter for a control character. Every line has 5 s for its
    /// answer.
    void play(const char *transcript) {
        std::string rows{transcript};
        for (std::size_t at; (at = rows.find(" ; ")) != std::string::npos;)
            rows.replace(at, 3, "\n");
        std::istringstream lines{rows};
        for (std::string row; std::getline(lines, row);) {
            const auto begin = row.find_first_not_of(' ');
            if (begin == std::string::npos)
                continue;
            const auto arrow = row.find(" ->");
            std::string sent = row.substr(begin, arrow - begin);
            sent.erase(sent.find_last_not_of(' ') + 1);
            for (std::size_t at; (at = sent.find('^')) != std::string::npos;)
                sent.replace(at, 2, 1, static_cast<char>(sent[at + 1] & 0x1f));
            const bool bare = sent.starts_with("raw ");
            const std::string answer = sent == "wait" ? turn(5s)
                                       : bare         ? raw(sent.substr(4), 5s)
                                                      : line(sent, 5s);
            const std::string expected =
                arrow == std::string::npos || arrow + 4 > row.size() ? "" : row.substr(arrow + 4);
            EXPECT_EQ(shown(answer), expected) << row;
        }
    }

    Time now{0};

  private:
    static std::string shown(const std::string &answer) {
        std::string text;
        for (const char c : answer) {
            const bool ends = c == '\r' || c == '\n';
            if (ends && text.ends_with(' '))
                text.back() = '_';
            if (!ends)
                text += c;
            else if (!text.empty() && text.back() != '~')
                text += '~';
        }
        if (text.ends_with('~'))
            text.pop_back();
        if (text.ends_with(' '))
            text.back() = '_';
        return text;
    }

    Far &far_;
};

std::string summary(const Memory &memory) {
    std::string text;
    for (const auto &[name, value] : {std::pair{"to", memory.recipient},
                                      {"text", memory.text},
                                      {"service", memory.service_number},
                                      {"protocol", memory.protocol},
                                      {"pin", memory.pin},
                                      {"msn", memory.msn},
                                      {"data", memory.data_msn}})
        text += value.empty() ? "" : name + ("=" + value) + " ";
    for (const auto &[name, value] : {std::pair{"armed ", memory.input_armed},
                                      {"ptp ", memory.point_to_point},
                                      {"unsaved ", !memory.saved}})
        text += value ? name : "";
    return text + std::to_string(memory.alarms);
}

template <class Family, auto... Arguments> std::shared_ptr<Unit> make() {
    return std::make_shared<Family>(Arguments...);
}
std::shared_ptr<Unit> make_ethernet() { return World{}.ethernet; }

struct OnCable {
    const char *name;
    std::shared_ptr<Unit> (*make)();
    const char *transcript;
    const char *memory;
};

const OnCable on_cable[] = {
    {"GSM", make<Gsm, Generation::newer>, R"(
        ATI -> KWT Telvox-A GSM V3.2 ; AT**DST1=0171 ; AT**MSG1="Pumpe 1" ; AT**INPUT1=1 ; AT**SMS=1
        AT**SCN=+49172 ; AT**SMS=1 ; AT**SMS=2 ; AT**IMEI? -> IMEI: 001010000000017 ; ATQ0 -> OK
        AT -> OK ; AT**SCN=+49171 -> OK ; AT**NONSENSE -> ERROR ; AT**DST2=0815 -> ERROR
        AT**MSG1=Pumpe 2 -> ERROR ; AT**MSG1="a"b" -> ERROR ; AT**INPUT1=7 -> ERROR
        AT**PIN=47x1 -> ERROR ; AT**PIN? -> PIN: inactive~OK ; AT**PIN=4711 -> OK
        AT**PIN? -> PIN: active~OK ; AT+CREG? -> +CREG: 0,1~OK ; AT+CPIN? -> +CPIN: READY~OK ; ATQ1
        AT+CSQ -> +CSQ: 17,0)",
     "to=0171 text=Pumpe 1 service=+49171 pin=4711 armed 1"},
    {"Analog", make<Analog>, R"(
        ATI -> 33600~OK ; ATI0 -> Telvox-A Analog~OK ; AT*V -> NEW ALARM TEXT:_ ; AT&W -> OK
        AT*M5 -> OK ; AT*M7 -> ERROR ; AT%A -> ERROR ; AT&Z0=0800 -> OK ; AT&Z2=0171 -> OK
        AT%A -> OK ; AT&Z0= -> OK ; AT%A -> ERROR)",
     "to=0171 text=AT&W protocol=M5 unsaved 1"},
    {"ISDN", make<Isdn>, R"(
        ATI1 -> Telvox-A ISDN 64000~OK ; AT*V -> NEW ALARM TEXT:_ ; Pumpe -> OK
        AT*V -> NEW ALARM TEXT:_ ; raw ^M -> OK ; AT&Z1=0800 -> OK ; AT&Z3=0171 -> OK ; AT*X -> OK
        AT**PTP=1 -> OK ; AT**PTP=2 -> ERROR ; AT#Z=11 -> OK ; AT**MSN=12 -> OK ; AT&W -> OK)",
     "to=0171 service=0800 msn=12 data=11 ptp 1"},
    {"GPRS_alarm", make<Gprs>, R"(
        ATQ0 -> OK ; AT+CMGW=0171 -> ERROR ; AT+CMGF=1 -> OK ; AT+CMGD=1 -> OK
        AT+CSCA=+49172 -> OK ; AT**SAVE -> OK ; AT**INPUT=1 -> OK ; AT+CMGW=0171 -> >_
        Pumpe *1^Z -> +CMGW: 1~OK ; AT+CMGW=0172 -> >_ ; not in the first slot^Z -> +CMGW: 2~OK
        AT+CMGW=0172 -> >_ ; AT**RESET ; ^[AT**RESET ; AT ; wait
        AT**IMEI? -> IMEI: 001010000000017)",
     "to=0171 text=Pumpe *1 service=+49172 0"},
    {"Ethernet", make_ethernet, R"(
        ATI0 ; +++ATI0 ; wait ; raw +++ -> OK ; ATI0 -> ETHERNET Telvox-A V1.1~OK
        AT#IP=192.168.0.256 -> ERROR ; AT#IP=192.168.0 -> ERROR ; AT#PORT=65536 -> ERROR
        AT#IP=192.168.0.7 -> OK ; AT#PORT=65535 -> OK ; AT#GW=0.0.0.0 -> OK
        AT#NM=255.255.0.0 -> OK ; AT#RESET ; ATI0 ; raw +++ATI0 ; wait ; raw +++ -> OK
        ATI0 -> ETHERNET Telvox-A V1.1~OK)",
     "0"},
};

TEST(Simulator, on_the_cable_answers_its_commands_and_keeps_what_it_can) {
    for (const auto &[name, make, transcript, memory] : on_cable) {
        SCOPED_TRACE(name);
        const auto unit = make();
        Cable cable{unit};
        Host host{cable};
        host.play(transcript);
        EXPECT_EQ(summary(unit->memory), memory);
    }
}

TEST(Simulator, bytes_come_at_the_pace_of_the_line_in_small_pieces) {
    const auto gsm = make<Gsm, Generation::newer>();
    Cable cable{gsm};
    Host host{cable};
    cable.receive("AT**IMEI?\r", host.now);
    // 10 characters of 11 bits at 2400 baud, then the device thinks, then the first 8 characters.
    const Time first = 46ms + Unit::processing + 37ms;
    EXPECT_THAT(host.turn(first - 1ms), IsEmpty());
    EXPECT_EQ(host.turn(2ms), "\r\nIMEI: ");
    EXPECT_EQ(host.turn(200ms), "001010000000017\r\n");
}

TEST(Simulator, hostile_input_leaves_the_device_alive_and_bounded) {
    const auto gsm = make<Gsm, Generation::newer>();
    Cable cable{gsm};
    Host host{cable};
    host.line("ATQ0");
    EXPECT_THAT(host.line("AT**TIME?" + std::string(LineCollector::limit, '1'), 5s), IsEmpty())
        << "an overlong line is lost as a whole";
    host.raw(std::string{"\0\xff\x01+CPIN\r\r\r\n", 12});
    host.raw(std::string(1'000'000, 'A'), 60s);
    host.line("");
    EXPECT_THAT(host.line("AT**TIME?"), HasSubstr("TIME: 2000/01/01,00:01:"));

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

TEST(Simulator, last_command_before_closing_arrives_and_a_silent_device_says_nothing) {
    const auto gsm = std::make_shared<Gsm>(Generation::newer);
    Cable cable{gsm};
    Host host{cable};
    host.raw("AT**PIN=4711\rAT**BAUD=1200\rAT&W\r", 0ms);
    cable.open(false, host.now);
    EXPECT_EQ(gsm->format().baud, 1200);
    gsm->restart(host.now);
    host.turn(8s);
    EXPECT_EQ(gsm->memory.pin, "4711");
    cable.format(gsm->format(), host.now);
    cable.receive("AT**TIME?\r", host.now);
    EXPECT_THAT(host.turn(1s), IsEmpty()) << "nothing reaches a closed port";
    cable.open(true, host.now);
    gsm->sim_pin = "4712";
    host.play("AT+CPIN? -> +CPIN: SIM PIN");
    gsm->sim_present = false;
    host.play("AT+CPIN?");
    host.raw("AT**TIME?\r", 60ms);
    gsm->silent = true;
    EXPECT_THAT(host.turn(1s), IsEmpty()) << "also what it was about to say";
}

constexpr const char *gprs_writes = R"(
    AT**GPRSAPN=internet.OK ; AT**PPPUSER=a-user-name-of-more-than-a-few-characters ; AT**PPPPW=
    AT**PPPAUTH=1 ; AT**AUTOIP=10.0.0.1 ; AT**AUTOPORTIP=65535 ; AT**AUTOURL=a=b?.de
    AT**AUTOPORTURL= ; AT**CLIP=1 ; AT**CLIP1=+491 ; AT**CLIP2= ; AT**Callback=0,3,3 ; AT**LL=2
    AT**KEEP=255 ; AT**IPTUSER=u ; AT**IPTPW=p w ; AT**IPTCONREQ=1 ; AT**IPTWATCHDOG=0 ; AT**IPT=3
    AT**IPTKEYF=1 ; AT**IPTKEYC=)";
constexpr const char *gprs_reads = R"(
    AT**GPRSAPN? -> GPRSAPN: internet.OK
    AT**PPPUSER? -> PPPUSER: a-user-name-of-more-than-a-few-characters ; AT**PPPPW? -> PPPPW:_
    AT**PPPAUTH? -> PPPAUTH: PAP=1 ; AT**AUTOIP? -> AUTOIP1: 10.0.0.1
    AT**AUTOPORTIP? -> AUTOPORTIP1: 65535 ; AT**AUTOURL? -> AUTOURL1: a=b?.de
    AT**AUTOPORTURL? -> AUTOPORTURL1:_ ; AT**CLIP? -> CLIP 1: +491~CLIP 2:_~CLIP 3:_
    AT**Callback? -> CALLBACK: 0,3,3 ; AT**LL? -> LL1: 2 ; AT**KEEP? -> KEEP: 255
    AT**IPT? -> IPT: 3~IPTUSER: u~IPTPW: p w~IPTKEYF: 1~IPTKEYC:_)";

TEST(Gprs, settings_are_answered_with_their_labels_and_lost_by_a_restart_unless_saved) {
    const auto gprs = make<Gprs>();
    Cable cable{gprs};
    Host host{cable};
    const auto factory = gprs->memory.settings;
    host.play(gprs_writes);
    const auto written = gprs->memory.settings;
    host.play(gprs_reads);
    host.play(R"(
        ATQ0 -> OK ; AT**LL=9 -> ERROR ; AT**Callback=0,3 -> ERROR ; AT**KEEP=256 -> ERROR
        AT**AUTOPORTIP=65536 -> ERROR ; AT**IPTUSER? -> ERROR ; AT**? -> ERROR
        AT**LL? -> LL1: 2~OK ; AT**RESET ; AT**IMEI? ; wait ; AT**IMEI? -> IMEI: 001010000000017)");
    EXPECT_EQ(gprs->memory.settings, factory);
    host.play(gprs_writes);
    host.play("AT**SAVE\n AT**RESET\n wait\n wait");
    EXPECT_EQ(gprs->memory.settings, written);
}

TEST(Gprs, data_connection_hears_only_the_escape) {
    const auto gprs = std::make_shared<Gprs>();
    Cable cable{gprs};
    Host host{cable};
    for (const bool deaf : {false, true}) {
        gprs->go_online();
        gprs->keeps_online = deaf;
        host.play("AT**IMEI?\n +++ATH\n AT**LL=3\n raw +++");
        EXPECT_EQ(gprs->online, deaf);
        EXPECT_TRUE(gprs->connected());
        host.play(deaf ? "AT**LL?\n ATH" : "AT**LL? -> LL1: 0\n ATH");
        EXPECT_EQ(gprs->connected(), deaf);
        gprs->restart(host.now);
        host.play("wait\n wait\n AT**LL? -> LL1: 0");
        EXPECT_FALSE(gprs->connected());
    }
}

/// A device on its cable is told a new format; behind each line it talks in the format that stands there.
struct FormatChange {
    const char *name;
    std::shared_ptr<Unit> (*make)();
    const char *check;
    const char *answer;
    std::vector<std::pair<const char *, const char *>> lines;
    std::vector<const char *> refused;
};

const FormatChange format_changes[] = {
    {"GSM",
     make<Gsm, Generation::newer>,
     "AT**TIME?",
     "TIME:",
     {{"AT**BAUD=9600", "2400,e,8,1"}, {"AT**FORMAT=8n2", "2400,e,8,1"}, {"AT&W", "9600,n,8,2"}},
     {"AT**BAUD=", "AT**BAUD=2401", "AT**BAUD=2400,e", "AT**FORMAT=9n1"}},
    {"ISDN",
     make<Isdn>,
     "ATI1",
     "64",
     {{"AT%B1", "2400,e,8,1"}, {"AT**PRTY=1", ""}, {"AT**DBITS=7", ""}, {"AT&W", "1200,o,7,1"}},
     {"AT%B0", "AT%B7", "AT%B", "AT**PRTY=3", "AT**DBITS=9", "AT**DBITS=78"}},
    {"GPRS",
     make<Gprs>,
     "AT**IMEI?",
     "IMEI: ",
     {{"AT**BAUD=19200", "19200,e,8,1"}, {"AT**FORMAT=7o1", "19200,o,7,1"}, {"AT&W", "19200,o,7,1"}},
     {"AT**FORMAT=8n", "AT**FORMAT=8x1", "AT**FORMAT=8n1 "}},
    {"Ethernet",
     make_ethernet,
     "ATI0",
     "ETHERNET",
     {{"AT*S1", "300,e,8,1"}, {"AT*S6", "9600,e,8,1"}, {"AT*U0", "9600,n,8,1"}, {"AT&W", "9600,n,8,1"}},
     {"AT*U3", "AT*S0", "AT*S9", "AT*U10"}},
};

TEST(Formats, device_follows_its_change_where_its_family_does_and_keeps_it_when_saved) {
    for (const auto &[name, make, check, answer, lines, refused] : format_changes) {
        for (const bool saves : {true, false}) {
            SCOPED_TRACE(name);
            const auto unit = make();
            Cable cable{unit};
            Host host{cable};
            const auto answers_in = [&](const SerialFormat &format) {
                cable.format(format, host.now);
                host.raw("+++", 2s);
                host.line("");
                return host.line(check, 2s).find(answer) != std::string::npos;
            };
            auto format = factory_format;
            EXPECT_TRUE(answers_in(format));
            host.line("ATQ0");
            for (const auto *line : refused)
                EXPECT_EQ(host.line(line), "\r\nERROR\r\n") << line;
            for (const auto &[line, then] : lines) {
                if (!saves && line == std::string_view{"AT&W"})
                    continue;
                host.line(line);
                const auto before = std::exchange(format, parse_format(then).value_or(format));
                EXPECT_EQ(answers_in(before), before == format) << line;
                EXPECT_TRUE(answers_in(format)) << line;
            }
            unit->restart(host.now);
            host.turn(unit->nature().start);
            EXPECT_TRUE(answers_in(saves ? format : factory_format));
        }
    }
    Cable analog{make<Analog>()};
    Host(analog, {9600, 'n', 7, 1}).play("ATI -> 33600~OK");
    Cable isdn{make<Isdn>()};
    Host(isdn, {2400, 'e', 8, 2}).play("ATI1 -> Telvox-A ISDN 64000~OK");
}

TEST(Formats, another_one_is_noise_to_both) {
    const auto gsm = make<Gsm, Generation::newer>();
    Cable cable{gsm};
    Host host{cable, {2400, 'n', 8, 1}};
    host.play("AT**SCN=0800");
    cable.format(factory_format, host.now);
    host.raw("AT**TIME?\r", 60ms);
    cable.format({1200, 'e', 8, 1}, host.now);
    EXPECT_THAT(host.turn(1s),
                testing::AllOf(Not(IsEmpty()),
                               testing::Each(testing::Truly([](char c) { return (c & 0x80) != 0; }))));
    cable.format(factory_format, host.now);
    EXPECT_THAT(host.line("AT**TIME?"), HasSubstr("TIME:")) << "behind the noise";
    EXPECT_EQ(summary(gsm->memory), "0");
}

struct OverModem : testing::Test {
    std::shared_ptr<Analog> analog = std::make_shared<Analog>();
    std::shared_ptr<Isdn> isdn = std::make_shared<Isdn>();
    std::shared_ptr<Gsm> gsm = std::make_shared<Gsm>(Generation::older);
    std::shared_ptr<Gprs> gprs = std::make_shared<Gprs>();
    LocalModem modem{
        {{'1', analog}, {'2', isdn}, {'3', gsm}, {'4', gprs}, {'5', make<Gsm, Generation::newer>()}}};
    Host<LocalModem> host{modem, {9600, 'n', 8, 1}};

    [[nodiscard]] bool carrier() { return modem.carrier(host.now); }
};

TEST_F(OverModem, answers_rings_and_reports_the_end_of_a_call) {
    host.play("AT -> OK\n ATNONSENSE -> ERROR\n ATX3D -> ERROR");
    EXPECT_THAT(host.line("ATX3D0541-121", 2900ms), IsEmpty());
    EXPECT_FALSE(carrier());
    host.play("wait -> CONNECT 2400");
    EXPECT_TRUE(carrier());
    modem.drop_carrier(host.now);
    EXPECT_FALSE(carrier());
    host.play("wait -> NO CARRIER");

    EXPECT_THAT(host.line("ATX3D5419", 44s), IsEmpty());
    host.play("wait -> NO CARRIER");
    modem.busy = true;
    host.play("ATX3D5411 -> BUSY");
    EXPECT_FALSE(carrier());
    modem.busy = false;
    modem.echo = true;
    host.play("AT -> AT~OK\n ATX3D5411 -> ATX3D5411~CONNECT 2400\n raw **** -> ONLINE");
}

TEST_F(OverModem, a_character_breaks_off_the_dialling_and_begins_the_next_command) {
    host.line("ATX3D5411", 1s);
    EXPECT_EQ(host.line("ATD5412e", 1400ms), "\r\nNO CARRIER\r\n");
    EXPECT_THAT(host.turn(1s), HasSubstr("CONNECT"));
    EXPECT_TRUE(carrier());
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
    };
    host.play("ATX3D5411 -> CONNECT 2400");
    for (const auto &[name, before, writes, escapes] : cases) {
        SCOPED_TRACE(name);
        host.raw("x", before);
        std::string answer;
        for (const auto &[bytes, span] : writes)
            answer += host.raw(bytes, span);
        EXPECT_EQ(answer, escapes ? "\r\nOK\r\n" : "");
        ASSERT_TRUE(carrier()) << "the call goes on behind an escape";
        if (escapes) {
            host.play("ATO -> OK");
        }
    }
    host.play("wait\n raw +++ -> OK\n ATH -> OK");
    EXPECT_FALSE(carrier());
    host.play("+++ATH -> OK");
}

TEST_F(OverModem, dtr_off_and_closing_hang_up_at_once) {
    analog->password = "";
    host.play("ATX3D5411 -> CONNECT 2400\n raw **** -> ONLINE~>");
    modem.dtr(false, host.now);
    EXPECT_FALSE(carrier());
    modem.dtr(true, host.now);
    host.play("ATX3D5411 -> CONNECT 2400\n ATI0"); // a new call begins without the old one's rights
    EXPECT_TRUE(carrier());
    modem.open(false, host.now);
    EXPECT_FALSE(carrier());
    modem.open(true, host.now);
    host.line("ATX3D5411", 1s);
    modem.dtr(false, host.now);
    host.turn(5s);
    EXPECT_FALSE(carrier()) << "the ringing has ended too";
}

TEST_F(OverModem, each_family_has_its_way_into_the_remote_configuration) {
    isdn->password = "GEHEIM";
    struct Call {
        const char *name;
        Memory &memory;
        const char *transcript;
        const char *kept;
    };
    const Call calls[] = {
        {"Analog", analog->memory, R"(
            ATX3D5411 -> CONNECT 2400 ; ***ATI0* ; raw **** -> ONLINE ; WRONG -> ACCESS DENIED
            BRUNEX ; raw **** -> ONLINE ; BRUNEX -> > ; AT*V -> NEW ALARM TEXT:_ ; Pumpe -> OK~>
            ATZ -> OK ; ATI0)",
         "text=Pumpe unsaved 0"},
        {"ISDN", isdn->memory, R"(
            ATD5412e -> CONNECT 64000~password: ; falsch -> access denied~password: ; GEHEIM -> OK~#
            altxt=Pumpe -> OK~# ; aldest=3 -> OK~# ; aldest=4 -> ERROR~# ; catab1=0171 -> OK~#
            catab3=0172 -> OK~# ; save -> OK~# ; AT*V -> ERROR~# ; Alarm -> alarm~OK~#
            catab1=- -> OK~# ; quit -> NO CARRIER)",
         "to=0172 text=Pumpe protocol=3 unsaved 1"},
        {"GSM_older", gsm->memory, R"(
            ATX3D5413 -> CONNECT 2400 ; AT**TIME? ; raw *** -> REMOTE CONFIGURATION MODE
            ATI -> Telvox-A GSM V1.4 ; AT**DST2=0171 ; AT**EXIT ; ATI)",
         "to=0171 0"},
        {"GSM_newer", gsm->memory, "ATX3D5415 -> CONNECT 2400\n raw ***", "to=0171 0"},
        // It restarts when the call in which it was told to is over.
        {"GPRS", gprs->memory, R"(
            ATX3D5414 -> CONNECT 2400 ; raw *** -> REMOTE CONFIGURATION MODE ; AT**LL=2 ; AT**RESET
            AT**LL? -> LL1: 2 ; AT**EXIT ; AT**LL?)",
         "unsaved 0"},
    };
    for (const auto &[name, memory, transcript, kept] : calls) {
        SCOPED_TRACE(name);
        host.play(transcript);
        EXPECT_EQ(summary(memory), kept);
        modem.drop_carrier(host.now);
        host.turn(1s);
    }
    host.play(
        "ATX3D5414 -> CONNECT 2400\n raw ***\n raw *** -> REMOTE CONFIGURATION MODE\n AT**LL? -> LL1: 0");
    modem.drop_carrier(host.now);
    host.turn(1s);

    analog->password = isdn->password = "";
    host.play("ATX3D5411 -> CONNECT 2400\n raw **** -> ONLINE~>");
    host.play("****AT&Z0=0800 -> OK~>"); // knocked again without waiting
    modem.drop_carrier(host.now);
    host.turn(1s);
    host.play("ATD5412e -> CONNECT 64000~password:\n raw ^M -> OK~#\n reset -> NO CARRIER");
    EXPECT_FALSE(carrier());
}

struct InNetwork : testing::Test {
    World world;
    Network &network = world.network;
    Ethernet &module = *world.ethernet;
    Time now{1s};

    /// Connects to the module and plays a transcript; the state behind it.
    Connection::State play(const char *transcript, const char *address = "192.168.0.100", int port = 23) {
        const auto connection = network.connect(address, port, now);
        Host host{*connection, now};
        host.play(transcript);
        now = host.now + 10s;
        return connection->state(host.now);
    }
};

constexpr const char *logged_in = R"(
    wait -> Telvox-A Ethernet~Username:_ ; tovri -> Password:_ ; tovri -> AT>_)";

TEST_F(InNetwork, module_is_configured_by_telnet_and_on_its_cable_in_one_memory) {
    EXPECT_TRUE(network.ping("192.168.0.100", now));
    EXPECT_FALSE(network.ping("192.168.0.9", now) || network.ping("0.0.0.0", now));
    EXPECT_EQ(play((logged_in + std::string{R"(
        #IP=300.1.1.1 -> ERROR~AT>_ ; #IP=192.168.0.9 -> OK~AT>_ ; #GW=192.168.0.1 -> OK~AT>_
        #NM=255.255.0.0 -> OK~AT>_ ; #NONSENSE -> ERROR~AT>_ ; raw ^M -> AT>_ ; #RESET -> OK~AT>_
        #RESET)"})
                       .c_str()),
              Connection::State::closed);
    EXPECT_FALSE(network.ping("192.168.0.100", now));
    EXPECT_TRUE(network.ping("192.168.0.9", now));
    EXPECT_EQ(module.memory.settings.at("GW") + module.memory.settings.at("NM"), "192.168.0.1255.255.0.0");

    const auto device = world.device_on_port(5);
    Host cable{*device};
    cable.now = now;
    cable.play("raw +++ -> OK\n AT#IP=192.168.0.8 -> OK");
    EXPECT_TRUE(network.ping("192.168.0.9", cable.now)) << "until the reset";
    cable.line("AT#RESET", 100ms);
    EXPECT_FALSE(network.ping("192.168.0.8", cable.now)) << "it starts";
    EXPECT_TRUE(network.ping("192.168.0.8", cable.now + 5s));
}

TEST_F(InNetwork, connection_is_refused_or_never_made_or_ends_with_the_module) {
    EXPECT_EQ(play("wait", "192.168.0.7"), Connection::State::connecting);
    EXPECT_EQ(network.connect("192.168.0.7", 23, now)->next(), std::nullopt);
    EXPECT_EQ(network.connect("192.168.0.100", 1234, now)->next(), now + 1ms);
    EXPECT_EQ(play("wait", "192.168.0.100", 1234), Connection::State::rejected);
    EXPECT_EQ(play(R"(
        wait -> Telvox-A Ethernet~Username:_ ; tovri -> Password:_
        falsch -> Login incorrect~Username:_ ; raw ^M -> Password:_
        raw ^M -> Login incorrect~Username:_ ; raw ^M -> Password:_
        raw ^M -> Login incorrect~Username:_)"),
              Connection::State::closed);
    const auto first = network.connect("192.168.0.100", 23, now);
    EXPECT_EQ(play("wait"), Connection::State::rejected) << "one at a time";
    module.restart(now);
    first->receive("tovri\r", now);
    EXPECT_EQ(first->state(now + 1s), Connection::State::closed);
}

TEST_F(InNetwork, module_without_address_takes_that_of_the_first_packet_to_its_mac) {
    EXPECT_FALSE(network.bind("192.168.0.7", "00-05-B6-00-1C") ||
                 network.bind("1.2.3", "00-05-B6-00-1C-04") ||
                 network.bind("192.168.0.7", "00-05:B6-00-1C-04") || network.bind("0.0.0.0", module.mac()));
    EXPECT_TRUE(network.bind("192.168.0.7", "00:05:b6:00:1c:04"));
    EXPECT_EQ(world.factory_new->address(), "0.0.0.0");
    EXPECT_TRUE(network.ping("192.168.0.7", now));
    EXPECT_EQ(play("wait -> Telvox-A Ethernet~Username:_", "192.168.0.7"), Connection::State::open);
    world.factory_new->restart(now);
    EXPECT_TRUE(network.ping("192.168.0.7", now + 5s)) << "kept";
    EXPECT_TRUE(network.bind("192.168.0.8", world.factory_new->mac()));
    EXPECT_FALSE(network.ping("192.168.0.8", now + 5s)) << "it has one";
    EXPECT_TRUE(network.bind("192.168.0.100", world.factory_new->mac()));
    EXPECT_FALSE(network.ping("192.168.0.100", now + 5s)) << "packets go to the wrong module";
}

TEST_F(InNetwork, module_can_misbehave) {
    struct Case {
        const char *name;
        TelnetFaults faults;
        const char *transcript;
        Connection::State state = Connection::State::open;
    };
    const std::string in{logged_in};
    const std::string error = in + "\n #GW=1.1.1.1 -> ERROR~AT>_", mute = in + "\n #RESET",
                      never = in + "\n #GW=1.1.1.1 -> AT>_";
    const Case cases[] = {
        {"refuses", {.refuses_connection = true}, "wait", Connection::State::rejected},
        {"login",
         {.refuses_login = true},
         "wait -> Telvox-A Ethernet~Username:_\n tovri -> Password:_\n tovri -> Login incorrect~Username:_"},
        {"error", {.error_at = "#GW="}, error.c_str()},
        {"closes",
         {.closes_at = "Password"},
         "wait -> Telvox-A Ethernet~Username:_\n tovri -> Password:_\n tovri",
         Connection::State::closed},
        {"mute", {.mute_at = "#RESET"}, mute.c_str()},
        {"never answers", {.mute_at = "connect"}, "wait\n tovri -> Password:_"},
        {"never ok", {.never_ok = true}, never.c_str()},
    };
    for (const auto &[name, faults, transcript, state] : cases) {
        SCOPED_TRACE(name);
        module.faults = faults;
        EXPECT_EQ(play(transcript), state);
    }
    EXPECT_EQ(module.memory.settings.at("GW"), "1.1.1.1");

    module.faults = {.one_byte_packets = true, .negotiates = true};
    auto connection = network.connect("192.168.0.100", 23, now);
    std::string heard;
    while (const auto due = connection->next()) {
        const auto packet = connection->transmit(*due);
        EXPECT_LE(packet.size(), 1u);
        heard += packet;
        now = *due;
    }
    EXPECT_THAT(heard, testing::AllOf(testing::StartsWith("\xff\xfb\x01"), testing::EndsWith("Username: ")));
    connection->receive("\xff\xfe\x01tov\xff\xfc\x18ri\r", now);
    EXPECT_THAT(Host(*connection, now).turn(1s), HasSubstr("Password"));
    EXPECT_EQ(module.options_answered, "\xff\xfe\x01\xff\xfc\x18");
    connection.reset();

    module.faults = {.floods = true};
    connection = network.connect("192.168.0.100", 23, now);
    EXPECT_THAT(Host(*connection, now).turn(10s).size(),
                testing::AllOf(testing::Gt(100'000u), testing::Lt(2'000'000u)));
}

TEST(Sockets, every_port_answers_the_query_of_its_own_variant) {
    constexpr const char *answers[] = {"ATI0 -> Telvox-A Analog~OK",
                                       "ATI1 -> Telvox-A ISDN 64000~OK",
                                       "ATI -> KWT Telvox-A GSM V3.2",
                                       "AT**IMEI? -> IMEI: 001010000000017",
                                       "raw +++ -> OK\n ATI0 -> ETHERNET Telvox-A V1.1~OK",
                                       "AT -> OK"};
    for (int number = 1; number <= 6; ++number) {
        auto device = device_on_port(number);
        ASSERT_TRUE(device) << number;
        Host(*device).play(answers[number - 1]);
        EXPECT_THAT(description_of_port(number), testing::StartsWith("Simuliertes "));
    }
    EXPECT_FALSE(device_on_port(7));
    EXPECT_THAT(description_of_port(7), IsEmpty());
}

} // namespace
} // namespace telvox::simulator
