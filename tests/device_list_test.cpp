// Lists of devices: tables as spreadsheets write them, what a list refuses, the results beside it, and which
// rows may run.

#include "core/lists/device_list.hpp"
#include "core/lists/list_run.hpp"
#include "core/lists/result_file.hpp"
#include "core/usage_error.hpp"

#include <gmock/gmock.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#ifndef _WIN32
#include <sys/resource.h>
#endif

namespace telvox {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// What a function yields, or the sentence that it refuses with.
template <class Function> std::string said_by(Function &&function) {
    try {
        return function();
    } catch (const UsageError &error) {
        return error.what();
    }
}

/// A table as "line:field|field" per row.
std::string shown(const Table &table) {
    std::string text;
    for (const auto &[line, fields] : table.rows) {
        text += (text.empty() ? "" : " ") + std::to_string(line) + ":";
        for (const std::string &field : fields)
            text += (&field == fields.data() ? "" : "|") + field;
    }
    return text;
}

TEST(TableFile, IsReadAsSpreadsheetsWriteIt) {
    const struct {
        std::string bytes;
        const char *expected;
    } cases[] = {
        {"", ""},
        {"a;b\r\n1;2\r\n", "1:a|b 2:1|2"},
        {"a,b\n1,2", "1:a|b 2:1|2"},
        {"a;b\r1,5;2\r", "1:a|b 2:1,5|2"},
        {"a\nSüd, oben\n", "1:a 2:Süd, oben"},
        {"\xEF\xBB\xBF"
         "a;b\n\xC3\xBC;\n",
         "1:a|b 2:ü|"},
        {"a;b\n\xFC;\x80\n", "1:a|b 2:ü|€"},
        {"sep=,\r\na,b;c\r\n", "2:a|b;c"},
        {"\"sep=;\";;\na,b;c\n", "2:a,b|c"},
        {"sep=\t\na\tb\n", "t, Zeile 1: als Trennzeichen gehen nur ; und ,"},
        {"a;b\n;\n  ; \n\n\"\";\n1;2\n;;;;\n\n", "1:a|b 6:1|2"},
        {"a;b\n\"1;\"\"x\"\"\";2\" \n", "1:a|b 2:1;\"x\"|2\" "},
        {"a;b\n\"1\r\n2\r3\n4\";x\n5;6\n", "1:a|b 2:1\n2\n3\n4|x 6:5|6"},
        {"a;b\n1;2\n\"3;4\n5;6\n", "t, Zeile 3: ein Anführungszeichen wird nicht geschlossen"},
        {"a;b\n\"", "t, Zeile 2: ein Anführungszeichen wird nicht geschlossen"},
        {"a;b\n\"1\"2;3\n", "t, Zeile 2: hinter einem schließenden Anführungszeichen steht noch Text"},
        {std::string("a;b\r\n1\0;2", 9),
         "t, Zeile 2: das ist kein Text, gebraucht wird eine Tabelle als CSV"},
        {"a\r\x1B[2J", "t, Zeile 2: das ist kein Text, gebraucht wird eine Tabelle als CSV"},
        {"a\n\xC2\x9B"
         "1\n",
         "t, Zeile 2: das ist kein Text, gebraucht wird eine Tabelle als CSV"},
        {"a\n\n\x81", "t, Zeile 3: das ist kein Text, gebraucht wird eine Tabelle als CSV"},
        {"\xEF\xBB\xBF"
         "a\n\xFC",
         "t, Zeile 2: das ist kein Text, gebraucht wird eine Tabelle als CSV"},
        {"\xFF\xFE"
         "a",
         "t, Zeile 1: die Datei ist in UTF-16 gespeichert, gebraucht wird CSV in UTF-8"},
        {"a\nb\nc\nd\ne\n", "t, Zeile 5: mehr als 3 Zeilen"},
        {std::string(300, ';') + "x", "t, Zeile 1: mehr als 256 Felder"},
    };
    for (const auto &[bytes, expected] : cases)
        EXPECT_EQ(said_by([&, &of = bytes] { return shown(parse_table(of, "t", 3)); }), expected) << bytes;
}

TEST(TableFile, ARowIsReadBackAsItWasWritten) {
    const std::vector<std::string> fields = {"", "a;b", "\"", "x \"\"y", " z\t", "ü,1", "a\r\rb\x01\x7F", ""};
    const Table table = parse_table(table_row(fields), "t", 1);
    EXPECT_EQ(shown(table), "1:|a;b|\"|x \"\"y| z\t|ü,1|a b??|");
    // Split at another separator, the rest of the cell would be computed.
    EXPECT_EQ(table_row(std::vector<std::string>{"a,=1+1", "b\t-2", "c"}), "\"a,=1+1\";\"b\t-2\";c");
}

std::string shown(const DeviceList &list) {
    std::string text;
    for (const std::string &column : list.columns)
        text += column + " ";
    for (const auto &[line, name, job, cells] : list.rows) {
        text += "/ " + std::to_string(line) + " " + name + " " + job;
        for (const std::string &cell : cells)
            text += "|" + cell;
    }
    return text;
}

TEST(DeviceListFile, TakesOptionsAndRefusesWhatItDoesNotKnow) {
    const auto known = [](std::string_view name) {
        return std::string(name == "typ" || name == "alarmtext" ? name : "");
    };
    const struct {
        const char *bytes, *expected;
    } cases[] = {
        {"Name; TYP ;alarmtext;Auftrag\n Süd ;gsm;\" a \";\n;;; Alarmtest\n",
         "typ alarmtext / 2 Süd parametrieren|gsm| a / 3  alarmtest||"},
        {"typ;name;;\ngsm;a;;\nisdn;b;; ;;\n", "typ / 2 a parametrieren|gsm/ 3 b parametrieren|isdn"},
        {"typ;alarmtext\n  ;x\n", "typ alarmtext / 2  parametrieren||x"},
        {"", "l: die Tabelle ist leer"},
        {"\n\ntyp;name\n;\n", "l: unter der Kopfzeile steht keine Zeile"},
        {"gsm;Süd\nisdn;Nord\n",
         "l, Zeile 1: eine Spalte \"gsm\" gibt es nicht; die erste Zeile benennt die Spalten\r"
         "l, Zeile 1: eine Spalte \"süd\" gibt es nicht; die erste Zeile benennt die Spalten"},
        {"typ;name;Typ\na;b;c\n", "l, Zeile 1: Spalte typ ist doppelt"},
        {"typ;;name\na;b;c\n", "l, Zeile 1: Spalte 2 hat keinen Namen"},
        {"typ;name;alarmtext\na;b;c\nd\n", "l, Zeile 3: 1 Felder statt 3, Spalte name fehlt"},
        {"typ;name;alarmtext\nd\na;b;c;d\n",
         "l, Zeile 2: 1 Felder statt 3, Spalte name fehlt\r"
         "l, Zeile 3: 4 Felder statt 3, hinter Spalte alarmtext steht noch etwas"},
        {"typ;name\na;b;;c;\n", "l, Zeile 2: 5 Felder statt 2, hinter Spalte name steht noch etwas"},
        {"typ;name\n\na;\"b\nc\"\n", "l, Zeile 3, Spalte name: in der Zelle ist ein Zeilenumbruch"},
    };
    for (const auto &[bytes, expected] : cases)
        EXPECT_EQ(said_by([&, of = bytes] { return shown(device_list(parse_table(of, "l", 9), known)); }),
                  expected)
            << bytes;
}

class ListFiles : public testing::Test {
  protected:
    void SetUp() override {
        folder = fs::temp_directory_path() / fs::path(u8"telvox_liste_ü").concat(std::to_string(::getpid()));
        fs::create_directories(folder);
        results = result_path(folder / "pumpen.csv");
    }
    void TearDown() override { fs::remove_all(folder); }
    void write(const std::string &bytes) { std::ofstream(results, std::ios::binary) << bytes; }
    [[nodiscard]] std::string bytes() const {
        std::ifstream file(results, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    static DeviceList list_of(const std::vector<std::string> &names) {
        DeviceList list;
        for (const std::string &name : names)
            list.rows.push_back({.line = list.rows.size() + 2, .name = name});
        return list;
    }
    /// The last outcomes of a list's rows, as "outcome@port: message".
    [[nodiscard]] std::vector<std::string> last(const DeviceList &list) const {
        const ResultFile file(results, list);
        std::vector<std::string> all;
        for (std::size_t i = 0; i < list.rows.size(); ++i)
            all.push_back(!file.last(i) ? ""
                                        : word_of(file.last(i)->outcome) + ("@" + file.last(i)->port) + ": " +
                                              file.last(i)->message + (file.done(i) ? "" : " (offen)"));
        return all;
    }
    std::string refusal() {
        return said_by([&] {
            ResultFile file(results, list_of({"a"}));
            return std::string();
        });
    }

    fs::path folder, results;
};

TEST_F(ListFiles, ResultsAreReadBackByWhatTheRowIsKnownBy) {
    const DeviceList list = list_of({"=1+1", "'-", "doppelt", "doppelt", "", "Süd; \"A\"", "nie"});
    {
        ResultFile file(results, list);
        for (std::size_t i = 0; i + 1 < list.rows.size(); ++i)
            EXPECT_EQ(file.append(i, {.outcome = static_cast<RowOutcome>(i),
                                      .time = local_time(0),
                                      .port = "COM " + std::to_string(i),
                                      .message = "+Fehler\r\rZeile " + std::to_string(i)}),
                      "");
        EXPECT_EQ(file.append({{2, {.outcome = RowOutcome::begun}}, {2, {.outcome = RowOutcome::objected}}}),
                  "");
        EXPECT_THAT(refusal(), HasSubstr("Die Datei wird von einem anderen Programm benutzt."));
    }
    EXPECT_THAT(bytes(),
                HasSubstr("\r\n2;'=1+1;" + local_time(0) + ";COM 0;erfolgreich;'+Fehler Zeile 0;\r\n3;''-;"));
    EXPECT_THAT(local_time(0), testing::MatchesRegex("....-..-.. ..:..:.."));
    EXPECT_THAT(last(list),
                ElementsAre("erfolgreich@COM 0: +Fehler Zeile 0", "mit Ablehnungen@COM 1: +Fehler Zeile 1",
                            "mit Ablehnungen@: ", "abgebrochen@COM 3: +Fehler Zeile 3 (offen)",
                            "übersprungen@COM 4: +Fehler Zeile 4",
                            "begonnen, Ausgang unbekannt@COM 5: +Fehler Zeile 5 (offen)", ""));
    // Sorted anew, a unique name keeps its result; one that has become unique has the last of that name.
    EXPECT_THAT(last(list_of({"neu", "doppelt", "=1+1"})),
                ElementsAre("", "mit Ablehnungen@: ", "erfolgreich@COM 0: +Fehler Zeile 0"));
}

TEST_F(ListFiles, WhateverIsLeftOfTheLastLineIsMended) {
    const DeviceList list = list_of({"ä", "b"});
    {
        ResultFile file(results, list);
        EXPECT_EQ(file.append(0, {.outcome = RowOutcome::failed, .message = "x;\""}), "");
        EXPECT_EQ(file.append(0, {.outcome = RowOutcome::succeeded, .message = "y;\""}), "");
    }
    const std::string whole = bytes();
    const std::size_t second = whole.rfind('\n', whole.size() - 2) + 1;
    for (std::size_t cut = 0; cut <= whole.size(); ++cut) {
        write(whole.substr(0, cut) + (cut % 2 != 0 ? std::string(7, '\0') : ""));
        const std::string kept = cut < second         ? ""
                                 : cut < whole.size() ? "fehlgeschlagen@: x;\" (offen)"
                                                      : "erfolgreich@: y;\"";
        EXPECT_EQ(last(list)[0], kept) << cut;
        ASSERT_EQ(ResultFile(results, list).append(1, {.outcome = RowOutcome::skipped}), "") << cut;
        EXPECT_EQ(last(list)[1], "übersprungen@: ") << cut;
    }
}

TEST_F(ListFiles, AResultFileThatIsNoneOrCannotBeWrittenIsRefused) {
    const std::string head =
        "zeile;name;zeit;schnittstelle;ergebnis;meldung\n"; // as earlier versions wrote it
    const struct {
        std::string bytes;
        const char *because;
    } cases[] = {
        {"name;typ\na;gsm\n", "ist keine, die dieses Programm geschrieben hat."},
        {"\n", "ist keine, die dieses Programm geschrieben hat."},
        {head + "2;S\xFC"
                "d;;;erfolgreich;\n",
         "ist keine, die dieses Programm geschrieben hat."},
        {head + "2;a;;;erfolgreich;\n3;b;;;gut;\n", "pumpen-ergebnis.csv, Zeile 3: das ist kein Ergebnis"},
        {head + "2;a;;;erfolgreich\n", "Zeile 2: das ist kein Ergebnis"},
        {std::string(9 << 20, 'x'), "ist größer als 8 MB."},
    };
    for (const auto &[content, because] : cases) {
        write(content);
        EXPECT_THAT(refusal(), HasSubstr(because));
        EXPECT_EQ(bytes().size(), content.size()) << "it is as it was";
    }
    write(head + "2;a;;;erfolgreich;\n");
    EXPECT_EQ(refusal(), "") << "an editor may have changed mark and line ends";
    fs::remove(results);
    fs::create_directories(results);
    EXPECT_THAT(refusal(),
                HasSubstr("lässt sich nicht schreiben. An der Stelle der Datei steht etwas anderes."));
    fs::remove(results);
#ifndef _WIN32
    fs::create_symlink("/dev/full", results);
    EXPECT_THAT(refusal(), HasSubstr("lässt sich nicht schreiben."));
    fs::remove(results);
#endif
    fs::remove(folder);
    EXPECT_THAT(refusal(), HasSubstr("lässt sich nicht schreiben. Der Ordner ist nicht vorhanden."));
}

#ifndef _WIN32
TEST_F(ListFiles, AResultThatDoesNotFitLeavesNothingBehind) {
    std::signal(SIGXFSZ, SIG_IGN);
    ResultFile file(results, list_of({"a"}));
    const std::string before = bytes();
    rlimit limit{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &limit), 0);
    const rlimit small{.rlim_cur = before.size() + 10, .rlim_max = limit.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    EXPECT_EQ(file.append(0, {.outcome = RowOutcome::succeeded}),
              "Das Ergebnis ließ sich nicht aufschreiben. Die Datei wird zu groß.");
    EXPECT_EQ(bytes(), before);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    EXPECT_EQ(file.append(0, {.outcome = RowOutcome::succeeded}), "");
    EXPECT_EQ(bytes(), before + "2;a;;;erfolgreich;;\r\n");
    fs::remove(results); // or an editor has put another in its place
    EXPECT_THAT(file.append(0, {.outcome = RowOutcome::succeeded}), HasSubstr("gelöscht oder ersetzt"));
}
#endif

TEST_F(ListFiles, HaveRoomForTenThousandDevices) {
    const fs::path file = folder / "pumpen.csv";
    std::ofstream stream(file);
    stream << "name;typ\n";
    for (int i = 0; i < 10000; ++i)
        stream << "Pumpwerk " << i << ";gsm\n";
    stream.flush();
    const auto known = [](std::string_view name) { return std::string(name == "typ" ? name : ""); };
    const DeviceList list = read_device_list(file, known);
    EXPECT_EQ(label_of(list.rows.back()), "Zeile 10001, Pumpwerk 9999");
    ASSERT_EQ(ResultFile(results, list).append(9999, {.outcome = RowOutcome::skipped}), "");
    EXPECT_EQ(last(list)[9999], "übersprungen@: ");
    stream << "eine zuviel;gsm\n" << std::flush;
    EXPECT_THAT(said_by([&] { return read_device_list(file, known).source; }),
                HasSubstr("Zeile 10002: mehr als 10000 Zeilen"));
    EXPECT_THAT(said_by([&] { return shown(read_table(folder, 1)); }), HasSubstr("ist keine Datei."));
    EXPECT_THAT(said_by([&] { return shown(read_table(folder / "x", 1)); }), HasSubstr("gibt es nicht."));
}

TEST(ListRun, RowsOfOneResourceFollowOneAnother) {
    ListRun run({"a", "b", "a", "c", "b", "a"});
    run.leave_out(1);
    EXPECT_THAT(run.start(), ElementsAre(0, 4, 3));
    EXPECT_THAT(run.start(), IsEmpty());
    run.end(0, RowOutcome::failed);
    run.end(3, RowOutcome::succeeded);
    EXPECT_THAT(run.start(), ElementsAre(2)) << "a failure does not hold the others up";
    run.end(2, RowOutcome::cancelled);
    EXPECT_EQ(run.state(2), ListRun::State::open);
    run.stop();
    EXPECT_THAT(run.start(), IsEmpty());
    EXPECT_EQ(run.running(), 1u);
    run.end(4, RowOutcome::objected);
    EXPECT_EQ(run.running(), 0u);
    EXPECT_EQ(run.state(4), ListRun::State::done);
    EXPECT_EQ(run.outcome(4), RowOutcome::objected);
    EXPECT_EQ(run.state(5), ListRun::State::open);
    EXPECT_FALSE(run.outcome(5));
}

} // namespace
} // namespace telvox
