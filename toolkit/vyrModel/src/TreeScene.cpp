/// Trees in scene files.
#include "TreeMotion.h"

#include <vyrSDK/SceneType.h>

namespace vyrModel {

/// A tree: which bodies and locks of the scene are its branches, its wood and its leaves.
class TreeType : public vyrSDK::SceneType {
public:
  TreeType()
      : SceneType("Tree") {}

  bool owns(const vyrSDK::StepEventListener& listener) const override {
    return dynamic_cast<const TreeMotion*>(&listener) != nullptr;
  }

  bool write(const vyrSDK::StepEventListener& listener, vyrSDK::SceneReferences& references,
             vyrSDK::SceneRecord& out) const override {
    const Tree& tree = *static_cast<const TreeMotion&>(listener).m_tree;
    for (const TreeBranch& branch : tree.m_branches) {
      if (references.indexOf(branch.body.get()) < 0 || references.indexOf(branch.joint.get()) < 0) {
        return false; // what is left of a tree that was taken apart
      }
    }
    for (const TreeLeafBody& leaves : tree.m_leafBodies) {
      if (references.indexOf(leaves.body.get()) < 0 || references.indexOf(leaves.joint.get()) < 0) {
        return false;
      }
    }
    out.set("transform", tree.m_transform);
    out.set("wind", tree.m_wind);
    out.set("gustiness", tree.m_gustiness);
    vyrSDK::SceneRecord wood = out.add("parameters");
    visitParameters(tree.m_parameters, [&wood](const char* key, const auto& number) { wood.set(key, number); });
    for (const TreeBranch& branch : tree.m_branches) {
      vyrSDK::SceneRecord record = out.append("branches");
      record.set("body", references.indexOf(branch.body.get()));
      record.set("joint", references.indexOf(branch.joint.get()));
      record.set("parent", branch.parent);
      record.set("level", branch.level);
      visitLengths(branch, [&record](const char* key, const double& number) { record.set(key, number); });
      record.set("continues", branch.continues);
      record.set("broken", branch.broken);
    }
    for (const TreeLeafBody& leaves : tree.m_leafBodies) {
      vyrSDK::SceneRecord record = out.append("leafBodies");
      record.set("body", references.indexOf(leaves.body.get()));
      record.set("joint", references.indexOf(leaves.joint.get()));
      record.set("branch", static_cast<std::uint64_t>(leaves.branch));
    }
    // A row a leaf: piece, place, direction, normal, size, body.
    std::vector<double> rows;
    for (const TreeLeaf& leaf : tree.m_leaves) {
      rows.push_back(static_cast<double>(leaf.branch));
      for (const vyr::Vec3* vector : {&leaf.position, &leaf.direction, &leaf.normal}) {
        for (std::size_t i = 0; i < 3; ++i) {
          rows.push_back((*vector)[i]);
        }
      }
      rows.push_back(leaf.size);
      rows.push_back(leaf.body);
    }
    out.set("leaves", rows);
    return true;
  }

  vyr::ref_ptr<vyrSDK::StepEventListener> readListener(const vyrSDK::SceneValue& value,
                                                       vyrSDK::SceneParts& parts) const override {
    vyr::ref_ptr<Tree> tree = new Tree;
    value.get("transform", tree->m_transform);
    if (value.has("parameters")) {
      visitParameters(tree->m_parameters, Reader{value["parameters"]});
    }
    const vyrSDK::SceneValue branches = value["branches"];
    for (std::size_t i = 0; i < branches.size(); ++i) {
      tree->m_branches.push_back(readBranch(branches[i], i, parts));
    }
    if (tree->m_branches.empty()) {
      branches.fail("must have one branch at least");
    }
    if (value.has("leafBodies")) {
      readLeafBodies(value["leafBodies"], parts, *tree);
    }
    readLeaves(value, *tree);
    vyr::ref_ptr<TreeMotion> motion = new TreeMotion(tree.get());
    tree->m_motion = motion.get();
    restore(*motion, value, parts);
    return motion;
  }

  void restore(vyrSDK::StepEventListener& listener, const vyrSDK::SceneValue& value,
               vyrSDK::SceneParts&) const override {
    Tree& tree = *static_cast<TreeMotion&>(listener).m_tree;
    value.get("wind", tree.m_wind);
    value.get("gustiness", tree.m_gustiness);
    const vyrSDK::SceneValue branches = value["branches"];
    for (std::size_t i = 0; i < branches.size() && i < tree.m_branches.size(); ++i) {
      branches[i].get("broken", tree.m_branches[i].broken);
    }
    tree.shapeChanged();
  }

protected:
  ~TreeType() override = default;

private:
  /// Reads what a visitor writes, so that both cannot differ.
  struct Reader {
    const vyrSDK::SceneValue& value;
    void operator()(const char* key, double& number) const { value.getLimit(key, number); }
    void operator()(const char* key, int& number) const { value.getInteger(key, number, 0, 1000000); }
  };

  template <class Parameters, class Visit>
  static void visitParameters(Parameters& p, const Visit& visit) {
    visit("height", p.height);
    visit("trunkRadius", p.trunkRadius);
    visit("levels", p.levels);
    visit("trunkSegments", p.trunkSegments);
    visit("boughs", p.boughs);
    visit("branches", p.branches);
    visit("spread", p.spread);
    visit("lengthRatio", p.lengthRatio);
    visit("leavesPerMeter", p.leavesPerMeter);
    visit("leafSize", p.leafSize);
    visit("leafBodies", p.leafBodies);
    visit("density", p.density);
    visit("stiffness", p.stiffness);
    visit("strength", p.strength);
    visit("damping", p.damping);
  }

  template <class Branch, class Visit>
  static void visitLengths(Branch& branch, const Visit& visit) {
    visit("offset", branch.offset);
    visit("length", branch.length);
    visit("radiusBegin", branch.radiusBegin);
    visit("radiusEnd", branch.radiusEnd);
  }

  static TreeBranch readBranch(const vyrSDK::SceneValue& value, std::size_t index, vyrSDK::SceneParts& parts) {
    TreeBranch branch;
    branch.body = parts.bodyAt(value["body"]);
    branch.joint = dynamic_cast<vyr::Lock*>(parts.constraintAt(value["joint"]));
    if (!branch.body) {
      value["body"].fail("must be a body");
    }
    if (!branch.joint || branch.joint->getRigidBody1() != branch.body.get()) {
      value["joint"].fail("must be a lock that holds the branch's body");
    }
    // Parents stand before their children.
    branch.parent = static_cast<int>(value["parent"].integer(-1, static_cast<long long>(index) - 1));
    value.getInteger("level", branch.level, 0, 10);
    visitLengths(branch, Reader{value});
    for (const char* key : {"length", "radiusBegin", "radiusEnd"}) {
      value[key].positive();
    }
    value.get("continues", branch.continues);
    return branch;
  }

  static void readLeafBodies(const vyrSDK::SceneValue& list, vyrSDK::SceneParts& parts, Tree& tree) {
    for (std::size_t i = 0; i < list.size(); ++i) {
      TreeLeafBody leaves;
      leaves.body = parts.bodyAt(list[i]["body"]);
      leaves.joint = dynamic_cast<vyr::Lock*>(parts.constraintAt(list[i]["joint"]));
      leaves.branch =
          static_cast<std::size_t>(list[i]["branch"].integer(0, static_cast<long long>(tree.m_branches.size()) - 1));
      if (!leaves.body || !leaves.joint) {
        list[i].fail("must name a body and a lock");
      }
      tree.m_leafBodies.push_back(leaves);
    }
  }

  static void readLeaves(const vyrSDK::SceneValue& value, Tree& tree) {
    constexpr std::size_t kRow = 12;
    if (!value.has("leaves")) {
      return;
    }
    const std::vector<double> rows = value["leaves"].numbers();
    if (rows.size() % kRow != 0) {
      value["leaves"].fail("must have " + std::to_string(kRow) + " numbers a leaf");
    }
    for (std::size_t i = 0; i < rows.size(); i += kRow) {
      const double* row = &rows[i];
      if (!(row[0] >= 0 && row[0] < static_cast<double>(tree.m_branches.size()))) {
        value["leaves"][i].fail("there is no such branch");
      }
      if (!(row[11] >= -1 && row[11] < static_cast<double>(tree.m_leafBodies.size()))) {
        value["leaves"][i + 11].fail("there is no such body of leaves");
      }
      TreeLeaf leaf;
      leaf.branch = static_cast<std::size_t>(row[0]);
      leaf.position.set(row[1], row[2], row[3]);
      leaf.direction.set(row[4], row[5], row[6]);
      leaf.normal.set(row[7], row[8], row[9]);
      leaf.size = row[10];
      leaf.body = static_cast<int>(row[11]);
      tree.m_leaves.push_back(leaf);
    }
  }
};

namespace {

const vyrSDK::SceneTypeEntry kEntry(new TreeType);

} // namespace

Tree* Tree::of(const vyrSDK::StepEventListener& listener) {
  const auto* motion = dynamic_cast<const TreeMotion*>(&listener);
  return motion != nullptr ? motion->m_tree.get() : nullptr;
}

} // namespace vyrModel
