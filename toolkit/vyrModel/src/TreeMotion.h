/// What moves a tree in a simulation: wind before each step, breaking after it.
#pragma once

#include <vyr/observer_ptr.h>
#include <vyr/ref_ptr.h>
#include <vyrModel/Tree.h>
#include <vyrSDK/StepEventListener.h>

#include <vector>

namespace vyrModel {

/// The listener of one tree. The simulation holds it, and it holds the tree.
class TreeMotion : public vyrSDK::StepEventListener {
public:
  explicit TreeMotion(Tree* tree);

  void pre(const vyr::TimeStamp& time) override;
  void post(const vyr::TimeStamp& time) override;
  void simulationChanged(vyrSDK::Simulation* simulation) override;

  vyrSDK::Simulation* getSimulation() const { return m_simulation.get(); }

  /// Bending moment over the section's modulus at the foot of a branch, in Pa.
  static double stressOf(const TreeBranch& branch);

protected:
  ~TreeMotion() override;

private:
  friend class Tree;
  friend class TreeType;

  /// Area that a branch shows to the wind from its side, its drag coefficient included, in m^2.
  struct Sail {
    double wood = 0;
    double leaves = 0;
  };

  void blowOn(std::size_t index, double time, double step);

  vyr::ref_ptr<Tree> m_tree;
  std::vector<Sail> m_sails;
  std::vector<double> m_leafSails; ///< of the leaves that are bodies
  vyr::observer_ptr<vyrSDK::Simulation> m_simulation;
};

} // namespace vyrModel
