// Everything liblmspatialreference offers, in one include.
#ifndef LMSPATIALREFERENCE_LMSPATIALREFERENCE_H
#define LMSPATIALREFERENCE_LMSPATIALREFERENCE_H

#include <lmspatialreference/utility.h>
#include <lmspatialreference/spatialreference.h>
#include <lmspatialreference/coordinatetransformation.h>
#include <lmspatialreference/geodesics.h>
#include <lmspatialreference/fitting.h>

#endif  // LMSPATIALREFERENCE_LMSPATIALREFERENCE_H
