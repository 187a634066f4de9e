// Calculate runs thousands of times per redraw: it must not allocate. This
// program's global allocation functions count their calls.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "tests/tyre/tyre_fixtures.h"

static int allocations = 0;

void *operator new(size_t n) {
  allocations++;
  void *p = malloc(n ? n : 1);
  if (!p) abort();
  return p;
}
// The forms the library may take memory through (the nothrow one serves
// std::stable_sort's buffer) all come from malloc, as every delete frees.
void *operator new(size_t n, const std::nothrow_t &) noexcept {
  allocations++;
  return malloc(n ? n : 1);
}
void *operator new[](size_t n) { return operator new(n); }
void *operator new[](size_t n, const std::nothrow_t &t) noexcept { return operator new(n, t); }
void operator delete(void *p) noexcept { free(p); }
void operator delete(void *p, size_t) noexcept { free(p); }
void operator delete(void *p, const std::nothrow_t &) noexcept { free(p); }
void operator delete[](void *p) noexcept { free(p); }
void operator delete[](void *p, size_t) noexcept { free(p); }
void operator delete[](void *p, const std::nothrow_t &) noexcept { free(p); }

TEST(Calculate, AllocatesNothing) {
  KPacejka tyres[4];
  SetTouringPac96(tyres[0]);
  SetTestMF(tyres[1], KPacejka::MF52);
  SetTestMF(tyres[2], KPacejka::PAC2006);
  SetTestMF(tyres[3], KPacejka::MF61);
  delete new int(1);  // the counter does see allocations
  const int before = allocations;
  ASSERT_GT(before, 0);
  for (KPacejka &t : tyres)
    for (int i = 0; i < 100; i++) Evaluate(t, 1000.0 + 50.0 * i, 0.002 * i - 0.1, 0.004 * i - 0.2, 0.01);
  EXPECT_EQ(allocations, before);
}
