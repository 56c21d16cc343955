#pragma once

#include <chrono>
#include <istream>
#include <map>
#include <string>
#include <vector>

/// Transcripts: text that says, line by line and to the millisecond, what the user does, what the device
/// says, and what the program must then do: exactly the lines with "|", in their order, and nothing else.
///
///   0 choose optGSM                    option button
///   0 enter tboAlarmmeldung Pumpe aus  text box
///   0 tick chkAmt / untick chkAmt      check box
///   0 click cbuTest                    button or menu entry
///   0 close frmPin                     title bar of a window; "dismiss": it goes without a question
///   0 cable 3 / modem 6                port lists
///   0 begin typ=gsm empfaenger=1       the main window as at the start, then filled in
///   0 order typ=gprs;auftrag=...;apn=  a row of a list, done by as many jobs as it takes, then "ends ..."
///   0 tell Gerät 1 von 3               text in the status bar that is no job's
///   0 set strSMS_Protokoll M3          session string
///   100 | status Anwahl | -> ATI\r     done by the program at this time, in this order
///   250 <- TIME: 12:00\r\n             bytes in ("<<-": before the tick of the same instant)
///   4100 silent Kein Gerät.            should the line before this one never come: that box at that time
///   300 net <- Username:\x20           bytes in from the network
///   300 process 0 OUTPUT               the running program ends with this status, having said that
///   300 process missing WHY / killed   it cannot be started, or has run too long
///   300 tools windows                  from now on the system's programs are those of Windows
///   300 carrier / no-carrier / lost    serial events
///   300 answer ja / nein               the oldest question that is open
///   300 pick cobAPN TEXT               an entry of a list, or text of an editable one
///   300 cannot-open WHY / can-open     whether the port opens
///   300 shows tboStatus PIN korrekt    what a control must hold now ("ein", "aus"; line breaks as "\n")
///   300 use gsm_call                   the lines of that preset, their times counted from here
///   9000 end                           clock turned to here; session idle, port closed, inputs usable
///
/// A control is named alone ("tboPin"), or with its window ("frmPin.tboPin") where several have one of that
/// name. A transcript ends with "end" and its clock never runs backwards. Lines with "#" are comments. Bytes
/// in are written as `visible` shows them. A presets file holds sections "[name]" of such lines. "let +name
/// TEXT": from there on "+name" stands for the text; what a presets file says so also holds in transcripts,
/// and what a transcript says in the sections that it uses.
namespace telvox::test {

using std::chrono::milliseconds;

struct Line {
    milliseconds at{0};
    std::string verb;
    std::string rest;
};
using Transcript = std::vector<Line>;

/// What many transcripts share, and how they are read.
class Presets {
  public:
    Presets() = default;
    /// Throws std::runtime_error as `read` does.
    explicit Presets(std::istream &file);

    /// Reads a transcript with its presets put in. Throws std::runtime_error with what is wrong with its
    /// form.
    [[nodiscard]] Transcript read(std::istream &file) const;

  private:
    struct Text {
        std::string name, text;
    };
    /// Whether the line says what a name stands for.
    bool learn(const std::string &line);
    [[nodiscard]] std::string expanded(std::string line) const;
    void read_line(const std::string &line, milliseconds since, Transcript &into) const;

    std::vector<Text> texts_;
    std::map<std::string, Transcript> sections_;
};

// Verbs that more than the reading knows.
inline constexpr const char *bytes_in = "<-", *bytes_before_tick = "<<-", *done = "|", *stays_out = "silent",
                            *from_network = "net";
[[nodiscard]] inline bool is_reply(const Line &line) {
    return line.verb == bytes_in || line.verb == bytes_before_tick;
}
/// What the program does, as its journal has it.
[[nodiscard]] inline std::string entry(milliseconds at, const std::string &event) {
    return std::to_string(at.count()) + " | " + event;
}

} // namespace telvox::test
