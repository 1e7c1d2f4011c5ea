/// Records films and numbered picture sequences.
#include <vyrOSG/FrameRecorder.h>

#include "FilmEncoder.h"

#include <vyr/Notify.h>
#include <vyrOSG/FrameGrabber.h>
#include <vyrOSG/PictureFile.h>

#include <osgDB/FileNameUtils>

#include <cmath>
#include <limits>

namespace vyrOSG {

namespace {

constexpr unsigned int kMaximumSize = 16384;

/// A conversion found in a pattern: its first character, its length, and the digits that it asks for.
struct Conversion {
  std::size_t begin = std::string::npos;
  std::size_t length = 0;
  std::size_t digits = 0;
};

/// Reads %d, %5d or %05d at `position`; length 0 if something else stands there.
Conversion readConversion(const std::string& text, std::size_t position) {
  Conversion conversion;
  std::size_t end = position + 1;
  while (end < text.size() && text[end] >= '0' && text[end] <= '9' && end - position < 4)
    conversion.digits = conversion.digits * 10 + static_cast<std::size_t>(text[end++] - '0');
  if (end < text.size() && text[end] == 'd') {
    conversion.begin = position;
    conversion.length = end + 1 - position;
  }
  return conversion;
}

/// The only conversion of a pattern; length 0 when there is none, or a second percent sign.
Conversion findConversion(const std::string& pattern) {
  const std::size_t position = pattern.find('%');
  if (position == std::string::npos || pattern.find('%', position + 1) != std::string::npos)
    return Conversion();
  return readConversion(pattern, position);
}

} // namespace

FrameRecorder::FrameRecorder() = default;

FrameRecorder::~FrameRecorder() {
  close();
}

bool FrameRecorder::isSequencePattern(const std::string& target) {
  return findConversion(target).length > 0;
}

std::string FrameRecorder::getSequencePath(const std::string& pattern, unsigned long number) {
  const Conversion conversion = findConversion(pattern);
  std::string digits = std::to_string(number);
  if (digits.size() < conversion.digits)
    digits.insert(0, conversion.digits - digits.size(), '0');
  return std::string(pattern).replace(conversion.begin, conversion.length, digits);
}

bool FrameRecorder::open(const std::string& target, double fps, unsigned int width, unsigned int height) {
  close();
  m_target = target;
  m_frameCount = 0;
  if (!(fps > 0.0) || !std::isfinite(fps))
    return fail("the frame rate must be above 0, not " + std::to_string(fps));
  if ((width == 0) != (height == 0) || width > kMaximumSize || height > kMaximumSize)
    return fail("the size " + std::to_string(width) + "x" + std::to_string(height) + " is not usable");
  m_sequence = isSequencePattern(target);
  if (!m_sequence && target.find('%') != std::string::npos)
    return fail("the name of a sequence needs exactly one conversion such as %05d");
  if (osgDB::getLowerCaseFileExtension(target).empty())
    return fail("the name needs an extension that chooses the format, such as .mp4 or .png");
  if (!PictureFile::makeParentDirectory(target))
    return fail("its directory cannot be made or written to");
  m_fps = fps;
  m_width = static_cast<int>(width);
  m_height = static_cast<int>(height);
  m_due = 0;
  m_clock.start(fps);
  m_open = true;
  return true;
}

int FrameRecorder::advance(double time) {
  return m_open ? m_clock.advance(time) : 0;
}

double FrameRecorder::getTimeToNextFrame() const {
  return m_open ? m_clock.getTimeToNext() : std::numeric_limits<double>::infinity();
}

bool FrameRecorder::startEncoder() {
  m_encoder = std::make_unique<FilmEncoder>();
  std::string reason;
  switch (m_encoder->start(m_target, m_width, m_height, m_fps, reason)) {
  case FilmEncoder::STARTED:
    return true;
  case FilmEncoder::NOT_INSTALLED:
    break;
  case FilmEncoder::FAILED:
    return fail(reason);
  }
  m_encoder.reset();
  const std::string film = m_target;
  m_sequence = true;
  m_target = osgDB::getNameLessExtension(film) + "_frames/%05d.png";
  VYR_NOTIFY(vyr::NOTIFY_WARNING) << "ffmpeg is not installed: instead of the film '" << film << "' the pictures '"
                                  << m_target << "' are written";
  return true;
}

bool FrameRecorder::write(const osg::Image& image, int copies) {
  if (!m_open || copies <= 0)
    return m_open;
  if (image.s() <= 0 || image.t() <= 0 || !image.data())
    return fail("there is no picture to record");
  if (m_width == 0) {
    m_width = image.s();
    m_height = image.t();
  }
  if (!m_sequence && !m_encoder && !startEncoder())
    return false;
  osg::ref_ptr<osg::Image> fitted;
  if (image.s() != m_width || image.t() != m_height)
    fitted = PictureFile::scaled(image, m_width, m_height);
  const osg::Image& picture = fitted ? *fitted : image;
  std::string reason;
  for (int i = 0; i < copies; ++i) {
    const bool written = m_encoder ? m_encoder->send(picture, reason)
                                   : PictureFile::write(picture, getSequencePath(m_target, m_frameCount), reason);
    if (!written)
      return fail(reason);
    ++m_frameCount;
  }
  return true;
}

void FrameRecorder::preFrame(double time, FrameGrabber* grabber) {
  m_due = advance(time);
  if (m_due > 0 && grabber) {
    grabber->clear();
    grabber->request();
  }
}

bool FrameRecorder::postFrame(FrameGrabber* grabber) {
  const int due = m_due;
  m_due = 0;
  if (!m_open || due == 0)
    return true;
  const osg::Image* image = grabber ? grabber->getImage() : nullptr;
  return image ? write(*image, due) : fail("nothing is rendered, so there is no picture to record");
}

bool FrameRecorder::close() {
  if (!m_open)
    return true;
  m_open = false;
  std::string reason;
  const bool complete = !m_encoder || m_encoder->finish(reason);
  m_encoder.reset();
  return complete || fail(reason);
}

bool FrameRecorder::fail(const std::string& reason) {
  m_open = false;
  m_encoder.reset();
  VYR_NOTIFY(vyr::NOTIFY_ERROR) << "Recording '" << m_target << "' failed: " << reason;
  return false;
}

} // namespace vyrOSG
