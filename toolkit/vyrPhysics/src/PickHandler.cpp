/// Service that finds what lies under a point of the screen.
#include <vyrSDK/PickHandler.h>

namespace vyrSDK {

PickHandler::~PickHandler() = default;

} // namespace vyrSDK
