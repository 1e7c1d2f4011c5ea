#include "Objects.h"

#include <osg/BoundingBox>
#include <osg/BoundingSphere>
#include <osg/Camera>
#include <osg/ColorMask>
#include <osg/CopyOp>
#include <osg/Depth>
#include <osg/DisplaySettings>
#include <osg/Geode>
#include <osg/Geometry>
#include <osg/GraphicsThread>
#include <osg/Group>
#include <osg/Image>
#include <osg/LightSource>
#include <osg/Material>
#include <osg/MatrixTransform>
#include <osg/NodeVisitor>
#include <osg/Shader>
#include <osg/Shape>
#include <osg/State>
#include <osg/StateSet>
#include <osg/Stats>
#include <osg/TexMat>
#include <osg/Texture2D>
#include <osg/Uniform>
#include <osg/View>
#include <osg/Viewport>
#include <osg/observer_ptr>
#include <osgViewer/GraphicsWindow>
#include <osgViewer/Viewer>
#include <vyr/Constraint1DOF.h>
#include <vyr/RigidBody.h>
#include <vyr/Vector.h>
#include <vyr/observer_ptr.h>
#include <vyr/ref_ptr.h>
#include <vyrCollide/Geometry.h>
#include <vyrIO/CFGSceneLoader.h>
#include <vyrOSG/CameraData.h>
#include <vyrOSG/DeformableHeightFieldRenderer.h>
#include <vyrOSG/ExampleApplication.h>
#include <vyrOSG/ForceArrowRenderer.h>
#include <vyrOSG/GeometryNode.h>
#include <vyrOSG/Group.h>
#include <vyrOSG/HudTextManager.h>
#include <vyrOSG/ImageCapture.h>
#include <vyrOSG/Node.h>
#include <vyrOSG/PressureAtlas.h>
#include <vyrOSG/PressureFieldRenderer.h>
#include <vyrOSG/PressureFromContacts.h>
#include <vyrOSG/PressureRenderer.h>
#include <vyrOSG/RenderStateManager.h>
#include <vyrOSG/RenderToTexture.h>
#include <vyrOSG/RockGenerator.h>
#include <vyrOSG/SceneDecorator.h>
#include <vyrOSG/SimulationObject.h>
#include <vyrOSG/SimulationPausedPrinter.h>
#include <vyrOSG/SimulationTimePrinter.h>
#include <vyrOSG/SplineRenderer.h>
#include <vyrOSG/TerrainRenderer.h>
#include <vyrOSG/Text.h>
#include <vyrOSG/Transform.h>
#include <vyrOSG/Tree.h>
#include <vyrOSG/TreeRenderer.h>
#include <vyrOSG/WireRenderer.h>
#include <vyrSDK/PickResult.h>

#include <map>
#include <memory>
#include <type_traits>
#include <vector>

namespace {

using conformance::CountedType;
using conformance::FieldReader;
using conformance::FieldValue;

/// Says whether an object has been destroyed.
struct Watch {
  virtual ~Watch() = default;
  virtual bool gone() const = 0;
};

template <class Pointer>
struct PointerWatch : Watch {
  explicit PointerWatch(Pointer object)
      : pointer(object) {}
  bool gone() const override { return !pointer.valid(); }
  Pointer pointer;
};

std::vector<std::unique_ptr<Watch>>& watches() {
  static std::vector<std::unique_ptr<Watch>> list;
  return list;
}

template <class Pointer>
int addWatch(Pointer pointer) {
  watches().push_back(std::make_unique<PointerWatch<Pointer>>(pointer));
  return static_cast<int>(watches().size()) - 1;
}

template <class T>
CountedType counted() {
  // Written out because the destructors of counted objects are not for everybody.
  if constexpr (std::is_base_of_v<osg::Referenced, T>) {
    return {[](void* object) { return static_cast<T*>(object)->referenceCount(); },
            [](void* object) { static_cast<T*>(object)->ref(); },
            [](void* object) { static_cast<T*>(object)->unref(); },
            [](void* object) { static_cast<T*>(object)->unref_nodelete(); },
            [](void* object) { return addWatch(osg::observer_ptr<T>(static_cast<T*>(object))); }};
  } else {
    return {[](void* object) { return static_cast<int>(static_cast<T*>(object)->getReferenceCount()); },
            [](void* object) { static_cast<T*>(object)->ref(); },
            [](void* object) { static_cast<T*>(object)->unref(); },
            [](void* object) { static_cast<T*>(object)->unrefWithoutDelete(); },
            [](void* object) { return addWatch(vyr::observer_ptr<T>(static_cast<T*>(object))); }};
  }
}

template <class Owner, class Type>
FieldValue valueOf(void* object, Type Owner::*field) {
  Type& value = static_cast<Owner*>(object)->*field;
  FieldValue result;
  if constexpr (std::is_arithmetic_v<Type>) {
    result.number = static_cast<double>(value);
    result.isBoolean = std::is_same_v<Type, bool>;
  } else {
    result.isObject = true;
    result.address = &value;
  }
  return result;
}

} // namespace

const CountedType* conformance::countedType(const std::string& type) {
  static const std::map<std::string, CountedType> types = {
      {"osg::Camera", counted<osg::Camera>()},
      {"osg::Geode", counted<osg::Geode>()},
      {"osg::Group", counted<osg::Group>()},
      {"osg::HeightField", counted<osg::HeightField>()},
      {"osg::MatrixTransform", counted<osg::MatrixTransform>()},
      {"osg::Node", counted<osg::Node>()},
      {"osg::StateSet", counted<osg::StateSet>()},
      {"osg::Transform", counted<osg::Transform>()},
      {"osg::Uniform", counted<osg::Uniform>()},
      {"osg::Uniform::Callback", counted<osg::Uniform::Callback>()},
      {"vyr::RigidBody", counted<vyr::RigidBody>()},
      {"vyrCollide::Geometry", counted<vyrCollide::Geometry>()},
      {"vyrOSG::DeformableHeightFieldRenderer", counted<vyrOSG::DeformableHeightFieldRenderer>()},
      {"vyrOSG::ExampleApplication", counted<vyrOSG::ExampleApplication>()},
      {"vyrOSG::ForceArrowRenderer", counted<vyrOSG::ForceArrowRenderer>()},
      {"vyrOSG::GeometryNode", counted<vyrOSG::GeometryNode>()},
      {"vyrOSG::Group", counted<vyrOSG::Group>()},
      {"vyrOSG::HudTextManager", counted<vyrOSG::HudTextManager>()},
      {"vyrOSG::HudTextManager::ReferencedText", counted<vyrOSG::HudTextManager::ReferencedText>()},
      {"vyrOSG::ImageCapture", counted<vyrOSG::ImageCapture>()},
      {"vyrOSG::Node", counted<vyrOSG::Node>()},
      {"vyrOSG::PressureFieldRenderer", counted<vyrOSG::PressureFieldRenderer>()},
      {"vyrOSG::PressureFromContacts", counted<vyrOSG::PressureFromContacts>()},
      {"vyrOSG::PressureRenderer", counted<vyrOSG::PressureRenderer>()},
      {"vyrOSG::RenderStateManager::RenderState", counted<vyrOSG::RenderStateManager::RenderState>()},
      {"vyrOSG::RenderStateManager::ShaderState", counted<vyrOSG::RenderStateManager::ShaderState>()},
      {"vyrOSG::RenderToTexture", counted<vyrOSG::RenderToTexture>()},
      {"vyrOSG::RockGenerator", counted<vyrOSG::RockGenerator>()},
      {"vyrOSG::SceneDecorator", counted<vyrOSG::SceneDecorator>()},
      {"vyrOSG::SimulationPausedPrinter", counted<vyrOSG::SimulationPausedPrinter>()},
      {"vyrOSG::SimulationTimePrinter", counted<vyrOSG::SimulationTimePrinter>()},
      {"vyrOSG::SplineRenderer", counted<vyrOSG::SplineRenderer>()},
      {"vyrOSG::TerrainRenderer", counted<vyrOSG::TerrainRenderer>()},
      {"vyrOSG::Text", counted<vyrOSG::Text>()},
      {"vyrOSG::Transform", counted<vyrOSG::Transform>()},
      {"vyrOSG::Tree", counted<vyrOSG::Tree>()},
      {"vyrOSG::TreeRenderer", counted<vyrOSG::TreeRenderer>()},
      {"vyrOSG::WireRenderer", counted<vyrOSG::WireRenderer>()},
  };
  const auto found = types.find(type);
  return found != types.end() ? &found->second : nullptr;
}

bool conformance::isGone(int handle) {
  return watches()[static_cast<std::size_t>(handle)]->gone();
}

FieldReader conformance::fieldReader(const std::string& name) {
  using vyrOSG::CameraData;
  using vyrSDK::PickResult;
  static const std::map<std::string, FieldReader> readers = {
      {"vyrSDK.PickResult.distance", [](void* o) { return valueOf(o, &PickResult::distance); }},
      {"vyrSDK.PickResult.worldPoint", [](void* o) { return valueOf(o, &PickResult::worldPoint); }},
      {"vyrSDK.PickResult.localPoint", [](void* o) { return valueOf(o, &PickResult::localPoint); }},
      {"vyrSDK.PickResult.hit", [](void* o) { return valueOf(o, &PickResult::hit); }},
      {"vyrSDK.PickResult.geometry",
       [](void* o) {
         FieldValue value;
         value.isObject = true;
         value.address = static_cast<PickResult*>(o)->geometry.get();
         return value;
       }},
      {"vyrOSG.CameraData.nearClippingPlane", [](void* o) { return valueOf(o, &CameraData::nearClippingPlane); }},
      {"vyrOSG.CameraData.farClippingPlane", [](void* o) { return valueOf(o, &CameraData::farClippingPlane); }},
      {"vyrOSG.CameraData.fieldOfView", [](void* o) { return valueOf(o, &CameraData::fieldOfView); }},
      {"vyrOSG.CameraData.aspectRatio", [](void* o) { return valueOf(o, &CameraData::aspectRatio); }},
      {"vyrOSG.CameraData.valid", [](void* o) { return valueOf(o, &CameraData::valid); }},
      {"vyrOSG.CameraData.eye", [](void* o) { return valueOf(o, &CameraData::eye); }},
      {"vyrOSG.CameraData.center", [](void* o) { return valueOf(o, &CameraData::center); }},
      {"vyrOSG.CameraData.up", [](void* o) { return valueOf(o, &CameraData::up); }},
  };
  const auto found = readers.find(name);
  return found != readers.end() ? found->second : nullptr;
}

namespace {

/// A value, or a counted object that lives as long as the process, as the type that it is given for.
/// @tparam Number distinguishes objects of one type
template <class T, class As = T, int Number = 0>
void* kept() {
  if constexpr (std::is_base_of_v<osg::Referenced, T>) {
    static const osg::ref_ptr<T> object = new T();
    return static_cast<As*>(object.get());
  } else if constexpr (std::is_base_of_v<vyr::Referenced, T>) {
    static const vyr::ref_ptr<T> object = new T();
    return static_cast<As*>(object.get());
  } else {
    static T object;
    return &object;
  }
}

/// An atlas of no surface.
void* pressureAtlas() {
  static const vyr::ref_ptr<vyrOSG::PressureAtlas> atlas = new vyrOSG::PressureAtlas(nullptr);
  return atlas.get();
}

/// A graphics operation that is never run.
class Idle : public osg::GraphicsOperation {
public:
  Idle()
      : osg::Referenced(true)
      , osg::GraphicsOperation("idle", false) {}
  void operator()(osg::GraphicsContext*) override {}
};

/// A loader that is only handed around.
class NoScenes : public vyrIO::CFGSceneLoader {
public:
  bool loadScene(const std::string&, const std::string&, vyrSDK::Simulation*, vyrOSG::ExampleApplication*,
                 vyrOSG::Group*, std::string&) override {
    return false;
  }
};

template <int Number = 0>
void* statistics() {
  static const osg::ref_ptr<osg::Stats> object = new osg::Stats("conformance");
  return object.get();
}

/// Interfaces pass these numbers as objects.
template <GLenum Value, class Which>
void* number() {
  static GLenum value = Value;
  return &value;
}
struct Enumeration;
struct BitField;

/// Interfaces pass this enumeration as an object.
void* shaderType() {
  static osg::Shader::Type type = osg::Shader::FRAGMENT;
  return &type;
}

void* drawnGeode() {
  auto* geode = static_cast<osg::Geode*>(kept<osg::Geode>());
  if (geode->getNumDrawables() == 0) {
    geode->addDrawable(new osg::Geometry());
  }
  return geode;
}

void* heightField() {
  auto* field = static_cast<osg::HeightField*>(kept<osg::HeightField>());
  field->allocate(5, 6);
  return field;
}

} // namespace

void* conformance::givenObject(const std::string& type) {
  static const std::map<std::string, void* (*)()> makers = {
      // clang-format off
      {"GLbitfield", &number<GL_DEPTH_BUFFER_BIT, BitField>},
      {"GLenum", &number<GL_FRONT, Enumeration>},
      {"const osg::DisplaySettings", &kept<osg::DisplaySettings, osg::DisplaySettings, 1>},
      {"const osg::GraphicsContext", &kept<osgViewer::GraphicsWindowEmbedded, osg::GraphicsContext, 1>},
      {"const osg::GraphicsOperation", &kept<Idle, osg::GraphicsOperation, 1>},
      {"const osg::Object", &kept<osg::Material, osg::Object, 1>},
      {"const osg::Stats", &statistics<1>},
      {"const osg::View", &kept<osg::View, osg::View, 1>},
      {"osg::BoundingBox", &kept<osg::BoundingBox>},
      {"osg::BoundingSphere", &kept<osg::BoundingSphere>},
      {"osg::ColorMask", &kept<osg::ColorMask>},
      {"osg::CopyOp", &kept<osg::CopyOp>},
      {"osg::Drawable", &kept<osg::Geometry>},
      {"osg::Geode", &drawnGeode},
      {"osg::HeightField", &heightField},
      {"osg::DisplaySettings", &kept<osg::DisplaySettings>},
      {"osg::GraphicsContext", &kept<osgViewer::GraphicsWindowEmbedded, osg::GraphicsContext>},
      {"osg::GraphicsOperation", &kept<Idle, osg::GraphicsOperation>},
      {"osg::Image", &kept<osg::Image>},
      {"osg::LightSource", &kept<osg::LightSource>},
      {"osg::Matrix", &kept<osg::Matrix>},
      {"osg::Matrixd", &kept<osg::Matrixd>},
      {"osg::Matrixf", &kept<osg::Matrixf>},
      {"osg::NodeVisitor", &kept<osg::NodeVisitor>},
      {"osg::Object", &kept<osg::Material, osg::Object>},
      {"osg::Shader::Type", &shaderType},
      {"osg::State", &kept<osg::State>},
      {"osg::StateAttribute", &kept<osg::Depth>},
      {"osg::Stats", &statistics<>},
      {"osg::TexMat", &kept<osg::TexMat>},
      {"osg::Texture", &kept<osg::Texture2D>},
      {"osg::Texture2D", &kept<osg::Texture2D>},
      {"osg::Vec2", &kept<osg::Vec2f>},
      {"osg::Vec3", &kept<osg::Vec3f>},
      {"osg::Vec4", &kept<osg::Vec4f>},
      {"osg::View", &kept<osg::View>},
      {"osg::Viewport", &kept<osg::Viewport>},
      {"vyrOSG::Constraint1DOFObserverVector", &kept<vyr::Vector<vyr::observer_ptr<vyr::Constraint1DOF>, vyr::ByteAllocator>>},
      {"vyrOSG::PressureAtlas", &pressureAtlas},
      {"osgViewer::Viewer", &kept<osgViewer::Viewer>},
      {"vyrIO::CFGSceneLoader", &kept<NoScenes, vyrIO::CFGSceneLoader>},
      // clang-format on
  };
  const auto found = makers.find(type);
  return found != makers.end() ? found->second() : nullptr;
}
