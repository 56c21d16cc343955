#pragma once

#include "operation/work_log.hpp"
#include "telvox.hpp"

#include <functional>

namespace telvox::operation {

/// The window's history: opened, saved, and a record made of its lines.
class HistoryPane {
  public:
    HistoryPane(Telvox &program, const WorkLog &log);

    /// Makes a record of a line.
    std::function<void(const HistoryLine &)> make_record = [](const HistoryLine &) {};

  private:
    void open();
    void ask_to_save();

    Telvox &program_;
    Desk &desk_;
    FrmVerlauf &form_;
    const WorkLog &log_;
};

} // namespace telvox::operation
