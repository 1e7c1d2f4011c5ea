-- Nodes of the scene graph: the scene-graph library's own, and the visualisation library's thin subclasses.
types {
  "vyr::Vec3", "vyr::Vec2d", "vyr::Vec2f", "vyr::Constraint", "vyrOSG::Group", "vyr::Vec2", "vyrOSG::Node", "vyr::Quat",
  "osg::Shape", "vyrOSG::Transform", "vyr::Vec4f", "vyr::Vec4", "osg::Node", "osg::Drawable", "vyr::AffineMatrix4x4",
  "osg::Geode", "vyr::Vec4d", "osg::Transform", "osg::MatrixTransform", "osg::Group", "vyr::Vec3f", "osg::StateSet",
  "vyr::SPDMatrix3x3", "vyr::Vec3d",
  -- Besides the module's list: a class of an undeclared type ends the process.
  "vyr::FrictionModel",
}
shared()
samples({
  parent = function(env)
    local group = osg.Group:new()
    group:addChild(env.node)
    return group
  end,
  vparent = function(env)
    local group = vyrOSG.Group:new()
    group:addChild(env.node)
    return group
  end,
  child = function(env)
    env.parent:getChild(0)
    return env.node
  end,
  plainTransform = function() return osg.Transform:new() end,
  drawable = function() return native.given("osg::Drawable") end,
  drawn = function() return native.given("osg::Geode") end,
}, { ["osg::Transform"] = "plainTransform" })

namespace "osg"
class("Node", { collector = "drops", lineage = { "osg::Object" } })
constructor "Node()"
row "void setName(const std::string& name)"
row { "osg::Group* asGroup()", gives = "nil" }
row { "osg::Group* getParent(unsigned int index)", on = "child", with = "0.7", guarded = "1", gives = "parent" }
row { "unsigned int getNumParents() const", on = "child", gives = "1" }
row "void setStateSet(osg::StateSet* set)"
row { "osg::StateSet* getOrCreateStateSet()" }
row { "osg::StateSet* getStateSet()", gives = "nil" }
row { "osg::Geode* asGeode()", gives = "nil" }

class("Group", { base = "osg::Node" })
constructor "Group()"
row { "bool addChild(osg::Node* child)", gives = "true" }
row { "osg::Node* getChild(unsigned int index)", on = "parent", with = "0.7", guarded = "1", gives = "node" }

class("MatrixTransform", { base = "osg::Group" })
constructor "MatrixTransform()"
row { "bool addChild(osg::Node* child)", gives = "true" }
row { "bool removeChild(osg::Node* child)", gives = "false" }

class("Transform", { base = "osg::Group" })
constructor "Transform()"
row { "bool addChild(osg::Node* child)", gives = "true" }
row { "bool removeChild(osg::Node* child)", gives = "false" }

class("Geode", { base = "osg::Node" })
constructor "Geode()"
row { "osg::Drawable* getDrawable(unsigned int index)", on = "drawn", with = "0.7", guarded = "1", derived = true }

class("Drawable", { base = "osg::Node" })
row { "void setUseDisplayList(bool on)", on = "drawable" }
row { "osg::Shape* getShape()", on = "drawable", gives = "nil" }

namespace "vyrOSG"
class("Node", { base = "osg::Node" })
constructor "Node()"
row "void setName(const std::string& name)"

class("Group", { base = "osg::Group" })
constructor "Group()"
row { "bool addChild(osg::Node* child)", gives = "true" }
row { "bool removeChild(osg::Node* child)", gives = "false" }
row { "bool replaceChild(osg::Node* old, osg::Node* new)", on = "vparent", with = "node", gives = "true" }
row { "bool containsNode(const osg::Node* child) const", on = "vparent", with = "node", gives = "true" }
row { "osg::Node* getChild(unsigned int index)", on = "vparent", with = "0.7", guarded = "1", gives = "node" }
row { "unsigned int getNumChildren()", on = "vparent", gives = "1" }

class("Transform", { base = "osg::MatrixTransform" })
constructor "Transform()"
row "void setName(const std::string& name)"
row { "bool addChild(osg::Node* child)", gives = "true" }
row { "bool addChild(vyrOSG::Node* child)", gives = "true" }
row "void setMatrix(const vyr::AffineMatrix4x4& matrix)"
row "void setScale(const vyr::Vec3& scale)"
