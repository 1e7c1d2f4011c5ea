/// The same box in many model formats, for tests of what readers give back.
#pragma once

#include <string>

/// A box with one corner at the origin that reaches to (1, 2, 3) m in the file's own axes, in red where the format has
/// colours. Its three lengths tell in which direction a reader turns it.
namespace modelfiles {

// Written out by hand, so that they do not depend on what the readers' own library writes.
std::string ac();
std::string animatedSkeleton();
std::string collada(const std::string& upAxis);
std::string directX();
std::string drawingExchange();
std::string gameModel();
std::string inventor(const std::string& header);
std::string lightWave();
std::string lightWaveOld();
std::string objectFile();
std::string points();
std::string polygonFile(bool binary);
std::string shapeFile();
std::string square();
std::string stereoLithography(bool binary);
std::string virtualReality();

/// Writes the box through the scene-graph library's own writer. False where it has none for the ending.
bool writeByLibrary(const std::string& path);

} // namespace modelfiles
