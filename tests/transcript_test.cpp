// Runs the transcripts: text files that say, line by line and to the millisecond, what the user does, what
// the device says, and what the program must then do. Lines with "|" are what the program does; all others
// are fed to it at their time. The program must do exactly the lines with "|", in their order, and nothing
// else.
//
//   0 choose optGSM                    option button
//   0 enter tboAlarmmeldung Pumpe aus  text box
//   0 tick chkAmt / untick chkAmt      check box
//   0 cable 3 / modem 6                port lists
//   0 set strSMS_Protokoll M3          session string
//   0 click cbuTest                    button or menu entry, of whichever window
//   0 close frmPin                     title bar of a window
//   100 | -> AT**TIME?\r               bytes out
//   250 <- TIME: 12:00\r\n             bytes in ("<<-" in the instant of a tick: before it)
//   300 carrier / lost                 serial events
//   300 cannot-open WHY / can-open     whether the port opens
//   300 shows tboStatus PIN korrekt    a control's text as it must be now
//   9000 end                           clock turned to here; the session must be idle
//
// Each transcript runs twice: replies in one piece, and byte by byte with the same result.

#include "rig/rig.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

namespace telvox::test {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> read_lines(const fs::path &file) {
    std::ifstream stream(file);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);)
        if (!line.empty() && line[0] != '#')
            lines.push_back(line);
    return lines;
}

class Player {
  public:
    explicit Player(std::size_t piece) : piece_(piece) {}

    /// Feeds one line to the program, first turning the clock to its time.
    void feed(const std::string &line) {
        std::istringstream words(line);
        long long at = 0;
        std::string verb, name;
        words >> at >> verb >> std::ws;
        const milliseconds time{at};
        // Bytes of the same instant come before the tick, all else after it.
        rig.turn_to(verb == "<<-" ? time - milliseconds{1} : time);
        rig.now = time;
        write_down();
        played += line + "\n";
        if (verb == "<-" || verb == "<<-") {
            std::string rest;
            std::getline(words, rest);
            return rig.arrive(bytes_of(rest), piece_);
        }
        std::getline(words, name);
        const auto space = name.find(' ');
        const std::string argument = space == std::string::npos ? "" : name.substr(space + 1);
        name = name.substr(0, space);
        ASSERT_TRUE(act(verb, name, argument)) << "line not understood: " << line;
    }

    /// Adds what the program has done since to `played`.
    void write_down() {
        for (; written_ < rig.journal.size(); ++written_)
            played += rig.journal[written_] + "\n";
    }

    Rig rig;
    std::string played; ///< all that was fed and done, in the form of a transcript

  private:
    template <class Kind> Kind *control(const std::string &name) {
        for (Form *form : rig.program.desk.forms)
            if (auto *found = form->find<Kind>(name))
                return found;
        return nullptr;
    }

    bool act(const std::string &verb, const std::string &name, const std::string &argument) {
        Telvox &p = rig.program;
        if (verb == "choose")
            return with<OptionButton>(name, [&](auto &c) { p.choose(c); });
        if (verb == "enter")
            return with<TextBox>(name, [&](auto &c) { p.enter(c, argument); });
        if (verb == "tick" || verb == "untick")
            return with<CheckBox>(name, [&](auto &c) { p.set(c, verb == "tick"); });
        if (verb == "click")
            return with<Button>(name, [&](auto &c) { p.click(c); }) ||
                   with<MenuEntry>(name, [&](auto &c) { p.click(c); });
        if (verb == "shows")
            return with<TextBox>(name, [&](auto &c) { EXPECT_EQ(c.text, argument) << name; }) ||
                   with<ProgressBar>(name, [&](auto &c) { EXPECT_EQ(c.value, std::stoi(argument)) << name; });
        if (verb == "close") {
            for (Form *form : p.desk.forms)
                if (name == form->name)
                    return p.close(*form), true;
            return false;
        }
        if (verb == "set")
            return set_session(name, argument);
        if (verb == "cable" || verb == "modem") {
            rig.free_ports = {std::stoi(name)};
            verb == "cable" ? rig.choose_cable_port(std::stoi(name)) : rig.choose_modem_port(std::stoi(name));
            return true;
        }
        if (verb == "cannot-open")
            return rig.open_failure = name + " " + argument, true;
        if (verb == "can-open")
            return rig.open_failure.clear(), true;
        if (verb == "carrier") {
            EXPECT_TRUE(rig.port.watches) << "nobody watches the carrier";
            return p.comSeriell_OnComm(CommEvent::carrier), true;
        }
        if (verb == "lost") {
            rig.port.is_open = false;
            return p.comSeriell_OnComm(CommEvent::lost), true;
        }
        if (verb == "end") {
            EXPECT_FALSE(p.busy()) << "the session is not idle";
            EXPECT_FALSE(rig.timer.on) << "the timer still runs";
            EXPECT_FALSE(rig.port.is_open) << "the port was left open";
            return true;
        }
        return false;
    }

    template <class Kind, class Action> bool with(const std::string &name, Action action) {
        Kind *found = control<Kind>(name);
        if (found)
            action(*found);
        return found != nullptr;
    }

    bool set_session(const std::string &name, const std::string &value) {
        Session &s = rig.program.desk.session;
        const std::map<std::string, std::string *> strings = {
            {"strSMS_Protokoll", &s.strSMS_Protokoll},
            {"strSMS_Protokoll_ISDN", &s.strSMS_Protokoll_ISDN},
            {"strSMS_Protokoll_ISDN_fern", &s.strSMS_Protokoll_ISDN_fern},
            {"strCOMparameter_direkt", &s.strCOMparameter_direkt},
            {"strCOMparameter_fern", &s.strCOMparameter_fern}};
        const auto found = strings.find(name);
        if (found != strings.end())
            *found->second = value;
        return found != strings.end();
    }

    std::size_t piece_;
    std::size_t written_ = 0;
};

class Transcript : public testing::TestWithParam<std::tuple<fs::path, std::size_t>> {};

TEST_P(Transcript, IsPlayedExactly) {
    const auto &[file, piece] = GetParam();
    Player player(piece);
    Journal expected;
    for (const std::string &line : read_lines(file)) {
        if (line.find(" | ") != std::string::npos && line.find(" | ") == line.find(' '))
            expected.push_back(line);
        else
            ASSERT_NO_FATAL_FAILURE(player.feed(line));
    }
    const Journal &actual = player.rig.journal;
    const auto [e, a] = std::mismatch(expected.begin(), expected.end(), actual.begin(), actual.end());
    player.write_down();
    EXPECT_TRUE(e == expected.end() && a == actual.end())
        << "expected: " << (e == expected.end() ? "(nothing more)" : *e)
        << "\ndone:     " << (a == actual.end() ? "(nothing more)" : *a) << "\nall that was done:\n"
        << player.played;
}

std::vector<fs::path> transcript_files() {
    std::vector<fs::path> files;
    for (const auto &entry : fs::directory_iterator(TRANSCRIPTS))
        if (entry.path().extension() == ".transcript")
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

INSTANTIATE_TEST_SUITE_P(All, Transcript,
                         testing::Combine(testing::ValuesIn(transcript_files()), testing::Values(0, 1)),
                         [](const auto &played) {
                             return std::get<0>(played.param).stem().string() +
                                    (std::get<1>(played.param) == 0 ? "_whole" : "_bytewise");
                         });

} // namespace
} // namespace telvox::test
