#include "core/files/system_error.hpp"

#include <algorithm>
#include <cerrno>
#include <iterator>

namespace telvox {

namespace {

struct Reason {
    int error;
    const char *text;
};
constexpr Reason reasons[] = {
    {ENOSPC, "Der Datenträger ist voll."},
#ifdef EDQUOT
    {EDQUOT, "Der Speicherplatz, der dem Benutzer zusteht, ist verbraucht."},
#endif
    {EACCES, "Der Ordner oder die Datei ist schreibgeschützt."},
    {EPERM, "Der Ordner oder die Datei ist schreibgeschützt."},
    {EROFS, "Der Ordner oder die Datei ist schreibgeschützt."},
    {ENOENT, "Der Ordner ist nicht vorhanden."},
    {ENOTDIR, "Der Ordner ist nicht vorhanden."},
    {EISDIR, "An der Stelle der Datei steht ein Ordner."},
    {EEXIST, "An der Stelle der Datei steht etwas anderes."},
    {ENOTEMPTY, "An der Stelle der Datei steht ein Ordner."},
    {EBUSY, "Die Datei wird von einem anderen Programm benutzt."},
    {ETXTBSY, "Die Datei wird von einem anderen Programm benutzt."},
    {EIO, "Der Datenträger meldet einen Fehler."},
    {ENXIO, "Der Datenträger ist nicht bereit."},
    {ENODEV, "Der Datenträger ist nicht bereit."},
#ifdef ESTALE
    {ESTALE, "Die Datei wurde gelöscht oder ersetzt."},
#endif
    {EPIPE, "Der Empfänger der Ausgabe hat sie geschlossen."},
    {EBADF, "Die Ausgabe ist geschlossen."},
    {EFBIG, "Die Datei wird zu groß."},
    {ENAMETOOLONG, "Der Name ist zu lang."},
    {ELOOP, "Die Verknüpfungen führen im Kreis."},
    {EMFILE, "Es sind zu viele Dateien geöffnet."},
    {ENFILE, "Es sind zu viele Dateien geöffnet."},
    {ENOMEM, "Der Arbeitsspeicher reicht nicht aus."},
};

} // namespace

std::string german_reason(int error) {
    const auto *known = std::find_if(std::begin(reasons), std::end(reasons),
                                     [&](const Reason &reason) { return reason.error == error; });
    return known != std::end(reasons) ? known->text
                                      : "Das System meldet Fehler " + std::to_string(error) + ".";
}

} // namespace telvox
