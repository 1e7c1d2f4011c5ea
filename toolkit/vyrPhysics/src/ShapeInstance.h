/// The collision engine's object for the shape of one geometry.
#pragma once

#include <BulletCollision/CollisionShapes/btCollisionShape.h>

#include <memory>

namespace vyrCollide {

/// Owns the engine's shape. Derived classes add what the shape points into.
class ShapeInstance {
public:
  explicit ShapeInstance(std::unique_ptr<btCollisionShape> shape)
      : m_shape(std::move(shape)) {}
  virtual ~ShapeInstance() = default;
  ShapeInstance(const ShapeInstance&) = delete;
  ShapeInstance& operator=(const ShapeInstance&) = delete;

  btCollisionShape* getShape() const { return m_shape.get(); }

protected:
  std::unique_ptr<btCollisionShape> m_shape;
};

} // namespace vyrCollide
