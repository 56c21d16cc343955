#include "desktop/help_window.hpp"

#include "core/files/files.hpp"
#include "core/files/list_files.hpp"

#include <QBoxLayout>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QSplitter>
#include <QTextBrowser>
#include <QUrl>

namespace telvox::desktop {

namespace {

constexpr QSize first_size{960, 680};

/// More than any page or picture has.
constexpr std::size_t largest_file = 4 * 1024 * 1024;

QString path_text(const std::filesystem::path &path) { return QString::fromStdString(text_of(path)); }

/// What a page names is taken from the help's folder, whatever folder or computer the page says.
class Page final : public QTextBrowser {
  public:
    explicit Page(const std::filesystem::path &folder) : folder_(folder) {}

    QVariant loadResource(int, const QUrl &url) override {
        const FileContent file = read_file(folder_ / path_of(url.fileName().toStdString()), largest_file);
        return QByteArray(file.bytes.data(), static_cast<qsizetype>(file.bytes.size()));
    }

  private:
    const std::filesystem::path &folder_;
};

std::string missing(const std::string &file) {
    return "Die Hilfe kann nicht angezeigt werden.\rDie Datei \"" + file + "\" fehlt.";
}

} // namespace

HelpWindow::HelpWindow(std::vector<std::filesystem::path> folders)
    : folders_(std::move(folders)),
      search_(new QLineEdit),
      contents_(new QListWidget),
      page_(new Page(folder_)),
      back_(new QPushButton("&Zurück")),
      forward_(new QPushButton("&Vor")),
      start_(new QPushButton("Ü&bersicht")) {
    setObjectName("frmHilfe");
    setWindowTitle("Telvox-A Hilfe");
    search_->setObjectName("tboSuche");
    search_->setPlaceholderText("Suchen (Strg+F)");
    search_->setAccessibleName("Suchen");
    search_->setClearButtonEnabled(true);
    contents_->setObjectName("lstInhalt");
    contents_->setAccessibleName("Inhalt");
    page_->setObjectName("tboSeite");
    page_->setAccessibleName("Seite");
    page_->setOpenLinks(false);
    back_->setObjectName("cbuZurueck");
    forward_->setObjectName("cbuVor");
    start_->setObjectName("cbuUebersicht");

    auto *keys = new QHBoxLayout;
    for (QPushButton *button : {back_, forward_, start_})
        keys->addWidget(button);
    keys->addStretch();
    auto *left = new QWidget;
    auto *left_side = new QVBoxLayout(left);
    left_side->setContentsMargins({});
    left_side->addWidget(search_);
    left_side->addWidget(contents_);
    auto *both = new QSplitter;
    both->addWidget(left);
    both->addWidget(page_);
    both->setStretchFactor(1, 1);
    both->setSizes({first_size.width() * 3 / 10, first_size.width() * 7 / 10});
    auto *window = new QVBoxLayout(this);
    window->addLayout(keys);
    window->addWidget(both, 1);

    connect(back_, &QPushButton::clicked, page_, &QTextBrowser::backward);
    connect(forward_, &QPushButton::clicked, page_, &QTextBrowser::forward);
    connect(page_, &QTextBrowser::backwardAvailable, back_, &QWidget::setEnabled);
    connect(page_, &QTextBrowser::forwardAvailable, forward_, &QWidget::setEnabled);
    connect(page_, &QTextBrowser::anchorClicked, this, &HelpWindow::open);
    connect(page_, &QTextBrowser::sourceChanged, this, &HelpWindow::mark_page);
    connect(start_, &QPushButton::clicked, this,
            [this] { open(QUrl(QString::fromStdString(topics_.front().file))); });
    connect(search_, &QLineEdit::textChanged, this, &HelpWindow::list_topics);
    connect(search_, &QLineEdit::returnPressed, this, &HelpWindow::open_chosen);
    connect(contents_, &QListWidget::itemSelectionChanged, this, &HelpWindow::open_chosen);
    make_shortcuts();
}

void HelpWindow::make_shortcuts() {
    const auto on = [this](const QKeySequence &key, auto action) {
        connect(new QShortcut(key, this), &QShortcut::activated, this, action);
    };
    on(QKeySequence(Qt::ALT | Qt::Key_Left), [this] { page_->backward(); });
    on(QKeySequence(Qt::ALT | Qt::Key_Right), [this] { page_->forward(); });
    on(QKeySequence(Qt::CTRL | Qt::Key_F), [this] {
        search_->setFocus();
        search_->selectAll();
    });
    on(QKeySequence(Qt::Key_Escape), [this] { close(); });
}

std::string HelpWindow::show(std::string_view topic) {
    const std::filesystem::path contents = find_list_file(folders_, std::string("hilfe/") + help_contents);
    const std::vector<HelpTopic> topics = parse_help_topics(read_lines(contents));
    const HelpTopic *found = find_help_topic(topics, topic);
    if (!found)
        return missing(help_contents);
    const QString file = QString::fromStdString(found->file);
    if (!QFile::exists(path_text(contents.parent_path()) + '/' + file))
        return missing(found->file);
    topics_ = topics;
    folder_ = contents.parent_path();
    if (!isVisible()) {
        constexpr QSize borders{16, 48};
        resize(first_size.boundedTo(screen()->availableSize() - borders));
        start_anew();
    }
    open(QUrl(file));
    QWidget::show();
    raise();
    activateWindow();
    return {};
}

void HelpWindow::start_anew() {
    texts_.clear();
    search_->clear();
    list_topics();
    page_->setSource(QUrl());
    page_->clearHistory();
    back_->setEnabled(false);
    forward_->setEnabled(false);
    page_->setFocus();
}

void HelpWindow::list_topics() {
    const QSignalBlocker quiet(contents_);
    contents_->clear();
    for (const HelpTopic &topic : topics_) {
        if (!has(topic, search_->text().simplified()))
            continue;
        auto *item = new QListWidgetItem(QString::fromStdString(topic.title), contents_);
        item->setData(Qt::UserRole, QString::fromStdString(topic.file));
    }
    mark_page(page_->source());
}

bool HelpWindow::has(const HelpTopic &topic, const QString &text) {
    if (text.isEmpty())
        return true;
    auto [page, is_new] = texts_.try_emplace(topic.file);
    if (is_new) {
        QTextDocument document;
        document.setHtml(
            QString::fromStdString(read_file(folder_ / path_of(topic.file), largest_file).bytes));
        page->second = QString::fromStdString(topic.title) + ' ' + document.toPlainText();
        for (const std::string &key : topic.keys)
            if (!key.starts_with("frm"))
                page->second += ' ' + QString::fromStdString(key);
    }
    for (const QString &word : text.split(' '))
        if (!page->second.contains(word, Qt::CaseInsensitive))
            return false;
    return true;
}

void HelpWindow::open_chosen() {
    QListWidgetItem *item = contents_->currentItem();
    if (!item && contents_->count() > 0)
        item = contents_->item(0);
    if (!item)
        return;
    open(QUrl(item->data(Qt::UserRole).toString()));
    const QString sought = search_->text().simplified();
    if (!sought.isEmpty())
        page_->find(sought);
}

void HelpWindow::open(const QUrl &url) {
    const QString file = url.fileName().isEmpty() ? page_->source().fileName() : url.fileName();
    if (!url.scheme().isEmpty() && url.scheme() != "file")
        return;
    const QString path = path_text(folder_) + '/' + file;
    if (!QFile::exists(path)) {
        page_->setPlainText("Die Datei \"" + file + "\" fehlt.");
        return;
    }
    QUrl target = QUrl::fromLocalFile(path);
    target.setFragment(url.fragment());
    page_->setSource(target, QTextDocument::HtmlResource);
}

void HelpWindow::mark_page(const QUrl &url) {
    const QSignalBlocker quiet(contents_);
    contents_->setCurrentItem(nullptr);
    for (int i = 0; i < contents_->count(); ++i)
        if (contents_->item(i)->data(Qt::UserRole).toString() == url.fileName())
            contents_->setCurrentRow(i);
}

} // namespace telvox::desktop
