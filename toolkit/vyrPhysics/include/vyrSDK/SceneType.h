/// Kinds of objects that a scene file knows by name: libraries add theirs.
#pragma once

#include <vyr/Referenced.h>
#include <vyr/ref_ptr.h>
#include <vyrPhysics/export.h>
#include <vyrSDK/Assembly.h>
#include <vyrSDK/SceneRecord.h>
#include <vyrSDK/SceneValue.h>
#include <vyrSDK/StepEventListener.h>

#include <string>
#include <vector>

namespace vyrSDK {

/// Writes references to the parts of the simulation that is being written.
class VYRPHYSICS_EXPORT SceneReferences {
public:
  /// Places in the file's lists, from 0; -1 for null and for what is not in the simulation.
  virtual int indexOf(const vyr::RigidBody* body) const = 0;
  virtual int indexOf(const vyr::Constraint* constraint) const = 0;
  /// Body and place in it; for a free geometry -1 and its place. Empty for what is not in the simulation.
  virtual std::vector<int> placeOf(const vyrCollide::Geometry* geometry) const = 0;
  /// Places of a shape and a material, which enter the file when they are not in it. The default material is -1.
  virtual int indexOf(const vyrCollide::Shape* shape) = 0;
  virtual int indexOf(const vyr::Material* material) = 0;

protected:
  ~SceneReferences() = default;
};

/// Follows references while a file is read; a wrong one is a SceneError. *returns inner*
class VYRPHYSICS_EXPORT SceneParts {
public:
  /// Nullable: null for -1, the world. Also takes a name.
  virtual vyr::RigidBody* bodyAt(const SceneValue& value) const = 0;
  virtual vyr::Constraint* constraintAt(const SceneValue& value) const = 0;
  virtual vyrCollide::Geometry* geometryAt(const SceneValue& value) const = 0;
  virtual vyrCollide::Shape* shapeAt(const SceneValue& value) = 0;
  /// Nullable: null for -1, the default material.
  virtual vyr::Material* materialAt(const SceneValue& value) = 0;

protected:
  ~SceneParts() = default;
};

/// How objects of one class stand in a scene file: step-event listeners in the list "listeners", or assemblies. Each
/// object has the member "type" with the name, and what the type writes.
class VYRPHYSICS_EXPORT SceneType : public vyr::Referenced {
public:
  explicit SceneType(const std::string& name)
      : m_name(name) {}

  const std::string& getName() const { return m_name; }

  /// Whether a listener or an assembly is of this type.
  virtual bool owns(const StepEventListener& listener) const;
  virtual bool owns(const Assembly& assembly) const;

  /// Describes an object of the type; false when it cannot be written.
  virtual bool write(const StepEventListener& listener, SceneReferences& references, SceneRecord& out) const;
  virtual bool write(const Assembly& assembly, SceneReferences& references, SceneRecord& out) const;

  /// Makes an object from its description; an assembly without parts, which the reader adds. *returns new*. Nullable:
  /// the type has no such objects. Mistakes are SceneErrors.
  virtual vyr::ref_ptr<StepEventListener> readListener(const SceneValue& value, SceneParts& parts) const;
  virtual vyr::ref_ptr<Assembly> readAssembly(const SceneValue& value, SceneParts& parts) const;

  /// Gives an object of the type, which is in a simulation, the state of a description that was read without a mistake.
  virtual void restore(StepEventListener& listener, const SceneValue& value, SceneParts& parts) const;
  virtual void restore(Assembly& assembly, const SceneValue& value, SceneParts& parts) const;

  /// Adds a type (*retains*); one of the same name gives way to it.
  static void add(SceneType* type);
  /// Takes a type out: for libraries that may be unloaded.
  static void remove(SceneType* type);
  /// *returns inner*. Nullable: there is no such type.
  static SceneType* find(const std::string& name);
  /// *returns inner*. Nullable: the type that an object is of.
  static SceneType* of(const StepEventListener& listener);
  static SceneType* of(const Assembly& assembly);

protected:
  ~SceneType() override;

private:
  std::string m_name;
};

/// Adds a type for as long as it lives itself: as a static object of a library, for as long as the library is there.
class SceneTypeEntry {
public:
  explicit SceneTypeEntry(SceneType* type)
      : m_type(type) {
    SceneType::add(type);
  }
  ~SceneTypeEntry() { SceneType::remove(m_type.get()); }
  SceneTypeEntry(const SceneTypeEntry&) = delete;
  SceneTypeEntry& operator=(const SceneTypeEntry&) = delete;

private:
  vyr::ref_ptr<SceneType> m_type;
};

} // namespace vyrSDK
