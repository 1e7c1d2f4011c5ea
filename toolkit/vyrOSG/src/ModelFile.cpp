// Reads models and collects their triangles for collision.
#include "DataFile.h"
#include "ModelNode.h"

#include <vyr/Notify.h>

#include <osg/Drawable>
#include <osg/MatrixTransform>
#include <osg/NodeVisitor>
#include <osg/Sequence>
#include <osg/TriangleFunctor>

#include <map>
#include <tuple>

namespace vyrOSG::datafile {

namespace {

/// Receives triangles and joins vertices at the same place, so that the mesh is closed where the model is.
struct TriangleCollector {
  osg::Matrixd transform;
  std::vector<vyr::Vec3> vertices;
  std::vector<unsigned int> indices;
  std::map<std::tuple<double, double, double>, unsigned int> known;

  unsigned int add(const osg::Vec3& vertex) {
    const osg::Vec3d p = osg::Vec3d(vertex) * transform;
    const auto place = known.try_emplace({p.x(), p.y(), p.z()}, static_cast<unsigned int>(vertices.size()));
    if (place.second)
      vertices.emplace_back(p.x(), p.y(), p.z());
    return place.first->second;
  }

  void operator()(const osg::Vec3& a, const osg::Vec3& b, const osg::Vec3& c) {
    const unsigned int corner[3] = {add(a), add(b), add(c)};
    if (corner[0] != corner[1] && corner[1] != corner[2] && corner[2] != corner[0])
      indices.insert(indices.end(), corner, corner + 3);
  }

  /// The scene-graph library's older releases hand over a flag for vertices that they made themselves.
  void operator()(const osg::Vec3& a, const osg::Vec3& b, const osg::Vec3& c, bool) { (*this)(a, b, c); }
};

/// Walks a model and feeds its drawables to the collector in the model's own frame.
class ModelReader : public osg::NodeVisitor {
public:
  explicit ModelReader(double scale)
      : osg::NodeVisitor(TRAVERSE_ACTIVE_CHILDREN)
      , m_scale(osg::Matrixd::scale(scale, scale, scale)) {}

  void apply(osg::Node& node) override {
    look(node);
    traverse(node);
  }

  void apply(osg::Drawable& drawable) override {
    look(drawable);
    m_triangles.transform = osg::computeLocalToWorld(getNodePath()) * m_scale;
    drawable.accept(m_triangles);
  }

  /// A film that has not begun: its first picture is what will be drawn.
  void apply(osg::Sequence& sequence) override {
    look(sequence);
    if (sequence.getValue() < 0 && sequence.getNumChildren() > 0)
      sequence.getChild(0)->accept(*this);
    else
      traverse(sequence);
  }

  osg::TriangleFunctor<TriangleCollector> m_triangles;
  bool m_hasLook = false;

private:
  void look(const osg::Node& node) {
    const osg::StateSet* stateSet = node.getStateSet();
    if (stateSet && (stateSet->getAttribute(osg::StateAttribute::MATERIAL) ||
                     stateSet->getTextureAttribute(0, osg::StateAttribute::TEXTURE)))
      m_hasLook = true;
  }

  osg::Matrixd m_scale;
};

} // namespace

bool readModel(const char* caller, const std::string& fileName, double scale, Model& outModel) {
  const std::string path = find(caller, fileName);
  if (path.empty())
    return false;
  std::string problem;
  osg::ref_ptr<osg::Node> node = readModelNode(path, nullptr, problem);
  if (!node) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << caller << ": cannot read '" << path << "': " << problem;
    return false;
  }
  ModelReader reader(scale);
  node->accept(reader);
  if (reader.m_triangles.indices.empty()) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << caller << ": '" << path << "' holds no triangles";
    return false;
  }
  outModel.mesh = new vyrCollide::Trimesh(reader.m_triangles.vertices, reader.m_triangles.indices);
  if (!outModel.mesh->isValid())
    return false;
  outModel.hasLook = reader.m_hasLook;
  osg::ref_ptr<osg::MatrixTransform> scaled = new osg::MatrixTransform(osg::Matrixd::scale(scale, scale, scale));
  scaled->addChild(node);
  scaled->getOrCreateStateSet()->setMode(GL_NORMALIZE, osg::StateAttribute::ON);
  outModel.node = scaled;
  return true;
}

} // namespace vyrOSG::datafile
