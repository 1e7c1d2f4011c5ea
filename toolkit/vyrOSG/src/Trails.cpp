// Records paths step by step and rebuilds their lines when the scene is updated.
#include "Trails.h"

#include "Surface.h"

#include <vyr/Notify.h>
#include <vyr/observer_ptr.h>
#include <vyrSDK/StepEventListener.h>

#include <osg/BlendFunc>
#include <osg/Geometry>
#include <osg/LineWidth>
#include <osg/NodeVisitor>

#include <cmath>
#include <deque>
#include <map>

namespace vyrOSG {

namespace {

/// Keeps the latest places of everything. The simulation holds it as a listener, the drawing as its data.
class TrailRecorder : public vyrSDK::StepEventListener {
public:
  TrailRecorder(const TrailSource& source, double timeInterval, size_t maxPoints)
      : m_source(source)
      , m_timeInterval(timeInterval)
      , m_maxPoints(maxPoints) {}

  void last(const vyr::TimeStamp&) override {
    if (m_simulation)
      sample(m_simulation->getTime());
  }

  void simulationChanged(vyrSDK::Simulation* simulation) override { m_simulation = simulation; }

  /// Listens to the simulation as soon as there is one.
  void attach() {
    if (m_simulation)
      return;
    if (vyrSDK::Simulation* simulation = m_source.simulation()) {
      simulation->add(this);
      sample(simulation->getTime());
    }
  }

  void detach() {
    if (m_simulation)
      m_simulation->remove(this);
  }

  struct Trail {
    std::deque<osg::Vec3> places;
    osg::Vec4 color;
    bool isAlive = false;
  };

  std::map<uint64_t, Trail> m_trails;
  bool m_changed = false;

protected:
  ~TrailRecorder() override = default;

private:
  void sample(double time) {
    // A clock that was set back starts the paths anew.
    if (time < m_lastTime)
      m_trails.clear();
    // Half a nanosecond hides the rounding of sums of time steps.
    else if (time < m_lastTime + m_timeInterval - 5e-10)
      return;
    m_lastTime = time;
    m_changed = true;
    for (auto& entry : m_trails)
      entry.second.isAlive = false;
    for (const TrailPoint& point : m_source.points()) {
      Trail& trail = m_trails[point.key];
      trail.isAlive = true;
      trail.color = point.color;
      trail.places.push_back(point.place);
      while (m_maxPoints > 0 && trail.places.size() > m_maxPoints)
        trail.places.pop_front();
    }
    for (auto i = m_trails.begin(); i != m_trails.end();)
      i = i->second.isAlive ? std::next(i) : m_trails.erase(i);
  }

  TrailSource m_source;
  double m_timeInterval;
  size_t m_maxPoints;
  double m_lastTime = -1e300;
  vyr::observer_ptr<vyrSDK::Simulation> m_simulation;
};

/// Rebuilds the lines after steps; lets the recorder leave the simulation when the drawing goes.
class TrailCallback : public osg::DrawableUpdateCallback {
public:
  explicit TrailCallback(TrailRecorder* recorder)
      : m_recorder(recorder) {}

  void update(osg::NodeVisitor*, osg::Drawable* drawable) override {
    m_recorder->attach();
    if (!m_recorder->m_changed)
      return;
    m_recorder->m_changed = false;
    draw(*drawable->asGeometry());
  }

protected:
  ~TrailCallback() override { m_recorder->detach(); }

private:
  void draw(osg::Geometry& lines) const {
    auto* vertices = static_cast<osg::Vec3Array*>(lines.getVertexArray());
    auto* colors = static_cast<osg::Vec4Array*>(lines.getColorArray());
    vertices->clear();
    colors->clear();
    lines.removePrimitiveSet(0, lines.getNumPrimitiveSets());
    osg::ref_ptr<osg::DrawArrayLengths> strips = new osg::DrawArrayLengths(GL_LINE_STRIP);
    for (const auto& entry : m_recorder->m_trails) {
      const auto& places = entry.second.places;
      if (places.size() < 2)
        continue;
      strips->push_back(static_cast<int>(places.size()));
      for (size_t i = 0; i < places.size(); ++i) {
        constexpr float kOldestAlpha = 0.1f;
        const float age = float(i) / float(places.size() - 1);
        osg::Vec4 color = entry.second.color;
        color.a() *= kOldestAlpha + (1 - kOldestAlpha) * age;
        vertices->push_back(places[i]);
        colors->push_back(color);
      }
    }
    if (!strips->empty())
      lines.addPrimitiveSet(strips);
    vertices->dirty();
    colors->dirty();
    lines.dirtyBound();
  }

  vyr::ref_ptr<TrailRecorder> m_recorder;
};

} // namespace

osg::ref_ptr<osg::Geode> makeTrails(const char* caller, const TrailSource& source, double timeInterval,
                                    size_t maxPoints) {
  if (!std::isfinite(timeInterval) || timeInterval < 0) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << caller << ": " << timeInterval << " s is no time between two points";
    return nullptr;
  }
  osg::ref_ptr<osg::Geometry> lines = new osg::Geometry;
  lines->setVertexArray(new osg::Vec3Array);
  lines->setColorArray(new osg::Vec4Array, osg::Array::BIND_PER_VERTEX);
  lines->setUseDisplayList(false);
  lines->setUseVertexBufferObjects(true);
  lines->setDataVariance(osg::Object::DYNAMIC);
  vyr::ref_ptr<TrailRecorder> recorder = new TrailRecorder(source, timeInterval, maxPoints);
  recorder->attach();
  lines->setUpdateCallback(new TrailCallback(recorder.get()));
  osg::ref_ptr<osg::Geode> geode = new osg::Geode;
  geode->addDrawable(lines);
  surface::setLineLook(geode);
  osg::StateSet* stateSet = geode->getOrCreateStateSet();
  surface::setTransparency(*stateSet, 0.5f);
  stateSet->setAttribute(new osg::LineWidth(2));
  return geode;
}

} // namespace vyrOSG
