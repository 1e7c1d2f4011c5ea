-- Text in the three-dimensional scene.
types {
  "vyr::FrictionModel", "osg::Group", "vyr::Vec3", "vyr::Vec4", "vyr::SPDMatrix3x3", "vyrOSG::Text",
  "vyr::AffineMatrix4x4", "vyr::Vec3d", "vyr::Vec4d", "vyr::Vec2f", "vyr::Constraint", "vyr::Vec2d", "vyr::Vec2",
  "vyr::Vec4f", "vyr::Quat", "vyr::Vec3f",
}
shared()
samples({ text = function() return (vyrOSG.Text("a")) end }, { ["vyrOSG::Text"] = "text" })

namespace "vyrOSG"
class("Text", { base = "osg::Group", collector = "drops" })
constants {
  "XY_PLANE", 0, "REVERSED_XY_PLANE", 1, "XZ_PLANE", 2, "REVERSED_XZ_PLANE", 3, "YZ_PLANE", 4, "REVERSED_YZ_PLANE", 5,
  "SCREEN", 6, "USER_DEFINED_ROTATION", 7,
}
constants {
  "DROP_SHADOW_BOTTOM_RIGHT", 0, "DROP_SHADOW_CENTER_RIGHT", 1, "DROP_SHADOW_TOP_RIGHT", 2,
  "DROP_SHADOW_BOTTOM_CENTER", 3, "DROP_SHADOW_TOP_CENTER", 4, "DROP_SHADOW_BOTTOM_LEFT", 5,
  "DROP_SHADOW_CENTER_LEFT", 6, "DROP_SHADOW_TOP_LEFT", 7, "OUTLINE", 8, "NONE", 9,
}
constants { "TEXT", 1, "BOUNDINGBOX", 2, "FILLEDBOUNDINGBOX", 4, "ALIGNMENT", 8 }
constants {
  "LEFT_TOP", 0, "LEFT_CENTER", 1, "LEFT_BOTTOM", 2, "CENTER_TOP", 3, "CENTER_CENTER", 4, "CENTER_BOTTOM", 5,
  "RIGHT_TOP", 6, "RIGHT_CENTER", 7, "RIGHT_BOTTOM", 8, "LEFT_BASE_LINE", 9, "CENTER_BASE_LINE", 10,
  "RIGHT_BASE_LINE", 11, "LEFT_BOTTOM_BASE_LINE", 12, "CENTER_BOTTOM_BASE_LINE", 13, "RIGHT_BOTTOM_BASE_LINE", 14,
  "BASE_LINE", 9,
}
constructor "Text()"
local full = "vyrOSG::Text::Text(const vyr::String&, const vyr::Vec3&%s, const vyr::Vec4&%s)"
constructor { "Text(const vyr::VyrString<std::string>& text)", reaches = full:format(" = vyr::Vec3(0, 0, 0)", " = vyr::Vec4(1, 1, 1, 1)") }
constructor { "Text(const vyr::VyrString<std::string>& text, const vyr::Vec3& position)", reaches = full:format("", " = vyr::Vec4(1, 1, 1, 1)") }
constructor "Text(const vyr::VyrString<std::string>& text, const vyr::Vec3& position, const vyr::Vec4& color)"
row "void setFont(const vyr::VyrString<std::string>& font)"
row "void setCharacterSize(float size)"
row "void setPosition(const vyr::Vec3& position)"
row "void setAxisAlignment(enum vyrOSG::Text::AxisAlignment alignment)"
row "void setBackdropType(enum vyrOSG::Text::BackdropType type)"
row "void setDrawMode(enum vyrOSG::Text::DrawModeMask mode)"
row "void setText(const vyr::VyrString<std::string>& text)"
row "void setAlignment(enum vyrOSG::Text::AlignmentType alignment)"
row "void setColor(const vyr::Vec4& color)"
