#pragma once

#include <string>
#include <string_view>

namespace telvox {

/// Shows the program's help (port).
class HelpViewer {
  public:
    virtual ~HelpViewer() = default;
    /// Shows the page about a window or one of its controls ("frmPin", "frmPin.tboPin"), without a topic the
    /// start page. Returns why it could not, empty if it could. Does not wait for the reader.
    virtual std::string show(std::string_view topic) = 0;
};

} // namespace telvox
