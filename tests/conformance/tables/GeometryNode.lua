-- The node that draws one geometry of the simulation.
types { "vyrOSG::GeometryNode", "osg::Node", "vyrCollide::Geometry", "osg::MatrixTransform", "vyrOSG::Node" }
samples({
  geometryNode = function(env) return (vyrOSG.GeometryNode(env.geometry)) end,
}, { ["vyrOSG::GeometryNode"] = "geometryNode" })

namespace "vyrOSG"
class("GeometryNode", { base = "osg::MatrixTransform", collector = "drops" })
constants { "RENDER_DATA", 1, "GEOMETRY_DATA", 2 }
constructor "GeometryNode()"
constructor "GeometryNode(vyrCollide::Geometry* geometry)"
row "void setGeometry(vyrCollide::Geometry* geometry)"
row { "vyrCollide::Geometry* getGeometry()", on = "geometryNode", gives = "geometry" }
row { "bool getAutoRemove() const", seen = "type(self:getAutoRemove()) == 'boolean'" }
row { "void setAutoRemove(bool on)", seen = "self:getAutoRemove()" }
row "void removeFromParents()"
row "void selectRenderChild(enum vyrOSG::GeometryNode::RenderFlag flag)"
row { "enum vyrOSG::GeometryNode::RenderFlag getSelectedRenderChild() const", gives = "1" }
row "void setRenderChild(enum vyrOSG::GeometryNode::RenderFlag flag, osg::Node* child)"
row "void setRenderChild(enum vyrOSG::GeometryNode::RenderFlag flag, vyrOSG::Node* child)"
row { "osg::Node* getRenderChild(enum vyrOSG::GeometryNode::RenderFlag flag)", before = "self:setRenderChild(1, node)", gives = "node" }
