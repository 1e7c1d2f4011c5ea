// Combines a toolkit matrix with a scale of its own.
#include <vyrOSG/Transform.h>

#include <vyrOSG/Conversions.h>
#include <vyrOSG/SceneLoops.h>

#include <vyr/Notify.h>

#include <cmath>

namespace vyrOSG {

namespace {

/// The matrix with its three axis rows brought to the lengths of a scale.
osg::Matrixd withScale(osg::Matrixd matrix, const vyr::Vec3& scale) {
  for (int row = 0; row < 3; ++row) {
    osg::Vec3d axis(matrix(row, 0), matrix(row, 1), matrix(row, 2));
    axis.normalize();
    axis *= scale[row];
    for (int column = 0; column < 3; ++column)
      matrix(row, column) = axis[column];
  }
  return matrix;
}

} // namespace

void Transform::setName(const std::string& name) {
  osg::MatrixTransform::setName(name);
}

bool Transform::addChild(osg::Node* child) {
  return !wouldLoop(this, child) && osg::MatrixTransform::addChild(child);
}

bool Transform::addChild(vyrOSG::Node* child) {
  return !wouldLoop(this, child) && osg::MatrixTransform::addChild(child);
}

void Transform::setMatrix(const vyr::AffineMatrix4x4& matrix) {
  osg::MatrixTransform::setMatrix(osg::Matrixd::scale(toOsg(m_scale)) * toOsg(matrix));
}

void Transform::setScale(const vyr::Vec3& scale) {
  for (int i = 0; i < 3; ++i) {
    if (!std::isfinite(scale[i]) || scale[i] == 0) {
      VYR_NOTIFY(vyr::NOTIFY_ERROR) << "vyrOSG::Transform::setScale: the scale (" << scale[0] << ", " << scale[1]
                                    << ", " << scale[2] << ") of '" << getName() << "' is zero or not finite";
      return;
    }
  }
  m_scale = scale;
  osg::MatrixTransform::setMatrix(withScale(getMatrix(), m_scale));
}

} // namespace vyrOSG
