// Draws what the physics knows and the visuals do not show: contacts, normals, forces, frames and bounds.
#pragma once

#include "LineDrawing.h"

#include <vyrSDK/Simulation.h>

#include <osg/Group>
#include <osg/MatrixTransform>
#include <osgText/Text>

#include <string>
#include <vector>

namespace vyrOSG {

/// Lines and texts over the scene, drawn anew from the simulation before each frame.
///
/// Contact points are yellow crosses, their normals cyan, forces red at 1 m for the weight of 10 kg; frames have their
/// x axis red, y green, z blue; bounds are grey boxes, those of sleeping or static bodies darker.
class DebugRenderer {
public:
  DebugRenderer();

  /// The node to hang into the scene. *Returns inner*.
  osg::MatrixTransform* getNode() { return m_node.get(); }

  void setEnable(bool enable);
  bool getEnable() const { return m_enabled; }
  void setEnableText(bool enable);
  bool getEnableText() const { return m_textEnabled; }

  /// Draws the state of @p simulation.
  void update(const vyrSDK::Simulation& simulation);
  void clear();

  unsigned getNumLines() const { return m_lines.getNumLines(); }
  unsigned getNumTexts() const { return m_numTexts; }

private:
  void chooseScale(const vyrSDK::Simulation& simulation);
  void drawContacts(const vyrSDK::Simulation& simulation);
  void writeForces(const vyrSDK::Simulation& simulation);
  void drawGeometry(const vyrCollide::Geometry& geometry, bool still);
  void drawBody(const vyr::RigidBody& body);
  void drawFrame(const vyr::AffineMatrix4x4& frame, double length);
  void addText(const vyr::Vec3& place, const std::string& text, const osg::Vec4& color);

  osg::ref_ptr<osg::MatrixTransform> m_node;
  LineDrawing m_lines;
  osg::ref_ptr<osg::Geode> m_textGeode;
  std::vector<osg::ref_ptr<osgText::Text>> m_texts;
  osg::ref_ptr<osgText::Font> m_font;
  double m_length;
  double m_metresPerNewton;
  unsigned m_numTexts;
  bool m_enabled;
  bool m_textEnabled;
};

} // namespace vyrOSG
