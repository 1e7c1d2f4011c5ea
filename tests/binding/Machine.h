/// A small library whose binding exercises every feature of the generator, also those that no module uses yet.
#pragma once

#include <osg/Referenced>
#include <osg/Vec3f>
#include <vyr/Referenced.h>
#include <vyr/VyrString.h>
#include <vyr/observer_ptr.h>
#include <vyr/ref_ptr.h>

#include <cstddef>
#include <string>

namespace machine {

/// Counts the living objects of a class.
template <class T>
struct Census {
  Census() { ++s_alive; }
  Census(const Census&) { ++s_alive; }
  Census& operator=(const Census&) = default;
  ~Census() { --s_alive; }
  static inline int s_alive = 0;
};

enum Mode { OFF = 0, ON = 1, AUTO = 7 };

inline constexpr int LIMIT = 12;

/// A plain value that Lua deletes.
class Value {
public:
  Value() = default;
  explicit Value(double start)
      : number(start) {}
  static int alive() { return Census<Value>::s_alive; }
  static Value* make(double start) { return new Value(start); }
  Value copy() const { return *this; }
  bool operator<(const Value& other) const { return number < other.number; }
  bool operator==(const Value& other) const { return number == other.number; }
  double get() const { return number; }
  double get(double factor) const { return number * factor; }
  double number = 0;

private:
  Census<Value> m_census;
};

/// The toolkit's kind of counted object.
class Part : public vyr::Referenced {
public:
  static int alive() { return Census<Part>::s_alive; }
  int count() const { return getReferenceCount(); }
  vyr::String name;

protected:
  ~Part() override = default;

private:
  Census<Part> m_census;
};

/// The scene-graph library's kind of counted object, with a protected destructor like all of its own.
class Item : public osg::Referenced {
public:
  static int alive() { return Census<Item>::s_alive; }
  int count() const { return referenceCount(); }

protected:
  ~Item() override = default;

private:
  Census<Item> m_census;
};

/// Registered without a collector in the default mode.
class Loose : public osg::Referenced {
public:
  static int alive() { return Census<Loose>::s_alive; }

protected:
  ~Loose() override = default;

private:
  Census<Loose> m_census;
};

/// A type whose name is declared and that is no class of the binding.
struct Opaque {};

/// Something else that a vector converts to.
struct Narrow {
  float x = 0;
};

struct Vector {
  Vector() = default;
  Vector(double x, double y, double z)
      : _v{x, y, z} {}
  double _v[3] = {0, 0, 0};
  double& operator[](int index) { return _v[index]; }
  double operator[](int index) const { return _v[index]; }
  operator Narrow() const {
    Narrow narrow;
    narrow.x = static_cast<float>(_v[0]);
    return narrow;
  }
};

/// Holds things in every way in which a field can be bound.
class Assembly {
public:
  Assembly()
      : serial(41) {}
  class Slot {
  public:
    int index = 3;
  };
  static const unsigned CAPACITY = 64;

  Vector origin;
  bool enabled = false;
  int count = 0;
  Mode mode = OFF;
  std::string label;
  Part* part = nullptr;
  vyr::observer_ptr<Part> watched;
  vyr::ref_ptr<Part> held;
  double serial;

  void hold(Part* object) { held = object; }
  Vector& getOrigin() { return origin; }
  const Vector& getOrigin() const { return origin; }
  Slot slot() const { return Slot(); }
  vyr::ref_ptr<Part> heldPart() const { return held; }
  int getChild(unsigned int index) const { return static_cast<int>(index) + 100; }
  unsigned int getNumChildren() const { return 2; }
  void setDown(bool) {}
  const Opaque& getOpaque() const { return m_opaque; }

  static int alive() { return Census<Assembly>::s_alive; }

private:
  Opaque m_opaque;
  Census<Assembly> m_census;
};

inline int toInt(int value) {
  return value;
}
inline unsigned int toUnsigned(unsigned int value) {
  return value;
}
inline std::size_t toSize(std::size_t value) {
  return value;
}
inline short toShort(short value) {
  return value;
}
inline float toFloat(float value) {
  return value;
}
inline Mode toMode(Mode value) {
  return value;
}

inline void swapNumbers(double& a, double& b) {
  const double old = a;
  a = b;
  b = old;
}
inline int sum(const double& a, const int& b) {
  return static_cast<int>(a) + b;
}
inline void flip(bool& value) {
  value = !value;
}
inline bool extend(std::string& text, const vyr::String& tail) {
  text += tail;
  return text.size() > 3;
}
inline std::string join(std::string a, const char* b) {
  return a + "/" + b;
}
inline const char* nothing() {
  return nullptr;
}
inline double scaled(double value, double factor = 2.5, bool negate = false, const std::string& = "") {
  return negate ? -value * factor : value * factor;
}
inline bool isNull(const Part* part = nullptr) {
  return part == nullptr;
}
inline double byValue(Value value) {
  return value.number;
}
inline double read(const Value& value) {
  return value.number;
}
inline double moved(double x, const Vector& by = Vector(1, 0, 0)) {
  return x + by._v[0];
}
inline int which(const Opaque&) {
  return 0;
}
inline int which(const Value&) {
  return 1;
}
inline const Value makeConst() {
  return Value(5);
}

} // namespace machine
