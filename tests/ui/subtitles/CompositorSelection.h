#pragma once

// Holds the X selection a compositing manager holds, so that windows on the tests' display
// (which has none) believe their translucency shows; the screenshots then lay each window over
// what lies behind it themselves. Xlib stays inside the source file, away from GoogleTest.

class CompositorSelection final
{
public:
    CompositorSelection();
    ~CompositorSelection();
    CompositorSelection(const CompositorSelection &) = delete;
    CompositorSelection &operator=(const CompositorSelection &) = delete;
    CompositorSelection(CompositorSelection &&) = delete;
    CompositorSelection &operator=(CompositorSelection &&) = delete;

    // False when the tests run on no X display.
    bool held() const { return window_ != 0; }

private:
    unsigned long window_ = 0;
};
