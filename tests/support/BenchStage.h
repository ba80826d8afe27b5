// A bench that each test function finds new.
#pragma once

#include <memory>

namespace quorvia::test {

/// A test class inherits this too and calls setUp() and tearDown() from its init() and cleanup().
template <class Bench>
class BenchStage
{
  protected:
    void setUp() { m_bench = std::make_unique<Bench>(); }
    void tearDown() { m_bench.reset(); }
    Bench& bench() { return *m_bench; }

  private:
    std::unique_ptr<Bench> m_bench;
};

} // namespace quorvia::test
