/// Reads drivers' info logs. The scene-graph library prints them with the shader's name only, and to its own channel.
#include "ReportingProgram.h"

#include <vyr/Notify.h>

#include <osg/State>
#include <osgDB/FileNameUtils>

#include <regex>
#include <sstream>

namespace vyrOSG {

std::string ShaderOrigin::locate(int line) const {
  const std::size_t index = static_cast<std::size_t>(line) - 1;
  const int shown = line > 0 && index < m_lines.size() ? m_lines[index] : line;
  return m_file + ":" + std::to_string(shown);
}

std::vector<std::string> readShaderLog(const osg::Shader& shader, const std::string& log) {
  // Each form gives the line number and the text; the first groups hold the number of the source string.
  static const std::regex mesa(R"(^\s*\d+:(\d{1,9})\(\d+\):\s*(.*\S)\s*$)");
  static const std::regex nvidia(R"(^\s*\d+\((\d{1,9})\)\s*:\s*(.*\S)\s*$)");
  static const std::regex amd(R"(^\s*(?:ERROR|WARNING):\s*\d+:(\d{1,9}):\s*(.*\S)\s*$)");

  const auto* origin = dynamic_cast<const ShaderOrigin*>(shader.getUserData());
  const std::string suffix =
      " (" + osgDB::convertToLowerCase(shader.getTypename()) + " shader \"" + shader.getName() + "\")";
  const auto locate = [&](int line) {
    return origin ? origin->locate(line) : "shader \"" + shader.getName() + "\":" + std::to_string(line);
  };

  std::vector<std::string> messages;
  std::istringstream lines(log);
  std::string line, unread;
  while (std::getline(lines, line)) {
    std::smatch match;
    if (std::regex_match(line, match, mesa) || std::regex_match(line, match, nvidia) ||
        std::regex_match(line, match, amd))
      messages.push_back(locate(std::stoi(match[1])) + ": " + match[2].str() + suffix);
    else if (line.find_first_not_of(" \t\r") != std::string::npos)
      unread += (unread.empty() ? "" : "; ") + line;
  }
  if (messages.empty())
    messages.push_back(locate(1) + ": " + (unread.empty() ? "does not compile" : unread) + suffix);
  return messages;
}

ReportingProgram::ReportingProgram() = default;

ReportingProgram::ReportingProgram(const ReportingProgram& other, const osg::CopyOp& copyOp)
    : osg::Program(other, copyOp) {}

ReportingProgram::~ReportingProgram() = default;

void ReportingProgram::apply(osg::State& state) const {
  const PerContextProgram* linked = isFixedFunction() ? nullptr : getPCP(state);
  const bool linksNow = linked && linked->needsLink();
  osg::Program::apply(state);
  if (linksNow && !linked->isLinked())
    report(state, *linked);
}

void ReportingProgram::compileGLObjects(osg::State& state) const {
  const PerContextProgram* linked = isFixedFunction() ? nullptr : getPCP(state);
  const bool linksNow = linked && linked->needsLink();
  osg::Program::compileGLObjects(state);
  if (linksNow && !linked->isLinked())
    report(state, *linked);
}

void ReportingProgram::report(osg::State& state, const PerContextProgram& linked) const {
  bool allCompiled = true;
  for (unsigned int i = 0; i < getNumShaders(); ++i) {
    const osg::Shader& shader = *getShader(i);
    const osg::Shader::PerContextShader* compiled = shader.getPCS(state);
    if (!compiled || compiled->isCompiled())
      continue;
    allCompiled = false;
    std::string log;
    compiled->getInfoLog(log);
    for (const std::string& message : readShaderLog(shader, log))
      VYR_NOTIFY(vyr::NOTIFY_ERROR) << message;
  }
  if (!allCompiled)
    return;
  std::string log;
  linked.getInfoLog(log);
  for (char& c : log)
    if (c == '\n' || c == '\r')
      c = ' ';
  VYR_NOTIFY(vyr::NOTIFY_ERROR) << "program \"" << getName() << "\" does not link: " << log;
}

} // namespace vyrOSG
