// Reads looks off the scene graph.
#include "CarVisual.h"
#include "Look.h"
#include "Surface.h"
#include "SurfaceShader.h"

#include <vyrOSG/Conversions.h>

#include <osg/Material>
#include <osg/PolygonMode>
#include <osg/TexMat>
#include <osg/Texture2D>
#include <osg/TextureCubeMap>
#include <osg/ValueObject>
#include <osgText/Text>

#include <algorithm>

namespace vyrOSG {

namespace {

constexpr osg::Material::Face kFront = osg::Material::FRONT;
const char* const kFileKey = "vyr file";
const char* const kOwnMaterialKey = "vyr own material";

std::string fileOf(const osg::Node& node) {
  std::string file;
  node.getUserValue(kFileKey, file);
  return file;
}

void addMaterial(const osg::StateSet& stateSet, SurfaceLook& look) {
  const auto* material = dynamic_cast<const osg::Material*>(stateSet.getAttribute(osg::StateAttribute::MATERIAL));
  if (!material || look.hasMaterial)
    return;
  look.hasMaterial = true;
  look.untouched = surface::isDefaultMaterial(material);
  look.color = material->getDiffuse(kFront);
  look.ambient = material->getAmbient(kFront);
  look.specular = material->getSpecular(kFront);
  look.emission = material->getEmission(kFront);
  look.shininess = material->getShininess(kFront);
}

/// Images that were read from files; an image further down goes before one of the same mode above it.
void addTextures(const osg::StateSet& stateSet, SurfaceLook& look) {
  for (unsigned int unit = DIFFUSE_TEXTURE; unit <= SPHEREMAP_TEXTURE; ++unit) {
    const auto* texture =
        dynamic_cast<const osg::Texture2D*>(stateSet.getTextureAttribute(unit, osg::StateAttribute::TEXTURE));
    const osg::Image* image = texture ? texture->getImage() : nullptr;
    const bool known = std::any_of(look.textures.begin(), look.textures.end(),
                                   [unit](const TextureLook& other) { return other.mode == static_cast<int>(unit); });
    if (!image || image->getFileName().empty() || known)
      continue;
    TextureLook entry;
    entry.mode = static_cast<TextureMode>(unit);
    entry.file = image->getFileName();
    entry.repeat = texture->getWrap(osg::Texture::WRAP_S) == osg::Texture::REPEAT;
    const auto* scale =
        dynamic_cast<const osg::TexMat*>(stateSet.getTextureAttribute(unit, osg::StateAttribute::TEXMAT));
    if (scale) {
      entry.scaleU = float(scale->getMatrix()(0, 0));
      entry.scaleV = float(scale->getMatrix()(1, 1));
    }
    look.textures.push_back(entry);
  }
}

void addCubeMap(const osg::StateSet& stateSet, SurfaceLook& look) {
  const auto* cube = dynamic_cast<const osg::TextureCubeMap*>(
      stateSet.getTextureAttribute(surface::kCubeMapUnit, osg::StateAttribute::TEXTURE));
  const osg::Image* image = cube ? cube->getImage(osg::TextureCubeMap::POSITIVE_X) : nullptr;
  const std::string file = image ? image->getFileName() : std::string();
  const std::size_t side = file.rfind("posx");
  if (!look.cubeMap.empty() || side == std::string::npos)
    return;
  look.cubeMap = file.substr(0, side);
  look.cubeMapType = file.substr(side + 4);
}

void addUniforms(const osg::StateSet& stateSet, SurfaceLook& look) {
  for (const auto& entry : stateSet.getUniformList()) {
    const osg::Uniform& uniform = *entry.second.first;
    int integer = 0;
    float number = 0;
    if (uniform.getNumElements() != 1)
      continue;
    if (entry.first == surface::kReflectionUniform) {
      if (look.reflection < 0)
        uniform.get(look.reflection);
    } else if (uniform.getType() == osg::Uniform::INT && uniform.get(integer)) {
      look.integers.emplace(entry.first, integer);
    } else if (uniform.getType() == osg::Uniform::FLOAT && uniform.get(number)) {
      look.numbers.emplace(entry.first, number);
    }
  }
}

void addModes(const osg::StateSet& stateSet, SurfaceLook& look) {
  const auto* polygons = dynamic_cast<const osg::PolygonMode*>(stateSet.getAttribute(osg::StateAttribute::POLYGONMODE));
  if (polygons && polygons->getMode(osg::PolygonMode::FRONT_AND_BACK) == osg::PolygonMode::LINE)
    look.wireFrame = true;
  for (int light = 0; light < 8; ++light) {
    const auto value = stateSet.getMode(GL_LIGHT0 + static_cast<unsigned int>(light));
    if ((value & osg::StateAttribute::PROTECTED) != 0 && (value & osg::StateAttribute::INHERIT) == 0)
      look.lights.emplace(light, (value & osg::StateAttribute::ON) != 0);
  }
}

/// Adds what a node says about itself and all below it.
void addNode(const osg::Node& node, bool withMaterial, SurfaceLook& look) {
  look.mask &= node.getNodeMask();
  const osg::StateSet* stateSet = node.getStateSet();
  if (!stateSet)
    return;
  if (withMaterial)
    addMaterial(*stateSet, look);
  addTextures(*stateSet, look);
  addCubeMap(*stateSet, look);
  addUniforms(*stateSet, look);
  addModes(*stateSet, look);
}

/// Whether a node is above the things of a scene: what it says is said of all of them.
bool isAboveScene(const osg::Node* node) {
  return node == OSGSceneRoot::get() || node->asCamera() || node->getNumParents() == 0;
}

AxesLook axesOf(const osg::MatrixTransform& axes) {
  AxesLook look;
  look.matrix = axes.getMatrix();
  // The scale was given in single precision.
  look.scale = double(float(osg::Vec3d(look.matrix(0, 0), look.matrix(0, 1), look.matrix(0, 2)).length()));
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column)
      look.matrix(row, column) /= look.scale;
  }
  // Three arrows, each a geode under a transform of its own.
  std::vector<osg::Vec4> colors;
  for (unsigned int i = 0; i < axes.getNumChildren(); ++i) {
    const osg::Group* axis = axes.getChild(i)->asGroup();
    const osg::Geode* arrow = axis && axis->getNumChildren() > 0 ? axis->getChild(0)->asGeode() : nullptr;
    const osg::Geometry* shaft = arrow && arrow->getNumDrawables() > 0 ? arrow->getDrawable(0)->asGeometry() : nullptr;
    const auto* color = shaft ? dynamic_cast<const osg::Vec4Array*>(shaft->getColorArray()) : nullptr;
    if (color && !color->empty())
      colors.push_back(color->front());
  }
  if (colors.size() == 3 && colors[0] == colors[1])
    look.color = colors[0];
  return look;
}

bool addText(const osg::Node& node, CompanyLook& company) {
  const osg::Geode* geode = node.asGeode();
  const auto* text = geode && geode->getName() == "text" && geode->getNumDrawables() > 0
                         ? dynamic_cast<const osgText::Text*>(geode->getDrawable(0))
                         : nullptr;
  if (!text)
    return false;
  const osg::Vec3 position = text->getPosition();
  TextLook look;
  look.text = text->getText().createUTF8EncodedString();
  look.position.set(double(position.x()), double(position.y()), double(position.z()));
  look.color = text->getColor();
  look.size = double(text->getCharacterHeight());
  company.texts.push_back(look);
  return true;
}

/// Describes a node; false for one that no scene file can hold.
bool describe(osg::Node& node, NodeLook& look) {
  bool ownMaterial = false;
  node.getUserValue(kOwnMaterialKey, ownMaterial);
  addNode(node, !ownMaterial, look.surface);
  if (node.getName() == kWheelName) {
    look.kind = NodeLook::WHEEL;
    return true;
  }
  look.file = fileOf(node);
  if (!look.file.empty()) {
    look.kind = NodeLook::MODEL;
    return true;
  }
  osg::Group* group = node.asGroup();
  if (!group || node.asGeode() || node.asSwitch() || dynamic_cast<GeometryNode*>(&node))
    return false;
  if (const osg::Transform* transform = node.asTransform()) {
    const osg::MatrixTransform* placed = transform->asMatrixTransform();
    if (!placed)
      return false;
    look.matrix = placed->getMatrix();
  }
  for (unsigned int i = 0; i < group->getNumChildren(); ++i) {
    NodeLook child;
    if (describe(*group->getChild(i), child))
      look.children.push_back(child);
  }
  return !look.children.empty();
}

void addToCompany(osg::Node& node, CompanyLook& company) {
  const osg::Transform* transform = node.asTransform();
  if (addText(node, company))
    return;
  if (transform && transform->asMatrixTransform() && node.getName() == "axes") {
    company.axes.push_back(axesOf(*transform->asMatrixTransform()));
    return;
  }
  NodeLook look;
  if (describe(node, look))
    company.nodes.push_back(look);
}

} // namespace

void rememberFile(osg::Node& node, const std::string& path) {
  node.setUserValue(kFileKey, path);
  if (node.getStateSet() && node.getStateSet()->getAttribute(osg::StateAttribute::MATERIAL))
    node.setUserValue(kOwnMaterialKey, true);
}

GeometryLook lookOf(GeometryNode& node) {
  GeometryLook look;
  addNode(node, true, look.surface);
  // What is said of the groups of a body, an assembly or a part of the scene is said of the geometry.
  for (const osg::Group* above = node.getNumParents() > 0 ? node.getParent(0) : nullptr; above && !isAboveScene(above);
       above = above->getParent(0))
    addNode(*above, false, look.surface);
  look.detailRatio = node.getDetailRatio();
  look.showsShape = node.getSelectedRenderChild() == GeometryNode::GEOMETRY_DATA;
  osg::Node* model = node.getRenderChild(GeometryNode::RENDER_DATA);
  NodeLook modelLook;
  if (model && describe(*model, modelLook))
    look.model.push_back(modelLook);
  for (unsigned int i = 0; i < node.getNumChildren(); ++i) {
    osg::Node* child = node.getChild(i);
    if (child != model && child != node.getRenderChild(GeometryNode::GEOMETRY_DATA))
      addToCompany(*child, look.company);
  }
  return look;
}

CompanyLook companyOf(vyrOSG::Group& bodyGroup) {
  CompanyLook company;
  for (unsigned int i = 0; i < bodyGroup.getNumChildren(); ++i) {
    osg::Node* child = bodyGroup.getChild(i);
    const osg::Group* follower = child->asGroup();
    if (dynamic_cast<GeometryNode*>(child))
      continue;
    // Axes of a body stand under a transform that follows it.
    if (follower && child->getUpdateCallback() && follower->getNumChildren() == 1)
      addToCompany(*const_cast<osg::Node*>(follower->getChild(0)), company);
    else
      addToCompany(*child, company);
  }
  return company;
}

} // namespace vyrOSG
