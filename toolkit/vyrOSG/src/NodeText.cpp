// Writes texts beside the visuals of geometries and finds them again.
#include <vyrOSG/utils.h>

#include "FontSearch.h"

#include <vyrOSG/Conversions.h>

#include <vyr/Notify.h>
#include <vyrCollide/Geometry.h>

#include <cmath>

namespace vyrOSG {

namespace {

const char* const kTextNodeName = "text";
constexpr unsigned int kGlyphResolution = 64;

/// The system's outline font; empty where there is none, which leaves the text library its built-in one.
osg::ref_ptr<osgText::Font> textFont() {
  std::string tried;
  static osg::ref_ptr<osgText::Font> s_font = findFont("DejaVuSans", tried);
  return s_font;
}

} // namespace

bool addText(const vyrCollide::Geometry* geometry, vyrOSG::Group* group, const std::string& text,
             const vyr::Vec3& localPosition, const vyr::Vec4& color, double size) {
  GeometryNode* node = findGeometryNode(geometry, group);
  if (!node)
    return false;
  if (!localPosition.isFinite() || !color.isFinite() || !std::isfinite(size) || size <= 0) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "vyrOSG::addText: the position (" << localPosition << "), the colour (" << color
                                  << ") or the size " << size << " of the text '" << text << "' is no usable number";
    return false;
  }
  osg::ref_ptr<osgText::Text> drawable = new osgText::Text;
  if (osg::ref_ptr<osgText::Font> font = textFont())
    drawable->setFont(font);
  drawable->setDataVariance(osg::Object::DYNAMIC);
  drawable->setFontResolution(kGlyphResolution, kGlyphResolution);
  drawable->setCharacterSize(float(size));
  drawable->setAxisAlignment(osgText::TextBase::SCREEN);
  drawable->setAlignment(osgText::TextBase::CENTER_BASE_LINE);
  drawable->setPosition(osg::Vec3(toOsg(localPosition)));
  drawable->setColor(toOsg(color));
  drawable->setText(text, osgText::String::ENCODING_UTF8);
  osg::ref_ptr<osg::Geode> geode = new osg::Geode;
  geode->setName(kTextNodeName);
  geode->addDrawable(drawable);
  geode->getOrCreateStateSet()->setMode(GL_LIGHTING, osg::StateAttribute::OFF | osg::StateAttribute::PROTECTED);
  return node->addChild(geode);
}

osgText::Text* findText(const vyrCollide::Geometry* geometry, vyrOSG::Group* group, size_t index) {
  GeometryNode* node = findGeometryNode(geometry, group);
  if (!node)
    return nullptr;
  for (unsigned int i = 0; i < node->getNumChildren(); ++i) {
    osg::Geode* geode = node->getChild(i)->asGeode();
    if (!geode || geode->getName() != kTextNodeName || geode->getNumDrawables() == 0)
      continue;
    if (index-- == 0)
      return dynamic_cast<osgText::Text*>(geode->getDrawable(0));
  }
  return nullptr;
}

} // namespace vyrOSG
