// SignificanceMarkers.cpp - the subscript markers of one column in one row of a comparison test
#include "tablerenderer/markers/SignificanceMarkers.h"

struct SignificanceMarkers::Data {
  std::set<std::uint64_t> _sigMarkers;      // the numbers of the markers this column carries
  std::set<std::uint64_t> _similarColumns;  // the columns marked similar to this one
  bool _valid = true;                       // false: no part in the row, no marker
  bool _needsMarker = false;                // while calculating: must open a marker of its own
  std::set<std::uint64_t> _owners;          // while calculating: columns it closed a marker with
};

SignificanceMarkers::SignificanceMarkers() : _data(std::make_unique<Data>()) {}

SignificanceMarkers::~SignificanceMarkers() = default;

// The working state of a calculation belongs to the row being calculated, not to the
// column's facts, so a copy starts it afresh.
SignificanceMarkers::SignificanceMarkers(const SignificanceMarkers& other) : _data(std::make_unique<Data>()) {
  *this = other;
}

SignificanceMarkers& SignificanceMarkers::operator=(const SignificanceMarkers& other) {
  if (this != &other) {
    _data->_sigMarkers = other._data->_sigMarkers;
    _data->_similarColumns = other._data->_similarColumns;
    _data->_valid = other._data->_valid;
    _data->_needsMarker = false;
    _data->_owners.clear();
  }
  return *this;
}

std::set<std::uint64_t> SignificanceMarkers::getSigMarkers() const {
  return _data->_sigMarkers;
}

void SignificanceMarkers::insertMarker(std::uint64_t marker) {
  _data->_sigMarkers.insert(marker);
}

bool SignificanceMarkers::isSigMarkerPresent(std::uint64_t marker) const {
  return _data->_sigMarkers.count(marker) != 0;
}

const std::set<std::uint64_t>& SignificanceMarkers::getSimilarColumns() const {
  return _data->_similarColumns;
}

void SignificanceMarkers::addSimilarColumn(std::uint64_t column) {
  _data->_similarColumns.insert(column);
}

void SignificanceMarkers::setValid(bool valid) {
  _data->_valid = valid;
}

bool SignificanceMarkers::getValid() const {
  return _data->_valid;
}

void SignificanceMarkers::setNeedsMarker() {
  _data->_needsMarker = true;
}

bool SignificanceMarkers::getNeedsMarker() const {
  return _data->_needsMarker;
}

void SignificanceMarkers::addOwner(std::uint64_t column) {
  _data->_owners.insert(column);
}

bool SignificanceMarkers::isOwner(std::uint64_t column) const {
  return _data->_owners.count(column) != 0;
}
