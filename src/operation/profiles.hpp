#pragma once

#include "operation/operator.hpp"
#include "operation/profile.hpp"

#include <functional>
#include <set>
#include <string>

namespace telvox::operation {

/// The profiles of the window: they are opened and saved from its menu. What one says of a dialog is put into
/// it whenever it opens, and follows what the user makes of it there.
class Profiles : private Observer {
  public:
    Profiles(Telvox &program, PortScan &ports);

    /// Opens a profile; a box says why it could not be, and then nothing has changed. Not while a job runs,
    /// nor while a list is open, whose devices it would be for.
    void open(const std::string &path);
    /// Saves what the windows hold; a box says so if that failed.
    void save(const std::string &path, bool secrets);

    /// The window begins as it was left, where that is wanted and still possible.
    void begin_as_left();
    /// Remembers how the window is left, for that. `geometry`: of the window.
    void note_left(const std::string &geometry);

    /// The one in force; empty if there is none.
    [[nodiscard]] const Profile &in_force() const { return profile_; }
    /// Somebody else fills the dialogs in that open now.
    void leave_to_others();

    /// Whether a list is open; told by the list.
    std::function<bool()> list_is_open = [] { return false; };

  private:
    void ask_to_open();
    void ask_to_save();
    void ask_for_backup();
    void happened() override;
    void fill_dialog(const Section &section, const Values &values);
    void take_over(Profile profile, const std::string &path, const std::string &what_happened);
    void show_recent();

    Telvox &program_;
    Desk &desk_;
    PortScan &ports_;
    Operator operator_;
    Profile profile_;      ///< the one in force
    std::string path_;     ///< of it; empty: there is none
    bool secrets_ = false; ///< it holds PIN, passwords or keys
    std::set<const Section *> open_;
};

} // namespace telvox::operation
