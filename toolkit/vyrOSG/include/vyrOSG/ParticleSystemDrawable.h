// Draws the particles of a particle system, each as a shaded sprite or as a ball of triangles.
#pragma once

#include <vyrOSG/export.h>

#include <vyr/observer_ptr.h>

#include <osg/Geometry>

namespace vyr {
class ParticleSystem;
}

namespace vyrOSG {

/// Draws the particles as the system has them at each update traversal; nothing once the system is destroyed. A
/// particle whose life ends is drawn ever smaller over the last 15 % of it.
class VYROSG_EXPORT ParticleSystemDrawable : public osg::Geometry {
public:
  /// What stands for one particle.
  enum ParticleRenderingMode {
    SPRITES = 0,  ///< a square that turns to the viewer and that the shader makes look like a ball
    TRIANGLES = 1 ///< an icosahedron
  };

  /// How a sprite is shaded; without effect on triangles.
  enum ParticleShaderMode {
    SIMPLE_SPRITES = 0,   ///< a lit ball of the particle's colour
    ROTATION_SPRITES = 1, ///< a lit ball with bands that turn with the particle
    ALPHA_SPRITES = 2     ///< a soft, see-through puff
  };

  /// An empty drawable, as the scene-graph library's object registry needs it.
  ParticleSystemDrawable();

  /// Draws a system (*borrows*). Nullable: system (nothing is drawn).
  explicit ParticleSystemDrawable(vyr::ParticleSystem* system, ParticleRenderingMode renderingMode = SPRITES,
                                  ParticleShaderMode shaderMode = ROTATION_SPRITES);

  /// The shading of the sprites.
  ParticleShaderMode getParticleShaderMode() const { return m_shaderMode; }

  /// Changes the shading of the sprites from the next frame on. Another number than the three is refused with one
  /// Notify line.
  void setParticleShaderMode(ParticleShaderMode mode);

  /// What stands for one particle.
  ParticleRenderingMode getParticleRenderingMode() const { return m_renderingMode; }

  /// The system that is drawn (*returns inner*). Nullable: null once it is destroyed.
  vyr::ParticleSystem* getParticleSystem() { return m_system.get(); }

  /// Reads the particles again, without waiting for the update traversal.
  void update();

  osg::BoundingBox computeBoundingBox() const override;

protected:
  ~ParticleSystemDrawable() override;

private:
  void createArrays();
  void applyShader();

  vyr::observer_ptr<vyr::ParticleSystem> m_system;
  ParticleRenderingMode m_renderingMode = SPRITES;
  ParticleShaderMode m_shaderMode = ROTATION_SPRITES;
  float m_largestRadius = 0;
};

} // namespace vyrOSG
