/// @file
/// Everything liblmspatialreference offers, in one include.
#ifndef LMSPATIALREFERENCE_LMSPATIALREFERENCE_H
#define LMSPATIALREFERENCE_LMSPATIALREFERENCE_H

#include <lmspatialreference/utility.h>
#include <lmspatialreference/spatialreference.h>
#include <lmspatialreference/epsgmatch.h>
#include <lmspatialreference/spatialreferencerecords.h>
#include <lmspatialreference/epsg.h>
#include <lmspatialreference/spatialreferencemanager.h>
#include <lmspatialreference/coordinatetransformation.h>
#include <lmspatialreference/geodesics.h>
#include <lmspatialreference/fitting.h>
// Control-point estimation and the transformations it fits.
#include <lmspatialreference/coordinatetransformationfactory.h>
#include <lmspatialreference/geocentricconversion.h>
#include <lmspatialreference/plane4parametertransformation.h>
#include <lmspatialreference/bursa7parametertransformation.h>
#include <lmspatialreference/plane7parametertransformation.h>
// Graph interpolation, the cube, Molodensky and square fitting models.
#include <lmspatialreference/graphsinterpolation.h>
#include <lmspatialreference/fittingmodels.h>
#include <lmspatialreference/legacyparameters.h>
#include <lmspatialreference/pyramid.h>

#endif  // LMSPATIALREFERENCE_LMSPATIALREFERENCE_H
