// CellMoments.h - the weighted moments of one scale variable in one cell (West's update, Chan's merge)
#pragma once

/// Count, mean and spread of the valid cases of a scale variable in a cell. Plain value
/// type; Consume and Merge are inline because the data pass calls them once per case.
struct CellMoments {
  double _weight = 0.0;          // total weight of the cases seen (their number when unweighted)
  double _mean = 0.0;            // weighted mean of the values
  double _sumSquares = 0.0;      // weighted sum of (x - mean)^2 over the cases seen
  double _squaredWeights = 0.0;  // total of squared weights, for the effective base

  /// Adds one case (West's weighted incremental update).
  void Consume(double x, double weight) {
    const double total = _weight + weight;
    const double delta = x - _mean;
    _mean += delta * weight / total;
    _sumSquares += weight * delta * (x - _mean);
    _weight = total;
    _squaredWeights += weight * weight;
  }

  /// Adds the cases of another cell (Chan's pairwise update): exact for any split of the cases.
  void Merge(const CellMoments& other) {
    const double n1 = _weight;
    const double n2 = other._weight;
    if (n2 == 0.0) return;
    if (n1 == 0.0) {
      *this = other;
      return;
    }
    const double total = n1 + n2;
    const double delta = other._mean - _mean;
    _mean += delta * n2 / total;
    _sumSquares += other._sumSquares + delta * delta * n1 * n2 / total;
    _weight = total;
    _squaredWeights += other._squaredWeights;
  }

  /// The weighted sum of the values.
  double GetSum() const { return _weight * _mean; }
  /// The weighted sum of squared values, from the moments: SS + W m².
  double GetSumOfSquaredValues() const { return _sumSquares + _weight * _mean * _mean; }
};
