#include "desktop/table_view.hpp"

#include "desktop/readable_style.hpp"

#include <QEvent>
#include <QHeaderView>
#include <QTableView>
#include <algorithm>
#include <vector>

namespace telvox::desktop {

TableView::TableView(RowTable &table, QTableView &view, Telvox &program)
    : QAbstractTableModel(&view), table_(table), view_(view), program_(program) {
    view_.setModel(this);
    view_.setSelectionBehavior(QAbstractItemView::SelectRows);
    view_.setSelectionMode(QAbstractItemView::SingleSelection);
    view_.setTabKeyNavigation(false);
    view_.setWordWrap(false);
    view_.verticalHeader()->hide();
    view_.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    view_.verticalHeader()->setDefaultSectionSize(view_.fontMetrics().height() + 6);
    view_.horizontalHeader()->setHighlightSections(false);
    view_.viewport()->installEventFilter(this);
    // A key or a click selects. The current row alone is also the view's own doing: when it gets the focus.
    connect(view_.selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        if (const int row = selected_row(); !drawing_ && row >= 0)
            program_.choose(table_, static_cast<std::size_t>(row));
    });
    const auto press = [this] {
        if (table_.enter)
            program_.click(*table_.enter);
    };
    connect(&view_, &QTableView::doubleClicked, this, press);
}

bool TableView::eventFilter(QObject *, QEvent *event) {
    if (event->type() == QEvent::Resize)
        fit_columns();
    return false;
}

void TableView::draw() {
    drawing_ = true;
    show_contents();
    show_choice();
    drawing_ = false;
}

void TableView::show_contents() {
    if (rows_ != table_.rows || columns_ != table_.columns) {
        beginResetModel();
        rows_ = table_.rows;
        columns_ = table_.columns;
        endResetModel();
    } else if (revision_ == table_.revision) {
        return;
    } else if (rows_ != 0) {
        emit dataChanged(index(0, 0), index(rowCount({}) - 1, columnCount({}) - 1));
    }
    revision_ = table_.revision;
    fit_columns();
}

/// Widths of what is seen, or will be at first; not of ten thousand rows. A long text gets more than its
/// share where the others leave room.
void TableView::fit_columns() {
    constexpr int first_seen = 40;
    const int from = std::max(view_.rowAt(0), 0), last = view_.isVisible() ? view_.rowAt(view_.height()) : -1;
    const int to = std::min(last < 0 ? from + first_seen : last + 1, rowCount({}));
    QHeaderView &header = *view_.horizontalHeader();
    const int share = view_.fontMetrics().averageCharWidth() * 40;
    int spare = view_.viewport()->width();
    std::vector<int> widths;
    for (int column = 0; column < columnCount({}); ++column) {
        int width = header.sectionSizeHint(column);
        for (int row = from; row < to; ++row)
            width = std::max(width, view_.sizeHintForIndex(index(row, column)).width() + 1);
        widths.push_back(width);
        spare -= std::min(width, share);
    }
    for (int column = 0; column < columnCount({}); ++column) {
        const int width = widths[static_cast<std::size_t>(column)],
                  more = std::clamp(width - share, 0, std::max(spare, 0));
        header.resizeSection(column, std::min(width, share) + more);
        spare -= more;
    }
}

void TableView::show_choice() {
    const int chosen = table_.selected < rows_ ? static_cast<int>(table_.selected) : -1;
    if (chosen == selected_row() && chosen == view_.currentIndex().row())
        return;
    if (chosen < 0)
        return view_.selectionModel()->clear();
    view_.selectRow(chosen);
    view_.scrollTo(index(chosen, 0));
}

int TableView::selected_row() const {
    const auto selected = view_.selectionModel()->selectedRows();
    return selected.isEmpty() ? -1 : selected.front().row();
}

int TableView::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_);
}

int TableView::columnCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

QVariant TableView::data(const QModelIndex &index, int role) const {
    const auto row = static_cast<std::size_t>(index.row());
    const auto column = static_cast<std::size_t>(index.column());
    const RowTable::Mark mark = table_.mark(row);
    const bool good = mark == RowTable::Mark::good;
    if (role == Qt::ForegroundRole && mark != RowTable::Mark::none)
        return (good ? green_on : red_on)(view_.palette().color(QPalette::Base));
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
        return {};
    const char *sign = column != table_.marked || mark == RowTable::Mark::none ? "" : good ? "✓ " : "✗ ";
    return sign + QString::fromStdString(table_.cell(row, column));
}

QVariant TableView::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return QString::fromStdString(columns_[static_cast<std::size_t>(section)]);
}

} // namespace telvox::desktop
