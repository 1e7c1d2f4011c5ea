// Dresses new visuals as scene files say.
#include "CarVisual.h"
#include "Look.h"
#include "Surface.h"

#include <vyrOSG/Conversions.h>
#include <vyrOSG/ReaderWriter.h>

#include <vyr/RigidBody.h>
#include <vyrCollide/Cylinder.h>

#include <filesystem>
#include <system_error>

namespace vyrOSG {

namespace {

constexpr osg::Material::Face kBothFaces = osg::Material::FRONT_AND_BACK;

/// A file beside the scene file goes before one of the same name elsewhere.
std::string fileIn(const std::string& folder, const std::string& name) {
  std::error_code ignored;
  const std::filesystem::path beside = std::filesystem::path(folder) / name;
  return std::filesystem::exists(beside, ignored) ? beside.string() : name;
}

bool sameColor(const osg::Vec4& a, const osg::Vec4& b) {
  return a.r() == b.r() && a.g() == b.g() && a.b() == b.b();
}

void setMaterial(osg::Node& node, const SurfaceLook& look) {
  const auto setAll = [&look](osg::Material& material) {
    material.setDiffuse(kBothFaces, look.color);
    material.setAmbient(kBothFaces, look.ambient);
    material.setSpecular(kBothFaces, look.specular);
    material.setEmission(kBothFaces, look.emission);
    material.setShininess(kBothFaces, look.shininess);
  };
  if (!look.untouched) {
    surface::changeMaterials(&node, [&](osg::Material& material, osg::StateSet& stateSet) {
      setAll(material);
      material.setName("");
      surface::setTransparency(stateSet, look.color.a());
    });
    return;
  }
  // Highlights and ambient colours reach what is below even where the colour was left alone.
  surface::setDefaultMaterial(&node, look.color);
  auto* own = static_cast<osg::Material*>(node.getStateSet()->getAttribute(osg::StateAttribute::MATERIAL));
  const bool highlights =
      !sameColor(look.specular, own->getSpecular(kBothFaces)) || look.shininess != own->getShininess(kBothFaces);
  const bool ambient = !sameColor(look.ambient, look.color);
  if (highlights || ambient)
    surface::changeMaterials(&node, [&](osg::Material& material, osg::StateSet&) {
      if (highlights) {
        material.setSpecular(kBothFaces, look.specular);
        material.setShininess(kBothFaces, look.shininess);
      }
      if (ambient)
        material.setAmbient(kBothFaces, look.ambient);
    });
  own = static_cast<osg::Material*>(node.getStateSet()->getAttribute(osg::StateAttribute::MATERIAL));
  setAll(*own);
}

void setSurface(osg::Node& node, const SurfaceLook& look, const std::string& folder) {
  // An image turns untouched surfaces white; the colours come after it.
  for (const TextureLook& texture : look.textures)
    setTexture(&node, fileIn(folder, texture.file), texture.repeat, texture.mode, texture.scaleU, texture.scaleV);
  if (!look.cubeMap.empty())
    setCubeMapTexture(&node,
                      fileIn(folder, look.cubeMap + "posx" + look.cubeMapType) ==
                              look.cubeMap + "posx" + look.cubeMapType
                          ? look.cubeMap
                          : (std::filesystem::path(folder) / look.cubeMap).string(),
                      look.cubeMapType);
  if (look.reflection >= 0)
    setEnvMapReflectionCoefficient(&node, look.reflection);
  if (look.hasMaterial)
    setMaterial(node, look);
  if (look.wireFrame)
    forceWireFrameModeOn(&node);
  for (const auto& [light, on] : look.lights)
    setEnableLight(on, light, &node);
  for (const auto& [name, value] : look.integers)
    setUniformInt(&node, name, value);
  for (const auto& [name, value] : look.numbers)
    setUniformFloat(&node, name, value);
  if (look.mask != ~0u)
    node.setNodeMask(look.mask);
}

/// Nullable: result, where the file of a model cannot be read.
osg::ref_ptr<osg::Node> makeNode(const NodeLook& look, const vyrCollide::Geometry* geometry, float detailRatio,
                                 const std::string& folder) {
  osg::ref_ptr<osg::Node> node;
  if (look.kind == NodeLook::MODEL) {
    node = readNodeFile(fileIn(folder, look.file), false);
  } else if (look.kind == NodeLook::WHEEL) {
    const auto* cylinder = geometry ? dynamic_cast<const vyrCollide::Cylinder*>(geometry->getShape()) : nullptr;
    if (cylinder)
      node = makeWheel(*cylinder, detailRatio);
  } else {
    osg::ref_ptr<osg::MatrixTransform> transform = new osg::MatrixTransform(look.matrix);
    transform->getOrCreateStateSet()->setMode(GL_NORMALIZE, osg::StateAttribute::ON);
    for (const NodeLook& child : look.children) {
      if (osg::ref_ptr<osg::Node> made = makeNode(child, geometry, detailRatio, folder))
        transform->addChild(made);
    }
    node = transform;
  }
  if (node)
    setSurface(*node, look.surface, folder);
  return node;
}

vyr::Vec4 toVyr(const osg::Vec4& color) {
  return vyr::Vec4(double(color.r()), double(color.g()), double(color.b()), double(color.a()));
}

vyr::AffineMatrix4x4 toVyr(const osg::Matrixd& matrix) {
  vyr::AffineMatrix4x4 result;
  std::copy(matrix.ptr(), matrix.ptr() + 16, result.ptr());
  return result;
}

} // namespace

void dress(GeometryNode& node, const GeometryLook& look, const std::string& folder) {
  vyrCollide::Geometry* geometry = node.getGeometry();
  node.setDetailRatio(look.detailRatio);
  if (!look.model.empty()) {
    if (osg::ref_ptr<osg::Node> model = makeNode(look.model[0], geometry, look.detailRatio, folder))
      node.setRenderChild(GeometryNode::RENDER_DATA, model.get());
  }
  if (look.showsShape)
    node.selectRenderChild(GeometryNode::GEOMETRY_DATA);
  setSurface(node, look.surface, folder);
  // What keeps it company has its own colours.
  osg::ref_ptr<vyrOSG::Group> around = new vyrOSG::Group;
  around->addChild(&node);
  for (const NodeLook& entry : look.company.nodes) {
    if (osg::ref_ptr<osg::Node> made = makeNode(entry, geometry, look.detailRatio, folder))
      node.addChild(made);
  }
  for (const TextLook& text : look.company.texts)
    addText(geometry, around.get(), text.text, text.position, toVyr(text.color), text.size);
  for (const AxesLook& axes : look.company.axes)
    createAxes(geometry, toVyr(axes.matrix), around.get(), float(axes.scale), toVyr(axes.color));
  around->removeChild(&node);
}

void addCompany(vyr::RigidBody& body, vyrOSG::Group& bodyGroup, const CompanyLook& company, const std::string& folder) {
  for (const NodeLook& entry : company.nodes) {
    if (osg::ref_ptr<osg::Node> made = makeNode(entry, nullptr, 0.3f, folder))
      bodyGroup.addChild(made.get());
  }
  for (const AxesLook& axes : company.axes)
    createAxes(&body, toVyr(axes.matrix), &bodyGroup, float(axes.scale), toVyr(axes.color));
}

} // namespace vyrOSG
