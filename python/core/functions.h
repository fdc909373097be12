#pragma once

/// The exported functions by room: each file lists them with the role of every parameter.

#include <pybind11/pybind11.h>

namespace binding {

void defineGeometry(pybind11::module_& module);
void defineConditioning(pybind11::module_& module);
void defineFeatures(pybind11::module_& module);
void defineTrees(pybind11::module_& module);
void defineMaps(pybind11::module_& module);

}  // namespace binding
