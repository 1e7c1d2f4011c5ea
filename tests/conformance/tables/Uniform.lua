-- Uniforms of shaders, their callbacks, and the small matrices that they take.
types {
  "osg::CopyOp", "osg::Uniform", "virtual osg::Object", "osg::Vec4", "osg::Matrixf", "osg::Vec2",
  "osg::Uniform::Callback", "osg::StateSet", "osg::Matrix3", "osg::Object", "osg::Vec3", "osg::Matrixd", "osg::Matrix2",
}
samples({
  matrix2 = function() return osg.Matrix2(1.1, 2.2, 3.3, 4.4) end,
  matrix3 = function() return osg.Matrix3(1.1, 2.2, 3.3, 4.4, 5.5, 6.6, 7.7, 8.8, 9.9) end,
  callback = function() return osg.Uniform.Callback:new() end,
  -- A uniform that a state set knows.
  used = function(env)
    env.stateSet:addUniform(env.uniform)
    return env.uniform
  end,
  int1 = function() return osg.Uniform:new("i", 4) end,
  int2 = function() return osg.Uniform:new("i", 4, 5) end,
  int3 = function() return osg.Uniform:new("i", 4, 5, 6) end,
  int4 = function() return osg.Uniform:new("i", 4, 5, 6, 7) end,
  bool1 = function() return osg.Uniform:new("b", false) end,
  bool2 = function() return osg.Uniform:new("b", false, true) end,
  bool3 = function() return osg.Uniform:new("b", false, true, false) end,
  bool4 = function() return osg.Uniform:new("b", false, true, false, true) end,
}, { ["osg::Matrix2"] = "matrix2", ["osg::Matrix3"] = "matrix3", ["osg::Uniform::Callback"] = "callback" })

-- The two matrices differ in size only.
local function matrix(name, rows)
  local size = rows * rows
  local elements = string.rep("float e, ", size - 1) .. "float e"
  local native = ("osg::MatrixTemplate<float,%du,%du>"):format(rows, rows)
  local type = "osg::" .. name
  class(name, { collector = "deletes", lineage = { native } })
  constructor(name .. "()")
  constructor(("%s(const %s& other)"):format(name, type))
  constructor(("%s(%s)"):format(name, elements))
  -- Afterwards the object is gone.
  row { "void delete()", reaches = false, on = type:gsub("::", ".") .. ":new()", once = true, seen = "native.address(self) == nil" }
  row { ("void set(const %s& other)"):format(type), reaches = ("%s::set(const %s&)"):format(native, native) }
  row("void set(" .. elements .. ")")
  -- Elements are read and written in place.
  row { "void operator&[](int index, float value)", reaches = false, with = "1.9, 0.1",
    seen = "self['.geti'](self, 1) == native.narrow(0.1)" }
  row { "float operator[](int index)", reaches = false, with = "2.9", gives = "native.narrow(3.3)" }
  row { "float operator[](int index) const", reaches = false, with = "2.9", gives = "native.narrow(3.3)" }
  row "void makeIdentity()"
end

namespace "osg"
matrix("Matrix2", 2)
matrix("Matrix3", 3)

class("Uniform", { base = "osg::Object" })
constants {
  "FLOAT", 5126, "FLOAT_VEC2", 35664, "FLOAT_VEC3", 35665, "FLOAT_VEC4", 35666, "INT", 5124, "INT_VEC2", 35667,
  "INT_VEC3", 35668, "INT_VEC4", 35669, "BOOL", 35670, "BOOL_VEC2", 35671, "BOOL_VEC3", 35672, "BOOL_VEC4", 35673,
  "FLOAT_MAT2", 35674, "FLOAT_MAT3", 35675, "FLOAT_MAT4", 35676, "SAMPLER_1D", 35677, "SAMPLER_2D", 35678,
  "SAMPLER_3D", 35679, "SAMPLER_CUBE", 35680, "SAMPLER_1D_SHADOW", 35681, "SAMPLER_2D_SHADOW", 35682, "UNDEFINED", 0,
}
constructor "Uniform()"
constructor { "Uniform(enum osg::Uniform::Type type, const std::string& name)",
  reaches = "osg::Uniform::Uniform(enum osg::Uniform::Type, const std::string&, int = 1)", with = "5126.5" }
constructor { "Uniform(const osg::Uniform& other)",
  reaches = "osg::Uniform::Uniform(const osg::Uniform&, const osg::CopyOp& = any)" }
constructor "Uniform(const osg::Uniform& other, const osg::CopyOp& copy)"
row { "bool setType(enum osg::Uniform::Type type)", on = "osg.Uniform:new()", with = "5126" }
row { "enum osg::Uniform::Type getType() const", gives = "5126" }
row { "void setName(const std::string& name)", reaches = "osg::Uniform::setName(const std::string&)" }
row { "static const char* getTypename(enum osg::Uniform::Type type)", with = "osg.Uniform.FLOAT_MAT4", gives = "'mat4'" }
row { "static enum osg::Uniform::Type getTypeId(const std::string& name)", with = "'vec3'", gives = "osg.Uniform.FLOAT_VEC3, 'vec3'" }
row { "static enum osg::Uniform::Type getGlApiType(enum osg::Uniform::Type type)", with = "osg.Uniform.FLOAT", gives = "osg.Uniform.FLOAT" }
constructor "Uniform(const char* name, float value)"
constructor "Uniform(const char* name, int value)"
constructor "Uniform(const char* name, bool value)"
for _, type in ipairs { "Vec2", "Vec3", "Vec4", "Matrix2", "Matrix3", "Matrixf", "Matrixd" } do
  constructor(("Uniform(const char* name, const osg::%s& value)"):format(type))
end
constructor "Uniform(const char* name, int a, int b)"
constructor "Uniform(const char* name, int a, int b, int c)"
constructor "Uniform(const char* name, int a, int b, int c, int d)"
constructor "Uniform(const char* name, bool a, bool b)"
constructor "Uniform(const char* name, bool a, bool b, bool c)"
constructor "Uniform(const char* name, bool a, bool b, bool c, bool d)"
row { "int compare(const osg::Uniform& other) const", with = "self", gives = "0" }
row { "int compareData(const osg::Uniform& other) const", with = "self", gives = "0" }
row { "bool operator<(const osg::Uniform& other) const", with = "int1", seen = "(self < int1) == (self:compare(int1) < 0)" }
row { "bool operator==(const osg::Uniform& other) const", with = "int1", seen = "self == self, (self == int1) == (self:compare(int1) == 0)" }
row { "void copyData(const osg::Uniform& other)" }
row { "osg::StateSet* getParent(unsigned int index)", on = "used", with = "0.7", guarded = "1", gives = "stateSet" }
row { "const osg::StateSet* getParent(unsigned int index) const", on = "used", with = "0.7", guarded = "1", gives = "stateSet" }
row { "unsigned int getNumParents() const", on = "used", gives = "1" }
row { "bool set(float value)", name = "setFloat" }
row { "bool set(int value)", name = "setInt" }
row { "bool set(bool value)", name = "setBool" }
for _, type in ipairs { "Vec2", "Vec3", "Vec4", "Matrix2", "Matrix3", "Matrixf", "Matrixd" } do
  row("bool set(const osg::" .. type .. "& value)")
end
row { "bool set(int a, int b)", name = "setInt", on = "int2", gives = "true" }
row { "bool set(int a, int b, int c)", name = "setInt", on = "int3", gives = "true" }
row { "bool set(int a, int b, int c, int d)", name = "setInt", on = "int4", gives = "true" }
row { "bool set(bool a, bool b)", name = "setBool", on = "bool2", gives = "true" }
row { "bool set(bool a, bool b, bool c)", name = "setBool", on = "bool3", gives = "true" }
row { "bool set(bool a, bool b, bool c, bool d)", name = "setBool", on = "bool4", gives = "true" }
row { "bool get(float& value) const", name = "getFloat", on = "osg.Uniform:new(osg.Uniform.FLOAT, 'f')", changes = true, gives = "true, 0" }
row { "bool get(int& value) const", name = "getInt", on = "int1", changes = true, gives = "true, 4" }
row { "bool get(bool& value) const", name = "getBool", on = "bool1", changes = true, gives = "true, false" }
for _, type in ipairs { "Vec2", "Vec3", "Vec4" } do
  row { "bool get(osg::" .. type .. "& value) const", name = "get" .. type }
end
for _, type in ipairs { "Matrix2", "Matrix3", "Matrixf", "Matrixd" } do row("bool get(osg::" .. type .. "& value) const") end
row { "bool get(int& a, int& b) const", name = "getInt", on = "int2", changes = true, gives = "true, 4, 5" }
row { "bool get(int& a, int& b, int& c) const", name = "getInt", on = "int3", changes = true, gives = "true, 4, 5, 6" }
-- A uniform of another type gives the numbers back as they came.
row { "bool get(int& a, int& b, int& c, int& d) const", name = "getInt", on = "int3", gives = "false, 1, 2, 3, 4" }
row { "bool get(bool& a, bool& b) const", name = "getBool", on = "bool2", changes = true, gives = "true, false, true" }
row { "bool get(bool& a, bool& b, bool& c) const", name = "getBool", on = "bool3", changes = true, gives = "true, false, true, false" }
row { "bool get(bool& a, bool& b, bool& c, bool& d) const", name = "getBool", on = "bool4", changes = true,
  gives = "true, false, true, false, true" }

class("Uniform.Callback", { base = "virtual osg::Object" })
constructor "Callback()"
constructor "Callback(const osg::Uniform::Callback& other, const osg::CopyOp& copy)"
back "Uniform"
row "void setUpdateCallback(osg::Uniform::Callback* callback)"
row { "osg::Uniform::Callback* getUpdateCallback()", before = "self:setUpdateCallback(callback)", gives = "callback" }
row { "const osg::Uniform::Callback* getUpdateCallback() const", before = "self:setUpdateCallback(callback)", gives = "callback" }
row "void setEventCallback(osg::Uniform::Callback* callback)"
row { "osg::Uniform::Callback* getEventCallback()", before = "self:setEventCallback(callback)", gives = "callback" }
row { "const osg::Uniform::Callback* getEventCallback() const", before = "self:setEventCallback(callback)", gives = "callback" }
row "void dirty()"
row "void setModifiedCount(unsigned int count)"
row "unsigned int getModifiedCount() const"
