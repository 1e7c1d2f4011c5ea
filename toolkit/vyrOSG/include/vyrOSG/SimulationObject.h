// Makes a whole simulated object in one call: geometry, rigid body and the node that draws them.
#pragma once

#include <vyrOSG/Group.h>

#include <vyr/AffineMatrix4x4.h>
#include <vyr/RigidBody.h>
#include <vyr/Vec3.h>
#include <vyr/VectorPOD.h>
#include <vyr/VyrString.h>
#include <vyrCollide/Geometry.h>
#include <vyrCollide/Trimesh.h>
#include <vyrSDK/Simulation.h>
#include <vyrSDK/SimulationObject.h>

#include <osg/Node>
#include <osg/ref_ptr>

/// The detail ratio of a visual that is looked at closely. A macro because it belongs to no namespace.
#define DEFAULT_DETAIL_RATIO 1

namespace vyrOSG {

/// A geometry, the body that carries it and the node that draws it; copies share the three parts.
///
/// Common to all create functions: the name goes to geometry, body and node; the transform (m, row vectors) is the
/// body's frame in the world; the body's mass follows from the shape and the density of its material.
/// Nullable: group (nothing is drawn), simulation (nothing is added; the caller adds the body).
/// The flag createVisual = false leaves the node away although there is a group; the flag enableCollisions = false
/// makes a geometry that touches nothing. Sizes that are not positive finite numbers are refused with one Notify line,
/// and an object of three null parts comes back. A file that cannot be read costs one Notify line that names it, and
/// the object comes back with its body alone, which then is not added to the simulation.
class VYROSG_EXPORT SimulationObject : public vyrSDK::SimulationObject {
public:
  using MotionControl = vyr::RigidBody::MotionControl;

  /// Three null parts.
  SimulationObject();

  /// Bundles existing parts (*retains*). Nullable: all three.
  SimulationObject(vyrCollide::Geometry* geometry, vyr::RigidBody* body, osg::Node* node = nullptr);

  SimulationObject(const SimulationObject& other);
  SimulationObject& operator=(const SimulationObject& other);
  ~SimulationObject();

  /// The node that draws the object (*returns inner*). Nullable: null where nothing is drawn.
  osg::Node* getNode() { return node.get(); }

  /// A box; size: full lengths of its edges along its x, y, z (m). Its centre is the body's origin.
  /// sensor = true: contacts are reported but do not push, and the box is drawn translucent.
  static SimulationObject createBox(const vyr::String& name, const vyr::AffineMatrix4x4& transform,
                                    const vyr::Vec3& size, vyrOSG::Group* group, vyrSDK::Simulation* simulation,
                                    MotionControl motion = vyr::RigidBody::DYNAMICS, bool createVisual = true,
                                    bool enableCollisions = true, bool sensor = false);

  /// The endless plane z = 0 of the transform, solid below; a square of 200 m by 200 m is drawn.
  static SimulationObject createPlane(const vyr::String& name, const vyr::AffineMatrix4x4& transform,
                                      vyrOSG::Group* group, vyrSDK::Simulation* simulation = nullptr,
                                      MotionControl motion = vyr::RigidBody::STATIC, bool createVisual = true,
                                      bool enableCollisions = true);

  /// Ground from an image (any format that the scene-graph library reads) or a text file of heights.
  ///
  /// sizeX, sizeY: extents along x and y (m), centred on the body's origin. An image: black lies at minHeight, white
  /// at maxHeight (m), the top row of the image at +y. A text file (.txt, .asc, .csv, .dat): numbers row by row from
  /// -y, each row a line; their least value is brought to minHeight, their greatest to maxHeight; where minHeight
  /// equals maxHeight the numbers are taken as heights in m.
  static SimulationObject createHeightField(const vyr::String& name, const vyr::AffineMatrix4x4& transform,
                                            const vyr::String& fileName, const double& sizeX, const double& sizeY,
                                            const double& minHeight, const double& maxHeight, vyrOSG::Group* group,
                                            vyrSDK::Simulation* simulation = nullptr,
                                            MotionControl motion = vyr::RigidBody::STATIC, bool createVisual = true,
                                            bool enableCollisions = true);

  /// Ground from heights (m): columns * rows values, the height of (column, row) at index row * columns + column.
  /// sizeX, sizeY: extents along x and y (m), centred on the body's origin; heightScale multiplies every height.
  static SimulationObject createHeightField(const vyr::String& name, const vyr::AffineMatrix4x4& transform,
                                            const vyr::VectorPOD<double, vyr::ByteAllocator>& heights,
                                            unsigned long columns, unsigned long rows, double sizeX, double sizeY,
                                            double heightScale, vyrOSG::Group* group,
                                            vyrSDK::Simulation* simulation = nullptr,
                                            MotionControl motion = vyr::RigidBody::STATIC, bool createVisual = true,
                                            bool enableCollisions = true);

  /// A cylinder along its z axis; radius and height in m, its centre is the body's origin. sensor: as in createBox.
  static SimulationObject createCylinder(const vyr::String& name, const vyr::AffineMatrix4x4& transform, double radius,
                                         double height, vyrOSG::Group* group, vyrSDK::Simulation* simulation = nullptr,
                                         MotionControl motion = vyr::RigidBody::DYNAMICS, bool createVisual = true,
                                         bool enableCollisions = true, bool sensor = false);

  /// A capsule along its z axis; radius and height (without the caps) in m, its centre is the body's origin.
  static SimulationObject createCapsule(const vyr::String& name, const vyr::AffineMatrix4x4& transform, double radius,
                                        double height, vyrOSG::Group* group, vyrSDK::Simulation* simulation = nullptr,
                                        MotionControl motion = vyr::RigidBody::DYNAMICS, bool createVisual = true,
                                        bool enableCollisions = true);

  /// A sphere; radius in m.
  static SimulationObject createSphere(const vyr::String& name, const vyr::AffineMatrix4x4& transform, double radius,
                                       vyrOSG::Group* group, vyrSDK::Simulation* simulation = nullptr,
                                       MotionControl motion = vyr::RigidBody::DYNAMICS, bool createVisual = true,
                                       bool enableCollisions = true);

  /// A triangle mesh from a model file that the scene-graph library reads (obj, stl, ply, osgt, ...), lengths in m.
  /// The model itself, with its colours and textures, is what is drawn; GEOMETRY_DATA shows the triangles.
  static SimulationObject createTrimesh(const vyr::String& name, const vyr::AffineMatrix4x4& transform,
                                        const vyr::String& fileName, vyrOSG::Group* group,
                                        vyrSDK::Simulation* simulation = nullptr,
                                        MotionControl motion = vyr::RigidBody::DYNAMICS, bool createVisual = true,
                                        bool enableCollisions = true);

  /// A triangle mesh from a shape (*retains*), which several objects may share. Nullable: mesh (one Notify line).
  static SimulationObject createTrimesh(const vyr::String& name, const vyr::AffineMatrix4x4& transform,
                                        vyrCollide::Trimesh* mesh, vyrOSG::Group* group,
                                        vyrSDK::Simulation* simulation = nullptr,
                                        MotionControl motion = vyr::RigidBody::DYNAMICS, bool createVisual = true,
                                        bool enableCollisions = true);

  /// A triangle mesh from a model file, whose lengths are multiplied by scale.
  static SimulationObject createTrimesh(const vyr::String& name, const vyr::AffineMatrix4x4& transform,
                                        const vyr::String& fileName, double scale, vyrOSG::Group* group,
                                        vyrSDK::Simulation* simulation = nullptr,
                                        MotionControl motion = vyr::RigidBody::DYNAMICS, bool createVisual = true,
                                        bool enableCollisions = true);

  osg::ref_ptr<osg::Node> node; ///< the visual node. Nullable: null where nothing is drawn
};

} // namespace vyrOSG
