-- State sets: modes, attributes, texture attributes, uniforms and render bins.
types { "osg::State", "osg::Uniform", "osg::StateSet", "osg::StateAttribute" }


namespace "osg"
class("StateAttribute")
constants { "OFF", 0, "ON", 1, "OVERRIDE", 2, "PROTECTED", 4, "INHERIT", 8 }
constants {
  "TEXTURE", 0, "POLYGONMODE", 1, "POLYGONOFFSET", 2, "MATERIAL", 3, "ALPHAFUNC", 4, "ANTIALIAS", 5, "COLORTABLE", 6,
  "CULLFACE", 7, "FOG", 8, "FRONTFACE", 9, "LIGHT", 10, "POINT", 11, "LINEWIDTH", 12, "LINESTIPPLE", 13,
  "POLYGONSTIPPLE", 14, "SHADEMODEL", 15, "TEXENV", 16, "TEXENVFILTER", 17, "TEXGEN", 18, "TEXMAT", 19,
  "LIGHTMODEL", 20, "BLENDFUNC", 21, "BLENDEQUATION", 22, "LOGICOP", 23, "STENCIL", 24, "COLORMASK", 25, "DEPTH", 26,
  "VIEWPORT", 27, "BLENDCOLOR", 29, "MULTISAMPLE", 30, "CLIPPLANE", 31, "COLORMATRIX", 32, "VERTEXPROGRAM", 33,
  "FRAGMENTPROGRAM", 34, "POINTSPRITE", 35, "PROGRAM", 36, "VALIDATOR", 42, "VIEWMATRIXEXTRACTOR", 43,
  "OSGNV_PARAMETER_BLOCK", 44, "OSGNVEXT_TEXTURE_SHADER", 45, "OSGNVEXT_VERTEX_PROGRAM", 46,
  "OSGNVEXT_REGISTER_COMBINERS", 47, "OSGNVCG_PROGRAM", 48, "OSGNVSLANG_PROGRAM", 49, "OSGNVPARSE_PROGRAM_PARSER", 50,
  "PROGRAM", 36,
}

class("StateSet")
constructor "StateSet()"
row "int compare(const osg::StateSet& other, bool compareAttributeContents = false) const"
row { "bool operator<(const osg::StateSet& other) const", reaches = "int osg::StateSet::compare(const osg::StateSet&, bool = false) const",
  with = "stateSet", gives = "false", seen = "(self < stateSet) == (self:compare(stateSet) < 0), not (self < self)" }
row "void setGlobalDefaults()"
row "void clear()"
row "void merge(const osg::StateSet& other)"
row "void setMode(unsigned int mode, unsigned int value)"
row "void removeMode(unsigned int mode)"
row "unsigned int getMode(unsigned int mode) const"
row "void setAttribute(osg::StateAttribute* attribute, unsigned int value)"
row "void setAttributeAndModes(osg::StateAttribute* attribute, unsigned int value)"
row "void removeAttribute(enum osg::StateAttribute::Type type, unsigned int member = 0)"
row "void removeAttribute(osg::StateAttribute* attribute)"
row { "osg::StateAttribute* getAttribute(enum osg::StateAttribute::Type type, unsigned int member = 0)", derived = true }
row { "void setTextureMode(unsigned int unit, unsigned int mode, unsigned int value)", guarded = "1" }
row { "void removeTextureMode(unsigned int unit, unsigned int mode)", guarded = "1" }
row { "unsigned int getTextureMode(unsigned int unit, unsigned int mode) const", guarded = "1" }
row { "void setTextureAttribute(unsigned int unit, osg::StateAttribute* attribute, unsigned int value = 0)", guarded = "1" }
row { "void setTextureAttributeAndModes(unsigned int unit, osg::StateAttribute* attribute, unsigned int value = 1)", guarded = "1" }
row { "void removeTextureAttribute(unsigned int unit, enum osg::StateAttribute::Type type)", guarded = "1" }
row { "void removeTextureAttribute(unsigned int unit, osg::StateAttribute* attribute)", guarded = "1" }
row { "osg::StateAttribute* getTextureAttribute(unsigned int unit, enum osg::StateAttribute::Type type)", guarded = "1" }
row { "void setAssociatedModes(const osg::StateAttribute* attribute, unsigned int value)", guarded = "1" }
row { "void setAssociatedTextureModes(unsigned int unit, const osg::StateAttribute* attribute, unsigned int value)", guarded = "1 2" }
row "void addUniform(osg::Uniform* uniform, unsigned int value = 1)"
row "void removeUniform(const std::string& name)"
row "void removeUniform(osg::Uniform* uniform)"
row { "osg::Uniform* getUniform(const std::string& name)", gives = "nil, 'text1'" }
constants { "DEFAULT_BIN", 0, "OPAQUE_BIN", 1, "TRANSPARENT_BIN", 2 }
row "void setRenderingHint(int hint)"
row "int getRenderingHint() const"
constants { "INHERIT_RENDERBIN_DETAILS", 0, "USE_RENDERBIN_DETAILS", 1, "OVERRIDE_RENDERBIN_DETAILS", 2 }
row "void setRenderBinDetails(int number, const std::string& name, enum osg::StateSet::RenderBinMode mode = 1)"
row "void setRenderBinToInherit()"
row "bool useRenderBinDetails() const"
row "void setRenderBinMode(enum osg::StateSet::RenderBinMode mode)"
row "enum osg::StateSet::RenderBinMode getRenderBinMode() const"
row "void setBinNumber(int number)"
row "int getBinNumber() const"
row "void setBinName(const std::string& name)"
row { "const std::string& getBinName() const", gives = "''" }
-- Compiling needs a graphics context.
row { "void compileGLObjects(osg::State& state) const", held = true }
row { "void releaseGLObjects(osg::State* state = nullptr) const", with = "nil" }
