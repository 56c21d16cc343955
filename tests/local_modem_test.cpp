// The simulated local modem, and how each device is configured in a call.

#include "rig/host.hpp"
#include "simulator/world.hpp"

#include <gmock/gmock.h>

namespace telvox::simulator {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

struct OverModem : testing::Test {
    std::shared_ptr<Analog> analog = std::make_shared<Analog>();
    std::shared_ptr<Isdn> isdn = std::make_shared<Isdn>();
    std::shared_ptr<Gsm> gsm = std::make_shared<Gsm>(Generation::older);
    std::shared_ptr<Gprs> gprs = std::make_shared<Gprs>();
    LocalModem modem{{{'1', analog},
                      {'2', isdn},
                      {'3', gsm},
                      {'4', gprs},
                      {'5', std::make_shared<Gsm>(Generation::newer)}}};
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

} // namespace
} // namespace telvox::simulator
