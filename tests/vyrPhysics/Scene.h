/// Small scenes that the tests of the physics share.
#pragma once

#include <vyr/Material.h>
#include <vyr/Notify.h>
#include <vyr/RigidBody.h>
#include <vyr/ref_ptr.h>
#include <vyrCollide/Box.h>
#include <vyrCollide/Geometry.h>
#include <vyrCollide/Plane.h>
#include <vyrCollide/Shape.h>
#include <vyrCollide/Sphere.h>
#include <vyrSDK/Simulation.h>

#include <string>
#include <vector>

namespace scene {

const double kGravity = 9.80665;

/// A body of one geometry of the shape.
inline vyr::RigidBody* body(vyrCollide::Shape* shape, const vyr::Vec3& position = vyr::Vec3(),
                            vyr::Material* material = nullptr) {
  auto* result = new vyr::RigidBody("body");
  auto* geometry = new vyrCollide::Geometry(shape);
  geometry->setMaterial(material);
  result->add(geometry);
  result->setPosition(position);
  return result;
}

/// The ground z = 0, turned by `transform`.
inline vyrCollide::Geometry* ground(vyr::Material* material = nullptr,
                                    const vyr::AffineMatrix4x4& transform = vyr::AffineMatrix4x4()) {
  auto* geometry = new vyrCollide::Geometry(new vyrCollide::Plane, "ground");
  geometry->setMaterial(material);
  geometry->setLocalTransform(transform);
  return geometry;
}

/// Collects the messages of the library while it lives.
class Messages {
public:
  Messages()
      : m_sink(new Sink) {
    vyr::Notify::instance()->addSink(m_sink.get());
  }
  ~Messages() { vyr::Notify::instance()->removeSink(m_sink.get()); }
  Messages(const Messages&) = delete;
  Messages& operator=(const Messages&) = delete;

  /// Errors, and warnings.
  const std::vector<std::string>& get() const { return m_sink->texts; }
  const std::vector<std::string>& getWarnings() const { return m_sink->warnings; }

private:
  struct Sink : vyr::NotifySink {
    void message(vyr::NotifyLevel level, const std::string& text) override {
      if (level == vyr::NOTIFY_ERROR) {
        texts.push_back(text);
      } else if (level == vyr::NOTIFY_WARNING) {
        warnings.push_back(text);
      }
    }
    std::vector<std::string> texts;
    std::vector<std::string> warnings;
  };
  vyr::ref_ptr<Sink> m_sink;
};

} // namespace scene
