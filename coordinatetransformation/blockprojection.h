// The two ways a projection transformation hands a range of points to GDAL:
// one call per point, or one call per block of points. Both count the points
// GDAL accepted and leave every coordinate exactly as the other would.
#ifndef LMSPATIALREFERENCE_BLOCKPROJECTION_H
#define LMSPATIALREFERENCE_BLOCKPROJECTION_H

class OGRCoordinateTransformation;

namespace Lumora {
namespace Kernel {

// Transforms the points [begin, end) of a strided batch (point i at index
// i * step of x, y and, unless null, z) with one GDAL call each, and returns
// how many succeeded. Points too far out for PROJ are skipped, so they count
// as failed and stay as given; a point GDAL refuses is left as GDAL left it.
// GDAL's reports are silenced on the calling thread.
int TransformPointByPoint(OGRCoordinateTransformation* handle, double* x, double* y, double* z, int begin, int end,
                          int step);

// The same result, bit for bit, with one GDAL call per block of points: the
// points are gathered into scratch buffers of bounded size, transformed
// together and the successes scattered back. Each point GDAL refuses in a
// block is left untouched there and handed to GDAL again on its own, so it
// ends exactly as TransformPointByPoint leaves it.
int TransformInBlocks(OGRCoordinateTransformation* handle, double* x, double* y, double* z, int begin, int end,
                      int step);

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_BLOCKPROJECTION_H
