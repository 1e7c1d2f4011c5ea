/// Decides which pairs of geometries something applies to.
#include <vyrSDK/ExecuteFilter.h>

namespace vyrSDK {

ExecuteFilter::~ExecuteFilter() = default;

} // namespace vyrSDK
