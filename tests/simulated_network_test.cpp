// The simulated network with its modules.

#include "rig/host.hpp"
#include "simulator/world.hpp"

#include <gmock/gmock.h>

namespace telvox::simulator {
namespace {

using testing::HasSubstr;

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

/// The faults that end a dialogue are seen in it.
TEST_F(InNetwork, module_can_talk_in_other_ways) {
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

} // namespace
} // namespace telvox::simulator
