#pragma once

#include "cli/call.hpp"
#include "ports/port_map.hpp"
#include "telvox.hpp"

namespace telvox::cli {

/// Works the program's form like a person at the window: fills it in and presses the job's button. What the
/// form would not take is refused by name.
class Operator {
  public:
    Operator(Telvox &program, PortMap &ports) : program_(program), ports_(ports) {}

    /// Fills the form in and starts the job. Throws UsageError for a value or control that the form refuses.
    void work(const Call &call);

  private:
    void choose_variant_and_way(const Call &call);
    void fill_fields(const Call &call);
    void fill_dialog(const Call &call);
    void choose(const char *option, OptionButton &button);
    void enter(const char *option, TextBox &box, const std::string &value);
    void choose_port(const char *option, ComboBox &list, const std::string &value);
    void set_format(const char *option, std::string &parameters, const std::string &value);
    int port_number(const char *option, const std::string &value);

    Telvox &program_;
    PortMap &ports_;
};

} // namespace telvox::cli
