-- Loading of model files and of whole simulations.
types {
  "osgDB::ReaderWriter::Options", "vyr::Vec3", "vyr::Vec2d", "vyr::Vec2f", "vyr::Constraint", "vyrOSG::Group",
  "vyr::Vec2", "vyr::Quat", "vyr::FrictionModel", "vyr::Vec4f", "vyr::Vec4", "osg::Node", "vyr::AffineMatrix4x4",
  "vyr::Vec4d", "vyr::SPDMatrix3x3", "vyrSDK::Assembly", "vyr::Vec3f", "vyrSDK::Simulation",
  "vyrOSG::ExampleApplication", "vyr::Vec3d",
}
shared()

namespace "vyrOSG"
row { "osg::Node* readNodeFile(const std::string& file, bool flag = true)", with = "'absent.stl', false", gives = "nil, 'absent.stl'" }
row { "osg::Node* readNodeFile(const std::string& file, const osgDB::ReaderWriter::Options* options, bool flag = true)",
  reaches = "osg::Node* vyrOSG::readNodeFile(const std::string&, const osgDB::Options*, bool)", with = "'absent.stl', nil, false", gives = "nil, 'absent.stl'" }
row { "bool readFile(const std::string& file, vyrSDK::Simulation* simulation, vyrOSG::Group* group, vyrSDK::Assembly* assembly = nullptr,"
  .. " vyrOSG::ExampleApplication* application = nullptr, double a = 0.35, bool b = false, int c = -1, unsigned long d = 13)",
  with = "'absent.vyrOSG', simulation, vgroup, assembly, app, 0.45, true, -2.7, 2^40 + 0.5", gives = "false, 'absent.vyrOSG'" }
