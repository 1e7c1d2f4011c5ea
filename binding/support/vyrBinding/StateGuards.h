/// Guards of the scene-graph library's state classes, which trust texture units, attributes and element indices.
#pragma once

#include <vyrBinding/Guards.h>

#include <vyr/Notify.h>

#include <osg/Uniform>

namespace osg {
class StateAttribute;
class StateSet;
} // namespace osg

namespace vyrBinding {
namespace guards {

/// The library keeps a list entry for every unit up to the one that is named. A negative number arrives as a huge one.
constexpr unsigned int kLastTextureUnit = 64;

inline bool isTextureUnit(const char* function, unsigned int unit) {
  if (unit <= kLastTextureUnit)
    return true;
  VYR_NOTIFY(vyr::NOTIFY_ERROR) << function << ": texture unit " << static_cast<int>(unit) << " is not from 0 to "
                                << kLastTextureUnit;
  return false;
}

inline bool setTextureMode(osg::StateSet&, unsigned int unit, unsigned int, unsigned int) {
  return isTextureUnit("setTextureMode", unit);
}
inline bool removeTextureMode(osg::StateSet&, unsigned int unit, unsigned int) {
  return isTextureUnit("removeTextureMode", unit);
}
inline bool getTextureMode(const osg::StateSet&, unsigned int unit, unsigned int) {
  return isTextureUnit("getTextureMode", unit);
}
inline bool setTextureAttribute(osg::StateSet&, unsigned int unit, osg::StateAttribute*, unsigned int) {
  return isTextureUnit("setTextureAttribute", unit);
}
inline bool setTextureAttributeAndModes(osg::StateSet&, unsigned int unit, osg::StateAttribute*, unsigned int) {
  return isTextureUnit("setTextureAttributeAndModes", unit);
}
/// Of both overloads: by type and by attribute.
template <class Which>
bool removeTextureAttribute(osg::StateSet&, unsigned int unit, Which) {
  return isTextureUnit("removeTextureAttribute", unit);
}
template <class Type>
bool getTextureAttribute(osg::StateSet&, unsigned int unit, Type) {
  return isTextureUnit("getTextureAttribute", unit);
}

inline bool setAssociatedModes(osg::StateSet&, const osg::StateAttribute* attribute, unsigned int) {
  return attribute != nullptr;
}
inline bool setAssociatedTextureModes(osg::StateSet&, unsigned int unit, const osg::StateAttribute* attribute,
                                      unsigned int) {
  return attribute != nullptr && isTextureUnit("setAssociatedTextureModes", unit);
}

} // namespace guards

/// Compares the data of uniforms as the library does, those of another type or count by that.
inline int compareData(const osg::Uniform* self, const osg::Uniform& other) {
  if (self->getType() != other.getType())
    return self->getType() < other.getType() ? -1 : 1;
  if (self->getNumElements() != other.getNumElements())
    return self->getNumElements() < other.getNumElements() ? -1 : 1;
  return self->compareData(other);
}

template <>
struct ElementCount<osg::Matrix2> {
  static constexpr long kValue = 4;
};
template <>
struct ElementCount<osg::Matrix3> {
  static constexpr long kValue = 9;
};

} // namespace vyrBinding
