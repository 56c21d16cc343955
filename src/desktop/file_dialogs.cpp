#include "desktop/file_dialogs.hpp"

#include "desktop/message_boxes.hpp"

#include <QCheckBox>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QRegularExpression>
#include <QStandardPaths>

namespace telvox::desktop {

namespace {

/// Qt's own dialog asks and complains in boxes with an event loop of their own; this one's hold nothing up.
class Dialog final : public QFileDialog {
  public:
    Dialog(QWidget *parent, const FileQuestion &question) : QFileDialog(parent) {
        const QString filter = QString::fromStdString(question.filter);
        setWindowTitle(QString::fromStdString(question.title));
        setOptions(DontUseNativeDialog | DontConfirmOverwrite);
        setOption(ReadOnly, !question.saves); // looking for a file deletes and renames none
        setAcceptMode(question.saves ? AcceptSave : AcceptOpen);
        setFileMode(question.saves ? AnyFile : ExistingFile);
        setNameFilters({filter, "Alle Dateien (*)"});
        setDefaultSuffix(QRegularExpression("\\*\\.(\\w+)").match(filter).captured(1));
        setLabelText(Accept, question.saves ? "&Speichern" : "Ö&ffnen");
        setLabelText(Reject, "&Abbrechen");
        boxes_.owner = [this] { return this; };
        if (question.tick.empty())
            return;
        tick_ = new QCheckBox(QString::fromStdString(question.tick));
        auto *grid = static_cast<QGridLayout *>(layout());
        grid->addWidget(tick_, grid->rowCount(), 0, 1, -1);
    }

    [[nodiscard]] FileAnswer answer() const {
        const bool accepted = result() == Accepted;
        const QString path = QDir::toNativeSeparators(QFileInfo(chosen()).absoluteFilePath());
        return {.path = accepted ? path.toStdString() : "",
                .ticked = accepted && tick_ && tick_->isChecked()};
    }

  protected:
    void accept() override {
        const QFileInfo file(chosen());
        const std::string name = file.fileName().toStdString();
        if (file.isDir() || file.exists() == (acceptMode() == AcceptOpen))
            QFileDialog::accept();
        else if (acceptMode() == AcceptOpen)
            boxes_.show({.text = "Die Datei \"" + name + "\" gibt es nicht."}, {});
        else
            boxes_.show(
                {.text = "Die Datei \"" + name + "\" gibt es schon. Soll sie ersetzt werden?", .asks = true},
                [this](bool yes) {
                    if (yes)
                        QFileDialog::accept();
                });
    }

  private:
    [[nodiscard]] QString chosen() const { return selectedFiles().value(0); }

    QtMessageBoxes boxes_;
    QCheckBox *tick_ = nullptr;
};

} // namespace

QtFileDialogs::~QtFileDialogs() { delete dialog_; }

void QtFileDialogs::show(const FileQuestion &question, FileAnswered answered) {
    QMetaObject::invokeMethod(
        this, [this, question, answered = std::move(answered)] { open(question, answered); },
        Qt::QueuedConnection);
}

void QtFileDialogs::open(const FileQuestion &question, const FileAnswered &answered) {
    if (folder_.isEmpty())
        folder_ = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (!QDir(folder_).exists())
        folder_ = QDir::homePath();
    auto *dialog = new Dialog(owner(), question);
    dialog_ = dialog;
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    const QFileInfo suggested(QString::fromStdString(question.suggested));
    dialog->setDirectory(suggested.isAbsolute() ? suggested.absolutePath() : folder_);
    dialog->selectFile(suggested.fileName());
    connect(dialog, &QDialog::finished, this, [this, dialog, answered] {
        folder_ = dialog->directory().absolutePath();
        answered(dialog->answer());
    });
    dialog->open();
}

} // namespace telvox::desktop
