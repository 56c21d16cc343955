#include "ports/network_ports.hpp"
#include "ports/os.hpp"

#include <QPointer>
#include <QProcess>
#include <QStandardPaths>
#include <QTimer>
#include <utility>

namespace telvox {

namespace {

constexpr std::size_t longest_output = 65536;

/// Path of a program of the system, or its bare name if it is not there.
QString found_program(const std::string &name) {
    QStringList folders;
    for (const std::string &folder : os::program_folders())
        folders << QString::fromStdString(folder);
    const QString path = QStandardPaths::findExecutable(QString::fromStdString(name), folders);
    return path.isEmpty() ? QString::fromStdString(name) : path;
}

/// One run of a program; it goes when it has reported.
class Run final : public QObject {
  public:
    using Report = std::function<void(const ProcessEnd &)>;

    Run(const ShellCommand &command, milliseconds limit, Report report) : report_(std::move(report)) {
        QStringList arguments;
        for (const std::string &argument : command.arguments)
            arguments << QString::fromStdString(argument);
        process_.setProcessChannelMode(QProcess::MergedChannels);
        process_.setStandardInputFile(QProcess::nullDevice());
#ifdef Q_OS_WIN
        process_.setCreateProcessArgumentsModifier([](QProcess::CreateProcessArguments *start) {
            start->flags |= 0x08000000; // CREATE_NO_WINDOW
        });
#endif
        connect(&process_, &QProcess::readyRead, this, [this] { read(); });
        connect(&process_, &QProcess::finished, this, [this](int status, QProcess::ExitStatus how) {
            end_.exit_status = how == QProcess::NormalExit ? status : -1;
            tell();
        });
        connect(&process_, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
            if (error != QProcess::FailedToStart)
                return; // then it also finishes
            end_.cause = "Das Programm fehlt auf diesem Rechner oder darf nicht ausgeführt werden.";
            tell();
        });
        connect(&limit_, &QTimer::timeout, this, [this] {
            end_.killed = true;
            process_.kill();
        });
        limit_.setSingleShot(true);
        limit_.start(limit);
        process_.start(found_program(command.program), arguments, QIODevice::ReadOnly);
    }

    ~Run() override {
        process_.disconnect();
        process_.kill();
        process_.waitForFinished(1000);
    }

  private:
    void read() {
        const std::string part = process_.readAll().toStdString();
        end_.output += part.substr(0, longest_output - std::min(longest_output, end_.output.size()));
    }

    /// In its own time: a program that cannot start says so from inside the call that starts it.
    void tell() {
        read();
        limit_.stop();
        end_.output = os::console_text(end_.output);
        QMetaObject::invokeMethod(
            this,
            [this] {
                deleteLater();
                report_(end_);
            },
            Qt::QueuedConnection);
    }

    Report report_;
    ProcessEnd end_;
    QTimer limit_;
    QProcess process_;
};

class QtProcesses final : public ReportingProcesses {
  public:
    ~QtProcesses() override { kill(); }

    [[nodiscard]] Tools tools() const override { return os::tools; }
    void run(const ShellCommand &command, milliseconds limit) override {
        kill();
        run_ = new Run(command, limit, [this](const ProcessEnd &end) {
            run_ = nullptr;
            ended(end);
        });
    }
    void kill() override { delete run_; }

  private:
    QPointer<Run> run_;
};

} // namespace

std::unique_ptr<ReportingProcesses> make_qt_processes() { return std::make_unique<QtProcesses>(); }

} // namespace telvox
