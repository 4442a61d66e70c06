/// @file
/// Dense linear algebra shared by the parameter estimators.
///
/// Two layers live side by side: an LU layer with an explicit decomposition
/// record and a small matrix class (namespace Lumora::Kernel), and a C-style kit
/// of free functions over plain double arrays (global namespace).
///
/// Every matrix is dense and row-major: element (i, j) of an n-column matrix is
/// at index i * n + j. Sizes are never checked against buffer lengths; callers
/// pass correct sizes. Nothing here throws except allocation failures.
#ifndef LMSPATIALREFERENCE_FITTING_H
#define LMSPATIALREFERENCE_FITTING_H

#include <lmspatialreference/lupmatrix.h>
#include <lmspatialreference/mymatrix.h>
#include <lmspatialreference/matrixkit.h>

#endif  // LMSPATIALREFERENCE_FITTING_H
