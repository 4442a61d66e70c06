#include <lmspatialreference/utility.h>

#include <gtest/gtest.h>

#include <thread>
#include <vector>

using namespace Lumora::Utility;

namespace {

// Counts destructions so tests can see exactly when the last owner lets go.
class Tracked : public LmRefObject {
public:
    explicit Tracked(int* destroyed) : m_destroyed(destroyed) {}
    ~Tracked() override { ++*m_destroyed; }

private:
    int* m_destroyed;
};

TEST(LmRefObject, StartsOwnedByNobodyDiesAtTheLastReleaseAndCopiesCountAlone) {
    int destroyed = 0;
    auto* object = new Tracked(&destroyed);
    EXPECT_EQ(object->RefCount(), 0);
    EXPECT_EQ(object->AddRef(), 1);
    EXPECT_EQ(object->AddRef(), 2);
    Tracked copy(*object);
    EXPECT_EQ(copy.RefCount(), 0);
    EXPECT_NE(copy.HashCode(), object->HashCode());
    EXPECT_EQ(object->Release(), 1);
    EXPECT_EQ(destroyed, 0);
    EXPECT_EQ(object->Release(), 0);
    EXPECT_EQ(destroyed, 1);
}

TEST(LmSmarterPtr, NullFormsAndAReferenceAddedOnlyWhenAsked) {
    LmSmarterPtr<Tracked> byDefault, fromZero(0), fromNull(nullptr, true);
    EXPECT_FALSE(byDefault);
    EXPECT_FALSE(fromZero);
    EXPECT_EQ(fromNull, nullptr);
    int destroyed = 0;
    auto* object = new Tracked(&destroyed);
    object->AddRef();  // the reference the second pointer takes over
    {
        LmSmarterPtr<Tracked> owning(object, true);
        LmSmarterPtr<Tracked> adopting(object, false);
        EXPECT_EQ(object->RefCount(), 2);
        LmSmarterPtr<LmRefObject> base(new Tracked(&destroyed));  // from a derived pointer
        EXPECT_EQ(base->RefCount(), 1);
    }
    EXPECT_EQ(destroyed, 2);
}

TEST(LmSmarterPtr, CopiesAssignmentsAndAttachKeepTheCountExact) {
    int destroyed = 0;
    auto* first = new Tracked(&destroyed);
    auto* second = new Tracked(&destroyed);
    LmSmarterPtr<Tracked> a(first);
    {
        LmSmarterPtr<Tracked> b(a);
        b = first;  // the same pointer: nothing changes
        b = a;
        EXPECT_EQ(first->RefCount(), 2);
        EXPECT_EQ(b = second, second);
        EXPECT_EQ(first->RefCount(), 1);
        EXPECT_EQ(second->RefCount(), 1);
    }
    EXPECT_EQ(destroyed, 1);  // second died with b
    const LmSmarterPtr<Tracked>& alias = a;
    a = alias;  // self-assignment of the last owner keeps the object
    EXPECT_EQ(first->RefCount(), 1);

    auto* third = new Tracked(&destroyed);
    third->AddRef();
    a.Attach(third);  // takes over the existing reference
    EXPECT_EQ(destroyed, 2);
    EXPECT_EQ(third->RefCount(), 1);
    a = nullptr;
    EXPECT_EQ(destroyed, 3);
}

TEST(LmRefObject, CountingIsExactAcrossThreads) {
    int destroyed = 0;
    LmSmarterPtr<Tracked> shared(new Tracked(&destroyed));
    std::vector<std::thread> threads;
    for (int t = 0; t < 8; ++t) {
        threads.emplace_back([&shared] {
            for (int i = 0; i < 20000; ++i) {
                LmSmarterPtr<Tracked> copy(shared), another;
                another = copy;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(shared->RefCount(), 1);
    EXPECT_EQ(destroyed, 0);
}

}  // namespace
