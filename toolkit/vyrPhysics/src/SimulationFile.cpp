/// The simulation: scene files.
#include <vyr/Notify.h>
#include <vyrSDK/Simulation.h>

#include "SceneReader.h"
#include "SceneWriter.h"

#include <exception>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <system_error>

namespace vyrSDK {

namespace {

bool fail(const char* action, const std::string& source, const char* reason) {
  VYR_NOTIFY(vyr::NOTIFY_ERROR) << "cannot " << action << " the scene '" << source << "': " << reason;
  return false;
}

/// One message for all members that are not known; a file with thousands of parts may have one in each.
void reportUnknown(const std::string& source, const std::vector<std::string>& unknown) {
  constexpr std::size_t kNamed = 5;
  if (unknown.empty()) {
    return;
  }
  std::string names;
  for (std::size_t i = 0; i < unknown.size() && i < kNamed; ++i) {
    names += (i > 0 ? ", " : "") + unknown[i];
  }
  if (unknown.size() > kNamed) {
    names += " and " + std::to_string(unknown.size() - kNamed) + " more";
  }
  VYR_NOTIFY(vyr::NOTIFY_WARNING) << "the scene '" << source
                                  << "' has members that are not known and were left out: " << names;
}

std::string folderOf(const std::string& fileName) {
  std::error_code ignored;
  return std::filesystem::absolute(fileName, ignored).parent_path().string();
}

bool load(const std::string& fileName, const char* action, std::string& outText) {
  std::ifstream file(fileName, std::ios::binary);
  std::stringstream text;
  std::error_code ignored;
  if (!file || std::filesystem::is_directory(fileName, ignored)) {
    return fail(action, fileName, "there is no such file, or it may not be read");
  }
  text << file.rdbuf();
  outText = text.str();
  return true;
}

} // namespace

std::string Simulation::toText() const {
  return SceneWriter(*this, "").write();
}

bool Simulation::fromText(const std::string& text, const std::string& source, SceneVisuals* visuals) {
  SceneReader reader(visuals);
  try {
    reader.parse(text, *vyr::ref_ptr<Simulation>(new Simulation));
  } catch (const std::exception& error) {
    return fail("read", source, error.what());
  }
  reader.commit(*this);
  reportUnknown(source, reader.getUnknown());
  return true;
}

bool Simulation::write(const vyr::String& fileName) const {
  std::ofstream file(fileName, std::ios::binary);
  file << SceneWriter(*this, folderOf(fileName)).write() << '\n';
  file.close();
  return file.good() || fail("write", fileName, "the file cannot be written");
}

bool Simulation::read(const vyr::String& fileName, SceneVisuals* visuals) {
  std::string text;
  return load(fileName, "read", text) && fromText(text, fileName, visuals);
}

bool Simulation::restore(const vyr::String& fileName) {
  std::string text;
  if (!load(fileName, "restore", text)) {
    return false;
  }
  SceneReader reader;
  try {
    reader.parse(text, *this);
    reader.restore(*this);
  } catch (const std::exception& error) {
    return fail("restore", fileName, error.what());
  }
  reportUnknown(fileName, reader.getUnknown());
  return true;
}

} // namespace vyrSDK
