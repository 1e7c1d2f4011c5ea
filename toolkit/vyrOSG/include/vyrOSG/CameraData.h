// A plain record of where a camera stands and what it sees.
#pragma once

#include <vyrOSG/export.h>

#include <vyr/Vec3.h>

namespace osg {
class Camera;
}
namespace osgViewer {
class Viewer;
}

namespace vyrOSG {

/// Eye, centre and up vector (m, world frame), field of view and clipping planes of a perspective camera.
struct VYROSG_EXPORT CameraData {
  /// No camera: `valid` is false, the numbers are those of a camera at the origin that looks along y.
  CameraData();

  /// Reads @p camera (*borrows*). Nullable: null, or a camera without perspective, gives a record that is not valid.
  /// The centre lies `lookDistance` = 1 m before the eye: a view matrix does not tell how far away the subject is.
  explicit CameraData(const osg::Camera* camera);

  /// Reads the viewer's master camera (*borrows*); the centre is that of its manipulator where it has one. Nullable.
  explicit CameraData(const osgViewer::Viewer* viewer);

  /// Gives @p camera this view and perspective (*borrows*). Nullable. A record that is not valid changes nothing.
  void applyTo(osg::Camera* camera) const;

  double nearClippingPlane; ///< m, positive.
  double farClippingPlane;  ///< m, beyond the near plane.
  double fieldOfView;       ///< Vertical, in degrees as the camera's own perspective functions take it.
  double aspectRatio;       ///< Width by height.
  bool valid;               ///< Whether the record was read from a camera.
  vyr::Vec3 eye;
  vyr::Vec3 center;
  vyr::Vec3 up;
};

} // namespace vyrOSG
