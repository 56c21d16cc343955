#pragma once

#include "operation/main_window_state.hpp"
#include "operation/operator.hpp"
#include "operation/profile.hpp"

#include <set>
#include <string>

namespace telvox::operation {

/// The profiles of the window: they are opened and saved from its menu. What one says of a dialog is put into
/// it whenever it opens, and follows what the user makes of it there.
class Profiles : private Observer {
  public:
    /// `program` has just been made: what it holds now is what a profile begins with that names a variant.
    Profiles(Telvox &program, PortScan &ports);

    /// Opens a profile; a box says why it could not be, and then nothing has changed.
    void open(const std::string &path);
    /// Saves what the windows hold; a box says so if that failed.
    void save(const std::string &path, bool secrets);

  private:
    void ask_to_open();
    void ask_to_save();
    void check(const Profile &profile);
    void fill_main_window(const Profile &profile);
    void happened() override;
    void fill_dialog(const Section &section, const Values &values);
    void take_over(Profile profile, const std::string &path, const std::string &what_happened);
    void show_recent();

    Telvox &program_;
    Desk &desk_;
    Operator operator_;
    const MainWindowState start_;
    Profile profile_;      ///< the one in force
    std::string path_;     ///< of it; empty: there is none
    bool secrets_ = false; ///< it holds PIN, passwords or keys
    std::set<const Section *> open_;
};

} // namespace telvox::operation
