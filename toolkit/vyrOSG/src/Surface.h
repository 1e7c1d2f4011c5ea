// The look that visuals have before anyone colours them, and the walk over what a node's colour reaches.
#pragma once

#include <osg/Material>
#include <osg/Node>
#include <osg/StateSet>
#include <osg/Vec4>

#include <functional>

namespace vyrOSG::surface {

/// Colour number index of the palette; the palette repeats after its last colour.
osg::Vec4 paletteColor(unsigned int index);

/// The colour of what stands still.
osg::Vec4 groundColor();

/// Gives a node the default look in a colour: matt with a soft highlight.
void setDefaultMaterial(osg::Node* node, const osg::Vec4& color);

/// Whether a material still has the look that setDefaultMaterial gave it.
bool isDefaultMaterial(const osg::Material* material);

/// Makes a node keep the colours that it has: what colours, textures or lights the nodes above leaves it as it is.
/// lit: it is shaded by the scene's lights, else it glows in its colour.
void setFixedLook(osg::Node* node, bool lit);

/// For lines: they cast no shadow under a scene decorator, and come forward a little, so that those that lie on a
/// surface do not flicker with it.
void setLineLook(osg::Node* node);

/// Puts a checker of tiles of 1 m on the square that stands for a plane.
void setPlaneChecker(osg::Node* node, double squareSize);

/// Calls change for the material of a node, made if there is none, and for every material below it. Materials that
/// other state sets share are copied first, so that nothing beside the node changes.
void changeMaterials(osg::Node* node, const std::function<void(osg::Material&, osg::StateSet&)>& change);

/// Calls visit for every state set of a node and below it.
void visitStateSets(osg::Node* node, const std::function<void(osg::StateSet&)>& visit);

/// Turns blending and back-to-front drawing on for an alpha below 1, and off again for 1.
void setTransparency(osg::StateSet& stateSet, float alpha);

} // namespace vyrOSG::surface
