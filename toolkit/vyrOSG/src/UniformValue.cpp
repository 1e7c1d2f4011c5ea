/// From numbers in a script to typed uniforms.
#include "UniformValue.h"

#include <cmath>
#include <cstddef>
#include <vector>

namespace vyrOSG {

using vyrCFG::ConfigValue;

namespace {

// A leaf or a list of leaves as numbers; booleans count as 0 and 1. False: something else stands there.
bool readNumbers(const ConfigValue& value, std::vector<double>& outNumbers) {
  if (value.isNumber() || value.isBoolean()) {
    outNumbers.push_back(value.isBoolean() ? (value.asBoolean() ? 1 : 0) : value.asNumber());
    return true;
  }
  if (!value.isArray())
    return false;
  for (const ConfigValue& element : value.getElements())
    if (element.isArray() || !readNumbers(element, outNumbers))
      return false;
  return true;
}

osg::Uniform::Type guessType(const ConfigValue& value, std::size_t count) {
  const bool isBoolean = value.isBoolean() || (value.isArray() && count > 0 && value.getElements().front().isBoolean());
  switch (count) {
  case 1:
    return isBoolean ? osg::Uniform::BOOL : osg::Uniform::FLOAT;
  case 2:
    return isBoolean ? osg::Uniform::BOOL_VEC2 : osg::Uniform::FLOAT_VEC2;
  case 3:
    return isBoolean ? osg::Uniform::BOOL_VEC3 : osg::Uniform::FLOAT_VEC3;
  case 4:
    return isBoolean ? osg::Uniform::BOOL_VEC4 : osg::Uniform::FLOAT_VEC4;
  case 9:
    return osg::Uniform::FLOAT_MAT3;
  case 16:
    return osg::Uniform::FLOAT_MAT4;
  default:
    return osg::Uniform::UNDEFINED;
  }
}

// Fills the uniform's own array, whose kind follows from its type.
bool fill(osg::Uniform& uniform, const std::vector<double>& numbers) {
  if (osg::FloatArray* floats = uniform.getFloatArray()) {
    for (std::size_t i = 0; i < numbers.size(); ++i)
      (*floats)[i] = static_cast<float>(numbers[i]);
    return true;
  }
  if (osg::DoubleArray* doubles = uniform.getDoubleArray()) {
    for (std::size_t i = 0; i < numbers.size(); ++i)
      (*doubles)[i] = numbers[i];
    return true;
  }
  constexpr double kLargest = 2147483647;
  for (double number : numbers)
    if (number != std::floor(number) || std::abs(number) > kLargest)
      return false;
  if (osg::IntArray* ints = uniform.getIntArray()) {
    for (std::size_t i = 0; i < numbers.size(); ++i)
      (*ints)[i] = static_cast<int>(numbers[i]);
    return true;
  }
  if (osg::UIntArray* unsignedInts = uniform.getUIntArray()) {
    for (std::size_t i = 0; i < numbers.size(); ++i) {
      if (numbers[i] < 0)
        return false;
      (*unsignedInts)[i] = static_cast<unsigned int>(numbers[i]);
    }
    return true;
  }
  return false;
}

} // namespace

osg::ref_ptr<osg::Uniform> makeUniform(const std::string& name, const ConfigValue& value, std::string& outError) {
  const ConfigValue* data = &value;
  osg::Uniform::Type type = osg::Uniform::UNDEFINED;
  if (value.isObject()) {
    const ConfigValue* typeName = value.find("type");
    data = value.find("value");
    if (!typeName || !typeName->isString() || !data) {
      outError = "a uniform written as an object has a \"type\" and a \"value\"";
      return nullptr;
    }
    type = osg::Uniform::getTypeId(typeName->asString());
    if (type == osg::Uniform::UNDEFINED) {
      outError = "there is no uniform type \"" + typeName->asString() + "\"";
      return nullptr;
    }
  }
  std::vector<double> numbers;
  if (!readNumbers(*data, numbers)) {
    outError = "the value of a uniform is made of numbers or booleans";
    return nullptr;
  }
  if (!value.isObject())
    type = guessType(value, numbers.size());
  const std::size_t needed =
      type == osg::Uniform::UNDEFINED ? 0 : static_cast<std::size_t>(osg::Uniform::getTypeNumComponents(type));
  if (needed == 0 || needed != numbers.size()) {
    outError = needed == 0 ? std::to_string(numbers.size()) + " numbers make no uniform"
                           : std::string(osg::Uniform::getTypename(type)) + " takes " + std::to_string(needed) +
                                 " numbers, not " + std::to_string(numbers.size());
    return nullptr;
  }
  osg::ref_ptr<osg::Uniform> uniform = new osg::Uniform(type, name);
  if (!fill(*uniform, numbers)) {
    outError = std::string(osg::Uniform::getTypename(type)) + " does not hold these numbers";
    return nullptr;
  }
  uniform->dirty();
  return uniform;
}

} // namespace vyrOSG
