/// Writes rendered frames to numbered image files.
#include <vyrOSG/ImageCapture.h>

#include <vyr/Notify.h>
#include <vyrOSG/FrameClock.h>
#include <vyrOSG/FrameGrabber.h>
#include <vyrOSG/PictureFile.h>

#include <osgDB/FileNameUtils>

#include <algorithm>
#include <cmath>
#include <limits>

namespace vyrOSG {

namespace {

constexpr std::size_t kMaximumSize = 16384;

} // namespace

ImageCapture::ImageCapture(vyrSDK::Simulation* simulation)
    : m_simulation(simulation) {}

ImageCapture::~ImageCapture() = default;

void ImageCapture::startCapture(int firstNumber) {
  if (firstNumber < 0) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "Image capture: the first image cannot have the number " << firstNumber;
    return;
  }
  const std::lock_guard<std::mutex> guard(m_mutex);
  if (m_captureStarted)
    return;
  m_imageNum = std::max(m_imageNum, firstNumber);
  m_numCaptured = 0;
  m_due = 0;
  resetTime();
  m_captureStarted = true;
}

bool ImageCapture::stopCapture() {
  const std::lock_guard<std::mutex> guard(m_mutex);
  const bool running = m_captureStarted;
  m_captureStarted = false;
  m_due = 0;
  return running;
}

void ImageCapture::setImageResolution(std::size_t width, std::size_t height) {
  if ((width == 0) != (height == 0) || width > kMaximumSize || height > kMaximumSize) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "Image capture: the resolution " << width << " x " << height << " is not usable";
    return;
  }
  m_width = static_cast<int>(width);
  m_height = static_cast<int>(height);
}

vyr::Vec2u ImageCapture::getImageResolution() const {
  return vyr::Vec2u(static_cast<unsigned int>(m_width), static_cast<unsigned int>(m_height));
}

/// Images a second as the caller of setFps() meant it: the reciprocal of the stored interval is rounded back, because a
/// rate that is wrong in the eighth digit loses an image in a long film.
double ImageCapture::getRate() const {
  const double rate = 1.0 / static_cast<double>(m_timeBetweenFrames);
  const double rounded = std::round(rate * 1000.0) / 1000.0;
  return std::abs(rounded - rate) <= 1e-7 * rate ? rounded : rate;
}

int ImageCapture::advance(double time) {
  if (!getCaptureStarted() || std::isnan(time))
    return 0;
  if (m_timeReset || time < m_lastTime) {
    m_timeReset = false;
    m_accumulatedTime = 0.0;
  } else {
    m_accumulatedTime += time - m_lastTime;
  }
  m_lastTime = time;
  return FrameClock::takeDue(m_accumulatedTime, getRate());
}

double ImageCapture::getTimeToNextImage() {
  const double rate = getRate();
  if (!getCaptureStarted() || !(rate > 0.0))
    return std::numeric_limits<double>::infinity();
  return std::max(0.0, 1.0 / rate - m_accumulatedTime);
}

std::string ImageCapture::getImagePath(int number) const {
  std::string digits = std::to_string(number);
  if (digits.size() < 5)
    digits.insert(0, 5 - digits.size(), '0');
  std::string name = m_prefix + digits + m_postfix;
  if (osgDB::getFileExtension(m_postfix).empty())
    name += ".png";
  return m_directoryPath.empty() ? name : osgDB::concatPaths(m_directoryPath, name);
}

bool ImageCapture::write(const osg::Image& image, int copies) {
  if (image.s() <= 0 || image.t() <= 0 || !image.data())
    return fail("there is no picture");
  osg::ref_ptr<osg::Image> fitted;
  if (m_width > 0 && (image.s() != m_width || image.t() != m_height))
    fitted = PictureFile::scaled(image, m_width, m_height);
  const osg::Image& picture = fitted ? *fitted : image;
  for (int i = 0; i < copies && getCaptureStarted(); ++i) {
    std::string reason;
    if (!PictureFile::write(picture, getImagePath(m_imageNum), reason))
      return fail(reason);
    incImageNum();
    ++m_numCaptured;
    if (m_maxImages > 0 && m_numCaptured >= m_maxImages)
      stopCapture();
  }
  return true;
}

void ImageCapture::preFrame(double time, FrameGrabber* grabber) {
  m_due = advance(time);
  if (m_due > 0 && grabber) {
    grabber->clear();
    grabber->request();
  }
}

bool ImageCapture::wantsOtherSize(int width, int height) const {
  return m_due > 0 && m_width > 0 && (m_width != width || m_height != height);
}

bool ImageCapture::postFrame(FrameGrabber* grabber) {
  const int due = m_due;
  m_due = 0;
  if (due == 0 || !getCaptureStarted())
    return true;
  const osg::Image* image = grabber ? grabber->getImage() : nullptr;
  return image ? write(*image, due) : fail("nothing is rendered, so there is no picture");
}

bool ImageCapture::fail(const std::string& reason) {
  stopCapture();
  VYR_NOTIFY(vyr::NOTIFY_ERROR) << "Image capture stops: " << reason;
  return false;
}

} // namespace vyrOSG
