/// Reads model files through the scene-graph library's plugins.
#pragma once

#include "FileSearch.h"

#include <osg/Node>
#include <osgDB/Options>

#include <string>

namespace vyrOSG {

/// Where a model is, behind the endings that change it as it is read: "car.obj.2.scale" is found as "car.obj".
/// Nullable: `options`.
FileSearch findModel(const std::string& fileName, const osgDB::Options* options = nullptr);

/// Reads a model of any format that there is a plugin for. Nullable: `options`, the library's own are used then. Null
/// where that fails, `outProblem` says why then; what plugins complain about in a model that can be read becomes
/// warnings.
osg::ref_ptr<osg::Node> readModelNode(const std::string& fileName, const osgDB::Options* options,
                                      std::string& outProblem);

} // namespace vyrOSG
