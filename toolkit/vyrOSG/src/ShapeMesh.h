// Turns the dimensions of shapes into triangle meshes with smooth normals and texture coordinates.
#pragma once

#include <osg/Geometry>
#include <osg/Vec3d>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vyrOSG::mesh {

/// Segments of a full circle for a detail ratio, a multiple of 4: 8 for 0, 40 for 0.3, 108 for 1, 308 at most.
unsigned int circleSegments(float detailRatio);

/// A box around the origin, each face with texture coordinates from 0 to 1.
osg::ref_ptr<osg::Geometry> makeBox(const osg::Vec3d& halfExtents);

/// A sphere around the origin; the texture's v runs along z.
osg::ref_ptr<osg::Geometry> makeSphere(double radius, unsigned int segments);

/// A capsule along z; height without the caps.
osg::ref_ptr<osg::Geometry> makeCapsule(double radius, double height, unsigned int segments);

/// A cylinder along z with flat caps.
osg::ref_ptr<osg::Geometry> makeCylinder(double radius, double height, unsigned int segments);

/// A cone along z, its base circle at z = 0, its tip at z = height, with a flat cap.
osg::ref_ptr<osg::Geometry> makeCone(double radius, double height, unsigned int segments);

/// A square of z = 0 around the origin, divided so that light stays smooth.
osg::ref_ptr<osg::Geometry> makePlane(double halfSize, unsigned int divisions);

/// A height field centred on the origin; the height of (column, row) at index row * columns + column.
osg::ref_ptr<osg::Geometry> makeHeightField(size_t columns, size_t rows, double sizeX, double sizeY,
                                            const std::vector<double>& heights);

/// A mesh from triangles (three indices each). Edges sharper than 40 degrees stay sharp, the others are smoothed.
osg::ref_ptr<osg::Geometry> makeTrimesh(const std::vector<osg::Vec3d>& vertices, const std::vector<uint32_t>& indices);

} // namespace vyrOSG::mesh
