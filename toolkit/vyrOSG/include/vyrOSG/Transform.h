// A transform node that takes the toolkit's own matrices.
#pragma once

#include <vyrOSG/Node.h>

#include <vyr/AffineMatrix4x4.h>
#include <vyr/Vec3.h>

#include <osg/MatrixTransform>

namespace vyrOSG {

/// Places its children: they are scaled first, then moved by the matrix.
class VYROSG_EXPORT Transform : public osg::MatrixTransform {
public:
  Transform() = default;

  /// Names the transform.
  void setName(const std::string& name) override;
  using osg::MatrixTransform::setName;

  /// Appends a child (*retains*). Nullable: child (false).
  bool addChild(osg::Node* child) override;
  /// Appends a child (*retains*). Nullable: child (false).
  bool addChild(vyrOSG::Node* child);

  /// Sets position (m) and rotation, row vectors; the scale that setScale gave stays.
  void setMatrix(const vyr::AffineMatrix4x4& matrix);
  using osg::MatrixTransform::setMatrix;

  /// Scales the children along their own x, y and z; default (1, 1, 1). Position and rotation stay.
  /// A scale that is zero or not finite is refused with one Notify line.
  void setScale(const vyr::Vec3& scale);

  /// The scale that was set last.
  const vyr::Vec3& getScale() const { return m_scale; }

protected:
  ~Transform() override = default;

private:
  vyr::Vec3 m_scale{1, 1, 1};
};

} // namespace vyrOSG
