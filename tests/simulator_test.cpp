#include "rig/host.hpp"
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
TEST(Gprs, settings_are_answered_with_their_labels_and_lost_by_a_restart_unless_saved) {
    const auto gprs = make<Gprs>();
    Cable cable{gprs};
    Host host{cable};
    const auto factory = gprs->memory.settings;
    host.play(gprs_writes);
    const auto written = gprs->memory.settings;
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

} // namespace
} // namespace telvox::simulator
