#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace telvox {

class Form;

/// How a record names what the user did to a control: "enter" and the text.
struct Input {
    const char *verb = "";
    std::string value = {};
};

/// One control of a window as plain values. It registers with its form under its own name; a window's widget
/// carries the same name and shows these values.
struct Control {
    Control(Form &form, const char *name, std::string caption = {}, Control *within = nullptr);
    virtual ~Control() = default;
    Control(const Control &) = delete;
    Control &operator=(const Control &) = delete;

    /// The user can work with it: its window is open, it and what it stands in are enabled and visible.
    [[nodiscard]] bool usable() const;
    /// What it holds, as a text: "ein" and "aus" for what is ticked or chosen or not.
    [[nodiscard]] virtual std::string holds() const { return {}; }
    /// Takes a value as from its user, through its filter and limit and with its handlers. False, and nothing
    /// happens, if it has no such value.
    virtual bool take(std::string_view) { return false; }
    /// What a record says of the value that it has taken.
    [[nodiscard]] virtual Input input() const { return {}; }

    Form *form;
    const char *name;
    std::string caption; ///< with "&" before the letter of its keyboard short cut where it has one
    std::string tool_tip;
    std::string spoken_name; ///< read out where no label of its own stands beside it
    Control *within;         ///< frame around it, or menu that holds it
    bool enabled = true;
    bool visible = true;
    bool recorded = true; ///< what is done to it is part of what a record plays again
};

struct Frame : Control {
    using Control::Control;
};
struct Label : Control {
    using Control::Control;
};
/// A menu or menu entry; `clicked` is its action.
struct MenuEntry : Control {
    using Control::Control;
    const char *keys = ""; ///< that are the same as a click, where there are some: "Ctrl+P"
    std::function<void()> clicked = [] {};
};
/// A menu entry with a tick. Its action sets the value: it may refuse.
struct TickEntry : MenuEntry {
    using MenuEntry::MenuEntry;
    bool value = false;
};
struct Button : Control {
    using Control::Control;
    std::function<void()> clicked = [] {};
};

/// One of the option buttons of a frame, of which at most one is set.
struct OptionButton : Control {
    using Control::Control;
    /// Sets it, clears the others of its frame and runs its click handler, also when a program does it.
    void choose();
    [[nodiscard]] std::string holds() const override { return value ? "ein" : "aus"; }
    bool take(std::string_view on) override;
    [[nodiscard]] Input input() const override { return {"choose"}; }

    bool value = false;
    std::function<void()> clicked = [] {};
};

struct CheckBox : Control {
    using Control::Control;
    /// Ticks or clears it and runs its click handler.
    void set(bool on);
    [[nodiscard]] std::string holds() const override { return value ? "ein" : "aus"; }
    bool take(std::string_view on) override;
    [[nodiscard]] Input input() const override { return {value ? "tick" : "untick"}; }

    bool value = false;
    std::function<void()> clicked = [] {};
};

/// Whether a text box takes a character.
using KeyFilter = bool (*)(char32_t);
bool any_character(char32_t c);       ///< all but line breaks and control characters
bool digits(char32_t c);              ///< "0" to "9"
bool digits_dot(char32_t c);          ///< an IP address
bool digits_plus(char32_t c);         ///< phone numbers with "+"
bool digits_star(char32_t c);         ///< an MSN; "*" takes all calls
bool hexadecimal_dash(char32_t c);    ///< part of a MAC address
bool dialling_characters(char32_t c); ///< "0" to "9", "+", "*", "#"

/// What text is typed into.
struct TextField : Control {
    using Control::Control;
    /// What remains of a text that is typed or pasted: the accepted characters, up to the limit.
    [[nodiscard]] std::string filtered(std::string_view input) const;
    /// The same with room for so many characters.
    [[nodiscard]] std::string filtered(std::string_view input, std::size_t room) const;
    /// How many characters of its limit a text takes.
    [[nodiscard]] std::size_t counted(std::string_view input) const;
    /// Why a typed character does not get in (German, a few words).
    [[nodiscard]] std::string refusal(std::string_view character) const;
    [[nodiscard]] std::string holds() const override { return text; }

    std::string text;
    std::size_t max_length = 0; ///< in characters; 0 is no limit
    KeyFilter accepts = any_character;
    bool counts_as_sent = false; ///< the limit holds for what the clean-up makes of it: "ß" is two characters
    bool phone_number = false;   ///< "+49 171" without "+": 0049171
};

/// A box of one line, or of several that only the program writes (`multi_line`, then lines end in "\n").
struct TextBox : TextField {
    using TextField::TextField;
    /// Typed, and the box is left.
    bool take(std::string_view typed) override;
    [[nodiscard]] Input input() const override;

    bool read_only = false;
    bool multi_line = false;
    bool secret = false;     ///< a PIN, password or key: in no record
    Button *enter = nullptr; ///< pressed by the Enter key
    std::function<void()> lost_focus = [] {};
};

/// A drop-down list. `text` is the chosen entry, empty while none is; in an editable one any text that its
/// filter and limit leave.
struct ComboBox : TextField {
    using TextField::TextField;
    /// Gives it a text and runs `changed`, as typing and picking do, also when a program does it.
    void write(std::string_view typed);
    bool take(std::string_view entry) override;
    [[nodiscard]] Input input() const override { return {"pick", recorded ? recorded(text) : text}; }

    /// What the record gets of a text that may hold a secret.
    std::string (*recorded)(const std::string &text) = nullptr;
    std::vector<std::string> items;
    std::vector<std::string> item_tool_tips; ///< of the entries, as far as it goes
    bool editable = false;
    std::function<void()> got_focus = [] {}; ///< also runs each time the list is opened
    std::function<void()> changed = [] {};
};

struct LogLine {
    std::string text;
    bool stands_out = false; ///< in another colour
};
/// The end of a text that grows. Its window asks for what is new as often as it can draw it.
struct Log : Control {
    using Control::Control;
    static constexpr int capacity = 10'000; ///< lines that are shown

    /// The lines from a number on, counted from the program's start; moves it behind the last one.
    std::function<std::vector<LogLine>(std::size_t &from)> read = [](std::size_t &) {
        return std::vector<LogLine>{};
    };
    std::size_t begin = 0;   ///< number of the first line that is shown
    bool wants_copy = false; ///< what is selected, or all, goes to the clipboard at the next drawing
};

/// A list that shows several entries at a time, of which at most one is selected.
struct ListBox : Control {
    using Control::Control;
    std::vector<std::string> items;
    int selected = -1; ///< position from 0, -1: none
    /// The user has moved the selection by a key, from `before`, or clicked an entry (`before` is -1).
    std::function<void(int before)> clicked = [](int) {};
    std::function<void()> double_clicked = [] {};
};

/// A table of which one row is chosen. It may be long, so its cells are asked for when they are drawn.
struct RowTable : Control {
    using Control::Control;
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    std::vector<std::string> columns;
    std::size_t rows = 0;
    std::size_t selected = none;
    std::size_t revision = 0; ///< another one: something in it has changed
    std::function<std::string(std::size_t row, std::size_t column)> cell = [](std::size_t, std::size_t) {
        return std::string();
    };
    enum class Mark { none, good, bad };
    std::function<Mark(std::size_t row)> mark = [](std::size_t) {
        return Mark::none;
    };                                                                ///< its colour and sign
    std::size_t marked = 0;                                           ///< column of the sign
    std::function<void(std::size_t row)> chosen = [](std::size_t) {}; ///< by the user; the form selects it
    Button *enter = nullptr; ///< pressed by the Enter key and a double click
};

/// A picture: the design's, or what stands in a file.
struct Picture : Control {
    using Control::Control;
    std::string file; ///< path; empty: the design's
};

struct ProgressBar : Control {
    using Control::Control;
    [[nodiscard]] std::string holds() const override { return std::to_string(value); }
    int value = 0;
    int maximum = 100;
};

/// The first panel of a status bar.
struct StatusPanel : Control {
    using Control::Control;
    std::string text;
};

/// The controls of one window.
class Form {
  public:
    Form(const char *form_name, const char *window_caption) : name(form_name), caption(window_caption) {}
    virtual ~Form() = default;
    Form(const Form &) = delete;
    Form &operator=(const Form &) = delete;

    [[nodiscard]] const std::vector<Control *> &controls() const { return controls_; }
    /// The control of this name and kind, nullptr if there is none.
    template <class Kind = Control> [[nodiscard]] Kind *find(std::string_view control_name) const {
        for (Control *control : controls_)
            if (control_name == control->name)
                return dynamic_cast<Kind *>(control);
        return nullptr;
    }

    /// Opens the window with its fields as they are at design time; one that is open comes to the front as it
    /// is.
    void load();
    /// Closes it.
    virtual void unload() { open = false; }

    /// Updates what is computed from the fields; runs after every event.
    virtual void compute() {}
    /// A job has ended: what it locked comes back, by the window's own rules.
    virtual void unlock() {}

    const char *name;
    std::string caption; ///< the window's title
    bool open = false;
    bool was_open = false; ///< at some time since the program's start
    /// The button that the title bar's close button and the Escape key press, where there is one.
    Button *cancel = nullptr;
    /// Gets the focus at the next drawing.
    Control *wants_focus = nullptr;
    /// Comes to the front at the next drawing.
    bool wants_front = false;

    /// Gives the fields their design-time values.
    virtual void reset() {}

  private:
    friend struct Control;
    std::vector<Control *> controls_;
};

} // namespace telvox
