#include "core/serial_format.hpp"

#include <algorithm>
#include <array>
#include <charconv>

namespace telvox {

std::optional<SerialFormat> parse_format(std::string_view settings) {
    constexpr std::array bauds = {300, 600, 1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200};
    std::array<std::string_view, 4> field;
    for (std::size_t i = 0; i < field.size(); ++i) {
        const auto comma = settings.find(',');
        if ((comma == std::string_view::npos) != (i == 3))
            return std::nullopt;
        field[i] = settings.substr(0, comma);
        settings.remove_prefix(i == 3 ? settings.size() : comma + 1);
    }
    SerialFormat format;
    const auto [end, error] =
        std::from_chars(field[0].data(), field[0].data() + field[0].size(), format.baud);
    if (error != std::errc{} || end != field[0].data() + field[0].size() ||
        std::find(bauds.begin(), bauds.end(), format.baud) == bauds.end())
        return std::nullopt;
    if (field[1] != "n" && field[1] != "e" && field[1] != "o")
        return std::nullopt;
    if ((field[2] != "7" && field[2] != "8") || (field[3] != "1" && field[3] != "2"))
        return std::nullopt;
    format.parity = field[1][0];
    format.data_bits = field[2][0] - '0';
    format.stop_bits = field[3][0] - '0';
    return format;
}

std::string format_text(const SerialFormat &format) {
    return std::to_string(format.baud) + "," + format.parity + "," + std::to_string(format.data_bits) + "," +
           std::to_string(format.stop_bits);
}

} // namespace telvox
