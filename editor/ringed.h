// How a control wants the ring of the keys.
#pragma once

#include "platform/toolkit.h"

// Of a control that the ring does not simply surround. Rectangles as those of views:
// in the frame's coordinates at scale 1. The user-interface thread alone asks.
class Ringed {
  public:
    // Where the ring's inner edges run.
    virtual VSTGUI::CRect ringedArea() const = 0;
    // What stands in front of the ring, which passes behind it; empty for nothing.
    virtual VSTGUI::CRect inFrontOfRing() const = 0;

  protected:
    Ringed() = default;
    Ringed(const Ringed&) = default;
    Ringed& operator=(const Ringed&) = default;
    ~Ringed() = default;
};
