#pragma once

// A caption source this build can't offer: start() tells the user why, and it never runs.

#include "captions/CaptionSource.h"

class UnavailableSource final : public CaptionSource
{
public:
    explicit UnavailableSource(QString problem);

    std::optional<QString> start() override { return problem_; }
    QString read() override { return {}; }

private:
    const QString problem_;
};
