#pragma once

#include "core/records/history.hpp"
#include "ui/form.hpp"

#include <string>
#include <vector>

namespace telvox {

/// The jobs that were done here, the newest first, and those among them that hold all words of a filter.
/// How a table marks a job, or a row, that came out so.
[[nodiscard]] RowTable::Mark mark_of(RowOutcome outcome);

class FrmVerlauf : public Form {
  public:
    FrmVerlauf();

    /// Takes the history's lines, the oldest first.
    void show(std::vector<HistoryLine> lines);
    /// The lines that are shown, the oldest first.
    [[nodiscard]] std::vector<HistoryLine> shown() const;
    /// The chosen one, nullptr if there is none.
    [[nodiscard]] const HistoryLine *chosen() const;

    void reset() override { tboFilter.text.clear(); }
    void unload() override;
    /// Applies the filter when it has changed.
    void compute() override;

    Label lblFilter{*this, "lblFilter", "&Filter:"};
    TextBox tboFilter{*this, "tboFilter"};
    RowTable tblVerlauf{*this, "tblVerlauf"};
    Label lblAnzahl{*this, "lblAnzahl"}; ///< "12 von 840 Vorgängen"
    Button cbuVerlauf_Nachweis{*this, "cbuVerlauf_Nachweis", "&Nachweis…"};
    Button cbuVerlauf_speichern{*this, "cbuVerlauf_speichern", "Als CSV &speichern…"};
    Button cbuVerlauf_schliessen{*this, "cbuVerlauf_schliessen", "S&chließen"};

  private:
    [[nodiscard]] const HistoryLine &at(std::size_t row) const { return lines_[rows_[row]]; }
    void choose_rows();

    std::vector<HistoryLine> lines_;
    std::vector<std::string> searched_; ///< what the filter looks at, by line
    std::vector<std::size_t> rows_;     ///< lines that are shown
    std::string filter_;
};

} // namespace telvox
