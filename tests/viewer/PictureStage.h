// A main window over three pictures, made anew for each test function.
#pragma once

#include "viewer/ViewerBench.h"

#include <memory>

namespace quorvia::test {

/// A test class inherits this too and calls setUp() and tearDown() from its init() and cleanup().
class PictureStage
{
  protected:
    /// A fresh home with the pictures; no window yet.
    void setUp()
    {
        m_bench = std::make_unique<ViewerBench>();
        m_bench->threePictures();
    }
    void tearDown() { m_bench.reset(); }

    QString in(const char* name) const { return m_bench->in(name); }

    std::unique_ptr<ViewerBench> m_bench;
};

} // namespace quorvia::test
