/// References, deaths and fields of objects that are known by their registered names, read without any binding.
#pragma once

#include <string>

namespace conformance {

/// What can be asked of an object of a counted class, given its address as the binding hands it about.
struct CountedType {
  int (*count)(void* object);
  void (*hold)(void* object);
  void (*letGo)(void* object);
  /// Drops a reference and lets the object live on.
  void (*forget)(void* object);
  /// Begins to watch for the object's end; gives a handle for isGone.
  int (*observe)(void* object);
};

/// Nullable: the type is not counted or unknown.
const CountedType* countedType(const std::string& type);

/// Whether the object of the handle has been destroyed.
bool isGone(int handle);

/// What stands in a field: a number, a boolean or the address of an object.
struct FieldValue {
  double number = 0;
  bool isBoolean = false;
  bool isObject = false;
  void* address = nullptr;
};
using FieldReader = FieldValue (*)(void* object);

/// The reader of the field with the Lua name "vyrSDK.PickResult.hit". Nullable: no such field.
FieldReader fieldReader(const std::string& name);

/// A living object of a type that scripts cannot make, with the name that it is pushed under; the same one each time.
/// Nullable: there is none. *returns inner*
void* givenObject(const std::string& type);

} // namespace conformance
