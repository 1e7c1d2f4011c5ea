/// A shader program that sends its compile and link errors to the message channel, with file and line.
#pragma once

#include <vyrOSG/export.h>

#include <osg/Program>
#include <osg/Referenced>
#include <osg/Shader>

#include <string>
#include <vector>

namespace vyrOSG {

/// Where the source of a shader stands; kept as the shader's user data.
class ShaderOrigin : public osg::Referenced {
public:
  /// `file` is a GLSL file, or the script that holds the source; `lines` gives for each source line the line of the
  /// script. Empty for a GLSL file, whose lines are the source's own.
  ShaderOrigin(const std::string& file, const std::vector<int>& lines = {})
      : m_file(file)
      , m_lines(lines) {}

  /// "file:line" of a line of the source, counted from 1.
  std::string locate(int line) const;

private:
  std::string m_file;
  std::vector<int> m_lines;
};

/// Turns a driver's info log into one message a complaint, "file:line: error: text (fragment shader "name")". The forms
/// of Mesa ("0:12(5): error: text"), NVIDIA ("0(12) : error C1: text") and AMD ("ERROR: 0:12: text") are understood; a
/// log in another form gives its text in one message.
std::vector<std::string> readShaderLog(const osg::Shader& shader, const std::string& log);

class ReportingProgram : public osg::Program {
public:
  ReportingProgram();
  ReportingProgram(const ReportingProgram& other, const osg::CopyOp& copyOp = osg::CopyOp::SHALLOW_COPY);
  META_StateAttribute(vyrOSG, ReportingProgram, osg::StateAttribute::PROGRAM)

      /// Compiles and links where needed, as the base does, then reports what went wrong.
      void apply(osg::State& state) const override;
  void compileGLObjects(osg::State& state) const override;

protected:
  ~ReportingProgram() override;

private:
  void report(osg::State& state, const PerContextProgram& linked) const;
};

} // namespace vyrOSG
