/// Text and checked elements of the scene-graph library's values, and the stages of shaders.
#pragma once

#include <vyrScript/ValueSupport.h>

#include <osg/Shader>

#include <cstddef>
#include <string>

namespace vyrScript {

template <class Vector>
std::string textOf(const Vector* v) {
  double components[Vector::num_components];
  for (int i = 0; i < Vector::num_components; ++i) {
    components[i] = static_cast<double>((*v)[i]);
  }
  return listOf(components, Vector::num_components);
}

template <class Matrix>
double elementOf(const Matrix* m, int row, int column) {
  const bool inside = row >= 0 && row < 4 && column >= 0 && column < 4;
  return inside ? static_cast<double>((*m)(row, column)) : 0.0;
}

template <class Matrix>
void setElementOf(Matrix* m, int row, int column, double value) {
  if (row >= 0 && row < 4 && column >= 0 && column < 4) {
    (*m)(row, column) = static_cast<typename Matrix::value_type>(value);
  }
}

template <class Matrix>
std::string rowsOf(const Matrix* m) {
  std::string rows;
  for (int row = 0; row < 4; ++row) {
    const double elements[] = {elementOf(m, row, 0), elementOf(m, row, 1), elementOf(m, row, 2), elementOf(m, row, 3)};
    rows += (row == 0 ? "" : "\n") + listOf(elements, 4);
  }
  return rows;
}

inline osg::Shader::Type vertexStage() {
  return osg::Shader::VERTEX;
}
inline osg::Shader::Type geometryStage() {
  return osg::Shader::GEOMETRY;
}
inline osg::Shader::Type fragmentStage() {
  return osg::Shader::FRAGMENT;
}

} // namespace vyrScript
