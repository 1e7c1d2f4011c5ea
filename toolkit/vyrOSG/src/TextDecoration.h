/// Draws the box around a text and the cross at its alignment point.
#pragma once

#include <osg/Drawable>
#include <osg/ref_ptr>
#include <osgText/Text>

namespace vyrOSG {

/// A text that tells its size. Its own decorations are not used: the text library draws them through the shader for
/// glyphs, which finds no glyph there and leaves them invisible.
class MeasuredText : public osgText::Text {
public:
  /// The box around the glyphs, in the frame in which they are laid out.
  const osg::BoundingBox& getGlyphBox() const { return _textBB; }
  /// The alignment point in the same frame.
  const osg::Vec3& getAlignmentPoint() const { return _offset; }
  /// From that frame to the frame of the drawable; turned to the viewer where the text is. Nullable: `state`.
  osg::Matrix getPlacement(osg::State* state) const;

protected:
  ~MeasuredText() override;
};

/// Stands beside its text in one geode.
class TextDecoration : public osg::Drawable {
public:
  TextDecoration();
  /// *retains* the text.
  explicit TextDecoration(const MeasuredText* text);
  TextDecoration(const TextDecoration& other, const osg::CopyOp& copyOp = osg::CopyOp::SHALLOW_COPY);
  META_Node(vyrOSG, TextDecoration)

      /// A sum of `osgText::TextBase::DrawModeMask` values; the glyphs' own bit means nothing here.
      void setMode(unsigned int mode) {
    m_mode = mode;
  }

  osg::BoundingBox computeBoundingBox() const override;
  void drawImplementation(osg::RenderInfo& renderInfo) const override;

protected:
  ~TextDecoration() override;

private:
  osg::ref_ptr<const MeasuredText> m_text;
  unsigned int m_mode = 0;
};

} // namespace vyrOSG
