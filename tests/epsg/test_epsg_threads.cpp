// Eight threads build references from codes and identify texts (EPSG() and
// FindEPSG) on a cold table at once, and must get the answers one thread gets
// afterwards.
#include <lmspatialreference/epsg.h>

#include <gtest/gtest.h>

#include <cpl_conv.h>
#include <cpl_error.h>
#include <ogr_spatialref.h>

#include <thread>
#include <utility>
#include <vector>

using namespace Lumora::Kernel;

namespace {

// An item is a code to build from (text empty) or a text to identify.
struct Item {
    int code;
    LmString text;
};

// ESRI texts carry no authority codes, so EPSG() has to search for them. They
// are made with GDAL alone, so the table stays cold until the threads start.
std::vector<Item> Items() {
    std::vector<Item> items;
    for (int code : {4326, 4490, 3857, 32650, 4547, 2384, 999999}) items.push_back({code, ""});
    for (LmWellKnownSpatialReference builtIn : {eWGS84, eCGCS2000, eWebMercator})
        items.push_back({0, LmSpatialReference(builtIn).ExportToWKT(false)});
    CPLPushErrorHandler(CPLQuietErrorHandler);
    for (int code : {4214, 4610, 4547, 2384, 27700, 2154, 26910}) {
        OGRSpatialReference srs;
        char* text = nullptr;
        const char* const esri[] = {"FORMAT=WKT1_ESRI", nullptr};
        if (srs.importFromEPSG(code) == OGRERR_NONE && srs.exportToWkt(&text, esri) == OGRERR_NONE)
            items.push_back({0, text});
        CPLFree(text);
    }
    CPLPopErrorHandler();
    return items;
}

// EPSG() and FindEPSG(); -1 for a code that builds no reference.
std::pair<int, int> Answer(const Item& item) {
    if (item.text.empty()) {
        LmSpatialReference reference(item.code);
        if (reference.IsNull()) return {-1, -1};
        return {reference.EPSG(), reference.FindEPSG()};
    }
    LmSpatialReference reference(item.text.c_str(), eWKT);
    return {reference.EPSG(), reference.FindEPSG()};
}

TEST(EpsgThreads, ColdTableGivesEveryThreadTheSingleThreadAnswers) {
    const std::vector<Item> items = Items();
    constexpr int kThreads = 8;
    std::vector<std::vector<std::pair<int, int>>> results(kThreads, std::vector<std::pair<int, int>>(items.size()));
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([&items, &results, t] {
            // Each thread starts at another item, so first uses overlap.
            for (std::size_t k = 0; k < items.size(); ++k) {
                const std::size_t i = (k + static_cast<std::size_t>(t) * 3) % items.size();
                results[t][i] = Answer(items[i]);
            }
        });
    for (std::thread& thread : threads) thread.join();

    std::vector<std::pair<int, int>> single;
    for (const Item& item : items) single.push_back(Answer(item));
    for (int t = 0; t < kThreads; ++t) EXPECT_EQ(results[t], single) << "thread " << t;
    EXPECT_EQ(single[0], std::make_pair(4326, 4326));
    EXPECT_EQ(single[6], std::make_pair(-1, -1));
    EXPECT_EQ(single[7].first, 4326);
    EXPECT_EQ(single[8].first, 4490);
    EXPECT_EQ(single[9].first, 3857);
    // The ESRI texts of 27700, 2154 and 26910 are named back.
    EXPECT_EQ(single[14].second, 27700);
    EXPECT_EQ(single[15].second, 2154);
    EXPECT_EQ(single[16].second, 26910);
}

}  // namespace
