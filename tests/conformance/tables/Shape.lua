-- The scene-graph library's height field.
types { "osg::Shape", "osg::HeightField" }

namespace "osg"
class("HeightField", { base = "osg::Shape" })
constructor "HeightField()"
row { "void setHeight(unsigned int column, unsigned int row, float height)", guarded = "1 2" }
