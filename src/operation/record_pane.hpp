#pragma once

#include "operation/record_pages.hpp"
#include "operation/work_log.hpp"
#include "telvox.hpp"

#include <ctime>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace telvox::operation {

/// The window's record for the customer: of the last device, of all of the session, of the open list, or of a
/// line of the history.
class RecordPane {
  public:
    using Now = std::function<std::time_t()>;

    RecordPane(
        Telvox &program, const WorkLog &log, RecordPrinter &printer,
        Now now = [] { return std::time(nullptr); });

    /// The list that is open.
    std::function<std::optional<ListRecord>()> list = [] { return std::optional<ListRecord>(); };
    /// Opens the dialog, at a line of the history if it is to be of one.
    void open(const HistoryLine *line = nullptr);

  private:
    /// What a record can be made of.
    struct Subject {
        std::string caption;
        std::string file_name;
        std::function<RecordPages(RecordFrame)> pages;
    };

    void add(std::string caption, std::string file_name, std::vector<DoneJob> jobs);
    [[nodiscard]] const Subject *chosen() const;
    void ask_to_save();
    void print(const std::string &path);
    void ended(const std::string &path, std::size_t pages, const std::string &failure);
    void close();
    void show();

    Telvox &program_;
    Desk &desk_;
    FrmNachweis &form_;
    const WorkLog &log_;
    RecordPrinter &printer_;
    Now now_;
    std::vector<Subject> subjects_;
    bool printing_ = false;
};

} // namespace telvox::operation
