/// Smooth curves through given points.
#include <vyrUtil/Spline.h>

#include <vyr/Notify.h>

#include <algorithm>
#include <cmath>

namespace vyrUtil {

namespace {

/// Parts of a span from which its length is taken.
const int kLengthParts = 16;

/// The most parts that a span is cut into, whatever the density.
const double kMaxParts = 256;

/// The knot distance of the centripetal parameter; equal points keep a small one, so that nothing is divided by 0.
double knotDistance(const vyr::Vec3& a, const vyr::Vec3& b) {
  return std::max(std::sqrt((b - a).length()), 1e-6);
}

/// The place at the share `u` (0 to 1) of the span from b to c, by the pyramid of P. J. Barry and R. N. Goldman,
/// "A recursive evaluation algorithm for a class of Catmull-Rom splines", 1988.
vyr::Vec3 evaluateSpan(const vyr::Vec3& a, const vyr::Vec3& b, const vyr::Vec3& c, const vyr::Vec3& d, double u) {
  const double t0 = 0;
  const double t1 = t0 + knotDistance(a, b);
  const double t2 = t1 + knotDistance(b, c);
  const double t3 = t2 + knotDistance(c, d);
  const double t = t1 + u * (t2 - t1);
  const vyr::Vec3 ab = a * ((t1 - t) / (t1 - t0)) + b * ((t - t0) / (t1 - t0));
  const vyr::Vec3 bc = b * ((t2 - t) / (t2 - t1)) + c * ((t - t1) / (t2 - t1));
  const vyr::Vec3 cd = c * ((t3 - t) / (t3 - t2)) + d * ((t - t2) / (t3 - t2));
  const vyr::Vec3 abc = ab * ((t2 - t) / (t2 - t0)) + bc * ((t - t0) / (t2 - t0));
  const vyr::Vec3 bcd = bc * ((t3 - t) / (t3 - t1)) + cd * ((t - t1) / (t3 - t1));
  return abc * ((t2 - t) / (t2 - t1)) + bcd * ((t - t1) / (t2 - t1));
}

} // namespace

Spline::~Spline() = default;

bool Spline::add(const vyr::Vec3& point) {
  if (!point.isFinite()) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "Spline: the point (" << point << ") is not finite and was left out";
    return false;
  }
  m_points.push_back(point);
  return true;
}

bool Spline::setPoint(std::size_t index, const vyr::Vec3& point) {
  if (index >= m_points.size() || !point.isFinite()) {
    return false;
  }
  m_points[index] = point;
  return true;
}

vyr::Vec3 Spline::getPoint(std::size_t index) const {
  return index < m_points.size() ? m_points[index] : vyr::Vec3();
}

vyr::Vec3 Spline::evaluate(double t) const {
  if (m_points.size() < 2) {
    return getPoint(0);
  }
  const auto lastSpan = static_cast<double>(m_points.size() - 2);
  const double clamped = std::isnan(t) ? 0 : std::min(std::max(t, 0.0), lastSpan + 1);
  const double span = std::min(std::floor(clamped), lastSpan);
  const auto i = static_cast<std::size_t>(span);
  const vyr::Vec3& b = m_points[i];
  const vyr::Vec3& c = m_points[i + 1];
  // Beyond the ends the curve is mirrored in its last point, which gives it a natural end direction.
  const vyr::Vec3 a = i > 0 ? m_points[i - 1] : b * 2.0 - c;
  const vyr::Vec3 d = i + 2 < m_points.size() ? m_points[i + 2] : c * 2.0 - b;
  return evaluateSpan(a, b, c, d, clamped - span);
}

vyr::Vec3 Spline::tangent(double t) const {
  const double h = 1e-4;
  vyr::Vec3 direction = evaluate(t + h) - evaluate(t - h);
  return direction.normalize() > 0 ? direction : vyr::Vec3(0, 0, 1);
}

double Spline::length() const {
  double sum = 0;
  vyr::Vec3 previous = evaluate(0);
  const int parts = m_points.size() < 2 ? 0 : static_cast<int>(m_points.size() - 1) * kLengthParts;
  for (int i = 1; i <= parts; ++i) {
    const vyr::Vec3 next = evaluate(static_cast<double>(i) / kLengthParts);
    sum += (next - previous).length();
    previous = next;
  }
  return sum;
}

std::vector<vyr::Vec3> Spline::sample(double density, std::vector<double>* outParameters) const {
  std::vector<double> parameters;
  for (std::size_t i = 0; i + 1 < m_points.size(); ++i) {
    const double wanted = density > 0 ? std::ceil((m_points[i + 1] - m_points[i]).length() * density) : 1;
    const int parts = static_cast<int>(std::min(std::max(wanted, 1.0), kMaxParts));
    for (int k = 0; k < parts; ++k) {
      parameters.push_back(static_cast<double>(i) + static_cast<double>(k) / parts);
    }
  }
  if (!m_points.empty()) {
    parameters.push_back(static_cast<double>(m_points.size() - 1));
  }
  std::vector<vyr::Vec3> places;
  places.reserve(parameters.size());
  std::transform(parameters.begin(), parameters.end(), std::back_inserter(places),
                 [this](double t) { return evaluate(t); });
  if (outParameters != nullptr) {
    outParameters->swap(parameters);
  }
  return places;
}

} // namespace vyrUtil
