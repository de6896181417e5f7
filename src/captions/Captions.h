#pragma once

// The choice of a class's caption source from the settings.

#include "captions/CaptionSource.h"

#include <memory>

struct Config;
class MicHub;

// Never fails. The sound sources listen to the hub, which must outlive the source.
[[nodiscard]] std::unique_ptr<CaptionSource> makeSource(const Config &config, MicHub &hub);
