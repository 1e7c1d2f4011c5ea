// Anchors the scene loader's type information in this library, so that casts work across libraries.
#include <vyrIO/CFGSceneLoader.h>

namespace vyrIO {

CFGSceneLoader::~CFGSceneLoader() = default;

} // namespace vyrIO
