// The free functions that make, find and decorate visuals.
#pragma once

#include <vyrOSG/GeometryNode.h>
#include <vyrOSG/Group.h>
#include <vyrOSG/OSGSceneRoot.h>
#include <vyrOSG/ParticleSystemDrawable.h>

#include <vyr/AffineMatrix4x4.h>
#include <vyr/Vec3.h>
#include <vyr/Vec4.h>
#include <vyrRender/Color.h>

#include <osg/Geode>
#include <osg/Group>
#include <osg/Node>
#include <osg/Texture2D>
#include <osgText/Text>

#include <cstddef>
#include <string>

namespace vyr {
class Constraint;
class Frame;
class ParticleSystem;
class RigidBody;
class RigidBodyEmitter;
} // namespace vyr
namespace vyrCollide {
class Geometry;
}
namespace vyrSDK {
class Assembly;
class Simulation;
} // namespace vyrSDK
namespace vyrUtil {
class SimpleCar;
}

namespace vyrOSG {

/// What an image on a surface means. The number is also the texture unit that the image takes.
enum TextureMode {
  DIFFUSE_TEXTURE = 0,       ///< multiplies the surface's colour
  SHADOW_TEXTURE = 1,        ///< baked light: multiplies the light that reaches the surface
  SHADOW_JITTER_TEXTURE = 2, ///< noise in red and green that softens the edges of the shadow texture
  NORMALMAP_TEXTURE = 3,     ///< normals in tangent space, (0.5, 0.5, 1) pointing straight out
  HEIGHTMAP_TEXTURE = 4,     ///< depth of the surface (white is high): shifts the other maps with the view
  SPECULARMAP_TEXTURE = 5,   ///< multiplies the highlights
  SPHEREMAP_TEXTURE = 6      ///< the surroundings as a mirrored ball shows them
};

/// The node that draws a geometry under a group (*returns inner*). Nullable: both; null where it is not drawn there.
VYROSG_EXPORT vyrOSG::GeometryNode* findGeometryNode(const vyrCollide::Geometry* geometry, osg::Group* group);

/// Lets a node mirror a cube of six images: path + "posx", "negx", ... "negz" + imageType, or, if path ends with '/',
/// the files of these names in that folder. Nullable: node. False, and one Notify line, if an image is missing.
VYROSG_EXPORT bool setCubeMapTexture(osg::Node* node, const std::string& path, const std::string& imageType = ".dds");

/// How much of the mirrored surroundings (cube map, sphere map) is mixed in: 0 none, 1 a mirror; default 0.5.
/// A coefficient outside [0, 1] is brought to its border, NaN is refused with one Notify line. Nullable: node.
VYROSG_EXPORT void setEnvMapReflectionCoefficient(osg::Node* node, float coefficient);

/// Puts an image on the visual of a geometry under a group. repeat: the image tiles, else its border is stretched.
/// Nullable: geometry, group. False if the geometry is not drawn there, or, with one Notify line that names every path
/// that was tried, if the image cannot be read.
VYROSG_EXPORT bool setTexture(const vyrCollide::Geometry* geometry, vyrOSG::Group* group, const std::string& imagePath,
                              bool repeat = false, vyrOSG::TextureMode mode = DIFFUSE_TEXTURE);

/// Puts an image on the visuals of all geometries of a body. False if none of them is drawn under the group.
VYROSG_EXPORT bool setTexture(const vyr::RigidBody* body, vyrOSG::Group* group, const std::string& imagePath,
                              bool repeat = false, vyrOSG::TextureMode mode = DIFFUSE_TEXTURE);

/// Puts an image on a node and all below it; it is tiled scaleU and scaleV times along its two directions.
VYROSG_EXPORT bool setTexture(osg::Node* node, const std::string& imagePath, bool repeat = false,
                              vyrOSG::TextureMode mode = DIFFUSE_TEXTURE, float scaleU = 1, float scaleV = 1);

/// Puts a texture (*retains*) on a node and all below it. Nullable: node, texture (false).
VYROSG_EXPORT bool setTexture(osg::Node* node, osg::Texture2D* texture, bool repeat = false,
                              vyrOSG::TextureMode mode = DIFFUSE_TEXTURE, float scaleU = 1, float scaleV = 1);

/// Writes a text beside a geometry's visual; it moves with the geometry and faces the viewer.
/// localPosition: in the geometry's frame (m); size: height of a letter (m). False if the geometry is not drawn there.
VYROSG_EXPORT bool addText(const vyrCollide::Geometry* geometry, vyrOSG::Group* group, const std::string& text,
                           const vyr::Vec3& localPosition, const vyr::Vec4& color, double size);

/// Gives a node a new integer shader uniform, in place of one of that name. Nullable: node (nothing changes).
VYROSG_EXPORT void setUniformInt(osg::Node* node, const std::string& name, int value);

/// Gives a node a new single-precision shader uniform, in place of one of that name. Nullable: node (nothing changes).
VYROSG_EXPORT void setUniformFloat(osg::Node* node, const std::string& name, float value);

/// The text that addText added as number index, from 0 (*returns inner*). Nullable: null where there is none.
VYROSG_EXPORT osgText::Text* findText(const vyrCollide::Geometry* geometry, vyrOSG::Group* group, size_t index = 0);

/// Draws a grid of resolutionU by resolutionV cells from a corner along two edges (m). False for a null group, no cells
/// or numbers that are not finite.
VYROSG_EXPORT bool createGrid(unsigned int resolutionU, unsigned int resolutionV, const vyr::Vec3& corner,
                              const vyr::Vec3& edgeU, const vyr::Vec3& edgeV, osg::Group* group);

/// Draws a frame's axes, red x, green y, blue z, on the visual of a geometry; color (0, 0, 0, 0) keeps these three,
/// any other one paints all axes. scale: length of an axis (m). Nullable: geometry (axes in the world), frame (the
/// geometry's own), group (nothing is drawn).
VYROSG_EXPORT void createAxes(vyrCollide::Geometry* geometry, vyr::Frame* frame, osg::Group* group, float scale = 1,
                              const vyr::Vec4& color = vyr::Vec4(0, 0, 0, 0));

/// As above, with the frame given by its matrix in the geometry's frame.
VYROSG_EXPORT void createAxes(vyrCollide::Geometry* geometry, vyr::AffineMatrix4x4 relativeTransform, osg::Group* group,
                              float scale = 1, const vyr::Vec4& color = vyr::Vec4(0, 0, 0, 0));

/// Draws axes that follow a body. Nullable: body (axes in the world), frame (the body's own), group.
VYROSG_EXPORT void createAxes(vyr::RigidBody* body, vyr::Frame* frame, osg::Group* group, float scale = 1,
                              const vyr::Vec4& color = vyr::Vec4(0, 0, 0, 0));

/// As above, with the frame given by its matrix in the body's frame.
VYROSG_EXPORT void createAxes(vyr::RigidBody* body, vyr::AffineMatrix4x4 relativeTransform, osg::Group* group,
                              float scale = 1, const vyr::Vec4& color = vyr::Vec4(0, 0, 0, 0));

/// Draws the axes of a constraint's frame, following its first body. Nullable: constraint, group (nothing is drawn).
VYROSG_EXPORT void createAxes(vyr::Constraint* constraint, osg::Group* group, float scale = 1,
                              const vyr::Vec4& color = vyr::Vec4(0, 0, 0, 0));

/// Colours a node and all below it; red, green, blue, alpha in [0, 1]. What is added below afterwards keeps its own
/// colour. A colour with a part that is not finite is refused with one Notify line. Nullable: node.
VYROSG_EXPORT void setDiffuseColor(osg::Node* node, const vyr::Vec4& color);

/// Colours the visuals of a body's geometries under a group. Nullable: body, group.
VYROSG_EXPORT void setDiffuseColor(vyr::RigidBody* body, const vyr::Vec4& color, vyrOSG::Group* group);

/// Colours the visual of a geometry under a group. Nullable: geometry, group.
VYROSG_EXPORT void setDiffuseColor(vyrCollide::Geometry* geometry, const vyr::Vec4& color, vyrOSG::Group* group);

/// The colour of highlights. Nullable: node.
VYROSG_EXPORT void setSpecularColor(osg::Node* node, const vyr::Vec4& color);

/// How small highlights are: 0 (wide) to 128 (a point), brought into that range. NaN is refused. Nullable: node.
VYROSG_EXPORT void setShininess(osg::Node* node, float shininess);

/// The colour under ambient light. Nullable: node.
VYROSG_EXPORT void setAmbientColor(osg::Node* node, const vyr::Vec4& color);

/// How opaque a node and all below it are: 0 (invisible) to 1, brought into that range. NaN is refused. Nullable: node.
VYROSG_EXPORT void setAlpha(osg::Node* node, float alpha);

/// Draws a geometry under a group (*returns inner*: the group retains it). What stands still is grey, what moves takes
/// the colours of a palette in turn. detailRatio: fineness of round surfaces, 0 (coarse) to 1 and above. createAxes:
/// draws its frame too. evenIfSensor: sensors are drawn, translucent, else they are left out. Nullable: geometry,
/// group, result (nothing is drawn).
VYROSG_EXPORT vyrOSG::GeometryNode* createVisual(const vyrCollide::Geometry* geometry, vyrOSG::Group* group,
                                                 float detailRatio = 0.3f, bool createAxes = false,
                                                 bool evenIfSensor = false);

/// Draws the geometries of a body in one group of the body's name under a group (*returns inner*). createAxes: draws
/// the body's frame too. Nullable: body, group, result.
VYROSG_EXPORT vyrOSG::Group* createVisual(vyr::RigidBody* body, vyrOSG::Group* group, float detailRatio = 0.3f,
                                          bool createAxes = false);

/// Draws the particles of a system (*returns inner*). Nullable: system, group, result.
VYROSG_EXPORT osg::Geode*
createVisual(vyr::ParticleSystem* particleSystem, vyrOSG::Group* group,
             ParticleSystemDrawable::ParticleRenderingMode renderingMode = ParticleSystemDrawable::SPRITES,
             ParticleSystemDrawable::ParticleShaderMode shaderMode = ParticleSystemDrawable::ROTATION_SPRITES);

/// Draws every body that an emitter has made and will make (*returns inner*). Nullable: emitter, group, result.
VYROSG_EXPORT osg::Group* createVisual(vyr::RigidBodyEmitter* emitter, vyrOSG::Group* group);

/// The first particle drawable under a group (*returns inner*). Nullable: group, result.
VYROSG_EXPORT vyrOSG::ParticleSystemDrawable* findParticleSystemDrawable(osg::Group* group);

/// Draws a line between each two particles that touch, blue for minForce (N) and below over green to red for maxForce
/// and above (*returns inner*). Nullable: system, group, result.
VYROSG_EXPORT osg::Geode* createParticleContactGraph(vyr::ParticleSystem* particleSystem, vyrOSG::Group* group,
                                                     double minForce, double maxForce);

/// Draws the paths of the particles: one point every timeInterval (s), 0 meaning every step, the latest maxPoints of
/// them, 0 meaning all (*returns inner*). The paths end with their particles.
/// Nullable: system, group, result.
VYROSG_EXPORT osg::Geode* createParticleTrajectoriesVisual(vyr::ParticleSystem* particleSystem, vyrOSG::Group* group,
                                                           double timeInterval, size_t maxPoints);

/// Draws the paths of all dynamic bodies of a simulation, as createParticleTrajectoriesVisual does for particles.
VYROSG_EXPORT osg::Geode* createRigidBodyTrajectoriesVisual(vyrSDK::Simulation* simulation, vyrOSG::Group* group,
                                                            double timeInterval, size_t maxPoints,
                                                            const vyr::Vec4& color = vyr::Vec4(0.5, 0.5, 0.5, 1));

/// Draws a car: chassis and wheels with spokes that show their turning (*returns inner*). Nullable: car, group, result.
VYROSG_EXPORT vyrOSG::Group* createVisual(vyrUtil::SimpleCar* car, vyrOSG::Group* group, float detailRatio = 0.3f);

/// Draws every body and free geometry of an assembly, and of the assemblies in it (*returns inner*).
/// Nullable: assembly, group, result.
VYROSG_EXPORT vyrOSG::Group* createVisual(vyrSDK::Assembly* assembly, vyrOSG::Group* group, float detailRatio = 0.3f,
                                          bool createAxes = false);

/// Lets light number lightNumber (0 to 7) fall on a node and all below it, or not. Nullable: node. A number outside
/// that range costs one Notify line.
VYROSG_EXPORT void setEnableLight(bool enable, int lightNumber, osg::Node* node);

/// Draws a node and all below it as wires, whatever they say themselves. Nullable: node. False if there is none.
VYROSG_EXPORT bool forceWireFrameModeOn(osg::Node* node);

/// Builds a car from a box for the chassis and four wheels, adds it to a simulation (*returns inner*) or, where that is
/// null, hands it to the caller (*returns new*), and draws it. size: full lengths of the chassis along forward x, left
/// y, up z (m); mass: of the chassis (kg); createVisual: draws the car. Nullable: simulation, group, result (a size or
/// mass that is no positive number: one Notify line).
VYROSG_EXPORT vyrUtil::SimpleCar* createSimpleBoxCar(const vyr::Vec3& size, double mass, vyrSDK::Simulation* simulation,
                                                     vyrOSG::Group* group, bool createVisual = true);

} // namespace vyrOSG
