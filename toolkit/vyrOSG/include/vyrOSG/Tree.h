// A modelled tree that comes with its own renderer.
#pragma once

#include <vyrOSG/TreeRenderer.h>

#include <vyr/ref_ptr.h>
#include <vyrModel/Tree.h>

namespace vyrOSG {

/// A tree that draws itself: grow it and add it to a simulation.
class VYROSG_EXPORT Tree : public vyrModel::Tree {
public:
  /// Nullable: group (*observes*).
  explicit Tree(vyrOSG::Group* group);

  /// Colour of the leaves, as `TreeRenderer`.
  void setColor(const vyr::Vec4& color) { m_renderer->setColor(color); }
  vyr::Vec4 getColor() const { return m_renderer->getColor(); }

  /// *returns inner*. Never null.
  TreeRenderer* getRenderer() { return m_renderer.get(); }

protected:
  ~Tree() override;

  void changed() override;

private:
  vyr::ref_ptr<TreeRenderer> m_renderer;
  vyr::observer_ptr<vyrSDK::Simulation> m_simulation;
};

} // namespace vyrOSG
