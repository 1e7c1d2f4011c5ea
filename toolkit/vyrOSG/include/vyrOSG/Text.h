/// Text in the three-dimensional scene.
#pragma once

#include <vyrOSG/export.h>

#include <vyr/Vec3.h>
#include <vyr/Vec4.h>
#include <vyr/VyrString.h>

#include <osg/Group>
#include <osg/ref_ptr>

namespace osgText {
class Text;
}

namespace vyrOSG {

class MeasuredText;
class TextDecoration;

/// A group that carries one text drawable; place it in the scene as any other group.
/// It is drawn unlit, over its own colour, in the built-in font until another is set. A value that is no number, a size
/// that is not positive or a value outside its enumeration changes nothing and gives one error line.
class VYROSG_EXPORT Text : public osg::Group {
public:
  /// The plane that the text lies in; `SCREEN` turns it to the viewer.
  enum AxisAlignment : int {
    XY_PLANE = 0,
    REVERSED_XY_PLANE = 1,
    XZ_PLANE = 2,
    REVERSED_XZ_PLANE = 3,
    YZ_PLANE = 4,
    REVERSED_YZ_PLANE = 5,
    SCREEN = 6,
    USER_DEFINED_ROTATION = 7
  };

  /// What is drawn behind the glyphs to set them off.
  enum BackdropType : int {
    DROP_SHADOW_BOTTOM_RIGHT = 0,
    DROP_SHADOW_CENTER_RIGHT = 1,
    DROP_SHADOW_TOP_RIGHT = 2,
    DROP_SHADOW_BOTTOM_CENTER = 3,
    DROP_SHADOW_TOP_CENTER = 4,
    DROP_SHADOW_BOTTOM_LEFT = 5,
    DROP_SHADOW_CENTER_LEFT = 6,
    DROP_SHADOW_TOP_LEFT = 7,
    OUTLINE = 8,
    NONE = 9
  };

  /// Which parts are drawn; bits to be added.
  enum DrawModeMask : int { TEXT = 1, BOUNDINGBOX = 2, FILLEDBOUNDINGBOX = 4, ALIGNMENT = 8 };

  /// Which point of the text stands at its position.
  enum AlignmentType : int {
    LEFT_TOP = 0,
    LEFT_CENTER = 1,
    LEFT_BOTTOM = 2,
    CENTER_TOP = 3,
    CENTER_CENTER = 4,
    CENTER_BOTTOM = 5,
    RIGHT_TOP = 6,
    RIGHT_CENTER = 7,
    RIGHT_BOTTOM = 8,
    LEFT_BASE_LINE = 9,
    CENTER_BASE_LINE = 10,
    RIGHT_BASE_LINE = 11,
    LEFT_BOTTOM_BASE_LINE = 12,
    CENTER_BOTTOM_BASE_LINE = 13,
    RIGHT_BOTTOM_BASE_LINE = 14,
    BASE_LINE = LEFT_BASE_LINE
  };

  /// An empty white text at the origin.
  Text();
  /// `text` (UTF-8) at `position` in m, in the colour (r, g, b, a). Defaults of the node: characters 1 m high, turned
  /// to the viewer, aligned at the left end of the base line, no backdrop.
  explicit Text(const vyr::String& text, const vyr::Vec3& position = vyr::Vec3(0, 0, 0),
                const vyr::Vec4& color = vyr::Vec4(1, 1, 1, 1));

  /// Sets the font by file or by name ("DejaVuSans", "fonts/arial.ttf"). Looked for on the scene-graph library's file
  /// path, in "fonts" folders there, then in the system's font folders; without an extension the usual ones are tried.
  /// Failure: the font stays, one error line with every path tried.
  void setFont(const vyr::String& font);
  /// Sets the height of a character in m.
  void setCharacterSize(float size);
  /// Sets the place of the text in the frame of this node, in m.
  void setPosition(const vyr::Vec3& position);
  void setAxisAlignment(AxisAlignment alignment);
  void setBackdropType(BackdropType type);
  /// Sets what is drawn, a sum of `DrawModeMask` values: the glyphs, a box around them in their colour, the same box
  /// filled with a half-transparent black, a cross at the alignment point; 0 draws nothing. Default: `TEXT`.
  void setDrawMode(DrawModeMask mode);
  DrawModeMask getDrawMode() const { return m_drawMode; }
  /// Sets the text; UTF-8, lines end with "\n".
  void setText(const vyr::String& text);
  void setAlignment(AlignmentType alignment);
  /// Sets the colour of the glyphs, (r, g, b, a) in 0..1.
  void setColor(const vyr::Vec4& color);

  /// The text drawable below this node. *returns inner*
  osgText::Text* getDrawable();
  const osgText::Text* getDrawable() const;

protected:
  ~Text() override;

private:
  osg::ref_ptr<MeasuredText> m_text;
  osg::ref_ptr<TextDecoration> m_decoration;
  DrawModeMask m_drawMode = TEXT;
};

} // namespace vyrOSG
