/// The simulation: scene files.
#include <vyr/Notify.h>
#include <vyrSDK/Simulation.h>

#include "SceneReader.h"
#include "SceneWriter.h"

#include <exception>
#include <fstream>
#include <sstream>

namespace vyrSDK {

std::string Simulation::toText() const {
  return SceneWriter(*this).write();
}

bool Simulation::fromText(const std::string& text, const std::string& source) {
  SceneReader reader;
  try {
    reader.parse(text);
  } catch (const std::exception& error) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "cannot read the scene '" << source << "': " << error.what();
    return false;
  }
  reader.commit(*this);
  return true;
}

bool Simulation::write(const vyr::String& fileName) const {
  std::ofstream file(fileName, std::ios::binary);
  file << toText() << '\n';
  file.close();
  if (!file) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "cannot write the scene '" << fileName << "'";
    return false;
  }
  return true;
}

bool Simulation::read(const vyr::String& fileName) {
  std::ifstream file(fileName, std::ios::binary);
  std::stringstream text;
  if (!file || !(text << file.rdbuf())) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "cannot read the scene '" << fileName << "': the file cannot be read";
    return false;
  }
  return fromText(text.str(), fileName);
}

} // namespace vyrSDK
