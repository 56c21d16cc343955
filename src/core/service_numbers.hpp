#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace telvox {

/// One line of a list of service numbers.
struct ServiceNumber {
    std::string label;    ///< as the list shows it
    std::string number;   ///< empty: it has none
    bool heading = false; ///< stands above entries and is none
    // Protocol codes that go with the number, as they stand in the file.
    std::string protocol;        ///< of an Analog device, "M6"
    std::string protocol_ISDN;   ///< of an ISDN device on its cable, "M1"
    std::string protocol_remote; ///< of an ISDN device in a call, "aldest=1"

    bool operator==(const ServiceNumber &) const = default;
};

/// The SMS centres of the mobile networks (`SCN.dat`), every line an item. One without "+" is a heading, the
/// first 20 of them; the number begins with the first "+" at the 10th character or behind and goes to the end
/// of the line.
[[nodiscard]] std::vector<ServiceNumber> parse_service_centers(const std::vector<std::string> &lines);

/// The SMS gateways of the fixed network (`FSN.dat`), every line with a "0" an item: label, and behind commas
/// the three protocol codes. The number is the end of the label, from the first "0" at the 10th character or
/// behind. Only the first 21 have codes.
[[nodiscard]] std::vector<ServiceNumber> parse_service_numbers(const std::vector<std::string> &lines);

/// A label's words, each behind one blank.
[[nodiscard]] std::string single_spaced(std::string_view text);

/// The entries with a number whose label contains a text; capitals and small letters are the same, and so are
/// gaps of all widths.
[[nodiscard]] std::vector<ServiceNumber> entries_with(const std::vector<ServiceNumber> &entries,
                                                      std::string_view text);

} // namespace telvox
