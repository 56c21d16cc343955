#pragma once

#include "core/service_numbers.hpp"
#include "telvox.hpp"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace telvox::operation {

/// A control of the program's windows.
using ControlOf = Control &(*)(Desk &);

/// The control that is this member of that window.
template <auto Window, auto Member> Control &at(Desk &desk) { return desk.*Window.*Member; }
template <auto Member> Control &main_window(Desk &desk) { return desk.frmModem.*Member; }

/// A word that an option takes (capitals are as good), and the option button that it chooses.
struct Word {
    const char *word;
    ControlOf button;
};

/// An entry of a number list that is named by a part of its text, and the way there.
struct Pick {
    std::vector<ServiceNumber> (*entries)(const Desk &);
    ControlOf opens;
    ControlOf list;
    ControlOf ok;
    /// The entry that was taken and still stands, empty if none.
    std::string (*taken)(const Desk &) = [](const Desk &) { return std::string(); };
};

/// An option that fills a field of a window: a row of the help, of a call, of the values that a job prints.
/// It chooses one of `words`, or sets a serial format ("2400,e,8,1"), or goes into `field`: a text box, a
/// check box ("ein", "aus"), a list that can be typed into, or a port list (COM number or device).
struct Option {
    const char *name;  ///< "apn"
    const char *value; ///< how the help writes its value
    const char *help;
    ControlOf field = nullptr;
    std::span<const Word> words = {};
    /// Option buttons and check boxes without which the field is locked, the outermost first; they are
    /// switched on where it must be.
    std::span<const ControlOf> needs = {};
    bool required = false; ///< the job means nothing without it
    bool secret = false;   ///< never shown; "-" reads it from standard input
    /// Text of the session, or boxes of the settings dialog, that a format goes to.
    std::string Session::*format = nullptr;
    SerialCombos FrmEinstellungen::*combos = nullptr;
    const Pick *pick = nullptr; ///< the one entry that contains the value
    const char *caption = "";   ///< the window's name for it, in small letters, where a column may have it
    const char *title = "";     ///< how results and differences name it
    bool bare = false;          ///< may be given without a value, which means "ein"
    /// The way without which nobody could use the field, and what the port belongs to.
    const char *way = nullptr;
    const char *belongs_to = "";
    /// What of the field's text is its own, where it may hold another field's secret too: what a file gets.
    std::string (*means)(std::string_view text) = nullptr;
};

/// The variant or the way: chosen before all else, for the fields depend on it.
[[nodiscard]] inline bool is_switch(std::string_view option) {
    return option == "typ" || option == "verbindung";
}

/// The value that the option's field has now.
[[nodiscard]] std::string value_of(const Option &option, Desk &desk);

/// The fields' values as lines "name=wert".
[[nodiscard]] std::string value_lines(std::span<const Option> options, Desk &desk);

/// What a text box takes, in words: "nur Ziffern und +".
[[nodiscard]] std::string rule_of(KeyFilter accepts);

} // namespace telvox::operation
