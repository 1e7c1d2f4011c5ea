// The part of a shader that says how much of the shadow light reaches a fragment.
#pragma once

namespace vyrOSG {

/// GLSL 1.20: `float litShare(vec3 position)`, position in eye space, 0 in full shadow and 1 in full light.
///
/// The decorator's defines choose the method: VYR_SHADOW_TAPS (one map, TAPS by TAPS looks), VYR_SHADOW_SPLITS (a map
/// for each slice of the view), VYR_SHADOW_OUTLINE (the casters' outline, projected on the grounds); none of them is
/// full light. A shader that contains this text imports the defines itself (`#pragma import_defines`), and with
/// VYR_SHADOW_TAPS its vertex shader fills gl_TexCoord[7].
const char* shadowLookupSource();

} // namespace vyrOSG
