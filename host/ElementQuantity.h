#pragma once

#include "host/records/Mesh.h"

/// Area of a planar element or volume of a solid, in database length units to the power 2 or 3; 0 for other
/// elements and for codes that ElementTypes.h does not know. Never negative, whichever way the element is
/// wound. Nodes between the corners do not count. A warped quadrilateral counts as its projection along its
/// mean normal; solids are bounded by bilinear faces.
double elementQuantity(const T_QM_MESH_D& mesh, std::size_t element);
