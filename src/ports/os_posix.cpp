#include "ports/os.hpp"

#include "core/files/system_error.hpp"

#include <QFileInfo>
#include <QStandardPaths>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <grp.h>
#include <poll.h>
#include <sstream>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>
#if __has_include(<linux/serial.h>)
#include <linux/serial.h>
#endif

namespace telvox::os {

namespace {

const Refusal no_permission = {"Keine Berechtigung für die Schnittstelle.", "keine Berechtigung"};

Refusal refused_by(const struct stat &status) {
    const group *owner = ::getgrgid(status.st_gid);
    const bool group_may = (status.st_mode & (S_IRGRP | S_IWGRP)) == (S_IRGRP | S_IWGRP);
    if (!owner || !group_may)
        return no_permission;
    const std::string name = owner->gr_name;
    return {"Keine Berechtigung: Die Schnittstelle gehört der Gruppe \"" + name +
                "\". Nehmen Sie den Benutzer in diese Gruppe auf und melden Sie sich neu an.",
            "keine Berechtigung, Gruppe " + name + "; danach neu anmelden"};
}

} // namespace

std::vector<std::string> arguments(int argc, char **argv) { return {argv + 1, argv + argc}; }

void reserve_standard_streams() {
    int taken = 0;
    while (taken >= 0 && taken <= STDERR_FILENO)
        taken = ::open("/dev/null", O_RDONLY);
    if (taken >= 0)
        ::close(taken);
}

bool print(std::string_view text, std::FILE *stream) {
    const bool taken = std::fwrite(text.data(), 1, text.size(), stream) == text.size();
    return std::fflush(stream) == 0 && taken;
}

bool has_display() {
#ifdef __APPLE__
    return true;
#else
    const auto set = [](const char *name) { return std::getenv(name) && *std::getenv(name); };
    return set("DISPLAY") || set("WAYLAND_DISPLAY") || set("QT_QPA_PLATFORM");
#endif
}

bool exists(const std::string &device) { return ::access(device.c_str(), F_OK) == 0; }

std::string real_name(const std::string &device) {
    const QString real = QFileInfo(QString::fromStdString(device)).canonicalFilePath();
    return real.isEmpty() ? device : real.toStdString();
}

const bool ports_have_numbers = false;
int port_number(const std::string &) { return 0; }

Refusal refusal(const std::string &device) {
    struct stat status {};
    if (::stat(device.c_str(), &status) != 0)
        switch (errno) {
        case EACCES:
            return no_permission;
        case ENAMETOOLONG:
        case ELOOP:
            return {german_reason(errno), "kein gültiger Name"};
        default:
            return port_absent;
        }
    if (S_ISDIR(status.st_mode))
        return {"Das ist ein Ordner, keine serielle Schnittstelle.", "ein Ordner"};
    if (!S_ISCHR(status.st_mode))
        return {"Das Gerät ist keine serielle Schnittstelle.", "keine serielle Schnittstelle"};
    if (::faccessat(AT_FDCWD, device.c_str(), R_OK | W_OK, AT_EACCESS) != 0)
        return refused_by(status);
    return {};
}

std::optional<Refusal> probe(const std::string &) { return std::nullopt; } // locks are the port's to see

bool claim(PortHandle port) {
    // The exclusive mode that the port sets itself does not hold against the superuser, this lock does.
    return ::flock(port, LOCK_EX | LOCK_NB) == 0;
}

bool hung_up(PortHandle port) {
    pollfd state{.fd = port, .events = 0, .revents = 0};
    return ::poll(&state, 1, 0) > 0 && (state.revents & (POLLHUP | POLLERR | POLLNVAL)) != 0;
}

std::size_t input_waiting(PortHandle) { return 0; }
std::string take_input(PortHandle, std::size_t) { return {}; }

bool output_pending(PortHandle port) {
    int waiting = 0;
    if (::ioctl(port, TIOCOUTQ, &waiting) == 0 && waiting > 0)
        return true;
#ifdef TIOCSERGETLSR
    // An empty queue leaves up to a FIFO of bytes on their way where the hardware has one.
    int transmitter = 0;
    if (::ioctl(port, TIOCSERGETLSR, &transmitter) == 0)
        return (transmitter & TIOCSER_TEMT) == 0;
#endif
    return false;
}

std::filesystem::path settings_folder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation).toStdString();
}

bool keeps_folder_clean(const std::filesystem::path &program_folder) {
    return program_folder.native().starts_with("/usr/");
}

const Processes::Tools tools = Processes::Tools::of_linux;

std::vector<std::string> program_folders() {
    std::vector<std::string> folders;
    const char *path = std::getenv("PATH");
    std::istringstream all(path ? path : "");
    for (std::string folder; std::getline(all, folder, ':');)
        if (folder.starts_with('/'))
            folders.push_back(folder);
    folders.insert(folders.end(), {"/usr/sbin", "/sbin", "/usr/bin", "/bin"});
    return folders;
}

std::string console_text(const std::string &bytes) { return bytes; }

} // namespace telvox::os
