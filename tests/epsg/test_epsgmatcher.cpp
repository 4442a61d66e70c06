// The prepared search against a plain walk over every code of the generated
// table: building each entry and testing IsSame, then IsSameParameter; and
// its IsSame alone, as the recent cache asks it, against OGR's.
#include "spatialreference/epsgmatcher.h"

#include "internal/linereader.h"
#include "internal/ogrsupport.h"

#include <gtest/gtest.h>

using namespace Lumora::Kernel;

namespace {

// GDAL's export of a code in another dialect, or a PROJ.4 round trip that
// loses the names: forms the table's own texts do not match byte for byte.
LmSmarterPtr<LmSpatialReference> Variant(int code, int form) {
    LmQuietGdalErrors quiet;
    OGRSpatialReference srs;
    if (srs.importFromEPSG(code) != OGRERR_NONE) return LmSmarterPtr<LmSpatialReference>();
    char* text = nullptr;
    const char* const esri[] = {"FORMAT=WKT1_ESRI", nullptr};
    if (form == 0) srs.exportToWkt(&text, esri);
    else srs.exportToProj4(&text);
    const LmString exported = TakeOgrText(text);
    return LmSmarterPtr<LmSpatialReference>(new LmSpatialReference(exported.c_str(), form == 0 ? eWKT : eProj4));
}

TEST(EpsgMatcher, AnswersExactlyAsAPlainWalkOverEveryCode) {
    const auto records = ReadCategoryFile(LM_TEST_DATA_DIR "/EPSG.txt");
    ASSERT_GT(records.size(), 5000u);
    LmEPSGMatcher matcher;
    std::vector<LmSmarterPtr<LmSpatialReference>> built;
    std::vector<int> codes;
    for (const auto& record : records) {
        codes.push_back(static_cast<int>(Lumora::Utility::LmCRT::_atoi64(record.first.c_str())));
        matcher.Add(codes.back(), "", record.second.c_str());
        built.emplace_back(new LmSpatialReference(record.second.c_str(), eWKT));
    }

    // Codes spread over all kinds and ellipsoids, in ESRI's dialect and as
    // PROJ.4 strings (the plain walk is slow, so fewer of those).
    int identified = 0, compared = 0;
    for (std::size_t i = 0; i < codes.size(); i += 37) {
        for (int form = 0; form < (i % 111 == 0 ? 2 : 1); ++form) {
            LmSmarterPtr<LmSpatialReference> reference = Variant(codes[i], form);
            if (!reference || reference->IsNull()) continue;
            // The recent cache asks IsSame alone of each entry on the way.
            const LmEPSGMatcher::Probe probe(reference);
            int plain = 0;
            for (std::size_t k = 0; k < built.size() && plain == 0; ++k) {
                const bool same = reference->IsSame(built[k]);
                ASSERT_EQ(matcher.IsSame(probe, k), same) << codes[i] << " form " << form << " against " << codes[k];
                if (same || reference->IsSameParameter(built[k])) plain = codes[k];
            }
            EXPECT_EQ(matcher.First(probe).code, plain) << codes[i] << " form " << form;
            identified += plain != 0;
            ++compared;
        }
    }
    EXPECT_GT(compared, 180);
    EXPECT_GT(identified, compared / 2);  // the comparison must not be all misses
}

}  // namespace
