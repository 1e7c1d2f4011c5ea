/// The kinds of objects that this library itself writes into scene files by name.
#pragma once

#include <vyrSDK/SceneType.h>

namespace vyrSDK {

vyr::ref_ptr<SceneType> makeCarType();
vyr::ref_ptr<SceneType> makeEmitterType();
vyr::ref_ptr<SceneType> makeWireType();

} // namespace vyrSDK
