// The shadow technique of the decorator and what the scene has to tell it.
#pragma once

#include "DecoratorShaders.h"

#include <vyrOSG/SceneDecorator.h>

#include <osg/Group>
#include <osg/LightSource>
#include <osg/StateSet>
#include <osg/Texture2D>
#include <osg/ref_ptr>
#include <osgShadow/ShadowedScene>

namespace vyrOSG {

class OutlineShadows;
class SplitShadows;

/// Puts a shadow technique, or none, above the scene.
class DecoratorShadows {
public:
  /// @param state the decorator's state set (*retains*): base texture and shader uniforms go there.
  explicit DecoratorShadows(osg::StateSet* state);
  ~DecoratorShadows();

  /// The node above the scene. *Returns inner*.
  osg::Group* getNode() { return m_above.get(); }
  /// The group of the scene's nodes. *Returns inner*.
  osg::Group* getScene() { return m_scene.get(); }

  /// Builds the technique anew. @param method NO_SHADOWS for none. @param light Nullable: no shadows without.
  void apply(SceneDecorator::ShadowMethod method, osg::LightSource* light, int lightNumber);

  /// Switches per-pixel light without shadows; shadow maps bring their own. @param persistent overrides programs below.
  void setShaderState(bool enable, bool persistent);

  /// Which of the lights are there, as bits.
  void setLights(int mask);

  void setBaseTexture(osg::Texture2D* texture);

  /// Tells shadows and shaders what is in the scene and where; call it in each frame, once all stands at its place.
  void update();

private:
  /// @param taps looks a pixel, along each side of the map.
  void applyShadowMap(const char* taps, int resolution, osg::LightSource* light);
  void setTexel(int resolution);

  osg::ref_ptr<osg::StateSet> m_state;
  osg::ref_ptr<osg::Group> m_above;
  osg::ref_ptr<osg::Group> m_scene;
  osg::ref_ptr<osgShadow::ShadowedScene> m_shadowed;
  osg::ref_ptr<SplitShadows> m_splits;
  osg::ref_ptr<OutlineShadows> m_outlines;
  SceneDecorator::ShadowMethod m_method;
  bool m_shaderState;
};

} // namespace vyrOSG
