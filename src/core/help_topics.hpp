#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace telvox {

/// A page of the help.
struct HelpTopic {
    std::string file; ///< "pin.html"
    std::string title;
    std::vector<std::string> keys; ///< windows and controls that it is about ("frmPin"), and search words

    bool operator==(const HelpTopic &) const = default;
};

/// Name of the table of contents in the help's folder. A line is a page: "file|title|key, key"; the first is
/// the start page.
inline constexpr const char *help_contents = "inhalt.txt";

/// Reads the table of contents. A line without a title is left out, as is a file elsewhere than in the
/// folder.
[[nodiscard]] std::vector<HelpTopic> parse_help_topics(const std::vector<std::string> &lines);

/// The page about a control ("frmPin.tboPin"), else about its window, else the first. Nothing only where
/// there is no page at all.
[[nodiscard]] const HelpTopic *find_help_topic(const std::vector<HelpTopic> &topics, std::string_view topic);

} // namespace telvox
