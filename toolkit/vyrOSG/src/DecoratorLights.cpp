// Creates and places the decorator's lights.
#include "DecoratorLights.h"

#include <osg/LightModel>

#include <algorithm>
#include <string>

namespace vyrOSG {

namespace {

/// Direction to the light seen from the scene (z up), and its colours.
struct LightPlan {
  osg::Vec3 direction;
  osg::Vec4 diffuse;
  osg::Vec4 specular;
};

// A warm key light over the viewer's left shoulder, a cool fill light from the right, and a light from behind that
// lifts edges off the background. The sum on a surface that faces all three stays below 1.
const LightPlan kPlans[DecoratorLights::kNumLights] = {
    {osg::Vec3(-0.42f, -0.55f, 0.95f), osg::Vec4(0.62f, 0.60f, 0.56f, 1.0f), osg::Vec4(0.45f, 0.44f, 0.42f, 1.0f)},
    {osg::Vec3(0.90f, -0.35f, 0.45f), osg::Vec4(0.20f, 0.23f, 0.28f, 1.0f), osg::Vec4(0.0f, 0.0f, 0.0f, 1.0f)},
    {osg::Vec3(0.20f, 0.95f, 0.40f), osg::Vec4(0.17f, 0.17f, 0.19f, 1.0f), osg::Vec4(0.10f, 0.10f, 0.12f, 1.0f)}};

const osg::Vec4 kAmbient(0.30f, 0.31f, 0.34f, 1.0f);

/// Distance of the lights from the middle of the scene, in radii of its bounding sphere.
constexpr float kDistance = 3.0f;

} // namespace

DecoratorLights::DecoratorLights(osg::StateSet* state)
    : m_state(state)
    , m_group(new osg::Group)
    , m_placed(7) {
  osg::ref_ptr<osg::LightModel> model = new osg::LightModel;
  model->setAmbientIntensity(kAmbient);
  m_state->setAttribute(model.get());
  m_state->setMode(GL_LIGHTING, osg::StateAttribute::ON);
}

void DecoratorLights::create(int mask) {
  for (int i = 0; i < kNumLights; ++i) {
    const bool wanted = (mask & (1 << i)) != 0;
    if (!wanted && m_lights[i].valid()) {
      m_group->removeChild(m_lights[i].get());
      m_lights[i] = nullptr;
    } else if (wanted && !m_lights[i].valid()) {
      const LightPlan& plan = kPlans[i];
      osg::ref_ptr<osg::Light> light = new osg::Light(static_cast<unsigned>(i));
      light->setAmbient(osg::Vec4(0.0f, 0.0f, 0.0f, 1.0f));
      light->setDiffuse(plan.diffuse);
      light->setSpecular(plan.specular);
      light->setPosition(osg::Vec4(plan.direction * kDistance, 0.0f));
      // Only spots shine along it, but shadow techniques read it.
      light->setDirection(-plan.direction);
      m_lights[i] = new osg::LightSource;
      m_lights[i]->setLight(light.get());
      m_lights[i]->setName("vyrOSG::SceneDecorator light " + std::to_string(i));
      m_group->addChild(m_lights[i].get());
    }
    m_state->setMode(static_cast<osg::StateAttribute::GLMode>(GL_LIGHT0 + i),
                     wanted ? osg::StateAttribute::ON : osg::StateAttribute::OFF);
  }
}

osg::LightSource* DecoratorLights::get(int bit) const {
  for (int i = 0; i < kNumLights; ++i) {
    if (bit == (1 << i))
      return m_lights[i].get();
  }
  return nullptr;
}

void DecoratorLights::moveToEnd(osg::LightSource* light) {
  osg::ref_ptr<osg::LightSource> held = light;
  if (m_group->removeChild(light))
    m_group->addChild(light);
}

void DecoratorLights::place(const osg::BoundingSphere& sphere) {
  if (!sphere.valid())
    return;
  const float distance = kDistance * std::max(static_cast<float>(sphere.radius()), 1.0e-3f);
  for (int i = 0; i < kNumLights; ++i) {
    if (!m_lights[i].valid() || !isPlaced(1 << i))
      continue;
    osg::Vec3 direction = kPlans[i].direction;
    direction.normalize();
    m_lights[i]->getLight()->setDirection(-direction);
    m_lights[i]->getLight()->setPosition(osg::Vec4(direction * distance, 0.0f));
  }
}

} // namespace vyrOSG
