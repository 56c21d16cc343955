#pragma once

#include "telvox.hpp"

#include <QAbstractTableModel>

class QTableView;

namespace telvox::desktop {

/// Shows a table in a table view, which owns it. Only the cells that can be seen are asked for.
class TableView final : public QAbstractTableModel {
  public:
    TableView(RowTable &table, QTableView &view, Telvox &program);
    void draw();

    [[nodiscard]] int rowCount(const QModelIndex &parent) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    bool eventFilter(QObject *, QEvent *event) override;

  private:
    void show_contents();
    void fit_columns();
    void show_choice();
    [[nodiscard]] int selected_row() const;

    RowTable &table_;
    QTableView &view_;
    Telvox &program_;
    std::size_t rows_ = 0, revision_ = 0;
    std::vector<std::string> columns_;
    bool drawing_ = false;
};

} // namespace telvox::desktop
