// Moves a transform by an update callback.
#include "Follow.h"

#include <osg/Callback>
#include <osg/NodeVisitor>

namespace vyrOSG {

namespace {

class FollowCallback : public osg::NodeCallback {
public:
  explicit FollowCallback(const std::function<bool(osg::Matrixd&)>& matrix)
      : m_matrix(matrix) {}

  void operator()(osg::Node* node, osg::NodeVisitor* visitor) override {
    follow(*node->asTransform()->asMatrixTransform());
    traverse(node, visitor);
  }

  void follow(osg::MatrixTransform& transform) {
    osg::Matrixd matrix;
    if (!m_matrix(matrix))
      transform.removeChildren(0, transform.getNumChildren());
    else if (matrix != transform.getMatrix())
      transform.setMatrix(matrix);
  }

private:
  std::function<bool(osg::Matrixd&)> m_matrix;
};

} // namespace

osg::ref_ptr<osg::MatrixTransform> makeFollower(const std::function<bool(osg::Matrixd&)>& matrix) {
  osg::ref_ptr<osg::MatrixTransform> transform = new osg::MatrixTransform;
  osg::ref_ptr<FollowCallback> callback = new FollowCallback(matrix);
  callback->follow(*transform);
  transform->setUpdateCallback(callback);
  return transform;
}

} // namespace vyrOSG
