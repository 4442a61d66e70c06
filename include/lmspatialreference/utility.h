/// @file
/// The utility layer (liblmutility): reference counting, the intrusive smart
/// pointer, strings, reader/writer locks, the process-wide configuration tree,
/// file-system objects, string and C-runtime helpers, and small numeric helpers.
#ifndef LMSPATIALREFERENCE_UTILITY_H
#define LMSPATIALREFERENCE_UTILITY_H

#include <lmspatialreference/refobject.h>
#include <lmspatialreference/lmstring.h>
#include <lmspatialreference/encoding.h>
#include <lmspatialreference/locks.h>
#include <lmspatialreference/configuration.h>
#include <lmspatialreference/filesystem.h>
#include <lmspatialreference/lmmath.h>
#include <lmspatialreference/rect.h>
#include <lmspatialreference/enumtable.h>

#endif  // LMSPATIALREFERENCE_UTILITY_H
