#pragma once

// The slide follower as the coordinator sees it: it hears every finished line and asks its own
// model which page the teacher is on. Main thread only.

#include "ai/AIProvider.h"

#include <QString>

#include <functional>
#include <memory>

class SlidesView
{
public:
    SlidesView() = default;
    virtual ~SlidesView() = default;
    SlidesView(const SlidesView &) = delete;
    SlidesView &operator=(const SlidesView &) = delete;
    SlidesView(SlidesView &&) = delete;
    SlidesView &operator=(SlidesView &&) = delete;

    virtual void heard(const QString &line) = 0;
    virtual void stopFollowing() = 0;
    virtual void toggle() = 0;
    virtual void open(const QString &path) = 0;

    // The model the follower asks, made afresh when it needs one; none without a key.
    std::function<std::shared_ptr<const AIProvider>()> makeProvider = [] { return nullptr; };
};
