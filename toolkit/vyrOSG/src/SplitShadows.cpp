// Slices the view, aims the light's cameras and hands their maps to the shaders.
#include "SplitShadows.h"

#include "DecoratorShaders.h"

#include <osg/PolygonOffset>
#include <osg/Program>
#include <osg/Uniform>

#include <algorithm>
#include <cmath>
#include <string>

namespace vyrOSG {

namespace {

/// How far the split scheme leans to the logarithmic one.
constexpr double kLogarithmicShare = 0.6;

/// Shadows are followed this far behind the last caster, in radii of the scene.
constexpr double kShadowLength = 8.0;

/// The corners of a part of the view, in eye space.
std::vector<osg::Vec3d> sliceOf(const osg::Matrixd& projection, double nearest, double farthest) {
  const osg::Matrixd inverse = osg::Matrixd::inverse(projection);
  std::vector<osg::Vec3d> points;
  for (const double x : {-1.0, 1.0}) {
    for (const double y : {-1.0, 1.0}) {
      const osg::Vec3d front = osg::Vec3d(x, y, -1.0) * inverse;
      const osg::Vec3d back = osg::Vec3d(x, y, 1.0) * inverse;
      for (const double depth : {nearest, farthest}) {
        const double share = (-depth - front.z()) / (back.z() - front.z());
        points.push_back(front + (back - front) * share);
      }
    }
  }
  return points;
}

osg::ref_ptr<osg::Texture2D> makeMap() {
  osg::ref_ptr<osg::Texture2D> map = new osg::Texture2D;
  map->setTextureSize(SplitShadows::kResolution, SplitShadows::kResolution);
  map->setInternalFormat(GL_DEPTH_COMPONENT24);
  map->setSourceFormat(GL_DEPTH_COMPONENT);
  map->setSourceType(GL_FLOAT);
  map->setShadowComparison(true);
  map->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR);
  map->setFilter(osg::Texture::MAG_FILTER, osg::Texture::LINEAR);
  for (const osg::Texture::WrapParameter side : {osg::Texture::WRAP_S, osg::Texture::WRAP_T})
    map->setWrap(side, osg::Texture::CLAMP_TO_EDGE);
  return map;
}

} // namespace

SplitShadows::SplitShadows(osg::Light* light, unsigned int unit)
    : m_light(light)
    , m_unit(unit) {}

SplitShadows::View& SplitShadows::viewOf(osg::Camera* camera) {
  for (auto view = m_views.begin(); view != m_views.end();)
    view = view->second.camera.valid() ? std::next(view) : m_views.erase(view);
  View& view = m_views[camera];
  if (view.state.valid())
    return view;
  view.camera = camera;
  view.state = new osg::StateSet;
  // Uniforms change with every frame, while an earlier one may still be drawn.
  view.state->setDataVariance(osg::Object::DYNAMIC);
  osg::ref_ptr<osg::Program> program = new osg::Program;
  program->setName("vyrOSG::SplitShadows");
  program->addShader(DecoratorShaders::makeVertexShader().get());
  program->addShader(DecoratorShaders::makeFragmentShader().get());
  view.state->setAttributeAndModes(program.get());
  view.state->addUniform(new osg::Uniform(osg::Uniform::FLOAT_MAT4, "vyr_splitMatrix", kSlices));
  view.state->addUniform(new osg::Uniform("vyr_splitFar", osg::Vec3()));
  view.used.assign(kSlices, false);
  for (int i = 0; i < kSlices; ++i) {
    const osg::ref_ptr<osg::Texture2D> map = makeMap();
    view.slices.emplace_back(getShadowedScene(), map.get(), osg::Camera::DEPTH_BUFFER);
    osg::StateSet* state = view.slices.back().get()->getOrCreateStateSet();
    state->setAttributeAndModes(new osg::PolygonOffset(4.0f, 16.0f),
                                osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE);
    state->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
    state->setAttribute(new osg::Program);
    const unsigned int unit = m_unit + static_cast<unsigned int>(i);
    // Units beyond those of the fixed pipeline have no mode to switch on.
    view.state->setTextureAttribute(unit, map.get());
    view.state->addUniform(new osg::Uniform(("vyr_splitMap" + std::to_string(i)).c_str(), static_cast<int>(unit)));
  }
  return view;
}

void SplitShadows::place(View& view, const osg::Matrixd& toEye, const osg::Matrixd& projection) const {
  const osg::BoundingBoxd seen = boundsIn(toEye, corners(m_bounds));
  // Casters behind the eye may throw shadows into the view.
  const double farthest = std::max<double>(-seen.zMin(), 0.01 * m_bounds.radius());
  const double nearest = std::max(-seen.zMax(), 1e-3 * farthest);
  const osg::Matrixd toLight = LightCamera::view(*m_light, m_bounds);
  const osg::BoundingBoxd casters = boundsIn(toLight, corners(m_bounds));
  const osg::Matrixd toScene = osg::Matrixd::inverse(toEye);
  osg::Vec3 ends;
  double begin = 1e-3 * farthest;
  for (int i = 0; i < kSlices; ++i) {
    const double part = (i + 1.0) / kSlices;
    double end = kLogarithmicShare * nearest * std::pow(farthest / nearest, part) +
                 (1.0 - kLogarithmicShare) * (nearest + (farthest - nearest) * part);
    // Shadows fall on places before the first caster and behind the last one too.
    if (i == kSlices - 1)
      end += kShadowLength * m_bounds.radius();
    osg::BoundingBoxd box = boundsIn(toScene * toLight, sliceOf(projection, begin, end));
    // Only what casts can darken the slice: beyond the casters' sides and ends the map would be empty.
    box._min.x() = std::max(box._min.x(), casters._min.x());
    box._min.y() = std::max(box._min.y(), casters._min.y());
    box._max.x() = std::min(box._max.x(), casters._max.x());
    box._max.y() = std::min(box._max.y(), casters._max.y());
    box._min.z() = casters._min.z();
    box._max.z() = casters._max.z();
    const bool used = box.xMin() < box.xMax() && box.yMin() < box.yMax();
    view.used[static_cast<std::size_t>(i)] = used;
    // A slice without casters: every place lies outside of its map.
    const osg::Matrixd toMap = used ? toScene * view.slices[static_cast<std::size_t>(i)].aim(toLight, box)
                                    : osg::Matrixd::scale(0.0, 0.0, 0.0) * osg::Matrixd::translate(-1.0, -1.0, -1.0);
    view.state->getUniform("vyr_splitMatrix")->setElement(static_cast<unsigned int>(i), osg::Matrixf(toMap));
    ends[i] = static_cast<float>(end);
    begin = end;
  }
  view.state->getUniform("vyr_splitFar")->set(ends);
}

void SplitShadows::update(osg::NodeVisitor& visitor) {
  getShadowedScene()->osg::Group::traverse(visitor);
}

void SplitShadows::cull(osgUtil::CullVisitor& visitor) {
  osgShadow::ShadowedScene* scene = getShadowedScene();
  if (!m_bounds.valid() || !visitor.getCurrentCamera()) {
    scene->osg::Group::traverse(visitor);
    return;
  }
  View& view = viewOf(visitor.getCurrentCamera());
  place(view, *visitor.getModelViewMatrix(), *visitor.getProjectionMatrix());
  const unsigned int mask = visitor.getTraversalMask();
  visitor.setTraversalMask(mask & scene->getCastsShadowTraversalMask());
  for (std::size_t i = 0; i < view.slices.size(); ++i) {
    if (view.used[i])
      view.slices[i].get()->accept(visitor);
  }
  visitor.setTraversalMask(mask & scene->getReceivesShadowTraversalMask());
  visitor.pushStateSet(view.state.get());
  scene->osg::Group::traverse(visitor);
  visitor.popStateSet();
  visitor.setTraversalMask(mask);
}

void SplitShadows::resizeGLObjectBuffers(unsigned int maxSize) {
  for (auto& view : m_views) {
    view.second.state->resizeGLObjectBuffers(maxSize);
    for (LightCamera& slice : view.second.slices)
      slice.get()->resizeGLObjectBuffers(maxSize);
  }
}

void SplitShadows::releaseGLObjects(osg::State* state) const {
  for (const auto& view : m_views) {
    view.second.state->releaseGLObjects(state);
    for (const LightCamera& slice : view.second.slices)
      slice.get()->releaseGLObjects(state);
  }
}

} // namespace vyrOSG
