// Colours geometries by the pressure on them.
#include <vyrOSG/PressureRenderer.h>

#include "PressureLegend.h"
#include "PressureOverlay.h"
#include "PressureRecording.h"
#include "StepCall.h"

#include <vyrOSG/Conversions.h>

#include <vyr/Notify.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace vyrOSG {

namespace {

std::vector<osg::Vec4> colorsOf(const vyrRender::ColorVector& colors) {
  std::vector<osg::Vec4> result;
  for (const vyrRender::Color& color : colors)
    result.push_back(toOsg(color));
  if (result.empty()) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "pressures need at least one colour";
    result = {osg::Vec4(0, 0, 1, 1), osg::Vec4(0, 1, 0, 1), osg::Vec4(1, 1, 0, 1), osg::Vec4(1, 0, 0, 1)};
  }
  return result;
}

osg::ref_ptr<osgSim::ColorRange> makeColorRange(double low, double high, const vyrRender::ColorVector& colors) {
  // The colour range works with floats, in which both ends and their difference have to be finite and apart.
  constexpr double kGreatest = 1e30;
  if (!(float(low) < float(high)) || !(std::abs(low) <= kGreatest) || !(std::abs(high) <= kGreatest)) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "pressures need a range with a lower and an upper end, not " << low << " to "
                                  << high << " Pa";
    low = 0;
    high = 1e4;
  }
  return new osgSim::ColorRange(float(low), float(high), colorsOf(colors));
}

} // namespace

PressureRenderer::PressureRenderer(vyrOSG::Group* group, vyrOSG::SceneDecorator* decorator,
                                   vyrSDK::Simulation* simulation, double minPressure, double maxPressure,
                                   const vyr::Vector<vyrRender::Color, vyr::ByteAllocator>& colors, double resolution,
                                   double rangeFactor, PressureFromContacts::ForceType forceType)
    : m_group(group)
    , m_simulation(simulation)
    , m_colorRange(makeColorRange(minPressure, maxPressure, colors))
    , m_atlases(new PressureAtlasManager(resolution))
    , m_legend(std::make_unique<PressureLegend>(decorator, m_colorRange.get()))
    , m_rangeFactor(rangeFactor)
    , m_forceType(forceType) {
  StepCall<PressureRenderer>::add(simulation, this, &PressureRenderer::update, StepCall<PressureRenderer>::LAST);
}

PressureRenderer::~PressureRenderer() = default;

bool PressureRenderer::addTrimesh(vyrCollide::Trimesh* mesh, bool replaceVisual) {
  if (!mesh || !m_simulation)
    return false;
  std::vector<vyrCollide::Geometry*> found;
  const auto look = [&](const std::vector<vyr::ref_ptr<vyrCollide::Geometry>>& geometries) {
    for (const vyr::ref_ptr<vyrCollide::Geometry>& geometry : geometries) {
      if (geometry->getShape() == mesh)
        found.push_back(geometry.get());
    }
  };
  for (const vyr::ref_ptr<vyr::RigidBody>& body : m_simulation->getRigidBodies())
    look(body->getGeometries());
  look(m_simulation->getGeometries());
  bool added = false;
  for (vyrCollide::Geometry* geometry : found)
    added = addGeometry(geometry, replaceVisual) || added;
  return added;
}

bool PressureRenderer::addGeometry(vyrCollide::Geometry* geometry, bool replaceVisual) {
  osg::ref_ptr<vyrOSG::Group> group;
  if (!geometry || !m_group.lock(group))
    return false;
  PressureAtlas* atlas = m_atlases->createAtlas(geometry);
  if (!atlas)
    return false;
  Entry entry;
  entry.overlay = std::make_unique<PressureOverlay>(atlas, group.get(), replaceVisual);
  // The renderer calls the generator itself, before it looks at the pressures.
  entry.generator = new PressureFromContacts(nullptr, atlas, m_rangeFactor, m_forceType);
  for (const vyr::ref_ptr<vyrSDK::ExecuteFilter>& filter : m_filters)
    entry.generator->addFilter(filter.get());
  entry.number = m_nextNumber++;
  m_entries.push_back(std::move(entry));
  return true;
}

void PressureRenderer::addFilter(vyrSDK::ExecuteFilter* filter) {
  if (!filter)
    return;
  m_filters.emplace_back(filter);
  for (const Entry& entry : m_entries)
    entry.generator->addFilter(filter);
}

void PressureRenderer::dropGone() {
  for (std::size_t i = 0; i < m_entries.size();) {
    PressureAtlas* atlas = m_entries[i].overlay->getAtlas();
    if (atlas->getGeometry()) {
      ++i;
      continue;
    }
    m_atlases->removeAtlas(atlas);
    m_entries.erase(m_entries.begin() + static_cast<std::ptrdiff_t>(i));
  }
}

void PressureRenderer::update() {
  dropGone();
  m_legend->update();
  for (const Entry& entry : m_entries) {
    entry.generator->generate(m_simulation.get());
    if (m_recording)
      m_recording->add(entry.number, *entry.overlay->getAtlas());
    if (m_mode == NOW)
      entry.overlay->showAtlas(*m_colorRange);
  }
  if (m_recording)
    m_recording->endStep();
}

void PressureRenderer::show() {
  for (const Entry& entry : m_entries) {
    if (m_mode == NOW) {
      entry.overlay->showAtlas(*m_colorRange);
      continue;
    }
    const PressureRecording& recording = *m_recordings[m_shownRecording];
    entry.overlay->showValues(m_mode == MAX ? recording.getMax(entry.number) : recording.getAvg(entry.number),
                              *m_colorRange);
  }
}

bool PressureRenderer::startMaxAvgRecording() {
  if (m_recording)
    return false;
  m_recording = std::make_unique<PressureRecording>();
  return true;
}

unsigned int PressureRenderer::stopMaxAvgRecording() {
  if (!m_recording) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "no recording of pressures runs that could be stopped";
    return std::numeric_limits<unsigned int>::max();
  }
  m_recordings.push_back(std::move(m_recording));
  return getNumRecordings() - 1;
}

bool PressureRenderer::isRecording() {
  return m_recording != nullptr;
}

unsigned int PressureRenderer::getNumRecordings() {
  return static_cast<unsigned int>(m_recordings.size());
}

bool PressureRenderer::renderRecording(unsigned long index, Mode mode) {
  if (index >= m_recordings.size()) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "there is no recording " << index << " of pressures; there are "
                                  << m_recordings.size();
    return false;
  }
  m_mode = mode;
  m_shownRecording = index;
  dropGone();
  show();
  return true;
}

bool PressureRenderer::renderMaxPressure(unsigned long index) {
  return renderRecording(index, MAX);
}

bool PressureRenderer::renderAvgPressure(unsigned long index) {
  return renderRecording(index, AVG);
}

bool PressureRenderer::restoreRendering() {
  if (m_mode == NOW)
    return false;
  m_mode = NOW;
  dropGone();
  show();
  return true;
}

void PressureRenderer::setEnableLegend(bool enable) {
  m_legend->setEnable(enable);
}

vyr::Vec2 PressureRenderer::getLegendPosition() const {
  return m_legend->getPosition();
}

void PressureRenderer::setLegendPosition(const vyr::Vec2& position) {
  if (position.isFinite())
    m_legend->setPosition(position);
  else
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "the legend's position must be finite, not " << position;
}

vyr::Vec4 PressureRenderer::getShownColor(const vyrCollide::Geometry* geometry, std::size_t texel) const {
  for (const Entry& entry : m_entries) {
    if (geometry && entry.overlay->getAtlas()->getGeometry() == geometry) {
      const osg::Vec4 color = entry.overlay->getColor(texel);
      return vyr::Vec4(color.r(), color.g(), color.b(), color.a());
    }
  }
  return {};
}

} // namespace vyrOSG
