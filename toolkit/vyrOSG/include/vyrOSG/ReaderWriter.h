/// Loads models into the scene graph and scenes into a simulation.
#pragma once

#include <vyrOSG/export.h>

#include <osgDB/Options>

#include <string>

namespace osg {
class Node;
}

namespace vyrSDK {
class Assembly;
class Simulation;
} // namespace vyrSDK

namespace vyrOSG {

class ExampleApplication;
class Group;

/// What `readFile` takes over from a file; bits to be added.
enum ReadMask : unsigned long {
  READ_BODIES = 1,      ///< bodies with their geometries and materials
  READ_SETTINGS = 2,    ///< gravity and time step, in place of the simulation's own
  READ_CONSTRAINTS = 4, ///< constraints
  CREATE_VISUALS = 8    ///< a visual for each body that was read
};

/// Reads a model file of any format that the scene-graph library has a reader for; found on its file path. With
/// `useCache` a file that is still in use is not read again: everyone gets the same node. *returns new* without the
/// cache, else *returns inner* of the cache. Nullable: nothing was read, and one error line names the file and every
/// path tried.
VYROSG_EXPORT osg::Node* readNodeFile(const std::string& fileName, bool useCache = true);

/// As above with reader options; *borrows* them. Nullable: `options`, the registry's own are used then.
VYROSG_EXPORT osg::Node* readNodeFile(const std::string& fileName, const osgDB::Options* options, bool useCache = true);

/// Reads a file into a simulation. A scene file (extension "json", as `vyrSDK::Simulation` writes it) adds its bodies
/// and constraints, with the looks in the file; into an empty simulation, with READ_SETTINGS and without assembly, it
/// brings clock and contacts too, so that the simulation goes on as the written one. Any model file becomes one static
/// body with a triangle mesh, named after the file. `root`: visuals are added below it. Nullable: none are made.
/// `assembly`: gets everything that was read. Nullable: everything goes into the simulation itself. `application`: its
/// camera's home is moved so that what was read is in view. Nullable: no camera is moved. `detailRatio`: fineness of
/// round visuals, 0..1. `createAxes`: draws each body's frame. `motionControl`: a `vyr::RigidBody::MotionControl`
/// forced on every body read, -1 for each body's own. `mask`: a sum of `ReadMask` values. Failure (no simulation, no
/// such file, nothing in it that can be read): false, one error line, simulation unchanged.
VYROSG_EXPORT bool readFile(const std::string& fileName, vyrSDK::Simulation* simulation, vyrOSG::Group* root,
                            vyrSDK::Assembly* assembly = nullptr, vyrOSG::ExampleApplication* application = nullptr,
                            double detailRatio = 0.35, bool createAxes = false, int motionControl = -1,
                            unsigned long mask = READ_BODIES | READ_CONSTRAINTS | CREATE_VISUALS);

} // namespace vyrOSG
