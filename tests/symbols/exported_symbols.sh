#!/usr/bin/env bash
# Lists what the two shared libraries export and fails when an internal helper
# is among it, or when a piece of the public API is missing from it.
# Usage: exported_symbols.sh <liblmutility.so> <liblmspatialreference.so>
set -euo pipefail

exported() { nm -DC --defined-only "$1" | cut -d' ' -f3-; }
symbols=$( { exported "$1"; exported "$2"; } | sort -u)
status=0

# Internal helpers: free functions whose name starts with an underscore (the
# library's mark of a module-private helper), anything of an anonymous
# namespace, the pieces of the private GDAL and batch headers, and the
# libraries the implementation uses.
internal='^(Lumora::(Kernel|Utility)::)?_[A-Za-z0-9_]*\(|anonymous namespace|IsSameEllipsoid|LmQuietGdalErrors|LmThreadLocalGdalOption|WithGisAxisOrder|TakeOgrText|FirstChildValue|LmDestroy|PointBlockOfThread|Parallel(Blocks|Sum|Points)|LmPointBlock|^tinyxml2::|geod_|^OGR|^CPL|^GDAL'
if leaked=$(grep -E "$internal" <<<"$symbols"); then
    echo "internal symbols are exported:"
    echo "$leaked"
    status=1
fi

# A sample of the public API of each family, including the underscore-named
# members of public classes and the C-style matrix kit.
required=(
    'Lumora::Utility::LmCRT::_stricmp(char const*, char const*)'
    'Lumora::Utility::LmRefObject::Release()'
    'Lumora::Utility::LmGlobeConfig::Instance()'
    'Lumora::Kernel::LmSpatialReference::Units() const'
    'Lumora::Kernel::xymap_r(int, double const*, double*, void (*)(double const*, double*, void*), double, void*)'
    'Lumora::Kernel::outOfChina(double, double)'
    'Lumora::Kernel::LmProjectCoordinateTransformation::Transformation(double*, double*, double*, int, int)'
    'Lumora::Kernel::LmGeodesic::Inverse(double, double, double, double, double*, double*) const'
    'typeinfo for Lumora::Kernel::LmCoordinateTransformation'
    'Lumora::Utility::LmEnumType<Lumora::Kernel::LmUnits>::Instance()'
    'mat_min2(int, double const*, double*)'
    'Lumora::Kernel::MyMatrix::inverse(Lumora::Kernel::MyMatrix&) const'
    'Lumora::Kernel::LmCoordinateTransformationFactory::CreateBursa7CoordinateTransformation(Lumora::Kernel::LmSpatialReference*, Lumora::Kernel::LmSpatialReference*, double const*)'
    'Lumora::Kernel::LmSquareFittingTransformation::_mm(double*, double*, double, double, double, double)'
    'Lumora::Kernel::LmCoordinateTransformationCombination::MemberCount() const'
    'Lumora::Kernel::LmPyramid::TileIndex(int, double, double, int*, int*, int*, int*)'
    'Lumora::Kernel::LmMultiPyramid::FindPyramid(int) const'
)
for symbol in "${required[@]}"; do
    if ! grep -qxF "$symbol" <<<"$symbols"; then
        echo "public symbol not exported: $symbol"
        status=1
    fi
done

exit $status
