// The grid of the options page, filled from six parallel lists: a cell shows the path that stands in the one
// list, or that there is none when the id in the other is empty.
#include <QStandardItemModel>
#include <QStringList>
#include <QTableWidget>
#include <array>

#include "benchmarks/Contest.h"
#include "display/Form.h"
#include "display/Grid.h"

namespace vexa::bench {
namespace {

constexpr int32_t Rows = 10'000;
constexpr int32_t Columns = 3;

/// Ids and paths of three columns.
template <typename String>
struct Lists {
  std::array<std::vector<String>, Columns> ids;
  std::array<std::vector<String>, Columns> paths;
  String none;

  const String& At(size_t column, size_t row) const {
    return ids[column][row].isEmpty() ? none : paths[column][row];
  }
};

struct Utf8 : std::string {
  using std::string::string;
  Utf8(std::string text) : std::string(std::move(text)) {}
  bool isEmpty() const { return empty(); }
};

const Lists<Utf8>& TheLists() {
  static const Lists<Utf8> lists = [] {
    Lists<Utf8> made;
    made.none = "(none)";
    constexpr std::array<const char*, Columns> folders{"Contacts", "Journal", "Mail"};
    for (size_t column = 0; column < Columns; ++column) {
      for (int32_t row = 0; row < Rows; ++row) {
        const bool none = column == 2 && row % 4 == 0;
        const std::string number = std::to_string(row);
        made.ids[column].push_back(none ? "" : "0000A5" + number);
        made.paths[column].push_back("\\\\Public Folders\\" + std::string(folders[column]) + " " + number);
      }
    }
    return made;
  }();
  return lists;
}

const Lists<QString>& QtLists() {
  static const Lists<QString> lists = [] {
    Lists<QString> made;
    made.none = QString::fromStdString(TheLists().none);
    for (size_t column = 0; column < Columns; ++column) {
      for (const Utf8& id : TheLists().ids[column]) made.ids[column].push_back(QString::fromStdString(id));
      for (const Utf8& path : TheLists().paths[column]) {
        made.paths[column].push_back(QString::fromStdString(path));
      }
    }
    return made;
  }();
  return lists;
}

/// All texts one behind the other, and where each begins and ends.
struct LeastGrid {
  std::vector<char> texts;
  std::vector<std::string_view> cells;
};

std::unique_ptr<LeastGrid> FillLeast() {
  auto grid = std::make_unique<LeastGrid>();
  grid->cells.reserve(size_t{Rows} * Columns);
  size_t bytes = 0;
  const Lists<Utf8>& lists = TheLists();
  for (size_t column = 0; column < Columns; ++column) {
    for (size_t row = 0; row < Rows; ++row) bytes += lists.At(column, row).size();
  }
  grid->texts.reserve(bytes);
  char* next = grid->texts.data();
  for (size_t row = 0; row < Rows; ++row) {
    for (size_t column = 0; column < Columns; ++column) {
      const Utf8& text = lists.At(column, row);
      std::copy(text.begin(), text.end(), next);
      grid->cells.emplace_back(next, text.size());
      next += text.size();
    }
  }
  return grid;
}

struct OurGrid {
  Form form{"f"};
  Grid grid{form, "gd", Columns};
};

std::unique_ptr<OurGrid> FillOurs() {
  auto made = std::make_unique<OurGrid>();
  const Lists<Utf8>& lists = TheLists();
  for (size_t row = 0; row < Rows; ++row) {
    if (row == 0) {  // which is always there
      made->grid.SetRow(1, {lists.At(0, row), lists.At(1, row), lists.At(2, row)});
    } else {
      made->grid.AddRow({lists.At(0, row), lists.At(1, row), lists.At(2, row)});
    }
  }
  return made;
}

std::unique_ptr<QStandardItemModel> FillQtItems() {
  auto model = std::make_unique<QStandardItemModel>(Rows, Columns);
  model->blockSignals(true);
  const Lists<QString>& lists = QtLists();
  for (int row = 0; row < Rows; ++row) {
    for (int column = 0; column < Columns; ++column) {
      model->setItem(row, column,
                     new QStandardItem(lists.At(static_cast<size_t>(column), static_cast<size_t>(row))));
    }
  }
  return model;
}

std::unique_ptr<QTableWidget> FillQtTable() {
  auto table = std::make_unique<QTableWidget>(Rows, Columns);
  table->blockSignals(true);
  const Lists<QString>& lists = QtLists();
  for (int row = 0; row < Rows; ++row) {
    for (int column = 0; column < Columns; ++column) {
      table->setItem(row, column,
                     new QTableWidgetItem(lists.At(static_cast<size_t>(column), static_cast<size_t>(row))));
    }
  }
  return table;
}

template <auto Fill>
double Filling() {
  decltype(Fill()) grid;
  return PerUnit(
      Rows, [&] { grid.reset(); }, [&] { grid = Fill(); });
}

}  // namespace

std::vector<Contest> GridContests() {
  using enum Goal::Kind;
  return {{"grid of 10,000 rows from six lists",
           "ns a row",
           {{Role::Limit, "three copies", Filling<FillLeast>},
            {Role::Ours, "Grid", Filling<FillOurs>},
            {Role::Peer, "Qt standard items", Filling<FillQtItems>},
            {Role::Peer, "Qt table widget", Filling<FillQtTable>}},
           {{FasterThan, 10, "Qt standard items"}, {FasterThan, 10, "Qt table widget"}}}};
}

}  // namespace vexa::bench
