/// @file
/// Coordinate transformations: the interface every transformation implements,
/// and the transformation classes of the library.
#ifndef LMSPATIALREFERENCE_COORDINATETRANSFORMATION_H
#define LMSPATIALREFERENCE_COORDINATETRANSFORMATION_H

#include <lmspatialreference/spatialreference.h>
#include <lmspatialreference/utility.h>
#include <lmspatialreference/transformation.h>
#include <lmspatialreference/projecttransformation.h>
#include <lmspatialreference/iterativeinverse.h>
#include <lmspatialreference/chinaoffset.h>
#include <lmspatialreference/affinetransformation.h>
#include <lmspatialreference/conversetransformation.h>
#include <lmspatialreference/transformationcombination.h>
#include <lmspatialreference/pointoutcomes.h>

#endif  // LMSPATIALREFERENCE_COORDINATETRANSFORMATION_H
