// Writes looks into scene files and reads them.
#include "LookFile.h"

#include <vyrOSG/Conversions.h>

#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace vyrOSG {

using vyrSDK::SceneRecord;
using vyrSDK::SceneValue;

namespace {

const char* const kModes[] = {"diffuse",   "shadow",      "shadowJitter", "normalMap",
                              "heightMap", "specularMap", "sphereMap"};
constexpr std::size_t kNumModes = sizeof(kModes) / sizeof(kModes[0]);

/// The name of a file for a scene file in a folder.
std::string nameFor(const std::string& file, const std::string& folder) {
  std::error_code ignored;
  const std::filesystem::path path = std::filesystem::absolute(file, ignored).lexically_normal();
  if (!folder.empty()) {
    const std::filesystem::path relative = path.lexically_relative(std::filesystem::path(folder).lexically_normal());
    if (!relative.empty() && *relative.begin() != "..")
      return relative.string();
  }
  return path.string();
}

/// The number with the fewest digits that comes back as the same single-precision one: 0.3, not 0.300000012.
double shortest(float number) {
  char digits[32];
  const std::to_chars_result end = std::to_chars(digits, digits + sizeof(digits) - 1, number);
  *end.ptr = '\0';
  return std::strtod(digits, nullptr);
}

void setColor(SceneRecord& out, const char* key, const osg::Vec4& color) {
  std::vector<double> values;
  for (int i = 0; i < 4; ++i)
    values.push_back(shortest(color[i]));
  out.set(key, values);
}

osg::Vec4 readColor(const SceneValue& value) {
  const vyr::Vec4 color = value.vec4();
  return toOsg(color);
}

void getColor(const SceneValue& value, const char* key, osg::Vec4& color) {
  if (value.has(key))
    color = readColor(value[key]);
}

void getFloat(const SceneValue& value, const char* key, float& number) {
  double wide = double(number);
  value.get(key, wide);
  number = float(wide);
}

vyr::AffineMatrix4x4 rowsOf(const osg::Matrixd& matrix) {
  vyr::AffineMatrix4x4 rows;
  std::copy(matrix.ptr(), matrix.ptr() + 16, rows.ptr());
  return rows;
}

osg::Matrixd readMatrix(const SceneValue& value) {
  const std::vector<double> numbers = value.numbers(16);
  return osg::Matrixd(numbers.data());
}

void writeMaterial(const SurfaceLook& look, SceneRecord& out) {
  if (!look.hasMaterial)
    return;
  setColor(out, "color", look.color);
  setColor(out, "ambient", look.ambient);
  setColor(out, "specular", look.specular);
  if (look.emission != osg::Vec4(0, 0, 0, look.emission.a()))
    setColor(out, "emission", look.emission);
  out.set("shininess", shortest(look.shininess));
  if (look.untouched)
    out.set("untouched", true);
}

void writeSurface(const SurfaceLook& look, const std::string& folder, SceneRecord& out) {
  writeMaterial(look, out);
  for (const TextureLook& texture : look.textures) {
    SceneRecord record = out.append("textures");
    record.set("file", nameFor(texture.file, folder));
    record.set("mode", kModes[texture.mode]);
    record.set("repeat", texture.repeat);
    record.set("scale", std::vector<double>{shortest(texture.scaleU), shortest(texture.scaleV)});
  }
  if (!look.cubeMap.empty()) {
    SceneRecord record = out.add("cubeMap");
    // A path that ends with '/' must go on doing so.
    record.set("path", nameFor(look.cubeMap, folder));
    record.set("type", look.cubeMapType);
  }
  if (look.reflection >= 0)
    out.set("reflection", shortest(look.reflection));
  if (look.wireFrame)
    out.set("wireFrame", true);
  if (look.mask == 0)
    out.set("visible", false);
  else if (look.mask != ~0u)
    out.set("mask", std::uint64_t(look.mask));
  for (const auto& [light, on] : look.lights) {
    SceneRecord record = out.append("lights");
    record.set("number", light);
    record.set("on", on);
  }
  if (look.integers.empty() && look.numbers.empty())
    return;
  SceneRecord uniforms = out.add("uniforms");
  for (const auto& [name, value] : look.integers)
    uniforms.set(name.c_str(), value);
  for (const auto& [name, value] : look.numbers)
    uniforms.set(name.c_str(), shortest(value));
}

TextureLook readTexture(const SceneValue& value) {
  TextureLook look;
  look.file = value["file"].text();
  std::string mode = kModes[0];
  value.get("mode", mode);
  std::size_t number = 0;
  while (number < kNumModes && mode != kModes[number])
    ++number;
  if (number == kNumModes)
    value["mode"].fail("there is no mode \"" + mode + "\"");
  look.mode = static_cast<TextureMode>(number);
  value.get("repeat", look.repeat);
  if (value.has("scale")) {
    const std::vector<double> scale = value["scale"].numbers(2);
    look.scaleU = float(scale[0]);
    look.scaleV = float(scale[1]);
  }
  return look;
}

void readUniforms(const SceneValue& value, SurfaceLook& look) {
  for (const std::string& name : value.getKeys()) {
    const SceneValue number = value[name.c_str()];
    if (number.isInteger())
      look.integers[name] = static_cast<int>(number.integer(-2147483647, 2147483647));
    else
      look.numbers[name] = float(number.number());
  }
}

SurfaceLook readSurface(const SceneValue& value) {
  SurfaceLook look;
  look.hasMaterial = value.has("color");
  getColor(value, "color", look.color);
  look.ambient = look.color;
  // The usual highlights.
  look.specular = osg::Vec4(0.18f, 0.18f, 0.18f, look.color.a());
  look.shininess = 24;
  look.emission.a() = look.color.a();
  getColor(value, "ambient", look.ambient);
  getColor(value, "specular", look.specular);
  getColor(value, "emission", look.emission);
  getFloat(value, "shininess", look.shininess);
  if (look.shininess < 0 || look.shininess > 128)
    value["shininess"].fail("must be from 0 to 128");
  value.get("untouched", look.untouched);
  for (std::size_t i = 0; value.has("textures") && i < value["textures"].size(); ++i)
    look.textures.push_back(readTexture(value["textures"][i]));
  if (value.has("cubeMap")) {
    look.cubeMap = value["cubeMap"]["path"].text();
    look.cubeMapType = value["cubeMap"]["type"].text();
  }
  getFloat(value, "reflection", look.reflection);
  value.get("wireFrame", look.wireFrame);
  bool visible = true;
  std::uint64_t mask = look.mask;
  value.get("visible", visible);
  value.get("mask", mask);
  look.mask = visible ? static_cast<unsigned int>(mask) : 0;
  for (std::size_t i = 0; value.has("lights") && i < value["lights"].size(); ++i) {
    const SceneValue light = value["lights"][i];
    look.lights[static_cast<int>(light["number"].integer(0, 7))] = light["on"].flag();
  }
  if (value.has("uniforms"))
    readUniforms(value["uniforms"], look);
  return look;
}

void writeNode(const NodeLook& look, const std::string& folder, SceneRecord out) {
  writeSurface(look.surface, folder, out);
  if (look.kind == NodeLook::MODEL) {
    out.set("file", nameFor(look.file, folder));
  } else if (look.kind == NodeLook::WHEEL) {
    out.set("wheel", true);
  } else {
    out.set("transform", rowsOf(look.matrix));
    for (const NodeLook& child : look.children)
      writeNode(child, folder, out.append("nodes"));
  }
}

NodeLook readNode(const SceneValue& value) {
  NodeLook look;
  look.surface = readSurface(value);
  bool wheel = false;
  value.get("wheel", wheel);
  if (value.has("file")) {
    look.kind = NodeLook::MODEL;
    look.file = value["file"].text();
  } else if (wheel) {
    look.kind = NodeLook::WHEEL;
  } else {
    if (value.has("transform"))
      look.matrix = readMatrix(value["transform"]);
    for (std::size_t i = 0; value.has("nodes") && i < value["nodes"].size(); ++i)
      look.children.push_back(readNode(value["nodes"][i]));
  }
  return look;
}

} // namespace

void writeCompany(const CompanyLook& company, const std::string& folder, SceneRecord out) {
  for (const NodeLook& node : company.nodes)
    writeNode(node, folder, out.append("nodes"));
  for (const TextLook& text : company.texts) {
    SceneRecord record = out.append("texts");
    record.set("text", text.text);
    record.set("position", text.position);
    setColor(record, "color", text.color);
    record.set("size", text.size);
  }
  for (const AxesLook& axes : company.axes) {
    SceneRecord record = out.append("axes");
    record.set("transform", rowsOf(axes.matrix));
    record.set("scale", shortest(float(axes.scale)));
    setColor(record, "color", axes.color);
  }
}

CompanyLook readCompany(const SceneValue& value) {
  CompanyLook company;
  for (std::size_t i = 0; value.has("nodes") && i < value["nodes"].size(); ++i)
    company.nodes.push_back(readNode(value["nodes"][i]));
  for (std::size_t i = 0; value.has("texts") && i < value["texts"].size(); ++i) {
    const SceneValue entry = value["texts"][i];
    TextLook text;
    text.text = entry["text"].text();
    text.color = osg::Vec4(1, 1, 1, 1);
    entry.get("position", text.position);
    getColor(entry, "color", text.color);
    text.size = entry["size"].positive();
    company.texts.push_back(text);
  }
  for (std::size_t i = 0; value.has("axes") && i < value["axes"].size(); ++i) {
    const SceneValue entry = value["axes"][i];
    AxesLook axes;
    if (entry.has("transform"))
      axes.matrix = readMatrix(entry["transform"]);
    entry.getPositive("scale", axes.scale);
    getColor(entry, "color", axes.color);
    company.axes.push_back(axes);
  }
  return company;
}

void writeLook(const GeometryLook& look, const std::string& folder, SceneRecord out) {
  writeSurface(look.surface, folder, out);
  out.set("detailRatio", shortest(look.detailRatio));
  if (look.showsShape)
    out.set("showsShape", true);
  if (!look.model.empty())
    writeNode(look.model[0], folder, out.add("model"));
  writeCompany(look.company, folder, out);
}

GeometryLook readLook(const SceneValue& value) {
  GeometryLook look;
  look.surface = readSurface(value);
  getFloat(value, "detailRatio", look.detailRatio);
  value.get("showsShape", look.showsShape);
  if (value.has("model"))
    look.model.push_back(readNode(value["model"]));
  look.company = readCompany(value);
  return look;
}

} // namespace vyrOSG
