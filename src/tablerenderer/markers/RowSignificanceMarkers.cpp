// RowSignificanceMarkers.cpp - the subscript letters of one table row, from the relation of similar columns
#include "tablerenderer/markers/RowSignificanceMarkers.h"

#include "tablerenderer/markers/SignificanceMarkers.h"

struct RowSignificanceMarkers::Data {
  std::vector<SignificanceMarkers> _columns;  // one per column of the row
  bool _calculated = false;                   // the letters are fixed; later marks change nothing
};

RowSignificanceMarkers::RowSignificanceMarkers() : _data(std::make_unique<Data>()) {}

RowSignificanceMarkers::~RowSignificanceMarkers() = default;

RowSignificanceMarkers::RowSignificanceMarkers(const RowSignificanceMarkers& other)
    : _data(std::make_unique<Data>(*other._data)) {}

RowSignificanceMarkers& RowSignificanceMarkers::operator=(const RowSignificanceMarkers& other) {
  if (this != &other) *_data = *other._data;
  return *this;
}

void RowSignificanceMarkers::setNumColumns(std::size_t count) {
  if (count > _data->_columns.size()) _data->_columns.resize(count);
}

bool RowSignificanceMarkers::removeColumn(std::size_t column) {
  if (column >= _data->_columns.size()) return false;
  _data->_columns[column].setValid(false);
  return true;
}

bool RowSignificanceMarkers::markColumnsSimilar(std::size_t first, std::size_t second) {
  if (first >= _data->_columns.size() || second >= _data->_columns.size()) return false;
  _data->_columns[first].addSimilarColumn(second);
  _data->_columns[second].addSimilarColumn(first);
  return true;
}

std::set<std::uint64_t> RowSignificanceMarkers::getSimilarColumnsForColumn(std::size_t column) const {
  if (column >= _data->_columns.size()) return {};
  return _data->_columns[column].getSimilarColumns();
}

std::vector<std::string> RowSignificanceMarkers::getMarkersForColumn(std::size_t column) {
  std::vector<std::string> texts;
  if (column >= _data->_columns.size()) return texts;
  calculateSubscripts();
  for (std::uint64_t marker : _data->_columns[column].getSigMarkers()) texts.push_back(makeMarker(marker));
  return texts;
}

namespace {

// Every column of `used` records every other (itself included) as a column it has closed a
// marker with, so that none of them walks that similarity again.
void CloseMarker(std::vector<SignificanceMarkers>& columns, const std::set<std::uint64_t>& used) {
  for (std::uint64_t owner : used) {
    for (std::uint64_t member : used) columns[owner].addOwner(member);
  }
}

bool Contains(const std::set<std::uint64_t>& set, std::uint64_t value) {
  return set.count(value) != 0;
}

}  // namespace

// A greedy walk from left to right that covers the similarity relation with cliques, one
// marker number each. A column opens a marker when it has none yet or when a column to its
// left found it not similar to everything the left column shares a marker with. Similar
// columns to the right join the marker while they are similar to all earlier similar
// columns of the present one; similar columns to the left join it while they are similar
// to every column already in it, and otherwise a new marker is started for that pair.
// A removed column is passed over also where it stands among the similar columns of
// another, so that it never receives a marker whatever order the caller marked and removed
// in.
void RowSignificanceMarkers::calculateSubscripts() {
  if (_data->_calculated) return;
  _data->_calculated = true;
  std::vector<SignificanceMarkers>& columns = _data->_columns;
  std::uint64_t current = 0;
  for (std::size_t c = 0; c < columns.size(); ++c) {
    SignificanceMarkers& column = columns[c];
    if (!column.getValid()) continue;
    std::set<std::uint64_t> used;
    bool markerUsed = false;
    if (column.getSigMarkers().empty() || column.getNeedsMarker()) {
      column.insertMarker(current);
      used.insert(c);
      markerUsed = true;
    }
    const std::set<std::uint64_t>& similar = column.getSimilarColumns();
    for (std::uint64_t s : similar) {
      SignificanceMarkers& other = columns[s];
      if (column.isOwner(s) || !other.getValid()) continue;
      if (s >= c) {
        bool similarToAllBefore = true;
        for (std::uint64_t t : similar) {
          if (t >= s) break;
          if (!Contains(other.getSimilarColumns(), t)) {
            similarToAllBefore = false;
            break;
          }
        }
        if (!similarToAllBefore) {
          other.setNeedsMarker();
          continue;
        }
        column.insertMarker(current);
        other.insertMarker(current);
        used.insert(s);
        used.insert(c);
        markerUsed = true;
      } else {
        bool joinsMarker = true;
        for (std::uint64_t member : used) {
          if (!Contains(other.getSimilarColumns(), member)) {
            joinsMarker = false;
            break;
          }
        }
        if (joinsMarker) {
          other.insertMarker(current);
          used.insert(s);
        } else {
          ++current;
          other.insertMarker(current);
          column.insertMarker(current);
          CloseMarker(columns, used);
          used.clear();
          used.insert(s);
        }
      }
    }
    if (markerUsed) {
      ++current;
      CloseMarker(columns, used);
    }
  }
}

std::string RowSignificanceMarkers::makeMarker(std::uint64_t marker) {
  std::string text;
  std::uint64_t m = marker;
  while (true) {
    text.insert(text.begin(), static_cast<char>('a' + m % 26));
    if (m < 26) break;
    m = m / 26 - 1;
  }
  return text;
}
