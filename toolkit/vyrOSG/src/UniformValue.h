/// Makes shader uniforms from values of a configuration script.
#pragma once

#include <vyrCFG/ConfigValue.h>

#include <osg/Uniform>
#include <osg/ref_ptr>

#include <string>

namespace vyrOSG {

/// A number gives a float, a boolean a bool, a list of 2, 3 or 4 numbers a vector, of 9 or 16 a matrix, column after
/// column; an object {"type": name, "value": value} any type by its GLSL name. Nullable: the value fits no type;
/// `outError` says why then.
osg::ref_ptr<osg::Uniform> makeUniform(const std::string& name, const vyrCFG::ConfigValue& value,
                                       std::string& outError);

} // namespace vyrOSG
