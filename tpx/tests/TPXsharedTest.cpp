// Shared scene resources: counted holders, destruction with the last one, over-release.
#include <gtest/gtest.h>

#include <string>

#include "base/Console.h"
#include "tpx/TPXshared.h"

namespace vellum {
namespace {

class Resource : public TPXshared {
  public:
    explicit Resource(int* destroyed) : m_destroyed(destroyed) {}
    ~Resource() override { ++*m_destroyed; }

  private:
    int* m_destroyed;
};

TEST(TPXshared, TheLastHolderDestroysTheResource) {
    int destroyed = 0;
    TPXref<Resource> first = TPXref<Resource>::make(&destroyed);
    EXPECT_EQ(first->references(), 1);
    {
        TPXref<Resource> second = first;
        TPXref<Resource> third;
        third = second;
        EXPECT_EQ(first->references(), 3);
        TPXref<Resource> moved = std::move(third);
        EXPECT_FALSE(third);
        EXPECT_EQ(first->references(), 3);
    }
    EXPECT_EQ(first->references(), 1);
    EXPECT_EQ(destroyed, 0);
    first = TPXref<Resource>();
    EXPECT_EQ(destroyed, 1);
}

TEST(TPXshared, ReleasingMoreThanTakenIsReported) {
    int destroyed = 0;
    Resource resource(&destroyed);  // never acquired, so never deleted by a release
    ConsoleCapture capture;
    resource.release();
    EXPECT_NE(capture.text().find("Assertion failed: m_NrReferences >= 0, file Src/TPXshared"),
              std::string::npos)
        << capture.text();
    EXPECT_EQ(resource.references(), 0);
    EXPECT_EQ(destroyed, 0);
}

}  // namespace
}  // namespace vellum
