// Keeps line segments in arrays that the renderer reads.
#include "LineDrawing.h"

#include <osg/BlendFunc>
#include <osg/Depth>
#include <osg/LineWidth>
#include <osg/Program>
#include <osg/StateSet>

namespace vyrOSG {

LineDrawing::LineDrawing(float width, bool onTop)
    : m_geode(new osg::Geode)
    , m_geometry(new osg::Geometry)
    , m_vertices(new osg::Vec3Array)
    , m_colors(new osg::Vec4Array(osg::Array::BIND_PER_VERTEX))
    , m_lines(new osg::DrawArrays(GL_LINES, 0, 0)) {
  m_geometry->setDataVariance(osg::Object::DYNAMIC);
  m_geometry->setUseDisplayList(false);
  m_geometry->setUseVertexBufferObjects(true);
  m_geometry->setVertexArray(m_vertices.get());
  m_geometry->setColorArray(m_colors.get());
  m_geometry->addPrimitiveSet(m_lines.get());
  m_geode->addDrawable(m_geometry.get());
  osg::StateSet* state = m_geode->getOrCreateStateSet();
  state->setMode(GL_LIGHTING, osg::StateAttribute::OFF | osg::StateAttribute::PROTECTED);
  state->setTextureMode(0, GL_TEXTURE_2D, osg::StateAttribute::OFF | osg::StateAttribute::PROTECTED);
  state->setAttributeAndModes(new osg::Program, osg::StateAttribute::ON | osg::StateAttribute::PROTECTED);
  state->setAttributeAndModes(new osg::LineWidth(width));
  state->setMode(GL_BLEND, osg::StateAttribute::ON);
  state->setRenderingHint(osg::StateSet::TRANSPARENT_BIN);
  if (onTop)
    state->setAttributeAndModes(new osg::Depth(osg::Depth::ALWAYS, 0.0, 1.0, false));
}

void LineDrawing::clear() {
  m_vertices->clear();
  m_colors->clear();
}

void LineDrawing::add(const osg::Vec3d& from, const osg::Vec3d& to, const osg::Vec4& color) {
  m_vertices->push_back(from);
  m_vertices->push_back(to);
  m_colors->push_back(color);
  m_colors->push_back(color);
}

void LineDrawing::finish() {
  m_lines->setCount(static_cast<GLsizei>(m_vertices->size()));
  m_lines->dirty();
  m_vertices->dirty();
  m_colors->dirty();
  m_geometry->dirtyBound();
}

} // namespace vyrOSG
