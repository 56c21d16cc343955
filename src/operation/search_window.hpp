#pragma once

#include "operation/search.hpp"

namespace telvox::operation {

/// "Erkennen" of the main window where no port is chosen: asks all of them and lists what is there; the one
/// that the user takes fills variant, port and format.
class SearchWindow : private LongWork, private Observer {
  public:
    SearchWindow(Telvox &program, PortScan &ports, MakePorts make);

    /// What asks the ports.
    [[nodiscard]] Search &search() { return search_; }

  private:
    void ask();
    void begin();
    void take();
    void note(const Search::At &at);
    [[nodiscard]] std::string cell(std::size_t row, std::size_t column) const;
    [[nodiscard]] std::string heading() const;
    [[nodiscard]] bool running() const override { return search_.running(); }
    [[nodiscard]] Progress progress() const override { return search_.progress(); }
    void cancel() override { search_.cancel(); }
    void happened() override;

    Telvox &program_;
    Desk &desk_;
    FrmSuche &form_;
    Button &button_;
    PortScan &ports_;
    Operator operator_;
    Search search_;
    std::function<void()> ask_chosen_; ///< what the button does where a port is chosen
};

} // namespace telvox::operation
