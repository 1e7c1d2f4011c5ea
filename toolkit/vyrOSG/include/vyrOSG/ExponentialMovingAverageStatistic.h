// The moving average of a vector that is measured again and again.
#pragma once

#include <vyr/Vec3.h>

namespace vyrOSG {

/// Weighs each new value by a factor and all values before it by the rest.
/// Source: NIST/SEMATECH e-Handbook of Statistical Methods, section 6.4.3.1, S_t = a y_t + (1 - a) S_(t-1), S_1 = y_1.
class ExponentialMovingAverageStatistic {
public:
  /// Takes a value in; factor a in (0, 1], 1 meaning that only the newest value counts.
  void add(const vyr::Vec3& value, double factor) {
    m_average = m_hasValue ? value * factor + m_average * (1 - factor) : value;
    m_hasValue = true;
  }

  /// The average so far; (0, 0, 0) before the first value.
  const vyr::Vec3& getAverage() const { return m_average; }

private:
  vyr::Vec3 m_average;
  bool m_hasValue = false;
};

} // namespace vyrOSG
