/// The process-wide registry of named render states: textures, shaders, programs and the bundles made of them.
#pragma once

#include <vyrOSG/export.h>

#include <vyr/Referenced.h>
#include <vyr/Singleton.h>
#include <vyr/Vec4.h>
#include <vyr/ref_ptr.h>

#include <osg/Program>
#include <osg/Shader>
#include <osg/TexMat>
#include <osg/Texture>
#include <osg/Uniform>
#include <osg/ref_ptr>

#include <map>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace osg {
class Node;
class StateSet;
} // namespace osg

namespace vyrCFG {
class ConfigScript;
}

namespace vyrOSG {

class GeometryNode;
class Group;
class Node;
class SimulationObject;

/// Entries are found by name until `clear`. Adding under a name that is taken replaces the entry; what was applied
/// before keeps what it has. A null object or an empty name is refused with one error line. Use it from one thread.
class VYROSG_EXPORT RenderStateManager : public vyr::Singleton {
public:
  /// How an applied state meets the states above and below it in the scene; the values may be added.
  enum Values : int { OFF = 0, ON = 1, OVERRIDE = 2, PROTECTED = 4, INHERIT = 8 };

  class ShaderState;
  class RenderState;

  /// The one manager; it lives as long as the process.
  static RenderStateManager* instance();

  /// The registered shader of that name and stage. Nullable: there is none. *returns inner*
  osg::Shader* findShader(const std::string& name, osg::Shader::Type type);
  /// The registered program of that name. Nullable: there is none. *returns inner*
  osg::Program* findProgram(const std::string& name);
  /// The registered render state of that name. Nullable: there is none. *returns inner*
  RenderState* findRenderState(const std::string& name);
  /// Registers a render state under its own name; *retains* it.
  void addRenderState(RenderState* state);
  /// Registers a texture; *retains* it.
  void addTexture(const std::string& name, osg::Texture* texture);
  /// The registered texture of that name. Nullable: there is none. *returns inner*
  osg::Texture* findTexture(const std::string& name);
  /// The program of that name, made empty and registered if there was none. Its compile and link errors are sent to the
  /// message channel, a line each with file and line number, when the program is first drawn. Nullable: the name is
  /// empty. *returns inner*
  osg::Program* createProgram(const std::string& name);
  /// Registers a shader of the stage `type` under `name`. `source` is GLSL text, or a file on the scene-graph library's
  /// file path when `isFile` is set. If the shader exists its source is replaced, so that every program that uses it is
  /// compiled anew. Nullable: the file cannot be read or the name is empty; nothing changes then. *returns inner*
  osg::Shader* createShader(const std::string& name, const std::string& source, osg::Shader::Type type, bool isFile);
  /// Registers a shader state under its own name; *retains* it.
  void addShaderState(ShaderState* state);
  /// The registered shader state of that name. Nullable: there is none. *returns inner*
  ShaderState* findShaderState(const std::string& name);
  /// Registers everything that a configuration script describes (docs/render-states.md). A mistake gives one error line
  /// with file, line and key; the entry that has it is left out as a whole (an unknown key alone is only skipped), the
  /// rest is loaded.
  void parse(vyrCFG::ConfigScript* script);
  /// Forgets every entry.
  void clear();

protected:
  RenderStateManager();
  ~RenderStateManager() override;

private:
  std::map<std::pair<std::string, osg::Shader::Type>, osg::ref_ptr<osg::Shader>> m_shaders;
  std::map<std::string, osg::ref_ptr<osg::Program>> m_programs;
  std::map<std::string, osg::ref_ptr<osg::Texture>> m_textures;
  std::map<std::string, vyr::ref_ptr<ShaderState>> m_shaderStates;
  std::map<std::string, vyr::ref_ptr<RenderState>> m_renderStates;
};

/// A registered program by name, with the uniforms that go with it.
class VYROSG_EXPORT RenderStateManager::ShaderState : public vyr::Referenced {
public:
  /// `programId` names a program of the manager; it is looked up when the state is applied. Empty: uniforms only.
  ShaderState(const std::string& name, const std::string& programId)
      : m_name(name)
      , m_programId(programId) {}

  const std::string& getName() const { return m_name; }
  const std::string& getProgramID() const { return m_programId; }

  /// Adds a uniform; *retains* it. One of the same name is replaced. Null is refused with one error line.
  void addUniform(osg::Uniform* uniform);
  /// The uniform of that name. Nullable: there is none. *returns inner*
  osg::Uniform* findUniform(const std::string& name);

  /// Puts program and uniforms on the state set. Null: nothing happens. Failure (no program of that name is
  /// registered): one error line, and the state set is left as it was.
  void apply(osg::StateSet* stateSet, Values value = ON);
  /// Applies to the node's own state set.
  void apply(vyrOSG::Node* node, Values value = ON);

protected:
  ~ShaderState() override;

private:
  std::string m_name;
  std::string m_programId;
  std::vector<osg::ref_ptr<osg::Uniform>> m_uniforms;
};

/// A bundle of colours, textures, uniforms and an optional shader state.
class VYROSG_EXPORT RenderStateManager::RenderState : public vyr::Referenced {
public:
  /// The kinds of colour. `ALPHA` (opacity, 0..1) and `SHININESS` (0..128) are numbers and stand in the first
  /// component.
  enum ColorType : int { AMBIENT = 0, DIFFUSE = 1, SPECULAR = 2, ALPHA = 3, SHININESS = 4, EMISSIVE = 5 };

  /// What one texture unit is given.
  struct Texture {
    osg::ref_ptr<osg::Texture> texture;
    /// Nullable: texture coordinates are used as they are.
    osg::ref_ptr<osg::TexMat> matrix;
    /// The integer uniform through which a program reads the unit. Nullable: none is set.
    osg::ref_ptr<osg::Uniform> sampler;
  };

  explicit RenderState(const std::string& name)
      : m_name(name) {}

  /// Renames the state; the manager goes on finding it under the name that it was added with.
  void setName(const std::string& name) { m_name = name; }
  const std::string& getName() const { return m_name; }

  /// Gives a texture unit (0 to 64) its texture; *retains* both. Nullable: `texture` (the unit is left alone) and
  /// `matrix`. A unit outside the range is kept, but `apply` skips it with one error line.
  void addTexture(int unit, osg::Texture* texture, osg::TexMat* matrix = nullptr) {
    m_textures[unit] = Texture{texture, matrix, nullptr};
  }
  /// As above, with the sampler uniform that is set along with the texture; *retains* it.
  void addTexture(int unit, osg::Texture* texture, osg::TexMat* matrix, osg::Uniform* sampler) {
    m_textures[unit] = Texture{texture, matrix, sampler};
  }

  /// Puts the bundle on the group's own state set. Null: nothing happens, here and below. If it has a diffuse colour,
  /// visuals below the node that still look as they were made take them over, here and in the forms for nodes below.
  void apply(vyrOSG::Group* group, Values value = ON);
  /// Puts the bundle on the node's own state set.
  void apply(vyrOSG::Node* node, Values value = ON);
  /// Puts the bundle on the geometry node.
  void apply(vyrOSG::GeometryNode* node, Values value = ON);
  /// Puts the bundle on a state set: the colours that are set go into its material (one that it has is copied, so that
  /// other colours stay and other users of it do not change; a diffuse colour without an ambient one sets both), an
  /// alpha below 1 turns blending on, then textures, uniforms and the shader state follow.
  void apply(osg::StateSet* stateSet, Values value = ON);
  /// Puts the bundle on the object's visual node; an object without one is left alone.
  void apply(vyrOSG::SimulationObject& object, Values value = ON);

  /// Adds a uniform; *retains* it. One of the same name is replaced. Null is refused with one error line.
  void addUniform(osg::Uniform* uniform);
  /// The uniform of that name; the shader state's uniforms are not searched. Nullable: there is none. *returns inner*
  osg::Uniform* findUniform(const std::string& name);

  /// Sets the colour of a kind (`ColorType`), (r, g, b, a) in 0..1. An unknown kind is kept, but `apply` skips it with
  /// one error line.
  void setColor(int type, const vyr::Vec4& color) { m_colors[type] = color; }
  /// Replaces the shader state; *retains* it. Nullable: none is applied.
  void setShaderState(ShaderState* state) { m_shaderState = state; }

protected:
  ~RenderState() override;

private:
  void applyToNode(osg::Node* node, Values value);
  void applyColors(osg::StateSet& stateSet, Values value) const;
  void applyTextures(osg::StateSet& stateSet, Values value) const;

  std::string m_name;
  std::unordered_map<int, vyr::Vec4> m_colors;
  std::unordered_map<int, Texture> m_textures;
  vyr::ref_ptr<ShaderState> m_shaderState;
  std::vector<osg::ref_ptr<osg::Uniform>> m_uniforms;
};

} // namespace vyrOSG
