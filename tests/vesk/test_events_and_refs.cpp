#include <gtest/gtest.h>

#include "vesk/geom.h"
#include "vesk/refcounter.h"
#include "vesk/source_event.h"

namespace {

TEST(SourceEvent, ListenersHearOncePerOutermostBatch) {
    vesk::CSourceEvent e;
    int heard = 0;
    e.AddListener([&] { ++heard; });
    e.BeginEvent();
    e.BeginEvent();
    e.EndEvent();
    EXPECT_EQ(heard, 0);
    e.EndEvent();
    EXPECT_EQ(heard, 1);
    { vesk::CEventScope s(&e); }
    EXPECT_EQ(heard, 2);
    e.EndEvent();  // unbalanced: ignored
    EXPECT_EQ(heard, 2);
    EXPECT_EQ(e.GetDepth(), 0);
}

struct Counted : vesk::IRefCounter {
    explicit Counted(int* d) : deaths(d) {}
    ~Counted() override { ++*deaths; }
    int* deaths;
};

TEST(RefCounter, DeletesAtZero) {
    int deaths = 0;
    auto* c = new Counted(&deaths);
    EXPECT_EQ(c->GetRefCount(), 1);
    c->AddReference();
    c->SubReference();
    EXPECT_EQ(deaths, 0);
    c->SubReference();
    EXPECT_EQ(deaths, 1);
    {
        vesk::RefPtr<Counted> p(new Counted(&deaths));
        vesk::RefPtr<Counted> q = p;
        EXPECT_EQ(p->GetRefCount(), 2);
    }
    EXPECT_EQ(deaths, 2);
}

TEST(Geom, DistanceAndNormalize) {
    using namespace vesk::geom;
    EXPECT_DOUBLE_EQ(dist(PNT_2D(1, 2), PNT_2D(4, 6)), 5.0);
    EXPECT_DOUBLE_EQ(dist(PNT_3D(0, 0, 0), PNT_3D(2, 3, 6)), 7.0);
    VECTOR_2D v(3, -4);
    v.Normalize();
    EXPECT_DOUBLE_EQ(v.getX(), 0.6);
    EXPECT_DOUBLE_EQ(v.getY(), -0.8);
    VECTOR_2D z;
    z.Normalize();
    EXPECT_EQ(z, VECTOR_2D(0, 0)) << "a zero vector stays zero";
    PNT_3D p(1, 2, 3);
    EXPECT_EQ(p.getX(), 1);
    EXPECT_EQ(p.getY(), 2);
    EXPECT_EQ(p.getZ(), 3);
}

}  // namespace
